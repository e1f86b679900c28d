// The cell side of a mesh whose caller gives none: the largest usual side that divides
// the section's two longest sides and still leaves ten cells across its smaller extent.
#include "thermal/MaillageInterne.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <vector>

namespace prefa_maillage
{
double PasDesCotes(CPolygone& section)
{
    std::vector<double> longueurs;
    const INT_PTR n = section.GetCount();
    for (INT_PTR k = 0; k < n; ++k)
    {
        const CPointD a = section.GetPointAt((int)k);
        const CPointD b = section.GetPointAt((int)((k + 1) % n));
        const double l = a.distance_p(b);
        if (std::none_of(longueurs.begin(), longueurs.end(),
                         [l](double m) { return std::fabs(m - l) <= 1e-10; }))
            longueurs.push_back(l);
    }
    std::sort(longueurs.begin(), longueurs.end(), std::greater<double>());
    const double etendue = std::min(section.g_Xmax() - section.g_Xmin(), section.g_Ymax() - section.g_Ymin());
    static const double candidats[] = {0.05, 0.04, 0.025, 0.02, 0.01, 0.005, 0.0025, 0.002, 0.001};
    auto divise = [](double l, double s) { return std::fabs(l / s - std::round(l / s)) < 1e-6; };
    for (double s : candidats)
    {
        if (s * 10 > etendue + 1e-12)
            continue;
        bool ok = true;
        for (std::size_t k = 0; k < longueurs.size() && k < 2; ++k)
            ok = ok && divise(longueurs[k], s);
        if (ok)
            return s;
    }
    return std::min(0.01, etendue / 10);
}
} // namespace prefa_maillage
