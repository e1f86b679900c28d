#include "thermal/CCourbeFeu.h"

#include "thermal/ProprietesEC2.h"

#include <cmath>

double CCourbeFeuMontee::Temperature(double heures) const { return TemperatureGazEC2(m_eMontee, heures, 20.0); }

double CCourbeFeuMontee::Convection() const
{
    return m_eMontee == (int)CTemperatureGenerale::MONTEE_HYDROCARBURE ? 50.0 : 25.0;
}

double CCourbeFeuNormalisee::Temperature(double heures) const
{
    const double t = heures * 60.0;
    switch (m_type)
    {
    case EXTERIEURE:
        return 660.0 * (1.0 - 0.687 * std::exp(-0.32 * t) - 0.313 * std::exp(-3.8 * t)) + 20.0;
    case HYDROCARBURE:
        return 1080.0 * (1.0 - 0.325 * std::exp(-0.167 * t) - 0.675 * std::exp(-2.5 * t)) + 20.0;
    default:
        return TemperatureGazEC2(CTemperatureGenerale::MONTEE_NORMALE, heures, 20.0);
    }
}

double CCourbeFeuNormalisee::Convection() const { return m_type == HYDROCARBURE ? 50.0 : 25.0; }
