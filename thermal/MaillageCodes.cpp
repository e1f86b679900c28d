// The codes of the mesh's cells: what lies at each cell's centre (concrete, cavity,
// material, moist zone, outside), which outside cells face away from the fire, and the
// codes the grids finally hold.
#include "thermal/MaillageInterne.h"

namespace prefa_maillage
{
double CodeCellule(const CPointD& p, const Zones& zones)
{
    const std::vector<CPolygone*>& materiaux = zones.materiaux;
    const std::vector<CPolygone*>& zonesHumides = zones.zonesHumides;
    double code = -1.0;
    if (zones.section->AppartientAPolygone(p) != -1)
        code = CODE_BETON;
    for (CPolygone* c : zones.cavites)
        if (c->AppartientAPolygone(p) == 0)
            code = CODE_CAVITE;
    for (std::size_t k = 0; k < materiaux.size(); ++k)
        if (materiaux[k]->AppartientAPolygone(p) == 0)
            code = 12.0 + (double)k;
    for (std::size_t k = 0; k < zonesHumides.size(); ++k)
        if (zonesHumides[k]->AppartientAPolygone(p) == 0)
            code += 10.0 * (double)(k + 1);
    if (code == -1.0)
        code = CODE_DEHORS;
    return code;
}

void MarqueNonExpose(std::vector<std::vector<double>>& codes)
{
    if (codes.empty())
        return;
    for (std::size_t j = 0; j < codes[0].size(); ++j)
    {
        std::size_t haut = 0;
        while (haut < codes.size() && codes[haut][j] == CODE_DEHORS)
            ++haut;
        if (haut == codes.size())
            continue; // nothing of the section in this column
        for (std::size_t i = 0; i < haut; ++i)
            codes[i][j] = CODE_NON_EXPOSE;
    }
}

double Convertit(double code, double codeNonExpose)
{
    if (code == CODE_DEHORS)
        return -1.0;
    if (code == CODE_NON_EXPOSE)
        return codeNonExpose;
    if (code == CODE_CAVITE)
        return -3.0;
    return code;
}
} // namespace prefa_maillage
