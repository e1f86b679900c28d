// The fire input's exposure and fire curves: what each form means, and one clear
// message for each way of getting it wrong.
#include "Commandes.h"
#include "Courbe.h"
#include "Entree.h"
#include "CommandeTestUtil.h"

#include <gtest/gtest.h>

#include <cstdio>

using namespace prefa_cli;
using namespace prefa_test;

namespace
{
// A section with a chamfer at 45 degrees at its bottom right corner, counter-clockwise.
const char* kChamfer = R"({"outline": [[0,0],[0.3,0],[0.4,0.1],[0.4,0.6],[0,0.6]], "duration": 1, %s})";

FireInput Read(const std::string& json)
{
    ScratchDir dir;
    return ReadFireInput(WriteText(dir, "in.json", json));
}

std::string With(const char* format, const std::string& part)
{
    char text[1024];
    std::snprintf(text, sizeof text, format, part.c_str());
    return text;
}

TEST(FireInputExposure, FacesByDirectionOrNumberEitherWayRound)
{
    EXPECT_TRUE(Read(With(kChamfer, R"("method": "ec2")")).exposed.empty());
    // Sides: 1 bottom, 2 the chamfer (facing both down and right), 3 right, 4 top, 5 left.
    EXPECT_EQ(Read(With(kChamfer, R"("exposed": ["bottom"])")).exposed,
              (std::vector<bool>{true, true, false, false, false}));
    EXPECT_EQ(Read(With(kChamfer, R"("exposed": ["right", 5])")).exposed,
              (std::vector<bool>{false, true, true, false, true}));
    EXPECT_EQ(Read(With(kChamfer, R"("unexposed": ["top"])")).exposed,
              (std::vector<bool>{true, true, true, false, true}));
    EXPECT_EQ(Read(With(kChamfer, R"("exposed": ["all"])")).exposed, std::vector<bool>(5, true));
    EXPECT_EQ(Read(With(kChamfer, R"("exposed": [1, 2, 3, 5], "unexposed": [4])")).exposed,
              (std::vector<bool>{true, true, true, false, true}));
    // The same outline walked the other way: its sides face the same ways.
    const FireInput cw = Read(R"({"outline": [[0,0.6],[0.4,0.6],[0.4,0.1],[0.3,0],[0,0]], "duration": 1,
        "exposed": ["top", "left"]})");
    EXPECT_EQ(cw.exposed, (std::vector<bool>{true, false, false, false, true}));

    auto message = [](const std::string& part) { return Message(With(kChamfer, part)); };
    EXPECT_NE(std::string::npos, message(R"("exposed": ["below"])").find("exposed[0]: \"bottom\", \"top\""));
    EXPECT_NE(std::string::npos, message(R"("exposed": [6])").find("exposed[0]: the outline's sides are numbered 1 to 5"));
    EXPECT_NE(std::string::npos, message(R"("exposed": "bottom")").find("exposed: a list of faces"));
    EXPECT_NE(std::string::npos, message(R"("exposed": [1], "unexposed": [1, 2])").find("unexposed: side 1 is also exposed"));
    EXPECT_NE(std::string::npos,
              message(R"("exposed": [1], "unexposed": [2, 3, 4])").find("exposed: side 5 is neither exposed nor unexposed"));
    EXPECT_NE(std::string::npos,
              Message(R"({"outline": [[0,0],[2,0],[1,0.2]], "duration": 1, "exposed": ["left"]})")
                  .find("exposed[0]: no side of the outline faces left"));
    // The DTU slab model is heated from below and nowhere else.
    EXPECT_EQ("", message(R"("method": "dtu", "exposed": ["bottom"])"));
    EXPECT_NE(std::string::npos, message(R"("method": "dtu", "exposed": ["bottom", "left"])")
                                     .find("exposed: the dtu method's slab model is heated from below"));
}

TEST(FireInputCurve, NamesTablesAndTheParametricFire)
{
    const char* ec2 = R"({"outline": [[0,0],[0.2,0],[0.2,0.2],[0,0.2]], "duration": 1, "fire_curve": %s})";
    EXPECT_EQ(FireCurve::Kind::Hydrocarbon, Read(With(ec2, "\"hydrocarbon\"")).curve.kind);
    EXPECT_EQ(FireCurve::Kind::SuiteHydrocarbon, Read(With(ec2, "\"suite_hydrocarbon\"")).curve.kind);
    EXPECT_EQ(FireCurve::Kind::Standard, Read(With(ec2, "\"standard\"")).curve.kind);
    FireCurve t = Read(With(ec2, R"({"table": [[0, 20], [30, 800], [60, 900]], "convection": 30})")).curve;
    ASSERT_EQ(FireCurve::Kind::Table, t.kind);
    ASSERT_EQ(3u, t.points.size());
    EXPECT_EQ(800.0, t.points[1].degres);
    EXPECT_NEAR(850.0, MakeCurve(t)->Temperature(0.75), 1e-9);
    EXPECT_EQ(30.0, MakeCurve(t)->Convection());
    FireCurve p = Read(With(ec2, R"({"parametric": {"opening_factor": 0.1, "fire_load": 60, "thermal_inertia": 800,
        "growth": "fast"}})")).curve;
    ASSERT_EQ(FireCurve::Kind::Parametric, p.kind);
    EXPECT_EQ(CCourbeFeuParametrique::RAPIDE, p.growth);
    EXPECT_NEAR(704.2837, MakeCurve(p)->Temperature(0.25), 1e-3); // the fuel-controlled peak of Annex A
    EXPECT_NE(std::string::npos, FireCurveDetails(p).find("fuel controlled, peak 704 C at 15.0 min"));

    auto message = [&](const std::string& curve) { return Message(With(ec2, curve)); };
    EXPECT_NE(std::string::npos, message("\"iso\"").find("fire_curve: unknown fire curve \"iso\""));
    EXPECT_NE(std::string::npos, message(R"({"table": [[0, 20], [30, 800]], "csv": "a.csv"})")
                                     .find("fire_curve: give one of table, csv or parametric"));
    EXPECT_NE(std::string::npos, message(R"({"table": [[0, 20], [30, 800], [30, 900], [60, 900]]})")
                                     .find("fire_curve.table[2]: the times must increase (30.000 min after 30.000 min)"));
    EXPECT_NE(std::string::npos, message(R"({"table": [[5, 20], [60, 800]]})").find("must start at 0 minutes"));
    EXPECT_NE(std::string::npos, message(R"({"table": [[0, 20], [60, 2500]]})")
                                     .find("fire_curve.table[1]: a gas temperature must lie between 0 and 2000"));
    EXPECT_NE(std::string::npos, message(R"({"table": [[0, 20], [45, 800]]})")
                                     .find("fire_curve: the curve ends at 45 min, before the longest duration (60 min)"));
    EXPECT_NE(std::string::npos, message(R"({"table": [[0, 20], [60, 800]], "convection": 0})")
                                     .find("fire_curve.convection"));
    EXPECT_NE(std::string::npos, message(R"({"parametric": {"opening_factor": 0.3, "fire_load": 60, "thermal_inertia": 800}})")
                                     .find("fire_curve.parametric.opening_factor: Annex A covers opening factors from 0.02"));
    EXPECT_NE(std::string::npos, message(R"({"parametric": {"opening_factor": 0.1, "fire_load": 60, "thermal_inertia": 800,
        "growth": "quick"}})").find("parametric.growth: slow, medium or fast"));
    // Only the Eurocode 2 method takes another curve than the standard fire.
    const std::string itbtp = R"({"outline": [[0,0],[0.2,0],[0.2,0.2],[0,0.2]], "duration": 1, "method": "itbtp",
        "fire_curve": "hydrocarbon"})";
    EXPECT_NE(std::string::npos, Message(itbtp).find("the itbtp method computes under the standard fire only"));
}

TEST(FireInputCurve, CsvFilesOfEitherConvention)
{
    // Commas, a header and a comment; semicolons with decimal commas; tabs.
    auto points = ParseCurveCsv("a.csv", "# furnace 3\nminutes,degrees\n0,20\n 2.5 , 400.5\r\n\n10,700\n");
    ASSERT_EQ(3u, points.size());
    EXPECT_EQ(2.5, points[1].minutes);
    EXPECT_EQ(400.5, points[1].degres);
    points = ParseCurveCsv("b.csv", "\xEF\xBB\xBFtemps;temp\xC3\xA9rature\n0;20\n1,5;300,25;\n3;450\n");
    ASSERT_EQ(3u, points.size());
    EXPECT_EQ(1.5, points[1].minutes);
    EXPECT_EQ(300.25, points[1].degres);
    points = ParseCurveCsv("c.csv", "0\t20\n4\t500");
    ASSERT_EQ(2u, points.size());
    EXPECT_EQ(500.0, points[1].degres);

    auto message = [](const std::string& text) {
        try
        {
            ParseCurveCsv("f.csv", text);
        }
        catch (const InputError& e)
        {
            return std::string(e.what());
        }
        return std::string();
    };
    EXPECT_EQ("f.csv: line 4: \"abc\" is not a number", message("minutes,degrees\n0,20\n5,300\nabc,400\n"));
    EXPECT_EQ("f.csv: line 3: two values were expected (minutes, degrees), there are 3", message("0,20\n5,300\n6,1,2\n"));
    EXPECT_EQ("f.csv: line 5: the times must increase (5.000 min after 5.000 min)", message("0,20\n5,300\n\n#\n5,400\n"));
    EXPECT_EQ("f.csv: line 1: the curve must start at 0 minutes, not 1.000", message("1,20\n5,300\n"));
    EXPECT_EQ("f.csv: end of file: a curve needs at least two points (minutes, degrees)", message("minutes,degrees\n"));
    EXPECT_EQ("f.csv: line 2: \"1e999\" is not a number", message("0,20\n1e999,300\n"));

    // A file named in the input is found beside it.
    ScratchDir dir;
    WriteText(dir, "furnace.csv", "0;20\n30;820\n60;930\n");
    const FireInput in = ReadFireInput(WriteText(dir, "in.json", R"({"outline": [[0,0],[0.2,0],[0.2,0.2],[0,0.2]],
        "duration": 1, "fire_curve": {"csv": "furnace.csv"}})"));
    ASSERT_EQ(3u, in.curve.points.size());
    EXPECT_EQ(930.0, in.curve.points[2].degres);
    EXPECT_NE(std::string::npos, Message(R"({"outline": [[0,0],[0.2,0],[0.2,0.2],[0,0.2]], "duration": 1,
        "fire_curve": {"csv": "missing.csv"}})").find("missing.csv: cannot be read"));
}

TEST(FireInputExamples, TheHelpShowsTheExampleFiles)
{
    const std::string help = FireHelp();
    const std::pair<const char*, const char*> examples[] = {
        {"slab.json", kSlabExampleJson}, {"beam3.json", kBeam3ExampleJson}, {"column.json", kColumnExampleJson}};
    for (const auto& e : examples)
    {
        const std::vector<BYTE> file = ReadAll(CString(AfxUtf8ToWide(std::string(PREFA_EXAMPLES) + "/" + e.first)));
        EXPECT_EQ(std::string(file.begin(), file.end()), e.second) << e.first;
        EXPECT_NE(std::string::npos, help.find(e.second)) << e.first;
    }
    // Every example reads.
    for (const char* name : {"beam", "slab", "beam3", "column", "parametric", "furnace"})
        EXPECT_NO_THROW(ReadFireInput(std::string(PREFA_EXAMPLES) + "/" + name + ".json")) << name;
    EXPECT_EQ(FireCurve::Kind::Table, ReadFireInput(std::string(PREFA_EXAMPLES) + "/furnace.json").curve.kind);
}
} // namespace
