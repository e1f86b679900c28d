#include "thermal/ExpositionFaces.h"

#include <algorithm>
#include <cmath>

namespace
{
// Squared distance from p to the segment ab.
double Distance2(double px, double py, double ax, double ay, double bx, double by)
{
    const double ux = bx - ax, uy = by - ay;
    const double l2 = ux * ux + uy * uy;
    const double s = l2 > 0.0 ? std::min(1.0, std::max(0.0, ((px - ax) * ux + (py - ay) * uy) / l2)) : 0.0;
    const double dx = px - (ax + s * ux), dy = py - (ay + s * uy);
    return dx * dx + dy * dy;
}
} // namespace

int ExposerFaces(CTemperatureGenerale& t, CPolygone& section, const std::vector<bool>& exposee)
{
    const int n = (int)section.GetCount();
    const int nl = (int)t.m_Masque.GetSize();
    if (t.GetTypeCalcul() == CTemperatureGenerale::DTU || nl == 0 || n < 2 || (int)exposee.size() != n ||
        t.m_T1.GetSize() != nl)
        return 0;
    const int nc = (int)t.m_Masque[0].GetSize();
    for (int i = 0; i < nl; ++i)
        if (t.m_Masque[i].GetSize() != nc || t.m_T1[i].GetSize() != nc)
            return 0;
    std::vector<CPointD> points;
    for (int k = 0; k < n; ++k)
        points.push_back(section.GetPointAt(k));

    // Cell centres as the mesh probed them: rows up from the bottom border, columns
    // centred on the section's width.
    const double D = t.GetDELX();
    const double xmin = section.g_Xmin(), largeur = section.g_Xmax() - xmin;
    const double ymin = section.g_Ymin();
    const double egal = 1e-9 * D * D; // squared distances this close are equal
    for (int i = 0; i < nl; ++i)
    {
        const double y = ymin + (nl - i - 2) * D + D / 2;
        for (int j = 0; j < nc; ++j)
        {
            double& code = t.m_Masque[i][j];
            if (code != -1.0 && code != -2.0)
                continue;
            const double x = xmin + largeur / 2 + nc * D / 2 - (j + 0.5) * D;
            double proche = INFINITY, procheExpose = INFINITY;
            for (int k = 0; k < n; ++k)
            {
                const CPointD& a = points[k];
                const CPointD& b = points[(k + 1) % n];
                const double d = Distance2(x, y, a.x, a.y, b.x, b.y);
                proche = std::min(proche, d);
                if (exposee[k])
                    procheExpose = std::min(procheExpose, d);
            }
            code = procheExpose <= proche + egal ? -1.0 : -2.0;
            t.m_T1[i][j] = code;
        }
    }
    return 1;
}
