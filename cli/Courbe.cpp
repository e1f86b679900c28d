#include "Courbe.h"

#include "Commandes.h"
#include "LecteurJson.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace prefa_cli
{

const char* const kCurveNames[5] = {"standard", "external", "hydrocarbon", "suite_external", "suite_hydrocarbon"};

namespace
{
// Bounds that keep a mistyped curve from passing for a fire.
const double kMinGas = 0.0, kMaxGas = 2000.0;
const double kMaxConvection = 200.0;
const std::size_t kMaxPoints = 1000000;
const std::streamoff kMaxCsvBytes = 64 << 20;

const char* const kGrowthNames[3] = {"slow", "medium", "fast"};

std::string Trim(const std::string& s)
{
    const std::size_t a = s.find_first_not_of(" \t\r");
    if (a == std::string::npos)
        return "";
    return s.substr(a, s.find_last_not_of(" \t\r") - a + 1);
}

// The whole text must be one number.
bool ToNumber(const std::string& text, double& v)
{
    if (text.empty())
        return false;
    char* end = nullptr;
    v = std::strtod(text.c_str(), &end);
    return end == text.c_str() + text.size() && std::isfinite(v);
}

std::string Fixed(double v, int decimals)
{
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.*f", decimals, v);
    return buf;
}

// Checks a table's points (times from 0, increasing; gas temperatures in range); names
// the failing point through where(k).
template <class Where>
void CheckTable(const std::vector<CCourbeFeuTable::Point>& p, const Reader& r, const Where& where)
{
    if (p.size() < 2)
        r.Fail(where(p.size()), "a curve needs at least two points (minutes, degrees)");
    if (p.size() > kMaxPoints)
        r.Fail(where(kMaxPoints), "a curve of more than a million points is not supported");
    if (p[0].minutes != 0.0)
        r.Fail(where(0), "the curve must start at 0 minutes, not " + Fixed(p[0].minutes, 3));
    const int bad = CCourbeFeuTable::Defaut(p);
    if (bad > 0)
        r.Fail(where((std::size_t)bad), "the times must increase (" + Fixed(p[bad].minutes, 3) + " min after " +
                                            Fixed(p[bad - 1].minutes, 3) + " min)");
    for (std::size_t k = 0; k < p.size(); ++k)
        if (!(p[k].degres >= kMinGas && p[k].degres <= kMaxGas))
            r.Fail(where(k), "a gas temperature must lie between 0 and 2000 degrees, not " + Fixed(p[k].degres, 1));
}
} // namespace

std::vector<CCourbeFeuTable::Point> ParseCurveCsv(const std::string& source, const std::string& text)
{
    std::vector<CCourbeFeuTable::Point> points;
    std::vector<int> lines;
    const json none;
    const Reader r(source, none);
    std::size_t pos = text.compare(0, 3, "\xEF\xBB\xBF") == 0 ? 3 : 0; // a UTF-8 mark
    bool header = true;
    for (int n = 1; pos <= text.size(); ++n)
    {
        std::size_t eol = text.find('\n', pos);
        if (eol == std::string::npos)
            eol = text.size();
        const std::string line = Trim(text.substr(pos, eol - pos));
        pos = eol + 1;
        const std::string where = "line " + std::to_string(n);
        if (line.empty() || line[0] == '#')
            continue;
        const char sep = line.find(';') != std::string::npos ? ';' : line.find('\t') != std::string::npos ? '\t' : ',';
        std::vector<std::string> fields;
        for (std::size_t a = 0;;)
        {
            const std::size_t b = line.find(sep, a);
            std::string f = Trim(line.substr(a, b == std::string::npos ? std::string::npos : b - a));
            if (sep != ',')
                for (char& c : f)
                    if (c == ',')
                        c = '.';
            fields.push_back(f);
            if (b == std::string::npos)
                break;
            a = b + 1;
        }
        while (fields.size() > 2 && fields.back().empty())
            fields.pop_back();
        double t = 0, v = 0;
        const bool numbers = fields.size() == 2 && ToNumber(fields[0], t) && ToNumber(fields[1], v);
        if (!numbers && header && points.empty() && !ToNumber(fields[0], t))
        {
            header = false; // the column titles
            continue;
        }
        header = false;
        if (fields.size() != 2)
            r.Fail(where, "two values were expected (minutes, degrees), there are " + std::to_string(fields.size()));
        for (const std::string& f : fields)
            if (!ToNumber(f, t))
                r.Fail(where, "\"" + f + "\" is not a number");
        ToNumber(fields[0], t);
        ToNumber(fields[1], v);
        points.push_back({t, v});
        lines.push_back(n);
        if (points.size() > kMaxPoints)
            break;
    }
    CheckTable(points, r, [&](std::size_t k) {
        return k < lines.size() ? "line " + std::to_string(lines[k]) : std::string("end of file");
    });
    return points;
}

std::vector<CCourbeFeuTable::Point> ReadCurveCsv(const std::string& path)
{
    std::ifstream in(std::filesystem::u8path(path), std::ios::binary);
    if (!in)
        throw InputError(path, "", "cannot be read");
    in.seekg(0, std::ios::end);
    const std::streamoff size = in.tellg();
    if (size > kMaxCsvBytes)
        throw InputError(path, "", "a curve file above 64 MB is not supported");
    in.seekg(0);
    std::string text((std::size_t)std::max<std::streamoff>(size, 0), '\0');
    in.read(&text[0], (std::streamsize)text.size());
    if (!in)
        throw InputError(path, "", "cannot be read");
    return ParseCurveCsv(path, text);
}

FireCurve ReadFireCurve(const Reader& r, const json& v, const std::string& folder)
{
    FireCurve c;
    const std::string field = "fire_curve";
    if (v.is_string())
    {
        const std::string name = v.get<std::string>();
        for (int k = 0; k < 5; ++k)
            if (name == kCurveNames[k])
            {
                c.kind = (FireCurve::Kind)k;
                return c;
            }
        r.Fail(field, "unknown fire curve \"" + name +
                          "\" (standard, external, hydrocarbon, suite_external, suite_hydrocarbon, or an object "
                          "with table, csv or parametric)");
    }
    if (!v.is_object() || v.size() == 0)
        r.Fail(field, "a curve's name or an object with table, csv or parametric was expected");
    const int kinds = (int)v.contains("table") + (int)v.contains("csv") + (int)v.contains("parametric");
    if (kinds != 1)
        r.Fail(field, "give one of table, csv or parametric");
    for (auto it = v.begin(); it != v.end(); ++it)
        if (it.key() != "table" && it.key() != "csv" && it.key() != "parametric" && it.key() != "convection")
            r.Fail(field + "." + it.key(), "unknown key (table, csv, parametric, convection)");

    if (v.contains("parametric"))
    {
        if (v.contains("convection"))
            r.Fail(field + ".convection", "the parametric fire's convection is 35 W/(m2 K), it is not given");
        const json& p = v["parametric"];
        const std::string f = field + ".parametric";
        if (!p.is_object())
            r.Fail(f, "an object was expected: opening_factor, fire_load, thermal_inertia, growth");
        for (const char* key : {"opening_factor", "fire_load", "thermal_inertia"})
            if (!p.contains(key))
                r.Fail(f + "." + key, "missing");
        c.kind = FireCurve::Kind::Parametric;
        c.openingFactor = r.Number(p["opening_factor"], f + ".opening_factor");
        c.fireLoad = r.Number(p["fire_load"], f + ".fire_load");
        c.inertia = r.Number(p["thermal_inertia"], f + ".thermal_inertia");
        typedef CCourbeFeuParametrique P;
        switch (P::HorsDomaine(c.openingFactor, c.fireLoad, c.inertia))
        {
        case 1: r.Fail(f + ".opening_factor", "Annex A covers opening factors from 0.02 to 0.20 m^0.5");
        case 2: r.Fail(f + ".fire_load", "Annex A covers fire loads from 50 to 1000 MJ/m2 (of the enclosure's area)");
        case 3: r.Fail(f + ".thermal_inertia", "Annex A covers thermal inertias from 100 to 2200 J/(m2 s^0.5 K)");
        }
        if (p.contains("growth"))
        {
            const json& g = p["growth"];
            const std::string name = g.is_string() ? g.get<std::string>() : std::string();
            int k = 0;
            while (k < 3 && name != kGrowthNames[k])
                ++k;
            if (k == 3)
                r.Fail(f + ".growth", "slow, medium or fast was expected");
            c.growth = (P::CROISSANCE)k;
        }
        for (auto it = p.begin(); it != p.end(); ++it)
            if (it.key() != "opening_factor" && it.key() != "fire_load" && it.key() != "thermal_inertia" &&
                it.key() != "growth")
                r.Fail(f + "." + it.key(), "unknown key (opening_factor, fire_load, thermal_inertia, growth)");
        return c;
    }

    c.kind = FireCurve::Kind::Table;
    if (v.contains("convection"))
    {
        c.convection = r.Number(v["convection"], field + ".convection");
        if (!(c.convection > 0 && c.convection <= kMaxConvection))
            r.Fail(field + ".convection", "a convection coefficient lies above 0 and at most 200 W/(m2 K)");
    }
    if (v.contains("csv"))
    {
        if (!v["csv"].is_string() || v["csv"].get<std::string>().empty())
            r.Fail(field + ".csv", "the name of a CSV file was expected");
        c.file = v["csv"].get<std::string>();
        const bool absolute = c.file[0] == '/' || c.file[0] == '\\' || (c.file.size() > 1 && c.file[1] == ':');
        c.points = ReadCurveCsv(absolute ? c.file : PathIn(folder, c.file));
        return c;
    }
    const json& t = v["table"];
    const std::string f = field + ".table";
    if (!t.is_array())
        r.Fail(f, "a list of [minutes, degrees] was expected");
    if (t.size() > kMaxPoints)
        r.Fail(f, "a curve of more than a million points is not supported");
    for (std::size_t k = 0; k < t.size(); ++k)
    {
        const std::string fk = f + "[" + std::to_string(k) + "]";
        if (!t[k].is_array() || t[k].size() != 2)
            r.Fail(fk, "a point must be [minutes, degrees]");
        c.points.push_back({r.Number(t[k][0], fk + "[0]"), r.Number(t[k][1], fk + "[1]")});
    }
    CheckTable(c.points, r, [&](std::size_t k) { return f + "[" + std::to_string(k) + "]"; });
    return c;
}

std::unique_ptr<CCourbeFeu> MakeCurve(const FireCurve& c)
{
    switch (c.kind)
    {
    case FireCurve::Kind::Standard: return std::make_unique<CCourbeFeuNormalisee>(CCourbeFeuNormalisee::NORMALISEE);
    case FireCurve::Kind::External: return std::make_unique<CCourbeFeuNormalisee>(CCourbeFeuNormalisee::EXTERIEURE);
    case FireCurve::Kind::Hydrocarbon:
        return std::make_unique<CCourbeFeuNormalisee>(CCourbeFeuNormalisee::HYDROCARBURE);
    case FireCurve::Kind::SuiteExternal:
        return std::make_unique<CCourbeFeuMontee>(CTemperatureGenerale::MONTEE_EXTERIEURE);
    case FireCurve::Kind::SuiteHydrocarbon:
        return std::make_unique<CCourbeFeuMontee>(CTemperatureGenerale::MONTEE_HYDROCARBURE);
    case FireCurve::Kind::Table:
    {
        auto t = std::make_unique<CCourbeFeuTable>();
        t->Definir(c.points, c.convection);
        return t;
    }
    case FireCurve::Kind::Parametric: break;
    }
    return std::make_unique<CCourbeFeuParametrique>(c.openingFactor, c.fireLoad, c.inertia, c.growth);
}

std::string FireCurveName(const FireCurve& c)
{
    if (c.kind == FireCurve::Kind::Table)
        return "table";
    if (c.kind == FireCurve::Kind::Parametric)
        return "parametric";
    return kCurveNames[(int)c.kind];
}

std::string FireCurveDetails(const FireCurve& c)
{
    if (c.kind == FireCurve::Kind::Table)
        return std::to_string(c.points.size()) + " points" + (c.file.empty() ? "" : " from " + c.file) + ", 0 to " +
               Fixed(c.points.back().minutes, 1) + " min, convection " + Fixed(c.convection, 1) + " W/(m2 K)";
    if (c.kind != FireCurve::Kind::Parametric)
        return "";
    const CCourbeFeuParametrique p(c.openingFactor, c.fireLoad, c.inertia, c.growth);
    return "O " + Fixed(c.openingFactor, 3) + " m^0.5, q " + Fixed(c.fireLoad, 0) + " MJ/m2, b " +
           Fixed(c.inertia, 0) + ", " + kGrowthNames[c.growth] + " growth: Gamma " + Fixed(p.Gamma(), 3) + ", " +
           (p.Combustible() ? "fuel" : "ventilation") + " controlled, peak " + Fixed(p.TetaMax(), 0) + " C at " +
           Fixed(p.TMax() * 60.0, 1) + " min, back to 20 C at " + Fixed(p.FinRefroidissement() * 60.0, 1) + " min";
}

} // namespace prefa_cli
