// The section command's report of a hollow box, worked by hand, and the input limits
// of the command on both sides.
#include "Entree.h"
#include "Programme.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <fstream>
#include <regex>

using namespace prefa_cli;
using namespace prefa_test;

namespace
{
std::string Fichier(const ScratchDir& dir, const std::string& texte)
{
    const std::string chemin = dir.Utf8() + "/entree.json";
    std::ofstream(chemin) << texte;
    return chemin;
}

// The message of the input error the text raises as a fire input, "" when it is accepted.
std::string RefusFeu(const std::string& texte)
{
    ScratchDir dir;
    try
    {
        ReadFireInput(Fichier(dir, texte));
        return "";
    }
    catch (const InputError& e)
    {
        return e.what();
    }
}

// A 0.8 x 0.5 box with a 0.5 x 0.25 opening whose corner is at (0.1, 0.15): area
// 0.275, centroid (93/220, 21/88).
const char* const kCaisson = R"({"contours": [[[0, 0], [0.8, 0], [0.8, 0.5], [0, 0.5]]],
  "openings": [[[0.1, 0.15], [0.1, 0.4], [0.6, 0.4], [0.6, 0.15]]]})";
} // namespace

TEST(SectionCommand, ReportsEachQuantityOfAHollowBoxUnderItsOwnName)
{
    ScratchDir dir;
    const std::string f = Fichier(dir, kCaisson);
    std::string out, err;
    ASSERT_EQ(0, RunProgram("section " + f + " --json --out " + dir.Utf8(), &out, &err, dir)) << err;
    const nlohmann::json j = nlohmann::json::parse(out);
    const double xg = 93.0 / 220, yg = 21.0 / 88;
    EXPECT_NEAR(0.275, j["area"].get<double>(), 1e-15);
    EXPECT_NEAR(0.5 - yg, j["axes"]["x"]["fibre_positive"].get<double>(), 1e-15);
    EXPECT_NEAR(yg, j["axes"]["x"]["fibre_negative"].get<double>(), 1e-15);
    EXPECT_NEAR(0.8 - xg, j["axes"]["y"]["fibre_positive"].get<double>(), 1e-15);
    EXPECT_NEAR(xg, j["axes"]["y"]["fibre_negative"].get<double>(), 1e-15);
    EXPECT_NEAR(2.6, j["perimeter_contours"].get<double>(), 1e-15);
    EXPECT_NEAR(1.5, j["perimeter_openings"].get<double>(), 1e-15);
    EXPECT_EQ((std::vector<double>{0, 0, 0.8, 0.5}), j["bounding_box"].get<std::vector<double>>());

    // The table, by hand from b h^3 / 12 and the parallel axes: I1 = 0.0182794,
    // I2 = 0.00756383 (Ixx 0.00756866, Iyy 0.0182746, Ixy 0.000227273).
    ASSERT_EQ(0, RunProgram("section " + f + " --no-picture", &out, &err, dir)) << err;
    auto ligne = [&](const std::string& debut, const std::string& a, const std::string& b) {
        const std::size_t p = out.find(debut), q = out.find('\n', p);
        const std::size_t pa = out.find(" " + a, p), pb = out.find(" " + b, pa + 1);
        return p != std::string::npos && pa < q && pb < q;
    };
    EXPECT_TRUE(ligne("principal moments I1, I2", "1.827944e-02", "7.563833e-03")) << out;
    EXPECT_TRUE(ligne("extreme fibres from x: above, below", "0.261364", "0.238636")) << out;
    EXPECT_TRUE(ligne("perimeter of the contours, openings", "2.600000", "1.500000")) << out;

    // The picture's axes: axis 1 at the principal angle, axis 2 square to it (the
    // picture's y runs downwards).
    ASSERT_EQ(0, RunProgram("section " + f + " --json --out " + dir.Utf8(), &out, &err, dir)) << err;
    const double a = nlohmann::json::parse(out)["principal_angle_deg"].get<double>() * 3.141592653589793 / 180;
    const std::vector<BYTE> octets = ReadAll(dir / L"section.svg");
    const std::string svg(octets.begin(), octets.end());
    const std::regex axe(R"re(class="principal-axis" x1="([-0-9.]+)" y1="([-0-9.]+)" x2="([-0-9.]+)" y2="([-0-9.]+)")re");
    std::vector<std::pair<double, double>> directions;
    for (std::sregex_iterator m(svg.begin(), svg.end(), axe), fin; m != fin; ++m)
    {
        const double dx = std::stod((*m)[3]) - std::stod((*m)[1]), dy = -(std::stod((*m)[4]) - std::stod((*m)[2]));
        directions.push_back({dx / std::hypot(dx, dy), dy / std::hypot(dx, dy)});
    }
    ASSERT_EQ(2u, directions.size());
    EXPECT_NEAR(0.0, directions[0].first * std::sin(a) - directions[0].second * std::cos(a), 1e-3);
    EXPECT_NEAR(0.0, directions[0].first * directions[1].first + directions[0].second * directions[1].second, 1e-3);
}

TEST(SectionCommand, InputLimitsOnBothSides)
{
    ScratchDir dir;
    std::string out, err;
    auto section = [&](const std::string& contour) {
        return RunProgram("section " + Fichier(dir, R"({"contours": [)" + contour + "]}") + " --no-picture", &out,
                          &err, dir);
    };
    // Three points make a contour, two do not; an area of 1e-12 is one, 0.25e-12 is not.
    EXPECT_EQ(0, section("[[0, 0], [1, 0], [0, 1]]")) << err;
    EXPECT_EQ(2, section("[[0, 0], [1, 0]]"));
    EXPECT_NE(std::string::npos, err.find("a contour needs at least 3 points, it has 2")) << err;
    EXPECT_EQ(0, section("[[0, 0], [1e-6, 0], [0, 2e-6]]")) << err;
    EXPECT_EQ(2, section("[[0, 0], [1e-6, 0], [0, 0.5e-6]]"));
    EXPECT_NE(std::string::npos, err.find("the contour encloses no area")) << err;

    // The fire input: durations up to 24 h, up to 8 zones of each kind, moisture in
    // [0, 0.2], at least two cells across and at most 25 million in all (the grid has
    // 12 columns and 4 rows more than the section).
    auto feu = [](const std::string& champs) {
        return RefusFeu(R"({"outline": [[0, 0], [0.2, 0], [0.2, 0.1], [0, 0.1]], )" + champs + "}");
    };
    EXPECT_EQ("", feu(R"("duration": 24)"));
    EXPECT_NE(std::string::npos, feu(R"("duration": 24.001)").find("above 24 hours"));
    EXPECT_NE(std::string::npos, feu(R"("duration": 0)").find("must be positive"));
    std::string zones;
    for (int k = 0; k < 8; ++k)
        zones += std::string(k ? ", " : "") + "[[0, 0], [0.1, 0], [0.1, 0.1]]";
    EXPECT_EQ("", feu(R"("duration": 1, "materials": [)" + zones + "]"));
    EXPECT_NE(std::string::npos, feu(R"("duration": 1, "materials": [)" + zones + ", [[0, 0], [0.1, 0], [0, 0.1]]]")
                                     .find("at most 8 material zones"));
    EXPECT_NE(std::string::npos,
              feu(R"("duration": 1, "moisture_zones": [)" + zones + ", [[0, 0], [0.1, 0], [0, 0.1]]]")
                  .find("at most 8 moisture zones"));
    EXPECT_EQ("", feu(R"("duration": 1, "moisture": 0)"));
    EXPECT_EQ("", feu(R"("duration": 1, "moisture": 0.2)"));
    EXPECT_NE(std::string::npos, feu(R"("duration": 1, "moisture": -0.001)").find("between 0 and 0.2"));
    EXPECT_NE(std::string::npos, feu(R"("duration": 1, "moisture": 0.201)").find("between 0 and 0.2"));
    EXPECT_EQ("", feu(R"("duration": 1, "cell": 0.05)"));
    EXPECT_EQ("", RefusFeu(R"({"outline": [[0, 0], [0.1, 0], [0.1, 0.2], [0, 0.2]], "duration": 1, "cell": 0.05})"));
    EXPECT_NE(std::string::npos, feu(R"("duration": 1, "cell": 0.0501)").find("fewer than two cells across"));
    // 0.2 x 0.1 m: (0.2 / c + 12)(0.1 / c + 4) cells; 25e6 falls between c = 2.84e-5 and 2.82e-5.
    EXPECT_EQ("", feu(R"("duration": 1, "cell": 2.84e-5)"));
    EXPECT_NE(std::string::npos, feu(R"("duration": 1, "cell": 2.82e-5)").find("more than 25 million cells"));
}
