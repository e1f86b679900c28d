#include "Commandes.h"

#include "CalculFeu.h"
#include "Entree.h"
#include "Historique.h"
#include "Progression.h"
#include "Svg.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace prefa_cli
{

namespace
{
const double kPi = 3.141592653589793;
const int kMaxHistory = 2000; // rows of a history

std::string Fixed(double v, int decimals)
{
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.*f", decimals, v);
    return buf;
}

std::string Minutes(double hours)
{
    double m = hours * 60.0;
    return std::fabs(m - std::round(m)) < 1e-9 ? Fixed(m, 0) + " min" : Fixed(m, 1) + " min";
}
} // namespace

std::string PathIn(const std::string& dir, const std::string& name)
{
    if (dir.empty() || dir == ".")
        return name;
    char last = dir.back();
    return (last == '/' || last == '\\') ? dir + name : dir + "/" + name;
}

Options ParseOptions(const std::string& command, const std::vector<std::string>& args)
{
    Options o;
    for (std::size_t k = 0; k < args.size(); ++k)
    {
        const std::string& a = args[k];
        if (a == "--help" || a == "-h")
            o.help = true;
        else if (a == "--json")
            o.json = true;
        else if (a == "--no-picture")
            o.noPicture = true;
        else if (a == "--password" && (command == "pack" || command == "unpack"))
        {
            if (k + 1 >= args.size())
                throw InputError("prefa " + command, "--password", "a password is expected after --password");
            o.password = args[++k];
            o.passwordGiven = true;
        }
        else if (a == "--aes" && command == "pack")
            o.aes = true;
        else if (a == "--out")
        {
            if (k + 1 >= args.size())
                throw InputError("prefa " + command, "--out", "a folder is expected after --out");
            o.outDir = args[++k];
        }
        else if (command == "fire" && a == "--every")
        {
            char* end = nullptr;
            o.every = k + 1 < args.size() ? std::strtod(args[k + 1].c_str(), &end) : 0.0;
            if (k + 1 >= args.size() || *end != '\0' || !(o.every > 0) || !std::isfinite(o.every))
                throw InputError("prefa " + command, "--every", "a positive number of minutes is expected after --every");
            ++k;
        }
        else if (command == "fire" && a == "--csv")
        {
            if (k + 1 >= args.size())
                throw InputError("prefa " + command, "--csv", "a file name is expected after --csv");
            o.csv = args[++k];
        }
        else if (!a.empty() && a[0] == '-')
            throw InputError("prefa " + command, a, "unknown option (see prefa " + command + " --help)");
        else if (o.file.empty())
            o.file = a;
        else if (o.target.empty() && (command == "pack" || command == "unpack"))
            o.target = a;
        else
            throw InputError("prefa " + command, a, "only one input file is taken");
    }
    return o;
}

int FireCommand(const Options& o)
{
    FireInput in = o.file.empty() ? ExampleFireInput() : ReadFireInput(o.file);
    const double longest = *std::max_element(in.durations.begin(), in.durations.end());
    if (!o.csv.empty() && o.every == 0)
        throw InputError("prefa fire", "--csv", "the CSV file holds the history: give --every too");
    if (o.every > 0 && longest * 60.0 / o.every > kMaxHistory)
        throw InputError("prefa fire", "--every", "more than " + std::to_string(kMaxHistory) + " times up to " +
                                                      Minutes(longest) + "; take a longer interval");
    ProgressBar bar(true);
    FireResult r = RunFire(in, o.every > 0 ? HistoryTimes(o.every, longest) : std::vector<double>(),
                           [&](double f, const std::string& label) {
        bar.Update(f, label);
        return true;
    });
    bar.Finish();

    const char* unit = r.rises ? "rise above ambient, K" : "degrees C";
    std::string picture = PathIn(o.outDir, "fire.svg");
    bool pictureWritten = false;
    if (!o.noPicture)
    {
        const Box box = Box().Add(in.outline);
        double tmax = 0;
        for (double v : r.field.values)
            if (!std::isnan(v))
                tmax = std::max(tmax, v);
        double tmin = r.rises ? 0.0 : 20.0;
        double top = std::max(tmin + 100.0, std::ceil(tmax / 100.0) * 100.0);
        SvgPicture svg(box, 0.03 * std::max(box.Width(), box.Height()));
        svg.Title("prefa fire - " + std::string(MethodName(in.method)) + ", " + FireCurveName(in.curve) + " fire, " +
                  Minutes(r.durations.back()));
        svg.Field(r.field, tmin, top);
        svg.IsothermLines(r.field, 100.0, tmin, top);
        svg.Outline(in.outline, "#000000", 2.0);
        for (const Contour& c : in.cavities)
            svg.Outline(c, "#000000", 1.5, true);
        for (std::size_t b = 0; b < in.bars.size(); ++b)
            svg.Marker({in.bars[b].p, in.bars[b].name + "  " + Fixed(r.barTemps[b].back(), 0) + (r.rises ? " K" : " \xC2\xB0""C")},
                       "#111111");
        svg.Legend(tmin, top, 100.0, r.rises ? "rise (K)" : "T (\xC2\xB0""C)");
        // Each bar against time: the history, or the durations when there is none.
        std::vector<Series> series;
        for (std::size_t b = 0; b < in.bars.size(); ++b)
            series.push_back({in.bars[b].name, o.every > 0 ? r.history[b] : r.barTemps[b]});
        std::vector<double> minutes = r.historyMinutes;
        if (o.every == 0)
            for (double d : r.durations)
                minutes.push_back(d * 60.0);
        if (!in.bars.empty() && std::is_sorted(minutes.begin(), minutes.end()))
            svg.TimeChart(minutes, series, r.initial, "bar temperatures against time",
                          r.rises ? "rise (K)" : "T (\xC2\xB0""C)");
        pictureWritten = svg.Save(picture);
        if (!pictureWritten)
        {
            std::fprintf(stderr, "prefa fire: %s: the picture cannot be written\n", picture.c_str());
            return 1;
        }
    }

    std::string csvPath;
    if (!o.csv.empty())
    {
        if (!SaveText(o.csv, HistoryCsv(in, r)))
        {
            std::fprintf(stderr, "prefa fire: %s: the history cannot be written\n", o.csv.c_str());
            return 1;
        }
        csvPath = o.csv;
    }

    if (o.json)
    {
        nlohmann::json j;
        j["source"] = in.source;
        j["method"] = MethodName(in.method);
        j["fire_curve"] = FireCurveName(in.curve);
        j["cell"] = in.cell;
        j["unit"] = r.rises ? "rise_K" : "degC";
        j["durations"] = r.durations;
        nlohmann::json bars = nlohmann::json::array();
        for (std::size_t b = 0; b < in.bars.size(); ++b)
            bars.push_back({{"name", in.bars[b].name}, {"x", in.bars[b].p.x}, {"y", in.bars[b].p.y},
                            {"temperatures", r.barTemps[b]}});
        j["bars"] = bars;
        if (o.every > 0)
            j["history"] = HistoryJson(in, r, o.every);
        if (r.rises)
            j["criteria_minutes"] = {{"mean_rise_140", r.criterion140}, {"max_rise_180", r.criterion180}};
        if (pictureWritten)
            j["picture"] = picture;
        if (!csvPath.empty())
            j["csv"] = csvPath;
        std::printf("%s\n", j.dump(2).c_str());
        return 0;
    }

    const std::string details = FireCurveDetails(in.curve);
    std::printf("prefa fire: %s - method %s, %s fire%s, cell %s mm\n", in.source.c_str(), MethodName(in.method),
                FireCurveName(in.curve).c_str(), details.empty() ? "" : (" (" + details + ")").c_str(),
                Fixed(in.cell * 1000.0, 1).c_str());
    std::printf("bar temperatures (%s)\n\n", unit);
    std::printf("%-10s %8s %8s", "bar", "x (m)", "y (m)");
    for (double d : r.durations)
        std::printf(" %9s", Minutes(d).c_str());
    std::printf("\n");
    for (std::size_t b = 0; b < in.bars.size(); ++b)
    {
        std::printf("%-10s %8.3f %8.3f", in.bars[b].name.c_str(), in.bars[b].p.x, in.bars[b].p.y);
        for (double v : r.barTemps[b])
            std::printf(" %9.1f", v);
        std::printf("\n");
    }
    if (r.rises)
    {
        auto criterion = [](double m) { return m >= 1300.0 ? std::string("not reached") : Fixed(m, 1) + " min"; };
        std::printf("\nunexposed face: mean rise 140 K at %s, highest rise 180 K at %s\n",
                    criterion(r.criterion140).c_str(), criterion(r.criterion180).c_str());
    }
    if (o.every > 0)
        std::printf("%s", HistoryTable(in, r, o.every).c_str());
    if (!csvPath.empty())
        std::printf("\nhistory: %s\n", csvPath.c_str());
    if (pictureWritten)
        std::printf("\npicture: %s\n", picture.c_str());
    return 0;
}

namespace
{
const char* const kAngleConvention =
    "counter-clockwise from the x axis to axis 1, the axis of I1 (the larger); "
    "tan 2a = -2 Ixy / (Ixx - Iyy) with Ixy = integral of (x - xG)(y - yG) dA";
const char* const kPositiveSides = "x: above, y: right, 1: the side axis 2 points to, 2: the side axis 1 points to";
// The same, for people.
const char* const kConventionsText =
    "Principal angle: counter-clockwise from the x axis to axis 1, the axis of the larger\n"
    "moment I1: tan 2a = -2 Ixy / (Ixx - Iyy), with Ixy = integral of (x - xG)(y - yG) dA.\n"
    "Positive side of an axis: the side its companion axis points to (above x, right of y,\n"
    "towards axis 2 for axis 1, towards axis 1 for axis 2).\n";

nlohmann::json AxisJson(const CProprietesSection::Axe& a)
{
    return {{"I", a.I},
            {"radius_of_gyration", a.i},
            {"fibre_positive", a.vPositif},
            {"fibre_negative", a.vNegatif},
            {"W_positive", a.WPositif},
            {"W_negative", a.WNegatif}};
}

// The part of the line through g at angle t (radians) that lies in the box widened by
// margin; g lies in the box.
std::pair<Point2, Point2> AcrossBox(Point2 g, double t, const Box& box, double margin)
{
    const double d[2] = {std::cos(t), std::sin(t)}, from[2] = {g.x, g.y};
    const double lower[2] = {box.xmin - margin, box.ymin - margin}, upper[2] = {box.xmax + margin, box.ymax + margin};
    double lo = -1e300, hi = 1e300;
    for (int k = 0; k < 2; ++k)
        if (std::fabs(d[k]) > 1e-12)
        {
            const double t1 = (lower[k] - from[k]) / d[k], t2 = (upper[k] - from[k]) / d[k];
            lo = std::max(lo, std::min(t1, t2));
            hi = std::min(hi, std::max(t1, t2));
        }
    return {{g.x + lo * d[0], g.y + lo * d[1]}, {g.x + hi * d[0], g.y + hi * d[1]}};
}

// The picture: contours, centroid, principal axes, plastic neutral axes, and the
// distances from the centroidal axes to the extreme fibres as dimension lines.
bool SectionPicture(const SectionInput& in, const CProprietesSection& p, const std::string& path)
{
    Box box;
    for (const Contour& c : in.contours)
        box.Add(c);
    const double size = std::max(box.Width(), box.Height());
    SvgPicture svg(box, 0.15 * size);
    svg.Title("prefa section - area " + Fixed(p.m_Aire, 6) + " m2");
    for (const Contour& c : in.contours)
        svg.Outline(c, "#1f4e9a", 2.0);
    for (const Contour& c : in.openings)
        svg.Outline(c, "#9a1f1f", 1.5, true);
    const Point2 g{p.m_Xg, p.m_Yg};
    const double a = p.m_Angle * kPi / 180.0;
    int axis = 1;
    for (double t : {a, a + kPi / 2})
    {
        const std::pair<Point2, Point2> ends = AcrossBox(g, t, box, 0.03 * size);
        svg.Line(ends.first, ends.second, "#c0392b", 1.2, true, "principal-axis");
        svg.Text(ends.second, std::to_string(axis++), 12);
    }
    svg.Line({box.xmin, p.m_PlastiqueX.position}, {box.xmax, p.m_PlastiqueX.position}, "#1e8449", 1.2, true,
             "plastic-axis");
    svg.Text({box.xmin, p.m_PlastiqueX.position}, "PNA y = " + Fixed(p.m_PlastiqueX.position, 4) + " ", 11, "end");
    svg.Line({p.m_PlastiqueY.position, box.ymin}, {p.m_PlastiqueY.position, box.ymax}, "#1e8449", 1.2, true,
             "plastic-axis");
    svg.Text({p.m_PlastiqueY.position, box.ymax + 0.02 * size}, "PNA x = " + Fixed(p.m_PlastiqueY.position, 4), 11,
             "middle");
    const double right = box.xmax + 0.06 * size, below = box.ymin - 0.06 * size;
    svg.Dimension({right, g.y}, {right, g.y + p.m_AxeX.vPositif}, Fixed(p.m_AxeX.vPositif, 4));
    svg.Dimension({right, g.y}, {right, g.y - p.m_AxeX.vNegatif}, Fixed(p.m_AxeX.vNegatif, 4));
    svg.Dimension({g.x, below}, {g.x + p.m_AxeY.vPositif, below}, Fixed(p.m_AxeY.vPositif, 4));
    svg.Dimension({g.x, below}, {g.x - p.m_AxeY.vNegatif, below}, Fixed(p.m_AxeY.vNegatif, 4));
    svg.Marker({g, "G (" + Fixed(p.m_Xg, 4) + ", " + Fixed(p.m_Yg, 4) + ")"}, "#c0392b");
    return svg.Save(path);
}
} // namespace

int SectionCommand(const Options& o)
{
    SectionInput in = o.file.empty() ? ExampleSectionInput() : ReadSectionInput(o.file);
    CListePolygone contours, openings;
    for (const Contour& c : in.contours)
        contours.AddTail(new CPolygone(ToPolygone(c)));
    for (const Contour& c : in.openings)
        openings.AddTail(new CPolygone(ToPolygone(c)));
    CProprietesSection p;
    if (!p.Calcule(contours, openings))
        throw InputError(in.source, "openings", "the openings leave the section no area");

    std::string picture = PathIn(o.outDir, "section.svg");
    bool pictureWritten = false;
    if (!o.noPicture)
    {
        pictureWritten = SectionPicture(in, p, picture);
        if (!pictureWritten)
        {
            std::fprintf(stderr, "prefa section: %s: the picture cannot be written\n", picture.c_str());
            return 1;
        }
    }
    if (o.json)
    {
        nlohmann::json j = {{"source", in.source},
                            {"area", p.m_Aire},
                            {"centroid", {p.m_Xg, p.m_Yg}},
                            {"Ixx_centroid", p.m_AxeX.I},
                            {"Iyy_centroid", p.m_AxeY.I},
                            {"Ixy_centroid", p.m_Ixy},
                            {"I1", p.m_Axe1.I},
                            {"I2", p.m_Axe2.I},
                            {"principal_angle_deg", p.m_Angle},
                            {"angle_convention", kAngleConvention},
                            {"axes",
                             {{"x", AxisJson(p.m_AxeX)},
                              {"y", AxisJson(p.m_AxeY)},
                              {"1", AxisJson(p.m_Axe1)},
                              {"2", AxisJson(p.m_Axe2)}}},
                            {"positive_sides", kPositiveSides},
                            {"plastic",
                             {{"x", {{"axis_y", p.m_PlastiqueX.position}, {"W_pl", p.m_PlastiqueX.W}}},
                              {"y", {{"axis_x", p.m_PlastiqueY.position}, {"W_pl", p.m_PlastiqueY.W}}}}},
                            {"perimeter_contours", p.m_Perimetre1},
                            {"perimeter_openings", p.m_Perimetre2},
                            {"bounding_box", {p.m_Xmin, p.m_Ymin, p.m_Xmax, p.m_Ymax}}};
        if (pictureWritten)
            j["picture"] = picture;
        std::printf("%s\n", j.dump(2).c_str());
        return 0;
    }
    auto row = [](const char* label, const std::string& a, const std::string& b = "") {
        std::printf("%-44s %16s %16s\n", label, a.c_str(), b.c_str());
    };
    auto e = [](double v) {
        char buf[32];
        std::snprintf(buf, sizeof buf, "%.6e", v);
        return std::string(buf);
    };
    std::printf("prefa section: %s\n\n", in.source.c_str());
    row("area (m2)", Fixed(p.m_Aire, 8));
    row("centroid x, y (m)", Fixed(p.m_Xg, 6), Fixed(p.m_Yg, 6));
    row("Ixx, Iyy about the centroid (m4)", e(p.m_AxeX.I), e(p.m_AxeY.I));
    row("Ixy about the centroid (m4)", e(p.m_Ixy));
    row("principal moments I1, I2 (m4)", e(p.m_Axe1.I), e(p.m_Axe2.I));
    row("principal angle (degrees)", Fixed(p.m_Angle, 4));
    row("radii of gyration ix, iy (m)", Fixed(p.m_AxeX.i, 6), Fixed(p.m_AxeY.i, 6));
    row("radii of gyration i1, i2 (m)", Fixed(p.m_Axe1.i, 6), Fixed(p.m_Axe2.i, 6));
    row("extreme fibres from x: above, below (m)", Fixed(p.m_AxeX.vPositif, 6), Fixed(p.m_AxeX.vNegatif, 6));
    row("elastic moduli about x: above, below (m3)", e(p.m_AxeX.WPositif), e(p.m_AxeX.WNegatif));
    row("extreme fibres from y: right, left (m)", Fixed(p.m_AxeY.vPositif, 6), Fixed(p.m_AxeY.vNegatif, 6));
    row("elastic moduli about y: right, left (m3)", e(p.m_AxeY.WPositif), e(p.m_AxeY.WNegatif));
    row("extreme fibres from axis 1: +, - (m)", Fixed(p.m_Axe1.vPositif, 6), Fixed(p.m_Axe1.vNegatif, 6));
    row("elastic moduli about axis 1: +, - (m3)", e(p.m_Axe1.WPositif), e(p.m_Axe1.WNegatif));
    row("extreme fibres from axis 2: +, - (m)", Fixed(p.m_Axe2.vPositif, 6), Fixed(p.m_Axe2.vNegatif, 6));
    row("elastic moduli about axis 2: +, - (m3)", e(p.m_Axe2.WPositif), e(p.m_Axe2.WNegatif));
    row("plastic neutral axis y, modulus (m, m3)", Fixed(p.m_PlastiqueX.position, 6), e(p.m_PlastiqueX.W));
    row("plastic neutral axis x, modulus (m, m3)", Fixed(p.m_PlastiqueY.position, 6), e(p.m_PlastiqueY.W));
    row("perimeter of the contours, openings (m)", Fixed(p.m_Perimetre1, 6), Fixed(p.m_Perimetre2, 6));
    row("box: lower left (m)", Fixed(p.m_Xmin, 6), Fixed(p.m_Ymin, 6));
    row("box: upper right (m)", Fixed(p.m_Xmax, 6), Fixed(p.m_Ymax, 6));
    std::printf("\n%s", kConventionsText);
    if (pictureWritten)
        std::printf("\npicture: %s\n", picture.c_str());
    return 0;
}

std::string MainHelp()
{
    return "usage: prefa <command> [FILE.json] [--json] [--out DIR] [--help]\n\n"
           "commands:\n"
           "  fire      temperatures of a concrete section exposed to fire, at its bars,\n"
           "            and a picture of the field (fire.svg)\n"
           "  section   area, centroid, second moments, principal axes, elastic and plastic\n"
           "            moduli of a section, and a picture (section.svg)\n"
           "  pack      pack a project folder into a zip archive to send it\n"
           "  unpack    unpack such an archive into a new project folder\n\n"
           "Without FILE each command runs its built-in example. 'prefa <command> --help'\n"
           "shows the input format.\n";
}

std::string FireHelp()
{
    return std::string(
               "usage: prefa fire [FILE.json] [--json] [--out DIR] [--no-picture] [--every MIN [--csv FILE]]\n\n"
               "Computes the temperature field of a section exposed to fire in one run up to the longest\n"
               "duration and prints the temperature at every bar (read with the library's point lookup)\n"
               "after each duration; each is the field a run of that duration alone gives. Writes\n"
               "fire.svg into DIR: the field of the last duration (colour map, isotherms every 100\n"
               "degrees with their temperatures, legend, outline, bars) and, below it, each bar's\n"
               "temperature against time. --json prints the results as JSON for scripts.\n"
               "--every MIN adds the history: every bar at every MIN minutes up to the longest\n"
               "duration, from the same run, as a table (and in the JSON, the picture and --csv FILE).\n\n"
               "Input (lengths in metres, durations in hours):\n"
               "  outline         [[x, y], ...]  the section's outline (3 points or more)\n"
               "  cavities        [contour, ...] holes of air inside the section (optional)\n"
               "  materials       [contour, ...] zones of other materials (optional)\n"
               "  moisture_zones  [contour, ...] zones with a moisture index (optional)\n"
               "  bars            [{\"name\": \"A1\", \"x\": 0.05, \"y\": 0.05}, ...]\n"
               "  method          \"ec2\" (Eurocode 2), \"itbtp\", \"zolt\" or \"dtu\"\n"
               "  durations       [0.5, 1, ...] or duration: 2\n"
               "  cell            cell side of the grid (default 0.005)\n"
               "  exposed         the faces the fire heats (default: all), by the way they face,\n"
               "                  \"bottom\", \"top\", \"left\", \"right\" (within 45 degrees), \"all\", or by\n"
               "                  side number (1: from point 1 to point 2); the other faces meet the\n"
               "                  air at 20 degrees. Or \"unexposed\": the faces that meet the air.\n"
               "                  dtu: its slab model is heated from below, the bottom only.\n"
               "  fire_curve      \"standard\" (ISO 834), \"external\", \"hydrocarbon\" (EN 1991-1-2);\n"
               "                  \"suite_external\", \"suite_hydrocarbon\": the suite's programs' curves,\n"
               "                  their exponents applied to hours;\n"
               "                  {\"table\": [[0, 20], [5, 560], ...], \"convection\": 25}: minutes and\n"
               "                  degrees, linear between points, from 0 to the longest duration;\n"
               "                  {\"csv\": \"furnace.csv\"}: the same from a file of minutes,degrees\n"
               "                  lines (; or tab with decimal commas; header and # lines skipped);\n"
               "                  {\"parametric\": {\"opening_factor\": 0.04, \"fire_load\": 200,\n"
               "                  \"thermal_inertia\": 1160, \"growth\": \"medium\"}}: EN 1991-1-2 Annex A,\n"
               "                  heating and cooling (fire_load per m2 of the enclosure's area),\n"
               "                  convection 35 W/(m2 K).\n"
               "                  Every curve with ec2; itbtp, zolt and dtu compute under the\n"
               "                  standard fire only.\n"
               "  aggregate       ec2: \"siliceous\", \"calcareous\" or \"lightweight\"\n"
               "  aggregate_conductivity  ec2: true to follow the aggregate's law\n"
               "  moisture        ec2: water per volume of concrete (default 0.015)\n"
               "The dtu method gives rises above ambient and the unexposed-face criteria.\n\n"
               "Example (examples/beam.json, the built-in example, heated on every face):\n") +
           kFireExampleJson +
           "\nA slab heated from below (examples/slab.json):\n" + kSlabExampleJson +
           "\nA beam under a floor, heated on three sides (examples/beam3.json):\n" + kBeam3ExampleJson +
           "\nA column heated on four sides (examples/column.json):\n" + kColumnExampleJson +
           "\nCurves: examples/parametric.json, examples/furnace.json (with furnace.csv).\n"
           "  prefa fire examples/beam3.json --every 5 --csv history.csv\n";
}

std::string SectionHelp()
{
    return std::string("usage: prefa section [FILE.json] [--json] [--out DIR] [--no-picture]\n\n"
                       "Prints the exact properties of a section: area, centroid, second moments and\n"
                       "product of inertia about the centroid, principal moments and angle, radii of\n"
                       "gyration, extreme fibres and elastic moduli about the x, y and principal axes,\n"
                       "plastic neutral axes and plastic moduli about x and y, perimeters and box.\n"
                       "Writes section.svg (contours, centroid, principal and plastic neutral axes, the\n"
                       "distances to the extreme fibres) into DIR.\n\n") +
           kConventionsText +
           "\nInput (metres):\n"
           "  contours   [contour, ...]  the section's contours, each [[x, y], ...], either way round\n"
           "  openings   [contour, ...]  holes, subtracted from the section (optional)\n\n"
           "Example (examples/angle.json, the built-in example):\n" +
           kSectionExampleJson;
}

} // namespace prefa_cli
