#include "CalculFeu.h"
#include "Commandes.h"
#include "Entree.h"
#include "Svg.h"
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
std::string WriteText(const ScratchDir& dir, const char* name, const std::string& text)
{
    CString path = dir / CString(AfxUtf8ToWide(name));
    WriteAll(path, std::vector<BYTE>(text.begin(), text.end()));
    return AfxWideToUtf8(path.Std());
}

// Runs the program; returns its exit status, with standard output and error captured.
int RunProgram(const std::string& args, std::string* out, std::string* err, const ScratchDir& dir)
{
    std::string o = dir.Utf8() + "/stdout.txt", e = dir.Utf8() + "/stderr.txt";
    std::string cmd = "\"" + std::string(PREFA_PROGRAM) + "\" " + args + " >" + o + " 2>" + e;
    int status = AfxRunCommand(CString(AfxUtf8ToWide(cmd)));
    auto slurp = [](const std::string& p) {
        std::ifstream in(p);
        std::stringstream s;
        s << in.rdbuf();
        return s.str();
    };
    if (out)
        *out = slurp(o);
    if (err)
        *err = slurp(e);
    return status;
}

std::string Message(const std::string& json)
{
    try
    {
        ScratchDir dir;
        ReadFireInput(WriteText(dir, "in.json", json));
    }
    catch (const InputError& e)
    {
        return e.what();
    }
    return "";
}

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
    std::vector<BYTE> svg = ReadAll(dir / L"section.svg");
    std::string s(svg.begin(), svg.end());
    EXPECT_NE(std::string::npos, s.find("class=\"outline\""));
    EXPECT_NE(std::string::npos, s.find("G ("));
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
