// The command's time histories, exposure and curves end to end: the history's values are
// the library's own runs, its CSV and JSON agree, and fire.svg shows the history and
// labelled isotherms.
#include "CalculFeu.h"
#include "Entree.h"
#include "CommandeTestUtil.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <cstdio>

using namespace prefa_cli;
using namespace prefa_test;

namespace
{
// A 0.20 x 0.30 m beam under a floor, 1 cm cells.
const char* kBeam = R"({"outline": [[0,0],[0.2,0],[0.2,0.3],[0,0.3]], "durations": [0.5, 1.0], "cell": 0.01,
  "exposed": ["bottom", "left", "right"], "method": "%s",
  "bars": [{"name": "L", "x": 0.04, "y": 0.04}, {"name": "R", "x": 0.16, "y": 0.04},
           {"name": "top, \"mid\"", "x": 0.1, "y": 0.27}]})";

std::string Beam(const char* method)
{
    char text[1024];
    std::snprintf(text, sizeof text, kBeam, method);
    return text;
}

TEST(History, EveryTimeIsThatDurationsOwnRunThroughTheCommand)
{
    EXPECT_EQ(HistoryTimes(20, 1.0), (std::vector<double>{20, 40, 60}));
    EXPECT_EQ(HistoryTimes(25, 1.0), (std::vector<double>{25, 50, 60}));
    EXPECT_EQ(HistoryTimes(7.5, 0.25), (std::vector<double>{7.5, 15}));

    ScratchDir dir;
    for (const char* method : {"ec2", "zolt", "dtu"})
    {
        SCOPED_TRACE(method);
        std::string json = Beam(method);
        const std::string threeSides = "\"bottom\", \"left\", \"right\"";
        if (std::string(method) == "dtu")
            json.replace(json.find(threeSides), threeSides.size(), "\"bottom\"");
        const FireInput in = ReadFireInput(WriteText(dir, "beam.json", json));
        const FireResult one = RunFire(in, HistoryTimes(15, 1.0), {});
        ASSERT_EQ((std::vector<double>{15, 30, 45, 60}), one.historyMinutes);
        for (double minutes : {15.0, 45.0})
        {
            // A run of that duration alone.
            FireInput alone = in;
            alone.durations = {minutes / 60};
            const FireResult r = RunFire(alone, {}, {});
            for (std::size_t b = 0; b < 3; ++b)
                EXPECT_EQ(r.barTemps[b][0], one.history[b][(std::size_t)(minutes / 15) - 1]) << minutes << " bar " << b;
        }
        for (std::size_t b = 0; b < 3; ++b)
        {
            EXPECT_EQ(one.barTemps[b][0], one.history[b][1]); // 30 min both ways
            EXPECT_EQ(one.barTemps[b][1], one.history[b][3]);
        }
        EXPECT_NEAR(one.history[0][3], one.history[1][3], 1e-9); // symmetric beam and fire
    }
}

TEST(History, TableJsonCsvAndPicture)
{
    ScratchDir dir;
    const std::string file = WriteText(dir, "beam.json", Beam("ec2"));
    const std::string csv = dir.Utf8() + "/history.csv";
    std::string out, err;
    ASSERT_EQ(0, RunProgram("fire " + file + " --json --every 10 --csv " + csv + " --out " + dir.Utf8(), &out, &err, dir))
        << err;
    const nlohmann::json j = nlohmann::json::parse(out);
    const nlohmann::json& h = j["history"];
    EXPECT_EQ(10.0, h["every_minutes"].get<double>());
    EXPECT_EQ((std::vector<double>{10, 20, 30, 40, 50, 60}), h["minutes"].get<std::vector<double>>());
    ASSERT_EQ(3u, h["bars"].size());
    EXPECT_EQ(j["bars"][2]["temperatures"][1].get<double>(), h["bars"][2]["temperatures"][5].get<double>());
    // Heated bars warm at every step; the unexposed top stays cooler than the heated corner.
    for (std::size_t k = 1; k < 6; ++k)
        EXPECT_GT(h["bars"][0]["temperatures"][k].get<double>(), h["bars"][0]["temperatures"][k - 1].get<double>());
    EXPECT_LT(h["bars"][2]["temperatures"][5].get<double>(), 0.5 * h["bars"][0]["temperatures"][5].get<double>());

    // The CSV: a header naming the bars (the awkward name quoted), then the JSON's values.
    const std::vector<BYTE> bytes = ReadAll(CString(AfxUtf8ToWide(csv)));
    const std::string text(bytes.begin(), bytes.end());
    ASSERT_EQ(0u, text.find("minutes,L,R,\"top, \"\"mid\"\"\"\n10,")) << text;
    EXPECT_EQ(7, std::count(text.begin(), text.end(), '\n'));
    const std::size_t last = text.rfind("\n60,");
    ASSERT_NE(std::string::npos, last);
    double m = 0, v[3] = {0, 0, 0};
    ASSERT_EQ(4, std::sscanf(text.c_str() + last + 1, "%lf,%lf,%lf,%lf", &m, &v[0], &v[1], &v[2]));
    for (int b = 0; b < 3; ++b)
        EXPECT_NEAR(v[b], h["bars"][b]["temperatures"][5].get<double>(), 0.0005);

    // The picture: the history below the field, one line a bar from the ambient, and
    // every isotherm labelled with a level it draws.
    const std::vector<BYTE> svgBytes = ReadAll(dir / L"fire.svg");
    const std::string svg(svgBytes.begin(), svgBytes.end());
    EXPECT_EQ(1, Occurrences(svg, "<g id=\"history\""));
    EXPECT_EQ(3, Occurrences(svg, "class=\"history-bar\""));
    EXPECT_NE(std::string::npos, svg.find("data-bar=\"top, &quot;mid&quot;\""));
    EXPECT_EQ(7, Occurrences(svg.substr(svg.find("data-bar=\"L\"")).substr(0, svg.find("/>", svg.find("data-bar=\"L\"")) -
                                                                               svg.find("data-bar=\"L\"")),
                             ","));
    int labels = 0;
    for (std::size_t p = svg.find("class=\"isotherm-label\""); p != std::string::npos;
         p = svg.find("class=\"isotherm-label\"", p + 1), ++labels)
    {
        const std::size_t a = svg.find('>', p) + 1;
        const std::string level = svg.substr(a, svg.find('<', a) - a);
        EXPECT_NE(std::string::npos, svg.find("data-level=\"" + level + ".00\"")) << level;
    }
    EXPECT_GE(labels, 3);

    // Text: the history table after the durations'.
    ASSERT_EQ(0, RunProgram("fire " + file + " --every 30 --no-picture", &out, &err, dir)) << err;
    EXPECT_NE(std::string::npos, out.find("time history every 30 min (degrees C)")) << out;
    EXPECT_NE(std::string::npos, out.find("\n    60.0 ")) << out;
    EXPECT_NE(std::string::npos, out.find("method ec2, standard fire")) << out;

    // Bad options: nothing written.
    EXPECT_EQ(2, RunProgram("fire " + file + " --csv " + dir.Utf8() + "/x.csv", &out, &err, dir));
    EXPECT_NE(std::string::npos, err.find("--csv: the CSV file holds the history: give --every too")) << err;
    EXPECT_EQ(2, RunProgram("fire " + file + " --every 0", &out, &err, dir));
    EXPECT_EQ(2, RunProgram("fire " + file + " --every 10min", &out, &err, dir));
    EXPECT_EQ(2, RunProgram("fire " + file + " --every 0.01", &out, &err, dir));
    EXPECT_NE(std::string::npos, err.find("more than 2000 times")) << err;
    EXPECT_EQ(2, RunProgram("section --every 5", &out, &err, dir));
    EXPECT_FALSE(Exists(CString(AfxUtf8ToWide(dir.Utf8() + "/x.csv"))));
}

TEST(History, ACancelledRunStopsAndSaysSo)
{
    FireInput in = ExampleFireInput();
    int calls = 0;
    double last = -1;
    bool increasing = true;
    const FireResult r = RunFire(in, {}, [&](double f, const std::string& label) {
        increasing = increasing && f > last && f <= 1.0;
        last = f;
        EXPECT_EQ("ec2 2.00 h", label);
        return ++calls < 5;
    });
    EXPECT_TRUE(r.cancelled);
    EXPECT_EQ(5, calls);
    EXPECT_TRUE(increasing);
}
} // namespace
