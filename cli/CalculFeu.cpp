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
        t.CalculTemperatureEC2(n, duration, in.moisture, 0.0, (CTemperatureGenerale::MONTEE_TEMPERATURE)in.fireCurve,
                               (TYPE_GRANULAT)in.aggregate, in.aggregateConductivity ? 1 : 0);
        break;
    case Method::Itbtp: t.CalculTemperatureITBTP(n, 0, duration, 0.0); break;
    case Method::Zolt: t.CalculTemperatureZOLT(n, duration, 0.0); break;
    case Method::Dtu: t.CalculTemperatureDTU(); break;
    }
    t.m_Progression = user;
    return !stopped;
}

FireResult RunFire(const FireInput& in, const ProgressFn& progress)
{
    FireResult r;
    r.durations = in.durations;
    r.rises = in.method == Method::Dtu;
    r.barTemps.assign(in.bars.size(), std::vector<double>(in.durations.size(), 0.0));
    double total = 0;
    for (double d : in.durations)
        total += d;
    double done = 0;
    for (std::size_t k = 0; k < in.durations.size(); ++k)
    {
        const double duration = in.durations[k];
        CTemperatureGenerale t;
        Mesh(t, in, duration);
        char label[64];
        std::snprintf(label, sizeof label, "%s %.2f h", MethodName(in.method), duration);
        if (progress)
            t.m_Progression = [&](double f) { return progress((done + f * duration) / total, label); };
        if (!Compute(t, in, duration))
        {
            r.cancelled = true;
            return r;
        }
        if (in.method != Method::Dtu && DernieresStatistiquesBilan().horsBornes)
            throw std::runtime_error(std::string("the ") + label +
                                     " field left the range of the fire's temperatures after step " +
                                     std::to_string(DernieresStatistiquesBilan().pasHorsBornes) +
                                     " (a value that is not a number, or beyond the gas): no temperatures are given");
        done += duration;
        for (std::size_t b = 0; b < in.bars.size(); ++b)
        {
            Point2 q = LookupPoint(t, in.outline, in.bars[b].p);
            r.barTemps[b][k] = t.T(q.x, q.y);
        }
        if (in.method == Method::Dtu)
        {
            r.criterion140 = t.m_dTravailA[0];
            r.criterion180 = t.m_dTravailA[1];
        }
        if (k + 1 == in.durations.size())
        {
            // The last field, in section coordinates, for the picture.
            const int rows = (int)t.m_T1.GetSize();
            const int cols = rows ? (int)t.m_T1[0].GetSize() : 0;
            r.cell = t.GetDELX();
            r.field.cell = r.cell;
            for (int j = 0; j < cols; ++j)
                r.field.xs.push_back(CellCentre(t, in.outline, 0, j).x);
            for (int i = 0; i < rows; ++i)
                r.field.ys.push_back(CellCentre(t, in.outline, i, 0).y);
            r.field.values.assign((std::size_t)rows * cols, std::numeric_limits<double>::quiet_NaN());
            for (int i = 0; i < rows; ++i)
                for (int j = 0; j < cols && j < (int)t.m_T1[i].GetSize(); ++j)
                {
                    // Material cells only: gas, air and cavities are left blank.
                    bool inside = in.method == Method::Dtu ? t.m_T1[i][j] >= 0 && j > 0 && j < cols - 1
                                  : (i < (int)t.m_Masque.GetSize() && j < (int)t.m_Masque[i].GetSize() &&
                                     t.m_Masque[i][j] > 0);
                    if (inside)
                        r.field.values[(std::size_t)i * cols + j] = t.m_T1[i][j];
                }
        }
    }
    return r;
}

} // namespace prefa_cli
