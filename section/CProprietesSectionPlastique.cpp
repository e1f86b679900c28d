// Plastic neutral axes: the line parallel to x or y that halves the area, found by
// clipping each side at the line (Green's theorem) and solving the piecewise quadratic
// area exactly; the plastic modulus about it.
#include "section/SectionInterne.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace prefa_section
{

namespace
{
// The section seen across a family of parallel lines: u runs along the lines, v is
// the level across them. sigma is 1 when (u, v) keeps the turn of (x, y), -1 when it
// mirrors it (u = y, v = x), so that the loops' orientation keeps its meaning.
struct Niveaux
{
    const Boucles& b;
    const double* u;
    const double* v;
    double sigma;

    // Calls f(u0, v0, u1, v1) for every side of every loop.
    template <class F>
    void PourChaqueCote(F&& f) const
    {
        for (std::size_t l = 0; l < b.Nombre(); ++l)
            for (std::size_t i = b.debut[l]; i + 2 <= b.debut[l + 1]; ++i)
                f(u[i], v[i], u[i + 1], v[i + 1]);
    }
};

// Area below level t: minus the integral of min(v - t, 0) du round the loops. A side
// wholly above t adds nothing; a side crossing t adds the part below it.
double AireSous(const Niveaux& n, double t)
{
    SommeCompensee a;
    n.PourChaqueCote([&](double u0, double v0, double u1, double v1) {
        const double w0 = v0 - t, w1 = v1 - t, du = u1 - u0;
        if (w0 >= 0.0 && w1 >= 0.0)
            return;
        if (w0 <= 0.0 && w1 <= 0.0)
            a.Ajoute((w0 + w1) * du);
        else
        {
            const double wn = std::min(w0, w1), wp = std::max(w0, w1);
            a.Ajoute(du * wn * wn / (wn - wp));
        }
    });
    return -n.sigma * a.Valeur() / 2.0;
}

// Widths of the section just above ta and just below tb, no vertex lying strictly
// between the two levels: the derivative of the area, the sum over the sides of the
// du of their part below the level. Between ta and tb it is linear.
void Largeurs(const Niveaux& n, double ta, double tb, double& la, double& lb)
{
    SommeCompensee sa, sb;
    n.PourChaqueCote([&](double u0, double v0, double u1, double v1) {
        const double vmin = std::min(v0, v1), vmax = std::max(v0, v1), du = u1 - u0;
        if (vmax <= ta)
            sa.Ajoute(du), sb.Ajoute(du);
        else if (vmin < tb)
        {
            sa.Ajoute(du * (ta - vmin) / (vmax - vmin));
            sb.Ajoute(du * (tb - vmin) / (vmax - vmin));
        }
    });
    la = n.sigma * sa.Valeur();
    lb = n.sigma * sb.Valeur();
}

// Integral of |v - t| over the area: minus half the integral of (v - t)|v - t| du
// round the loops, a side crossing t being split there.
double ModulePlastique(const Niveaux& n, double t)
{
    SommeCompensee z;
    n.PourChaqueCote([&](double u0, double v0, double u1, double v1) {
        const double w0 = v0 - t, w1 = v1 - t, du = u1 - u0;
        if (w0 >= 0.0 && w1 >= 0.0)
            z.Ajoute(du * (w0 * w0 + w0 * w1 + w1 * w1));
        else if (w0 <= 0.0 && w1 <= 0.0)
            z.Ajoute(-du * (w0 * w0 + w0 * w1 + w1 * w1));
        else
        {
            const double f = w0 / (w0 - w1); // where the side crosses t
            z.Ajoute(du * (f * w0 * std::fabs(w0) + (1.0 - f) * w1 * std::fabs(w1)));
        }
    });
    return -n.sigma * z.Valeur() / 6.0;
}
} // namespace

AxeNeutre DonneAxeNeutrePlastique(const Boucles& b, bool bVertical)
{
    const Niveaux n = bVertical ? Niveaux{b, b.y.data(), b.x.data(), -1.0} : Niveaux{b, b.x.data(), b.y.data(), 1.0};
    std::vector<double> t(n.v, n.v + b.x.size());
    std::sort(t.begin(), t.end());
    t.erase(std::unique(t.begin(), t.end()), t.end());
    if (t.size() < 2)
        return {};
    const double moitie = AireSous(n, t.back()) / 2.0;
    if (!(moitie > 0.0))
        return {};
    // Above the rounding of the sums: levels whose area is this close to the half count
    // as halving it, so that both ends of a band of zero width are found.
    const double tolerance = 1e-12 * moitie;

    // Between two successive vertex levels ta and tb the area at ta + s is
    // A(ta) + la s + (lb - la) s^2 / (2 (tb - ta)), la and lb the widths at both ends.
    struct Tranche
    {
        double ta, tb, aa, ab, la, lb;
    };
    auto tranche = [&](std::size_t lo, std::size_t hi) {
        Tranche r{t[lo], t[hi], AireSous(n, t[lo]), AireSous(n, t[hi]), 0.0, 0.0};
        Largeurs(n, r.ta, r.tb, r.la, r.lb);
        return r;
    };

    // The lowest level where the area below reaches the half.
    std::size_t lo = 0, hi = t.size() - 1;
    while (hi - lo > 1)
    {
        const std::size_t mi = lo + (hi - lo) / 2;
        (AireSous(n, t[mi]) >= moitie - tolerance ? hi : lo) = mi;
    }
    const Tranche bas = tranche(lo, hi);
    // The highest level where it is still the half: the same bracket, unless the area at
    // its top is the half too (a band of zero width, or a vertex level on the axis).
    Tranche haut = bas;
    if (bas.ab <= moitie + tolerance)
    {
        for (lo = hi, hi = t.size() - 1; hi - lo > 1;)
        {
            const std::size_t mi = lo + (hi - lo) / 2;
            (AireSous(n, t[mi]) <= moitie + tolerance ? lo : hi) = mi;
        }
        haut = tranche(lo, hi);
    }

    // The quadratic solved from the bottom of the lower bracket and from the top of the
    // upper one, in the form that does not cancel.
    double h = bas.tb - bas.ta, d = std::max(moitie - bas.aa, 0.0);
    double racine = bas.la + std::sqrt(std::max(bas.la * bas.la + 2.0 * (bas.lb - bas.la) / h * d, 0.0));
    const double niveauBas = bas.ta + (racine > 0.0 ? std::min(2.0 * d / racine, h) : 0.0);
    h = haut.tb - haut.ta, d = std::max(haut.ab - moitie, 0.0);
    racine = haut.lb + std::sqrt(std::max(haut.lb * haut.lb - 2.0 * (haut.lb - haut.la) / h * d, 0.0));
    const double niveauHaut = haut.tb - (racine > 0.0 ? std::min(2.0 * d / racine, h) : 0.0);

    AxeNeutre axe;
    axe.position = niveauBas + (niveauHaut - niveauBas) / 2.0;
    axe.module = ModulePlastique(n, axe.position);
    return axe;
}

} // namespace prefa_section
