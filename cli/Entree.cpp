#include "Entree.h"

#include "LecteurJson.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace prefa_cli
{

const char* const kFireExampleJson = R"({
  "title": "Precast beam 0.30 x 0.60 m, four bars",
  "outline": [[0, 0], [0.30, 0], [0.30, 0.60], [0, 0.60]],
  "bars": [
    {"name": "A1", "x": 0.05, "y": 0.05},
    {"name": "A2", "x": 0.25, "y": 0.05},
    {"name": "A3", "x": 0.05, "y": 0.55},
    {"name": "A4", "x": 0.25, "y": 0.55}
  ],
  "method": "ec2",
  "durations": [0.5, 1.0, 1.5, 2.0],
  "cell": 0.005,
  "fire_curve": "standard",
  "aggregate": "siliceous",
  "aggregate_conductivity": false,
  "moisture": 0.015
}
)";

const char* const kSlabExampleJson = R"({
  "title": "Floor slab 0.20 m thick heated from below: a 1 m strip, bars at 20, 40 and 60 mm",
  "outline": [[0, 0], [1.0, 0], [1.0, 0.20], [0, 0.20]],
  "exposed": ["bottom"],
  "bars": [
    {"name": "20 mm", "x": 0.5, "y": 0.02},
    {"name": "40 mm", "x": 0.5, "y": 0.04},
    {"name": "60 mm", "x": 0.5, "y": 0.06}
  ],
  "method": "ec2",
  "durations": [0.5, 1.0, 1.5, 2.0],
  "cell": 0.005
}
)";

const char* const kBeam3ExampleJson = R"({
  "title": "Precast beam 0.30 x 0.60 m under a floor: heated below and on both sides",
  "outline": [[0, 0], [0.30, 0], [0.30, 0.60], [0, 0.60]],
  "exposed": ["bottom", "left", "right"],
  "bars": [
    {"name": "A1", "x": 0.05, "y": 0.05},
    {"name": "A2", "x": 0.25, "y": 0.05},
    {"name": "B", "x": 0.15, "y": 0.05},
    {"name": "A3", "x": 0.05, "y": 0.55},
    {"name": "A4", "x": 0.25, "y": 0.55}
  ],
  "method": "ec2",
  "durations": [0.5, 1.0, 1.5, 2.0],
  "cell": 0.005
}
)";

const char* const kColumnExampleJson = R"({
  "title": "Column 0.40 x 0.40 m heated on its four faces",
  "outline": [[0, 0], [0.40, 0], [0.40, 0.40], [0, 0.40]],
  "exposed": ["all"],
  "bars": [
    {"name": "corner", "x": 0.05, "y": 0.05},
    {"name": "face", "x": 0.20, "y": 0.05},
    {"name": "centre", "x": 0.20, "y": 0.20}
  ],
  "method": "ec2",
  "durations": [1.0, 2.0, 3.0, 4.0],
  "cell": 0.005
}
)";

const char* const kSectionExampleJson = R"({
  "title": "Unequal angle 0.20 x 0.10 m, 0.02 m thick",
  "contours": [[[0, 0], [0.10, 0], [0.10, 0.02], [0.02, 0.02], [0.02, 0.20], [0, 0.20]]],
  "openings": []
}
)";

namespace
{
// Limits that keep a mistyped file from asking for an absurd amount of work.
const double kMaxDurationHours = 24.0;
const double kMaxCells = 25e6;

json Parse(const std::string& source, const std::string& text)
{
    try
    {
        json root = json::parse(text);
        if (!root.is_object())
            throw InputError(source, "", "the file must hold one JSON object");
        return root;
    }
    catch (const json::exception& e)
    {
        // Syntax errors, and numbers beyond the doubles (out_of_range), alike.
        throw InputError(source, "", std::string("not valid JSON (") + e.what() + ")");
    }
}

std::string ReadFile(const std::string& path)
{
    std::ifstream in(std::filesystem::u8path(path), std::ios::binary);
    if (!in)
        throw InputError(path, "", "cannot be read");
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

// The folder of a file's path ("" for a bare name).
std::string Folder(const std::string& path)
{
    const std::size_t slash = path.find_last_of("/\\");
    return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

// The library's containment: a point on the contour (within its 1e-8 m) is in it, so
// a bar on the outline is in the section and a bar on a cavity's edge is in the cavity.
bool Inside(const Contour& c, Point2 p)
{
    CPolygone contour = ToPolygone(c);
    return contour.AppartientAPolygone(CPointD(p.x, p.y)) >= 0;
}

FireInput FireFromJson(const std::string& source, const json& root)
{
    Reader r(source, root);
    FireInput in;
    in.source = source;
    if (!root.contains("outline"))
        r.Fail("outline", "the section's outline is missing");
    in.outline = r.ReadContour(root["outline"], "outline");
    in.cavities = r.ReadContours("cavities");
    in.materials = r.ReadContours("materials");
    in.moistureZones = r.ReadContours("moisture_zones");
    if (in.materials.size() > 8)
        r.Fail("materials", "at most 8 material zones are supported");
    if (in.moistureZones.size() > 8)
        r.Fail("moisture_zones", "at most 8 moisture zones are supported");

    if (root.contains("method"))
    {
        if (!root["method"].is_string())
            r.Fail("method", "a text was expected (ec2, itbtp, zolt or dtu)");
        std::string m = root["method"].get<std::string>();
        if (m == "ec2")
            in.method = Method::Ec2;
        else if (m == "itbtp")
            in.method = Method::Itbtp;
        else if (m == "zolt")
            in.method = Method::Zolt;
        else if (m == "dtu")
            in.method = Method::Dtu;
        else
            r.Fail("method", "unknown method \"" + m + "\" (ec2, itbtp, zolt or dtu)");
    }

    if (root.contains("durations") && root.contains("duration"))
        r.Fail("duration", "give either duration or durations, not both");
    const char* dkey = root.contains("durations") ? "durations" : "duration";
    if (!root.contains(dkey))
        r.Fail("durations", "the fire duration in hours is missing");
    const json& d = root[dkey];
    if (d.is_array())
    {
        for (std::size_t k = 0; k < d.size(); ++k)
            in.durations.push_back(r.Number(d[k], std::string(dkey) + "[" + std::to_string(k) + "]"));
    }
    else
        in.durations.push_back(r.Number(d, dkey));
    if (in.durations.empty())
        r.Fail(dkey, "at least one duration is needed");
    for (std::size_t k = 0; k < in.durations.size(); ++k)
    {
        std::string f = std::string(dkey) + (d.is_array() ? "[" + std::to_string(k) + "]" : "");
        if (in.durations[k] <= 0)
            r.Fail(f, "a duration must be positive (hours), not " + std::to_string(in.durations[k]));
        if (in.durations[k] > kMaxDurationHours)
            r.Fail(f, "a duration above 24 hours is not supported");
    }

    if (root.contains("cell"))
        in.cell = r.Number(root["cell"], "cell");
    if (in.cell <= 0)
        r.Fail("cell", "the cell side must be positive (metres)");
    const Box box = Box().Add(in.outline);
    double cells = (box.Width() / in.cell + 12) * (box.Height() / in.cell + 4);
    if (cells > kMaxCells)
        r.Fail("cell", "the cell side is too small for this section (more than 25 million cells)");
    if (box.Width() < 2 * in.cell || box.Height() < 2 * in.cell)
        r.Fail("cell", "the cell side is too large for this section (fewer than two cells across)");

    if (root.contains("fire_curve"))
    {
        in.curve = ReadFireCurve(r, root["fire_curve"], Folder(source));
        if (in.method != Method::Ec2 && in.curve.kind != FireCurve::Kind::Standard)
            r.Fail("fire_curve", std::string("the ") + MethodName(in.method) +
                                     " method computes under the standard fire only (its boundary model is built "
                                     "on it); use the ec2 method for this curve");
        const double longest = *std::max_element(in.durations.begin(), in.durations.end()) * 60.0;
        if (in.curve.kind == FireCurve::Kind::Table && in.curve.points.back().minutes < longest - 1e-9)
        {
            char text[128];
            std::snprintf(text, sizeof text, "the curve ends at %g min, before the longest duration (%g min)",
                          in.curve.points.back().minutes, longest);
            r.Fail("fire_curve", text);
        }
    }
    in.exposed = ReadExposure(r, in.outline);
    if (in.method == Method::Dtu && !in.exposed.empty() && in.exposed != BottomSides(in.outline))
        r.Fail(root.contains("exposed") ? "exposed" : "unexposed",
               "the dtu method's slab model is heated from below: only the bottom can be exposed");
    if (root.contains("aggregate"))
    {
        const json& v = root["aggregate"];
        std::string a = v.is_string() ? v.get<std::string>() : std::string();
        if (a == "siliceous")
            in.aggregate = 0;
        else if (a == "calcareous")
            in.aggregate = 1;
        else if (a == "lightweight")
            in.aggregate = 2;
        else
            r.Fail("aggregate", "unknown aggregate (siliceous, calcareous or lightweight)");
    }
    if (root.contains("aggregate_conductivity"))
    {
        if (!root["aggregate_conductivity"].is_boolean())
            r.Fail("aggregate_conductivity", "true or false was expected");
        in.aggregateConductivity = root["aggregate_conductivity"].get<bool>();
    }
    if (root.contains("moisture"))
    {
        in.moisture = r.Number(root["moisture"], "moisture");
        if (in.moisture < 0 || in.moisture > 0.2)
            r.Fail("moisture", "the water content must lie between 0 and 0.2");
    }

    if (root.contains("bars"))
    {
        const json& b = root["bars"];
        if (!b.is_array())
            r.Fail("bars", "a list of bars was expected");
        for (std::size_t k = 0; k < b.size(); ++k)
        {
            std::string f = "bars[" + std::to_string(k) + "]";
            if (!b[k].is_object() || !b[k].contains("x") || !b[k].contains("y"))
                r.Fail(f, "a bar is {\"name\": ..., \"x\": ..., \"y\": ...}");
            Bar bar;
            bar.name = b[k].contains("name") && b[k]["name"].is_string() ? b[k]["name"].get<std::string>()
                                                                          : "bar " + std::to_string(k + 1);
            bar.p = {r.Number(b[k]["x"], f + ".x"), r.Number(b[k]["y"], f + ".y")};
            if (!Inside(in.outline, bar.p))
                r.Fail(f, "bar \"" + bar.name + "\" at (" + std::to_string(bar.p.x) + ", " +
                              std::to_string(bar.p.y) + ") lies outside the section");
            for (std::size_t c = 0; c < in.cavities.size(); ++c)
                if (Inside(in.cavities[c], bar.p))
                    r.Fail(f, "bar \"" + bar.name + "\" lies in cavity " + std::to_string(c));
            in.bars.push_back(bar);
        }
    }
    return in;
}

SectionInput SectionFromJson(const std::string& source, const json& root)
{
    Reader r(source, root);
    SectionInput in;
    in.source = source;
    if (!root.contains("contours"))
        r.Fail("contours", "the section's contours are missing");
    in.contours = r.ReadContours("contours");
    if (in.contours.empty())
        r.Fail("contours", "at least one contour is needed");
    in.openings = r.ReadContours("openings");
    return in;
}
} // namespace

FireInput ReadFireInput(const std::string& path)
{
    return ParseFireInput(path, ReadFile(path));
}

FireInput ParseFireInput(const std::string& source, const std::string& text)
{
    return FireFromJson(source, Parse(source, text));
}

FireInput ExampleFireInput()
{
    return ParseFireInput("built-in example", kFireExampleJson);
}

SectionInput ReadSectionInput(const std::string& path)
{
    return ParseSectionInput(path, ReadFile(path));
}

SectionInput ParseSectionInput(const std::string& source, const std::string& text)
{
    return SectionFromJson(source, Parse(source, text));
}

SectionInput ExampleSectionInput()
{
    return ParseSectionInput("built-in example", kSectionExampleJson);
}

const char* MethodName(Method m)
{
    switch (m)
    {
    case Method::Ec2: return "ec2";
    case Method::Itbtp: return "itbtp";
    case Method::Zolt: return "zolt";
    case Method::Dtu: return "dtu";
    }
    return "?";
}

} // namespace prefa_cli
