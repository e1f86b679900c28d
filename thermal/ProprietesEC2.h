// Material laws, fire curves and surface coefficients of the Eurocode 2 method.
// Everything is in the technical unit system of the thermal methods (metres, hours,
// degrees Celsius, kilocalories): the SI values of the standards are converted with the
// fixed divisors 1.1626 (W to kcal/h) and 4185.5 (J to kcal), kept at exactly these values
// so that results agree with the suite's earlier programs.
// The functions are inline because the cell-balance kernel evaluates them once per cell
// per time step; they are written without branches that would stop vectorisation.
#pragma once

#include <algorithm>
#include <cmath>

namespace prefa_ec2
{
constexpr double kDiviseurWatt = 1.1626;  // W/(m K) -> kcal/(h m C)
constexpr double kDiviseurJoule = 4185.5; // J/(kg K) -> kcal/(kg C)
} // namespace prefa_ec2

// Density (kg/m3) at theta from the density at 20 degrees: 1 up to 115 degrees, then
// falling by 2 % to 200, 3 % more to 400 and 7 % more over the next 800 degrees. Written
// as a sum of clamped ramps (no branches) because the kernel evaluates it for every cell
// at every step.
inline double MasseVolumiqueEC2(double rho20, double theta)
{
    const double f = 1.0 - (0.02 / 85.0) * std::min(std::max(theta - 115.0, 0.0), 85.0) -
                     (0.03 / 200.0) * std::min(std::max(theta - 200.0, 0.0), 200.0) -
                     (0.07 / 800.0) * std::max(theta - 400.0, 0.0);
    return rho20 * f;
}

// Upper and lower conductivity limits of concrete, W/(m K), u = theta/100.
inline double ConductiviteSuperieureEC2W(double u) { return 2.0 - 0.2451 * u + 0.0107 * u * u; }
inline double ConductiviteInferieureEC2W(double u) { return 1.36 - 0.136 * u + 0.0057 * u * u; }

// Conductivity in kcal/(h m C). Flag 0: mean of the two limits for concrete (material 0)
// and 0 for every other material. Flag non-zero: the aggregate law (eGranulat above 1)
// or the lower limit, whatever the material.
inline double ConductiviteEC2(int materiau, double theta, int eGranulat, int bConductiviteGranulat)
{
    const double u = theta / 100.0;
    double w;
    if (bConductiviteGranulat == 0)
        w = materiau == 0 ? (ConductiviteSuperieureEC2W(u) + ConductiviteInferieureEC2W(u)) / 2.0 : 0.0;
    else if (eGranulat > 1)
        w = 1.68 - 0.1905 * u + 0.0082 * u * u;
    else
        w = ConductiviteInferieureEC2W(u);
    return w * (1.0 / prefa_ec2::kDiviseurWatt);
}

// Specific heat in kcal/(kg C); only concrete (material 0) has one: 900 J/(kg K) up to
// 100 degrees, +1 per degree to 200, +0.5 per degree to 400, then 1100.
inline double ChaleurSpecifiqueEC2(int materiau, double theta)
{
    if (materiau != 0)
        return 0.0;
    const double c = 900.0 + std::min(std::max(theta - 100.0, 0.0), 100.0) +
                     0.5 * std::min(std::max(theta - 200.0, 0.0), 200.0);
    return c * (1.0 / prefa_ec2::kDiviseurJoule);
}

// Heat capacity of the air of a cavity cell, kcal/(m3 C).
inline double CapaciteAirEC2() { return 1130.0 / prefa_ec2::kDiviseurJoule; }

// Coefficient of the unexposed face towards the air, kcal/(h m2 C).
constexpr double CoefficientNonExposeEC2() { return 9.0 / prefa_ec2::kDiviseurWatt; }

// A convection coefficient in W/(m2 K) in kcal/(h m2 C).
inline double ConvectionEC2(double wattsParM2K) { return wattsParM2K / prefa_ec2::kDiviseurWatt; }

// Convection coefficient on the fire side: 25 W/(m2 K), 50 for the hydrocarbon curve.
inline double CoefficientConvectionEC2(int eMontee) { return ConvectionEC2(eMontee == 2 ? 50.0 : 25.0); }

// Linearised radiation between two temperatures, resulting emissivity 0.8.
inline double CoefficientRayonnementEC2(double theta1, double theta2)
{
    const double t1 = theta1 + 273.0;
    const double t2 = theta2 + 273.0;
    return (t1 * t1 + t2 * t2) * (t1 + t2) * 4.536e-8 / prefa_ec2::kDiviseurWatt;
}

// Radiation plus convection of the exposed face.
inline double CoefficientSurfaceEC2(double theta1, double theta2, int eMontee)
{
    return CoefficientRayonnementEC2(theta1, theta2) + CoefficientConvectionEC2(eMontee);
}

// Gas temperature of the fire curves at t hours: 0 standard, 1 external, 2 hydrocarbon.
// The external curve's 0.684 and the exponents taken in hours are kept on purpose; an
// unknown curve gives 0.0.
inline double TemperatureGazEC2(int eMontee, double t, double theta0)
{
    switch (eMontee)
    {
    case 0:
        return 345.0 * std::log10(480.0 * t + 1.0) + theta0;
    case 1:
        return 660.0 * (1.0 - 0.684 * std::exp(-0.32 * t) - 0.313 * std::exp(-3.8 * t)) + theta0;
    case 2:
        return 1080.0 * (1.0 - 0.325 * std::exp(-0.167 * t) - 0.675 * std::exp(-2.5 * t)) + theta0;
    default:
        return 0.0;
    }
}
