// Rounding, comparison, degree trigonometry, box overlap and the 3x3 solver.
#include "geometry/GeometrieInterne.h"

#include <cmath>

using namespace prefa_geometrie;

namespace
{

// The sign Round applies: anything within ZERO_ARRONDI of zero counts as zero.
double SigneArrondi(double v)
{
    if (v > ZERO_ARRONDI)
        return 1.0;
    if (v < -ZERO_ARRONDI)
        return -1.0;
    return 0.0;
}

// floor(|v| 10^n + 0.5) with Round's sign, before the division by 10^n.
double Echelonne(double v, double puissance)
{
    return std::floor(std::fabs(v) * puissance + 0.5) * SigneArrondi(v);
}

} // namespace

double Round(double v, int n)
{
    const double puissance = std::pow(10.0, n);
    return Echelonne(v, puissance) / puissance;
}

int Comparer(double a, double b, int n)
{
    if (std::fabs(a - b) < EGALITE_COMPARER)
        return 0;
    const double puissance = std::pow(10.0, n);
    const double ra = Echelonne(a, puissance);
    const double rb = Echelonne(b, puissance);
    if (ra > rb)
        return 1;
    if (ra < rb)
        return -1;
    return 0;
}

int Signe(double v, int n)
{
    const double seuil = std::pow(10.0, -n);
    if (v > seuil)
        return 1;
    if (v < -seuil)
        return -1;
    return 0;
}

double dsin(double angle) { return std::sin(angle * PI / 180.0); }

double dcos(double angle) { return std::cos(angle * PI / 180.0); }

double TransfoFloatDouble(float f)
{
    int exposant = 0;
    const double mantisse = std::frexp((double)f, &exposant);
    return std::ldexp(Round(mantisse, 7), exposant);
}

void Swap_Int(int* a, int* b)
{
    const int t = *a;
    *a = *b;
    *b = t;
}

void calcot(double* lsin, double* hsin, double* lcos, double* hcos, float largeur,
            float hauteur, double angle)
{
    const double l = TransfoFloatDouble(largeur);
    const double h = TransfoFloatDouble(hauteur);
    const double s = dsin(angle);
    const double c = dcos(angle);
    *lsin = l * s / 2.0;
    *hsin = h * s / 2.0;
    *lcos = l * c / 2.0;
    *hcos = h * c / 2.0;
}

int superposition_elements(double x1min, double y1min, double x1max, double y1max,
                           double x2min, double y2min, double x2max, double y2max,
                           double tol)
{
    if (x1min >= x2max + tol || x2min - tol >= x1max || y1min >= y2max + tol ||
        y2min - tol >= y1max)
        return 0;
    return 1;
}

int Resous_Systeme(const double a[9], const double b[3], double x[3])
{
    double m[3][3];
    double r[3];
    int inconnue[3] = {0, 1, 2};
    for (int i = 0; i < 3; ++i)
    {
        for (int j = 0; j < 3; ++j)
            m[i][j] = a[3 * i + j];
        r[i] = b[i];
    }
    for (int k = 0; k < 3; ++k)
    {
        // Every later column larger than the diagonal replaces the candidate, the
        // comparison staying against the diagonal: the last such column wins.
        int pivot = k;
        for (int j = k + 1; j < 3; ++j)
            if (std::fabs(m[k][j]) > std::fabs(m[k][k]))
                pivot = j;
        if (pivot != k)
        {
            for (int i = 0; i < 3; ++i)
            {
                const double t = m[i][k];
                m[i][k] = m[i][pivot];
                m[i][pivot] = t;
            }
            Swap_Int(&inconnue[k], &inconnue[pivot]);
        }
        const double p = m[k][k];
        if (std::fabs(p) < PIVOT_MIN)
            return -1;
        for (int j = 0; j < 3; ++j)
            m[k][j] /= p;
        r[k] /= p;
        for (int i = 0; i < 3; ++i)
        {
            if (i == k)
                continue;
            const double f = m[i][k];
            if (f == 0.0)
                continue;
            for (int j = 0; j < 3; ++j)
                m[i][j] -= f * m[k][j];
            r[i] -= f * r[k];
        }
    }
    for (int k = 0; k < 3; ++k)
        x[inconnue[k]] = r[k];
    return 0;
}
