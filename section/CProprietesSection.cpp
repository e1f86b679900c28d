// Exact section properties: the contours as flat loops relative to the section, the
// moments by closed-form triangle integrals, the principal axes and the extreme fibres.
#include "section/CProprietesSection.h"

#include "section/SectionInterne.h"

#include <algorithm>
#include <cmath>

using namespace prefa_section;

namespace
{
const double kPi = 3.141592653589793;

// Integrals over the section of 1, u, v, u^2, v^2 and u v, with (u, v) the loops'
// coordinates turned by the angle whose cosine and sine are c and s.
struct Moments
{
    double A, Su, Sv, Iuu, Ivv, Iuv;
};

Moments Integre(const Boucles& b, double c, double s)
{
    // Each side (i, j) with the origin makes a triangle of twice the signed area
    // k = ui vj - uj vi; the closed-form integrals over it are summed.
    SommeCompensee a, su, sv, iuu, ivv, iuv;
    const double* x = b.x.data();
    const double* y = b.y.data();
    for (std::size_t l = 0; l < b.Nombre(); ++l)
    {
        const std::size_t fin = b.debut[l + 1] - 1;
        double ui = c * x[b.debut[l]] + s * y[b.debut[l]];
        double vi = c * y[b.debut[l]] - s * x[b.debut[l]];
        for (std::size_t j = b.debut[l] + 1; j <= fin; ++j)
        {
            const double uj = c * x[j] + s * y[j];
            const double vj = c * y[j] - s * x[j];
            const double k = ui * vj - uj * vi;
            a.Ajoute(k);
            su.Ajoute((ui + uj) * k);
            sv.Ajoute((vi + vj) * k);
            iuu.Ajoute((ui * ui + ui * uj + uj * uj) * k);
            ivv.Ajoute((vi * vi + vi * vj + vj * vj) * k);
            iuv.Ajoute((ui * vj + 2.0 * ui * vi + 2.0 * uj * vj + uj * vi) * k);
            ui = uj;
            vi = vj;
        }
    }
    return {a.Valeur() / 2.0,    su.Valeur() / 6.0,   sv.Valeur() / 6.0,
            iuu.Valeur() / 12.0, ivv.Valeur() / 12.0, iuv.Valeur() / 24.0};
}

// Appends the polygon as a closed loop relative to (xr, yr), turned counter-clockwise
// (bMatiere) or clockwise; returns the absolute area of the loop.
double AjouteBoucle(Boucles& b, const CPolygone& p, double xr, double yr, bool bMatiere)
{
    const std::size_t debut = b.x.size();
    for (POSITION pos = p.GetHeadPosition(); pos;)
    {
        const CPointD q = p.GetPointNext(pos);
        b.x.push_back(q.x - xr);
        b.y.push_back(q.y - yr);
    }
    b.x.push_back(b.x[debut]);
    b.y.push_back(b.y[debut]);
    SommeCompensee aire;
    for (std::size_t i = debut; i + 1 < b.x.size(); ++i)
        aire.Ajoute(b.x[i] * b.y[i + 1] - b.x[i + 1] * b.y[i]);
    if ((aire.Valeur() < 0.0) == bMatiere)
    {
        std::reverse(b.x.begin() + (std::ptrdiff_t)debut, b.x.end());
        std::reverse(b.y.begin() + (std::ptrdiff_t)debut, b.y.end());
    }
    b.debut.push_back(b.x.size());
    return std::fabs(aire.Valeur()) / 2.0;
}

double Perimetre(const Boucles& b, std::size_t premiere, std::size_t derniere)
{
    SommeCompensee p;
    for (std::size_t l = premiere; l < derniere; ++l)
        for (std::size_t i = b.debut[l]; i + 2 <= b.debut[l + 1]; ++i)
            p.Ajoute(std::hypot(b.x[i + 1] - b.x[i], b.y[i + 1] - b.y[i]));
    return p.Valeur();
}

// Extreme fibres of the contours about the two axes through (ug, vg) in the frame
// turned by (c, s): for the axis along u, the largest distances on each side along v,
// and the reverse.
void Fibres(const Boucles& b, double c, double s, double ug, double vg, CProprietesSection::Axe& axeU,
            CProprietesSection::Axe& axeV)
{
    double umin = 0.0, umax = 0.0, vmin = 0.0, vmax = 0.0;
    for (std::size_t i = 0; i < b.debut[b.nContours]; ++i)
    {
        const double u = c * b.x[i] + s * b.y[i] - ug;
        const double v = c * b.y[i] - s * b.x[i] - vg;
        umin = std::min(umin, u), umax = std::max(umax, u);
        vmin = std::min(vmin, v), vmax = std::max(vmax, v);
    }
    axeU.vPositif = vmax, axeU.vNegatif = -vmin;
    axeV.vPositif = umax, axeV.vNegatif = -umin;
}

void Complete(CProprietesSection::Axe& axe, double I, double aire)
{
    axe.I = I;
    axe.i = std::sqrt(std::max(I, 0.0) / aire);
    axe.WPositif = I / axe.vPositif;
    axe.WNegatif = I / axe.vNegatif;
}
} // namespace

int CProprietesSection::Calcule(const CListePolygone& contours, const CListePolygone& ouvertures)
{
    *this = CProprietesSection();

    // The box of the contours; its centre is the first reference point.
    double xmin = HUGE_VAL, ymin = HUGE_VAL, xmax = -HUGE_VAL, ymax = -HUGE_VAL;
    for (const CListePolygone* l : {&contours, &ouvertures})
        for (POSITION pl = l->GetHeadPositionConst(); pl;)
        {
            const CPolygone* p = l->GetNextConst(pl);
            if (p->GetCount() < 3)
                continue;
            for (POSITION pos = p->GetHeadPosition(); pos;)
            {
                const CPointD q = p->GetPointNext(pos);
                if (!std::isfinite(q.x) || !std::isfinite(q.y))
                    return 0;
                if (l == &contours)
                    xmin = std::min(xmin, q.x), xmax = std::max(xmax, q.x), ymin = std::min(ymin, q.y),
                    ymax = std::max(ymax, q.y);
            }
        }
    if (!(xmin <= xmax))
        return 0;
    const double xr = xmin + (xmax - xmin) / 2.0, yr = ymin + (ymax - ymin) / 2.0;

    Boucles b;
    double airesBrutes = 0.0;
    for (const CListePolygone* l : {&contours, &ouvertures})
    {
        for (POSITION pl = l->GetHeadPositionConst(); pl;)
        {
            const CPolygone* p = l->GetNextConst(pl);
            if (p->GetCount() >= 3)
                airesBrutes += AjouteBoucle(b, *p, xr, yr, l == &contours);
        }
        if (l == &contours)
            b.nContours = b.Nombre();
    }

    // First pass about the box's centre, for the centroid only.
    const Moments m0 = Integre(b, 1.0, 0.0);
    if (!(m0.A > 1e-12 * airesBrutes))
        return 0;
    const double dx = m0.Su / m0.A, dy = m0.Sv / m0.A;
    for (double& x : b.x)
        x -= dx;
    for (double& y : b.y)
        y -= dy;

    // Second pass about that centroid; what is left of the first moments is the small
    // correction of the centroid.
    const Moments m = Integre(b, 1.0, 0.0);
    m_Aire = m.A;
    const double ex = m.Su / m.A, ey = m.Sv / m.A;
    m_Xg = xr + (dx + ex);
    m_Yg = yr + (dy + ey);
    const double Ix = m.Ivv - m.A * ey * ey;
    const double Iy = m.Iuu - m.A * ex * ex;
    m_Ixy = m.Iuv - m.A * ex * ey;

    Fibres(b, 1.0, 0.0, ex, ey, m_AxeX, m_AxeY);
    Complete(m_AxeX, Ix, m_Aire);
    Complete(m_AxeY, Iy, m_Aire);

    // Principal axes: the third pass integrates in their frame.
    const double moyenne = (Ix + Iy) / 2.0, rayon = std::hypot((Ix - Iy) / 2.0, m_Ixy);
    if (rayon <= 1e-9 * moyenne)
    {
        m_Angle = 0.0;
        m_Axe1 = m_AxeX;
        m_Axe2 = m_AxeY;
    }
    else
    {
        // atan2 gives 2a in [-180, 180]; -90 is the same axis as 90.
        double a = std::atan2(-2.0 * m_Ixy, Ix - Iy) / 2.0;
        if (a <= -kPi / 2.0)
            a += kPi;
        m_Angle = a * 180.0 / kPi;
        const double c = std::cos(a), s = std::sin(a);
        const Moments p = Integre(b, c, s);
        const double eu = p.Su / p.A, ev = p.Sv / p.A;
        Fibres(b, c, s, eu, ev, m_Axe1, m_Axe2);
        Complete(m_Axe1, p.Ivv - p.A * ev * ev, m_Aire);
        Complete(m_Axe2, p.Iuu - p.A * eu * eu, m_Aire);
    }

    const AxeNeutre px = DonneAxeNeutrePlastique(b, false), py = DonneAxeNeutrePlastique(b, true);
    m_PlastiqueX = {yr + (dy + px.position), px.module};
    m_PlastiqueY = {xr + (dx + py.position), py.module};

    m_Perimetre1 = Perimetre(b, 0, b.nContours);
    m_Perimetre2 = Perimetre(b, b.nContours, b.Nombre());
    m_Xmin = xmin, m_Ymin = ymin, m_Xmax = xmax, m_Ymax = ymax;
    return 1;
}
