// Laws of the ITBTP and ZOLT methods: properties as three-coefficient records and the
// flame-radiation boundary model of the standard fire. Units: metres, hours, degrees
// Celsius, kilocalories.
#pragma once

#include <cmath>

// A property varying with temperature: p0 - p1 u + p2 u^2 with u = theta/100.
struct CoefficientsPropriete
{
    double p0 = 0.0;
    double p1 = 0.0;
    double p2 = 0.0;
};

inline double ValeurPropriete(const CoefficientsPropriete& p, double theta)
{
    const double u = theta / 100.0;
    return p.p0 - p.p1 * u + p.p2 * u * u;
}

// Rise of the standard fire above ambient at t hours (no ambient term).
inline double ElevationGazNormalisee(double t) { return 345.0 * std::log10(480.0 * t + 1.0); }

// Flame temperature in kelvin for a gas rise R.
inline double TemperatureFlamme(double elevation) { return 0.97 * elevation + 273.0; }

// Radiation coefficient between the flame (kelvin) and the exposed face (Celsius).
inline double CoefficientRayonnementFlamme(double tFlamme, double thetaFace)
{
    const double b = (thetaFace + 273.0) / tFlamme;
    const double f = tFlamme / 1000.0;
    return 40.0 * (f * f * f) * (1.0 + b + b * b + b * b * b);
}

// Emissivity factor of the ITBTP method: 0.97 at the first step, then falling with the
// square of the face-to-gas ratio, never below 0.
double FacteurEmissiviteITBTP(int pas, double thetaFace, double elevation);

// Emissivity factor of the ZOLT method: 0 once the face is hotter than the gas rise,
// otherwise as the ITBTP factor.
double FacteurEmissiviteZOLT(int pas, double thetaFace, double elevation);

// Coefficient of the unexposed face, shared by both methods: 0.1 up to 15 degrees, then
// 8 (theta - 15)^0.1, never below 0.1.
double CoefficientNonExposeFlamme(double thetaNonExpose);
