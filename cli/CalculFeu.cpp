#include "CalculFeu.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>

namespace prefa_cli
{

namespace
{
CTemperatureGenerale::TYPE_CALCUL_TEMPERATURE TypeOf(Method m)
{
    switch (m)
    {
    case Method::Dtu: return CTemperatureGenerale::DTU;
    case Method::Itbtp: return CTemperatureGenerale::ITBTP;
    case Method::Zolt: return CTemperatureGenerale::ZOLT;
    case Method::Ec2: break;
    }
    return CTemperatureGenerale::EC2;
}
} // namespace

CPolygone ToPolygone(const Contour& c)
{
    CPolygone p;
    for (const Point2& q : c)
        p.AddTail(q.x, q.y);
    return p;
}

double SignedArea(const Contour& c)
{
    return ToPolygone(c).Surface(false);
}

Point2 LookupPoint(const CTemperatureGenerale& t, const Contour& outline, Point2 p)
{
    CPointD o = t.GetPtTranslation();
    Point2 q{p.x - o.x, p.y - o.y};
    if (t.GetTypeCalcul() != CTemperatureGenerale::DTU)
    {
        q.x -= 0.5 * Box().Add(outline).Width();
    }
    return q;
}

Point2 CellCentre(const CTemperatureGenerale& t, const Contour& outline, int i, int j)
{
    const double d = t.GetDELX();
    const int rows = t.GetNbLignes(), cols = t.GetNbColonnes();
    CPointD o = t.GetPtTranslation();
    if (t.GetTypeCalcul() == CTemperatureGenerale::DTU)
        return {o.x + (cols - j - 2) * d + 0.5 * d, o.y + (rows - i - 3) * d + 0.5 * d};
    double xLookup = t.m_dXOrigine - (j * d + 0.5 * d);
    return {o.x + 0.5 * Box().Add(outline).Width() + xLookup, o.y + (rows - i - 2) * d + 0.5 * d};
}

void Mesh(CTemperatureGenerale& t, const FireInput& in, double duration)
{
    CPolygone section = ToPolygone(in.outline);
    CListePolygone cavites;
    for (const Contour& c : in.cavities)
        cavites.AddTail(new CPolygone(ToPolygone(c)));
    CArray<CPolygone, CPolygone> materiaux, zones;
    for (const Contour& c : in.materials)
        materiaux.Add(ToPolygone(c));
    for (const Contour& c : in.moistureZones)
        zones.Add(ToPolygone(c));
    const bool dtu = in.method == Method::Dtu;
    // DTU: the slab model of the method, heated from below with the unexposed face on
    // top (option 1: no side gas). Grid methods: full width with gas columns on both
    // sides (option 0), so that the section is heated on every face.
    t.InitTableDonnees(section, duration, TypeOf(in.method), cavites, (int)materiaux.GetSize(), materiaux,
                       (int)zones.GetSize(), zones, in.cell, dtu ? 1 : 0, 0.0, 0.0, 0.0, 0.0, 0.0);
    if (dtu)
        return;
    t.m_dXOrigine = t.GetNbColonnes() * t.GetDELX() * 0.5;
    // The full-width mesh lays a one-cell strip of concrete over the section (the
    // floor above a member, in the suite's floor models). A member heated on every
    // face has fire there instead.
    CTemperatureGenerale::CLigne& strip = t.m_Masque[1];
    bool isStrip = strip.GetSize() > 0;
    for (INT_PTR j = 0; j < strip.GetSize() && isStrip; ++j)
        isStrip = strip[j] == 11.0;
    if (isStrip)
        for (INT_PTR j = 0; j < strip.GetSize(); ++j)
        {
            t.m_Masque[1][j] = -1.0;
            t.m_T1[1][j] = -1.0;
        }
    if (!in.exposed.empty() && !ExposerFaces(t, section, in.exposed))
        throw InputError(in.source, "exposed", "the exposure does not fit the outline");
}

bool Compute(CTemperatureGenerale& t, const FireInput& in, double duration)
{
    bool stopped = false;
    auto user = t.m_Progression;
    t.m_Progression = [&](double f) {
        if (user && !user(f))
            stopped = true;
        return !stopped;
    };
    const int n = (int)in.materials.size();
    switch (in.method)
    {
    case Method::Ec2:
        t.CalculTemperatureEC2(n, duration, in.moisture, 0.0, *MakeCurve(in.curve), (TYPE_GRANULAT)in.aggregate,
                               in.aggregateConductivity ? 1 : 0);
        break;
    case Method::Itbtp: t.CalculTemperatureITBTP(n, 0, duration, 0.0); break;
    case Method::Zolt: t.CalculTemperatureZOLT(n, duration, 0.0); break;
    case Method::Dtu: t.CalculTemperatureDTU(); break;
    }
    t.m_Progression = user;
    return !stopped;
}

std::vector<double> HistoryTimes(double every, double longestHours)
{
    std::vector<double> times;
    const double end = longestHours * 60.0;
    for (int k = 1; every > 0 && k * every <= end * (1 + 1e-12); ++k)
        times.push_back(k * every);
    if (times.empty() || times.back() < end * (1 - 1e-12))
        times.push_back(end);
    return times;
}

namespace
{
// The field of t in section coordinates, material cells only (gas, air and cavities
// are left blank), for the picture.
ScalarGrid FieldOf(const CTemperatureGenerale& t, const FireInput& in)
{
    ScalarGrid g;
    const int rows = (int)t.m_T1.GetSize();
    const int cols = rows ? (int)t.m_T1[0].GetSize() : 0;
    g.cell = t.GetDELX();
    for (int j = 0; j < cols; ++j)
        g.xs.push_back(CellCentre(t, in.outline, 0, j).x);
    for (int i = 0; i < rows; ++i)
        g.ys.push_back(CellCentre(t, in.outline, i, 0).y);
    g.values.assign((std::size_t)rows * cols, std::numeric_limits<double>::quiet_NaN());
    for (int i = 0; i < rows; ++i)
        for (int j = 0; j < cols && j < (int)t.m_T1[i].GetSize(); ++j)
        {
            const bool inside = in.method == Method::Dtu ? t.m_T1[i][j] >= 0 && j > 0 && j < cols - 1
                                : (i < (int)t.m_Masque.GetSize() && j < (int)t.m_Masque[i].GetSize() &&
                                   t.m_Masque[i][j] > 0);
            if (inside)
                g.values[(std::size_t)i * cols + j] = t.m_T1[i][j];
        }
    return g;
}
} // namespace

FireResult RunFire(const FireInput& in, const std::vector<double>& historyMinutes, const ProgressFn& progress)
{
    FireResult r;
    r.durations = in.durations;
    r.rises = in.method == Method::Dtu;
    r.initial = r.rises ? 0.0 : in.method == Method::Ec2 ? 20.0 : 15.0;
    r.historyMinutes = historyMinutes;
    const std::size_t nd = in.durations.size(), nb = in.bars.size();
    r.barTemps.assign(nb, std::vector<double>(nd, 0.0));
    r.history.assign(nb, std::vector<double>(historyMinutes.size(), 0.0));
    const double longest = *std::max_element(in.durations.begin(), in.durations.end());

    CTemperatureGenerale t;
    Mesh(t, in, longest);
    r.cell = t.GetDELX();
    // Each field is read through a copy of the grid that takes its temperatures.
    CTemperatureGenerale lookup;
    lookup.CopyTemperature(t);
    lookup.m_PtTranslation = t.GetPtTranslation();
    std::vector<Point2> points;
    for (const Bar& b : in.bars)
        points.push_back(LookupPoint(t, in.outline, b.p));
    t.m_DureesReleves = in.durations;
    for (double m : historyMinutes)
        t.m_DureesReleves.push_back(m / 60.0);
    t.m_Releve = [&](std::size_t k, const double* T) {
        for (INT_PTR i = 0; i < lookup.m_T1.GetSize(); ++i)
        {
            CTemperatureGenerale::CLigne& ligne = lookup.m_T1[i];
            std::copy(T, T + ligne.GetSize(), ligne.GetData());
            T += ligne.GetSize();
        }
        for (std::size_t b = 0; b < nb; ++b)
            (k < nd ? r.barTemps[b][k] : r.history[b][k - nd]) = lookup.T(points[b].x, points[b].y);
        if (k + 1 == nd)
            r.field = FieldOf(lookup, in);
    };
    char label[64];
    std::snprintf(label, sizeof label, "%s %.2f h", MethodName(in.method), longest);
    if (progress)
        t.m_Progression = [&](double f) { return progress(f, label); };
    if (!Compute(t, in, longest))
    {
        r.cancelled = true;
        return r;
    }
    if (in.method != Method::Dtu && DernieresStatistiquesBilan().horsBornes)
        throw std::runtime_error(std::string("the ") + label +
                                 " field left the range of the fire's temperatures after step " +
                                 std::to_string(DernieresStatistiquesBilan().pasHorsBornes) +
                                 " (a value that is not a number, or beyond the gas): no temperatures are given");
    if (in.method == Method::Dtu)
    {
        r.criterion140 = t.m_dTravailA[TravailA::T140];
        r.criterion180 = t.m_dTravailA[TravailA::T180];
    }
    return r;
}

} // namespace prefa_cli
