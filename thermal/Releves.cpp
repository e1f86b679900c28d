#include "thermal/Releves.h"

#include <algorithm>
#include <cmath>

std::vector<std::size_t> OrdreReleves(const std::vector<double>& durees)
{
    std::vector<std::size_t> ordre;
    for (std::size_t k = 0; k < durees.size(); ++k)
        if (durees[k] >= 0.0)
            ordre.push_back(k);
    std::stable_sort(ordre.begin(), ordre.end(), [&](std::size_t a, std::size_t b) { return durees[a] < durees[b]; });
    return ordre;
}

std::function<void(long long, double, const double*)> ObservateurReleves(const CTemperatureGenerale& t,
                                                                         const LoisThermiques& lois)
{
    if (!t.m_Releve)
        return {};
    const std::vector<double>& durees = t.m_DureesReleves;
    std::size_t suivant = 0;
    return [&t, &lois, &durees, ordre = OrdreReleves(durees), suivant](long long pas, double dt,
                                                                       const double* T) mutable {
        if (pas == 0)
            suivant = 0;
        // The step counts grow with the duration, so the next one due is always first.
        while (suivant < ordre.size() && lois.NombrePas(durees[ordre[suivant]], dt) <= pas)
            t.m_Releve(ordre[suivant++], T);
    };
}
