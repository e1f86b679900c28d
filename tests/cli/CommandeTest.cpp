#include "CalculFeu.h"
#include "Commandes.h"
#include "Entree.h"
#include "Svg.h"
#include "Programme.h"
#include "CommandeTestUtil.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

using namespace prefa_cli;
using namespace prefa_test;

namespace
{
const char* kSmall = R"({"outline": [[0,0],[0.1,0],[0.1,0.1],[0,0.1]], "durations": [0.25], "cell": 0.01,
  "bars": [{"name": "B", "x": 0.05, "y": 0.03}], "method": "%s"})";
// A rectangular member heated on every face by the standard fire, computed with the
// library directly (Eurocode 2, siliceous aggregate, moisture 0.015): the strip of
// concrete that the full-width mesh lays over the section (row 1) is fire-side gas,
// and the lookup origin is half the grid's width.
void DirectEc2(CTemperatureGenerale& t, double width, double height, double duration, double cell)
{
    CPolygone section;
    section.AddTail(0.0, 0.0);
    section.AddTail(width, 0.0);
    section.AddTail(width, height);
    section.AddTail(0.0, height);
    CListePolygone none;
    CArray<CPolygone, CPolygone> noZones;
    t.InitTableDonnees(section, duration, CTemperatureGenerale::EC2, none, 0, noZones, 0, noZones, cell, 0, 0, 0, 0,
                       0, 0);
    for (INT_PTR c = 0; c < t.m_Masque[1].GetSize(); ++c)
    {
        EXPECT_EQ(11.0, t.m_Masque[1][c]);
        t.m_Masque[1][c] = t.m_T1[1][c] = -1.0;
    }
    EXPECT_EQ(0, t.CalculTemperatureEC2(0, duration, 0.015, 0.0, CTemperatureGenerale::MONTEE_NORMALE,
                                        GRANULAT_SILICEUX, 0));
    t.m_dXOrigine = t.GetNbColonnes() * t.GetDELX() * 0.5;
}
} // namespace

TEST(FireInput, BadInputNamesTheFieldAndWhatIsWrong)
{
    std::string m = Message(R"({"outline": [[0,0],[1,0]], "duration": 1})");
    EXPECT_NE(std::string::npos, m.find("outline: a contour needs at least 3 points, it has 2")) << m;
    m = Message(R"({"outline": [[0,0],[1,0],[1,1]], "duration": 1, "method": "fem"})");
    EXPECT_NE(std::string::npos, m.find("method: unknown method \"fem\"")) << m;
    m = Message(R"({"outline": [[0,0],[1,0],[1,1]], "durations": [1, -0.5]})");
    EXPECT_NE(std::string::npos, m.find("durations[1]: a duration must be positive")) << m;
    m = Message(R"({"outline": [[0,0],[1,0],[1,1],[0,1]], "duration": 1, "bars": [{"name": "X", "x": 2, "y": 0.5}]})");
    EXPECT_NE(std::string::npos, m.find("bars[0]: bar \"X\" at (2.000000, 0.500000) lies outside the section")) << m;
    m = Message(R"({"outline": [[0,0],[1,0],[1,1]], "duration": 1, "cell": 0.00001})");
    EXPECT_NE(std::string::npos, m.find("cell: the cell side is too small")) << m;
    m = Message(R"({"outline": [[0,0],[1,0],["a",1]], "duration": 1})");
    EXPECT_NE(std::string::npos, m.find("outline[2][0]: a number was expected")) << m;
    m = Message("{\"outline\": [");
    EXPECT_NE(std::string::npos, m.find("not valid JSON")) << m;
    // A number beyond the doubles is a bad file too, not a failure of the command.
    m = Message(R"({"outline": [[0,0],[1,0],[1,1]], "duration": 444e444})");
    EXPECT_NE(std::string::npos, m.find("not valid JSON")) << m;
    // A bar on the outline is inside; the message starts with the file's name.
    EXPECT_EQ("", Message(R"({"outline": [[0,0],[1,0],[1,1],[0,1]], "duration": 1, "bars": [{"x": 1, "y": 0.5}]})"));
}

TEST(FireInput, TheHelpExampleIsTheBuiltInExample)
{
    FireInput file = ReadFireInput(std::string(PREFA_EXAMPLES) + "/beam.json");
    FireInput builtIn = ExampleFireInput();
    ASSERT_EQ(builtIn.outline.size(), file.outline.size());
    ASSERT_EQ(4u, file.bars.size());
    EXPECT_EQ(builtIn.durations, file.durations);
    EXPECT_EQ((std::vector<double>{0.5, 1.0, 1.5, 2.0}), file.durations);
    EXPECT_EQ(Method::Ec2, file.method);
    for (std::size_t k = 0; k < 4; ++k)
        EXPECT_EQ(builtIn.bars[k].p.x, file.bars[k].p.x);
    EXPECT_NE(std::string::npos, FireHelp().find(kFireExampleJson));
    SectionInput s = ReadSectionInput(std::string(PREFA_EXAMPLES) + "/angle.json");
    EXPECT_EQ(6u, s.contours.at(0).size());
}

TEST(FireCalculation, ABarAtACellCentreReadsThatCell)
{
    // Every method's grid: fill the section's cells with distinct values and read each
    // one back through the section-to-lookup conversion of the command.
    for (Method m : {Method::Ec2, Method::Itbtp, Method::Zolt, Method::Dtu})
    {
        FireInput in;
        in.outline = {{1.0, 2.0}, {1.2, 2.0}, {1.2, 2.3}, {1.0, 2.3}};
        in.method = m;
        in.cell = 0.02;
        in.durations = {1.0};
        CTemperatureGenerale t;
        Mesh(t, in, 1.0);
        int checked = 0;
        for (int i = 0; i < (int)t.m_T1.GetSize(); ++i)
            for (int j = 0; j < (int)t.m_T1[i].GetSize(); ++j)
            {
                // DTU: columns 0 and n-1 are the mirrored borders, not section cells.
                const int n = (int)t.m_T1[i].GetSize();
                bool section = m == Method::Dtu ? t.m_T1[i][j] >= 0 && j > 0 && j < n - 1 : t.m_Masque[i][j] > 0;
                if (section)
                    t.m_T1[i][j] = 100.0 + i * 37.0 + j;
            }
        for (int i = 0; i < (int)t.m_T1.GetSize(); ++i)
            for (int j = 0; j < (int)t.m_T1[i].GetSize(); ++j)
            {
                double v = t.m_T1[i][j];
                if (v < 100.0)
                    continue;
                Point2 c = CellCentre(t, in.outline, i, j);
                // The cell centres of the section lie inside the outline.
                EXPECT_TRUE(c.x > 1.0 && c.x < 1.2 && c.y > 2.0 && c.y < 2.3)
                    << MethodName(m) << " cell " << i << "," << j << " at " << c.x << "," << c.y;
                Point2 q = LookupPoint(t, in.outline, c);
                EXPECT_NEAR(v, t.T(q.x, q.y), 1e-9) << MethodName(m) << " cell " << i << "," << j;
                ++checked;
            }
        EXPECT_EQ(10 * 15, checked) << MethodName(m);
    }
}

TEST(Isolines, LieOnTheLevelOfALinearField)
{
    ScalarGrid g;
    g.cell = 0.1;
    for (int j = 0; j < 6; ++j)
        g.xs.push_back(0.05 + 0.1 * j);
    for (int i = 0; i < 4; ++i)
        g.ys.push_back(0.35 - 0.1 * i);
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 6; ++j)
            g.values.push_back(100.0 * g.xs[(std::size_t)j] + 300.0 * g.ys[(std::size_t)i]);
    g.values[0] = std::nan(""); // a hole: the squares around it yield nothing
    auto segments = Isolines(g, 60.0);
    ASSERT_FALSE(segments.empty());
    for (const Segment& s : segments)
    {
        EXPECT_NEAR(60.0, 100.0 * s.a.x + 300.0 * s.a.y, 1e-9);
        EXPECT_NEAR(60.0, 100.0 * s.b.x + 300.0 * s.b.y, 1e-9);
        EXPECT_FALSE(s.a.x < 0.15 && s.a.y > 0.25);
    }
    EXPECT_TRUE(Isolines(g, 1000.0).empty());
}

TEST(Program, BadInputExitsWithStatusTwoAndWritesNothing)
{
    ScratchDir dir;
    std::string file = WriteText(dir, "bad.json", R"({"outline": [[0,0],[1,0],[1,1],[0,1]], "duration": -1})");
    std::string out, err;
    EXPECT_EQ(2, RunProgram("fire " + file + " --out " + dir.Utf8(), &out, &err, dir));
    EXPECT_EQ(1, std::count(err.begin(), err.end(), '\n')) << err;
    EXPECT_NE(std::string::npos, err.find(file + ": duration: a duration must be positive")) << err;
    EXPECT_FALSE(Exists(dir / L"fire.svg"));
    EXPECT_EQ(2, RunProgram("fire --frobnicate", &out, &err, dir));
    EXPECT_EQ(2, RunProgram("nonsense", &out, &err, dir));
    EXPECT_EQ(0, RunProgram("fire --help", &out, &err, dir));
    EXPECT_NE(std::string::npos, out.find("\"outline\"")) << out;
    EXPECT_EQ(0, RunProgram("section --help", &out, &err, dir));
}

TEST(Program, JsonResultsAreTheLibrarysOwnLookups)
{
    ScratchDir dir;
    char text[512];
    std::snprintf(text, sizeof text, kSmall, "ec2");
    std::string file = WriteText(dir, "small.json", text);
    std::string out, err;
    ASSERT_EQ(0, RunProgram("fire " + file + " --json --out " + dir.Utf8(), &out, &err, dir)) << err;
    nlohmann::json j = nlohmann::json::parse(out);
    double reported = j["bars"][0]["temperatures"][0].get<double>();

    // The same calculation written directly against the library. Grid methods count
    // columns from m_dXOrigine: with the origin at half the grid's width, the lookup's
    // x is measured from the section's centre line.
    CTemperatureGenerale t;
    DirectEc2(t, 0.1, 0.1, 0.25, 0.01);
    double direct = t.T(0.05 - t.GetPtTranslation().x - 0.05, 0.03 - t.GetPtTranslation().y);
    EXPECT_EQ(direct, reported);
    EXPECT_GT(reported, 20.0);
    EXPECT_LT(reported, 1000.0);
    EXPECT_TRUE(Exists(dir / L"fire.svg"));
}

TEST(Program, TheExampleGivesTheLibrarysBarTemperatures)
{
    ScratchDir dir;
    std::string out, err;
    ASSERT_EQ(0, RunProgram("fire --json --no-picture", &out, &err, dir)) << err;
    nlohmann::json j = nlohmann::json::parse(out);
    ASSERT_EQ(4u, j["bars"].size());

    // The example written directly against the library: a 0.30 x 0.60 m beam heated on
    // every face by the standard fire, Eurocode 2, 5 mm cells, one run per duration.
    const double bars[4][2] = {{0.05, 0.05}, {0.25, 0.05}, {0.05, 0.55}, {0.25, 0.55}};
    const double durations[4] = {0.5, 1.0, 1.5, 2.0};
    for (int k = 0; k < 4; ++k)
    {
        CTemperatureGenerale t;
        DirectEc2(t, 0.30, 0.60, durations[k], 0.005);
        for (int b = 0; b < 4; ++b)
        {
            double direct = t.T(bars[b][0] - 0.15, bars[b][1]);
            EXPECT_EQ(direct, j["bars"][b]["temperatures"][k].get<double>()) << "bar " << b << " at " << durations[k];
        }
    }
    // Symmetric beam and exposure: the four corner bars agree, and heat up with time.
    for (int k = 0; k < 4; ++k)
        EXPECT_NEAR(j["bars"][0]["temperatures"][k].get<double>(), j["bars"][3]["temperatures"][k].get<double>(), 1e-6);
    EXPECT_LT(j["bars"][0]["temperatures"][0].get<double>(), j["bars"][0]["temperatures"][3].get<double>());
}

TEST(Program, DtuReportsRisesAndCriteria)
{
    ScratchDir dir;
    char text[512];
    std::snprintf(text, sizeof text, kSmall, "dtu");
    std::string file = WriteText(dir, "small.json", text);
    std::string out, err;
    ASSERT_EQ(0, RunProgram("fire " + file + " --json --no-picture", &out, &err, dir)) << err;
    nlohmann::json j = nlohmann::json::parse(out);
    EXPECT_EQ("rise_K", j["unit"].get<std::string>());
    EXPECT_TRUE(j.contains("criteria_minutes"));
    ASSERT_EQ(0, RunProgram("fire " + file + " --no-picture", &out, &err, dir)) << err;
    EXPECT_NE(std::string::npos, out.find("unexposed face: mean rise 140 K at")) << out;
}

TEST(Program, SectionPropertiesOfTheExample)
{
    ScratchDir dir;
    std::string out, err;
    ASSERT_EQ(0, RunProgram("section --json --out " + dir.Utf8(), &out, &err, dir)) << err;
    nlohmann::json j = nlohmann::json::parse(out);
    // Unequal angle 0.20 x 0.10 x 0.02: two rectangles.
    const double a1 = 0.02 * 0.20, a2 = 0.08 * 0.02;
    const double area = a1 + a2;
    const double xg = (a1 * 0.01 + a2 * 0.06) / area, yg = (a1 * 0.10 + a2 * 0.01) / area;
    EXPECT_NEAR(area, j["area"].get<double>(), 1e-12);
    EXPECT_NEAR(xg, j["centroid"][0].get<double>(), 1e-12);
    EXPECT_NEAR(yg, j["centroid"][1].get<double>(), 1e-12);
    const double ixx = 0.02 * std::pow(0.20, 3) / 12 + a1 * std::pow(0.10 - yg, 2) + 0.08 * std::pow(0.02, 3) / 12 +
                       a2 * std::pow(0.01 - yg, 2);
    EXPECT_NEAR(ixx, j["Ixx_centroid"].get<double>(), 1e-15);
    EXPECT_NEAR(ixx / (0.20 - yg), j["axes"]["x"]["W_positive"].get<double>(), 1e-12);
    // Half the area lies below y = 0.06 (0.0016 + 0.02 x 0.04) and left of x = 0.014;
    // by hand, Z = 312 and 96.8 cm3.
    EXPECT_NEAR(0.06, j["plastic"]["x"]["axis_y"].get<double>(), 1e-12);
    EXPECT_NEAR(312e-6, j["plastic"]["x"]["W_pl"].get<double>(), 1e-15);
    EXPECT_NEAR(0.014, j["plastic"]["y"]["axis_x"].get<double>(), 1e-12);
    EXPECT_NEAR(96.8e-6, j["plastic"]["y"]["W_pl"].get<double>(), 1e-15);

    std::vector<BYTE> svg = ReadAll(dir / L"section.svg");
    std::string s(svg.begin(), svg.end());
    EXPECT_NE(std::string::npos, s.find("class=\"outline\""));
    EXPECT_NE(std::string::npos, s.find("G ("));
    EXPECT_EQ(2, Occurrences(s, "class=\"plastic-axis\""));
    EXPECT_NE(std::string::npos, s.find(">PNA y = 0.0600 <"));
    EXPECT_NE(std::string::npos, s.find(">PNA x = 0.0140<"));
    // Distances from the centroidal axes to the fibres: above, below, right, left.
    EXPECT_EQ(4, Occurrences(s, "<g class=\"fibre\""));
    for (const char* d : {"0.1257", "0.0743", "0.0757", "0.0243"})
        EXPECT_NE(std::string::npos, s.find(std::string(">") + d + "</text></g>")) << d;
}

TEST(Program, SectionGivesTheExactValuesOfTheHandWorkedCases)
{
    ScratchDir dir;
    std::string out, err;
    auto relative = [](double expected, const nlohmann::json& v, double scale = 0) {
        EXPECT_NEAR(expected, v.get<double>(), 1e-9 * (scale ? scale : std::fabs(expected))) << v;
    };

    // The right triangle (1,1), (2,1), (1,2), legs 1: Ix = Iy = b h^3 / 36, Ixy = -b^2 h^2 / 72;
    // principal moments 1/36 +- 1/72, axis 1 at 45 degrees. Seen from axis 1 the corners
    // lie at +-1/sqrt(2); from axis 2 at 1/(3 sqrt(2)) and 2/(3 sqrt(2)).
    std::string file = WriteText(dir, "triangle.json", R"({"contours": [[[1, 1], [2, 1], [1, 2]]]})");
    ASSERT_EQ(0, RunProgram("section " + file + " --json --no-picture", &out, &err, dir)) << err;
    nlohmann::json j = nlohmann::json::parse(out);
    const double r2 = std::sqrt(2.0);
    relative(0.5, j["area"]);
    relative(4.0 / 3, j["centroid"][0]);
    relative(4.0 / 3, j["centroid"][1]);
    relative(1.0 / 36, j["Ixx_centroid"]);
    relative(1.0 / 36, j["Iyy_centroid"]);
    relative(-1.0 / 72, j["Ixy_centroid"]);
    relative(1.0 / 24, j["I1"]);
    relative(1.0 / 72, j["I2"]);
    relative(45.0, j["principal_angle_deg"]);
    relative(r2 / 24, j["axes"]["1"]["W_positive"]);
    relative(r2 / 24, j["axes"]["1"]["W_negative"]);
    relative(r2 / 24, j["axes"]["2"]["W_positive"]);
    relative(r2 / 48, j["axes"]["2"]["W_negative"]);
    relative(1.0 / 24, j["axes"]["x"]["W_positive"]); // 1/36 over 2/3
    relative(1.0 / 12, j["axes"]["y"]["W_negative"]); // 1/36 over 1/3
    relative(std::sqrt(1.0 / 72 / 0.5), j["axes"]["2"]["radius_of_gyration"]);
    // Half the area lies below y = 2 - 1/sqrt(2); Z = a^3/6 + t^2/2 - t^3/6, a = 1/sqrt(2), t = 1 - a.
    const double a = 1 / r2, t = 1 - a, z = a * a * a / 6 + t * t / 2 - t * t * t / 6;
    relative(2 - a, j["plastic"]["x"]["axis_y"]);
    relative(z, j["plastic"]["x"]["W_pl"]);
    relative(2 - a, j["plastic"]["y"]["axis_x"]);
    relative(z, j["plastic"]["y"]["W_pl"]);
    relative(2 + r2, j["perimeter_contours"]);
    EXPECT_NE(std::string::npos, j["angle_convention"].get<std::string>().find("counter-clockwise from the x axis"));

    // A 0.30 x 0.60 rectangle from (100000, 200000): b h^3 / 12 = 0.0054, h b^3 / 12 =
    // 0.00135, no product, axis 1 along x; b h^2 / 4 = 0.027 and h b^2 / 4 = 0.0135.
    file = WriteText(dir, "far.json",
                     R"({"contours": [[[100000, 200000], [100000.3, 200000], [100000.3, 200000.6], [100000, 200000.6]]]})");
    ASSERT_EQ(0, RunProgram("section " + file + " --json --no-picture", &out, &err, dir)) << err;
    j = nlohmann::json::parse(out);
    relative(0.18, j["area"]);
    relative(100000.15, j["centroid"][0], 0.3);
    relative(200000.3, j["centroid"][1], 0.6);
    relative(0.0054, j["Ixx_centroid"]);
    relative(0.00135, j["Iyy_centroid"]);
    relative(0.0, j["Ixy_centroid"], 0.0054);
    relative(0.0054, j["I1"]);
    relative(0.00135, j["I2"]);
    EXPECT_NEAR(0.0, j["principal_angle_deg"].get<double>(), 1e-9);
    relative(0.018, j["axes"]["x"]["W_negative"]);
    relative(0.009, j["axes"]["y"]["W_positive"]);
    relative(200000.3, j["plastic"]["x"]["axis_y"], 0.6);
    relative(0.027, j["plastic"]["x"]["W_pl"]);
    relative(100000.15, j["plastic"]["y"]["axis_x"], 0.3);
    relative(0.0135, j["plastic"]["y"]["W_pl"]);

    // The text says which way the angle goes.
    ASSERT_EQ(0, RunProgram("section " + file + " --no-picture", &out, &err, dir)) << err;
    EXPECT_NE(std::string::npos, out.find("Principal angle: counter-clockwise from the x axis to axis 1")) << out;
}

TEST(Program, OpeningsThatLeaveNoAreaAreBadInput)
{
    ScratchDir dir;
    std::string file = WriteText(dir, "hole.json", R"({"contours": [[[0,0],[1,0],[1,1],[0,1]]],
      "openings": [[[0,0],[0,1],[1,1],[1,0]]]})");
    std::string out, err;
    EXPECT_EQ(2, RunProgram("section " + file + " --out " + dir.Utf8(), &out, &err, dir));
    EXPECT_NE(std::string::npos, err.find(file + ": openings: the openings leave the section no area")) << err;
    EXPECT_FALSE(Exists(dir / L"section.svg"));
}

TEST(Program, FirePictureHasFieldLegendIsothermsAndBars)
{
    ScratchDir dir;
    char text[512];
    std::snprintf(text, sizeof text, kSmall, "itbtp");
    std::string file = WriteText(dir, "small.json", text);
    std::string out, err;
    ASSERT_EQ(0, RunProgram("fire " + file + " --out " + dir.Utf8(), &out, &err, dir)) << err;
    EXPECT_NE(std::string::npos, out.find("bar temperatures")) << out;
    std::vector<BYTE> svg = ReadAll(dir / L"fire.svg");
    std::string s(svg.begin(), svg.end());
    EXPECT_NE(std::string::npos, s.find("<g id=\"field\""));
    EXPECT_GE(std::count(s.begin(), s.end(), '\n'), 100);
    EXPECT_NE(std::string::npos, s.find("<g id=\"legend\""));
    EXPECT_NE(std::string::npos, s.find("class=\"isotherm\""));
    EXPECT_NE(std::string::npos, s.find("class=\"bar\""));
    EXPECT_NE(std::string::npos, s.find(">B  "));
}

TEST(Program, AFieldThatLeavesItsRangeIsAnErrorNotTemperatures)
{
    // ZOLT gives an extra material no properties: its cells cannot be computed.
    ScratchDir dir;
    std::string file = WriteText(dir, "zolt.json", R"({"outline": [[0,0],[0.1,0],[0.1,0.1],[0,0.1]],
      "materials": [[[0.04,0.04],[0.06,0.04],[0.06,0.06],[0.04,0.06]]], "durations": [0.05], "cell": 0.01,
      "bars": [{"name": "B", "x": 0.05, "y": 0.03}], "method": "zolt"})");
    std::string out, err;
    EXPECT_EQ(1, RunProgram("fire " + file + " --json --no-picture", &out, &err, dir));
    EXPECT_NE(std::string::npos, err.find("prefa fire: the zolt 0.05 h field left the range")) << err;
    EXPECT_EQ(std::string::npos, out.find("temperatures")) << out;
}
