#include "thermal/CCourbeFeuParametrique.h"

#include <algorithm>
#include <cmath>

namespace
{
// (0.04 / 1160)^2: the reference compartment, whose Gamma is 1.
constexpr double kReference = (0.04 / 1160.0) * (0.04 / 1160.0);

bool Dans(double v, double bas, double haut) { return v >= bas && v <= haut; }
} // namespace

int CCourbeFeuParametrique::HorsDomaine(double O, double q, double b)
{
    if (!Dans(O, kOMin, kOMax))
        return 1;
    if (!Dans(q, kQMin, kQMax))
        return 2;
    if (!Dans(b, kBMin, kBMax))
        return 3;
    return 0;
}

double CCourbeFeuParametrique::Chauffe(double tEtoile)
{
    return 20.0 + 1325.0 * (1.0 - 0.324 * std::exp(-0.2 * tEtoile) - 0.204 * std::exp(-1.7 * tEtoile) -
                            0.472 * std::exp(-19.0 * tEtoile));
}

CCourbeFeuParametrique::CCourbeFeuParametrique(double O, double q, double b, CROISSANCE croissance)
{
    const double tlim = (croissance == LENTE ? 25.0 : croissance == RAPIDE ? 15.0 : 20.0) / 60.0;
    m_gamma = (O / b) * (O / b) / kReference;
    const double tVentilation = 0.2e-3 * q / O;
    m_combustible = !(tVentilation > tlim);
    m_tmax = m_combustible ? tlim : tVentilation;
    m_gammaChauffe = m_gamma;
    if (m_combustible)
    {
        const double oLim = 0.1e-3 * q / tlim;
        m_gammaChauffe = (oLim / b) * (oLim / b) / kReference;
        if (O > 0.04 && q < 75.0 && b < 1160.0)
            m_gammaChauffe *= 1.0 + ((O - 0.04) / 0.04) * ((q - 75.0) / 75.0) * ((1160.0 - b) / 1160.0);
    }
    m_tetaMax = Chauffe(m_tmax * m_gammaChauffe);
    m_tEtoileMax = tVentilation * m_gamma;
    m_origine = m_combustible ? tlim * m_gamma : m_tEtoileMax;
    if (m_tEtoileMax <= 0.5)
        m_pente = 625.0;
    else if (m_tEtoileMax < 2.0)
        m_pente = 250.0 * (3.0 - m_tEtoileMax);
    else
        m_pente = 250.0;
}

double CCourbeFeuParametrique::Temperature(double heures) const
{
    const double t = std::max(heures, 0.0);
    if (t <= m_tmax)
        return Chauffe(t * m_gammaChauffe);
    return std::max(20.0, m_tetaMax - m_pente * (t * m_gamma - m_origine));
}

double CCourbeFeuParametrique::FinRefroidissement() const
{
    return (m_origine + (m_tetaMax - 20.0) / m_pente) / m_gamma;
}
