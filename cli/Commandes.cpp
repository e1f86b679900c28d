#include "Commandes.h"

#include "CalculFeu.h"
#include "Entree.h"
#include "Progression.h"
#include "Svg.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace prefa_cli
{

namespace
{
const double kPi = 3.141592653589793;

// The contour turned to the wanted orientation (counter-clockwise when ccw).
Contour Oriented(Contour c, bool ccw)
{
    if ((SignedArea(c) > 0) != ccw)
        std::reverse(c.begin(), c.end());
    return c;
}

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
    ProgressBar bar(true);
    FireResult r = RunFire(in, [&](double f, const std::string& label) {
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
        svg.Title("prefa fire - " + std::string(MethodName(in.method)) +
                  (in.method == Method::Ec2 ? ", " + std::string(FireCurveName(in.fireCurve)) + " fire" : "") + ", " +
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
        pictureWritten = svg.Save(picture);
        if (!pictureWritten)
        {
            std::fprintf(stderr, "prefa fire: %s: the picture cannot be written\n", picture.c_str());
            return 1;
        }
    }

    if (o.json)
    {
        nlohmann::json j;
        j["source"] = in.source;
        j["method"] = MethodName(in.method);
        if (in.method == Method::Ec2)
            j["fire_curve"] = FireCurveName(in.fireCurve);
        j["cell"] = in.cell;
        j["unit"] = r.rises ? "rise_K" : "degC";
        j["durations"] = r.durations;
        nlohmann::json bars = nlohmann::json::array();
        for (std::size_t b = 0; b < in.bars.size(); ++b)
            bars.push_back({{"name", in.bars[b].name}, {"x", in.bars[b].p.x}, {"y", in.bars[b].p.y},
                            {"temperatures", r.barTemps[b]}});
        j["bars"] = bars;
        if (r.rises)
            j["criteria_minutes"] = {{"mean_rise_140", r.criterion140}, {"max_rise_180", r.criterion180}};
        if (pictureWritten)
            j["picture"] = picture;
        std::printf("%s\n", j.dump(2).c_str());
        return 0;
    }

    std::printf("prefa fire: %s - method %s%s, cell %s mm\n", in.source.c_str(), MethodName(in.method),
                in.method == Method::Ec2 ? (std::string(", ") + FireCurveName(in.fireCurve) + " fire").c_str() : "",
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
    if (pictureWritten)
        std::printf("\npicture: %s\n", picture.c_str());
    return 0;
}

int SectionCommand(const Options& o)
{
    SectionInput in = o.file.empty() ? ExampleSectionInput() : ReadSectionInput(o.file);
    // Contours counter-clockwise and openings clockwise, so that openings subtract.
    CListePolygone l1, l2;
    for (const Contour& c : in.contours)
        l1.AddTail(new CPolygone(ToPolygone(Oriented(c, true))));
    for (const Contour& c : in.openings)
        l2.AddTail(new CPolygone(ToPolygone(Oriented(c, false))));
    CSectionGenerale s;
    s.CaracteristiquesSectionsPolygone(l1, l2);

    const double area = std::fabs(s.Aire);
    const double xg = s.SY / s.Aire, yg = s.SX / s.AireY;
    const double angleDeg = s.Angle * 180.0 / kPi;
    std::string picture = PathIn(o.outDir, "section.svg");
    bool pictureWritten = false;
    if (!o.noPicture)
    {
        Box box;
        for (const Contour& c : in.contours)
            box.Add(c);
        const double size = std::max(box.Width(), box.Height());
        SvgPicture svg(box, 0.1 * size);
        svg.Title("prefa section - area " + Fixed(area, 6) + " m2");
        for (const Contour& c : in.contours)
            svg.Outline(c, "#1f4e9a", 2.0);
        for (const Contour& c : in.openings)
            svg.Outline(c, "#9a1f1f", 1.5, true);
        double half = 0.45 * size;
        Point2 g{xg, yg};
        for (double a : {s.Angle, s.Angle + kPi / 2})
            svg.Line({g.x - half * std::cos(a), g.y - half * std::sin(a)}, {g.x + half * std::cos(a), g.y + half * std::sin(a)},
                     "#c0392b", 1.2, true);
        svg.Marker({g, "G (" + Fixed(xg, 4) + ", " + Fixed(yg, 4) + ")"}, "#c0392b");
        pictureWritten = svg.Save(picture);
        if (!pictureWritten)
        {
            std::fprintf(stderr, "prefa section: %s: the picture cannot be written\n", picture.c_str());
            return 1;
        }
    }
    if (o.json)
    {
        nlohmann::json j = {{"source", in.source},
                            {"area", area},
                            {"centroid", {xg, yg}},
                            {"Ixx_centroid", s.IxG},
                            {"Iyy_centroid", s.IyG},
                            {"Ixy_centroid", s.IxyG},
                            {"I1", s.I1},
                            {"I2", s.I2},
                            {"principal_angle_deg", angleDeg},
                            {"perimeter_contours", s.Perimetre1},
                            {"perimeter_openings", s.Perimetre2}};
        if (pictureWritten)
            j["picture"] = picture;
        std::printf("%s\n", j.dump(2).c_str());
        return 0;
    }
    std::printf("prefa section: %s\n\n", in.source.c_str());
    std::printf("%-36s %16s\n", "area (m2)", Fixed(area, 8).c_str());
    std::printf("%-36s %16s %16s\n", "centroid x, y (m)", Fixed(xg, 6).c_str(), Fixed(yg, 6).c_str());
    std::printf("%-36s %16.6e\n", "Ixx about the centroid (m4)", s.IxG);
    std::printf("%-36s %16.6e\n", "Iyy about the centroid (m4)", s.IyG);
    std::printf("%-36s %16.6e\n", "Ixy about the centroid (m4)", s.IxyG);
    std::printf("%-36s %16.6e %16.6e\n", "principal moments I1, I2 (m4)", s.I1, s.I2);
    std::printf("%-36s %16s\n", "principal angle (degrees)", Fixed(angleDeg, 4).c_str());
    std::printf("%-36s %16s\n", "perimeter of the contours (m)", Fixed(s.Perimetre1, 6).c_str());
    std::printf("%-36s %16s\n", "perimeter of the openings (m)", Fixed(s.Perimetre2, 6).c_str());
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
           "  section   area, centroid, second moments, principal axes and perimeters of a\n"
           "            section, and a picture (section.svg)\n"
           "  pack      pack a project folder into a zip archive to send it\n"
           "  unpack    unpack such an archive into a new project folder\n\n"
           "Without FILE each command runs its built-in example. 'prefa <command> --help'\n"
           "shows the input format.\n";
}

std::string FireHelp()
{
    return std::string("usage: prefa fire [FILE.json] [--json] [--out DIR] [--no-picture]\n\n"
                       "Computes the temperature field of a section after each fire duration and prints\n"
                       "the temperature at every bar (read with the library's point lookup); writes\n"
                       "fire.svg (colour map, isotherms every 100 degrees, legend, outline, bars) into DIR.\n"
                       "--json prints the results as JSON for scripts. The section is heated on all faces\n"
                       "(dtu: the slab model of the method, heated from below, unexposed face on top).\n\n"
                       "Input (lengths in metres, durations in hours):\n"
                       "  outline         [[x, y], ...]  the section's outline (3 points or more)\n"
                       "  cavities        [contour, ...] holes of air inside the section (optional)\n"
                       "  materials       [contour, ...] zones of other materials (optional)\n"
                       "  moisture_zones  [contour, ...] zones with a moisture index (optional)\n"
                       "  bars            [{\"name\": \"A1\", \"x\": 0.05, \"y\": 0.05}, ...]\n"
                       "  method          \"ec2\" (Eurocode 2), \"itbtp\", \"zolt\" or \"dtu\"\n"
                       "  durations       [0.5, 1, ...] or duration: 2\n"
                       "  cell            cell side of the grid (default 0.005)\n"
                       "  fire_curve      ec2: \"standard\", \"external\" or \"hydrocarbon\"\n"
                       "  aggregate       ec2: \"siliceous\", \"calcareous\" or \"lightweight\"\n"
                       "  aggregate_conductivity  ec2: true to follow the aggregate's law\n"
                       "  moisture        ec2: water per volume of concrete (default 0.015)\n"
                       "The dtu method gives rises above ambient and the unexposed-face criteria.\n\n"
                       "Example (examples/beam.json, the built-in example):\n") +
           kFireExampleJson;
}

std::string SectionHelp()
{
    return std::string("usage: prefa section [FILE.json] [--json] [--out DIR] [--no-picture]\n\n"
                       "Prints the area, centroid, second moments and product of inertia about the\n"
                       "centroid, principal moments and angle, and perimeters of a section; writes\n"
                       "section.svg (contours, centroid, principal axes) into DIR.\n\n"
                       "Input (metres):\n"
                       "  contours   [contour, ...]  the section's contours, each [[x, y], ...]\n"
                       "  openings   [contour, ...]  holes, subtracted from the section (optional)\n\n"
                       "Example (examples/angle.json, the built-in example):\n") +
           kSectionExampleJson;
}

} // namespace prefa_cli
