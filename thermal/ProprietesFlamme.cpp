#include "thermal/ProprietesFlamme.h"

#include <algorithm>

double FacteurEmissiviteITBTP(int pas, double thetaFace, double elevation)
{
    if (pas <= 1)
        return 0.97;
    const double x = thetaFace / elevation;
    return std::max(0.0, 0.97 * (1.0 - x * x));
}

double FacteurEmissiviteZOLT(int pas, double thetaFace, double elevation)
{
    if (thetaFace > elevation)
        return 0.0;
    if (pas <= 1)
        return 0.97;
    const double x = thetaFace / elevation;
    return 0.97 * (1.0 - x * x);
}

double CoefficientNonExposeFlamme(double thetaNonExpose)
{
    if (thetaNonExpose <= 15.0)
        return 0.1;
    return std::max(0.1, 8.0 * std::pow(thetaNonExpose - 15.0, 0.1));
}
