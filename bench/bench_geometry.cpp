// Calls per second of the geometry routines that sit in the inner loops of the
// contour and thermal code. --quick runs a short smoke pass.
#include "geometry/CVecteur.h"
#include "geometry/Routines.h"

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <thread>

namespace
{

volatile double g_puits = 0.0; // keeps the optimiser from dropping the calls

template <class F>
void Mesure(const char* nom, long appels, F&& f)
{
    const auto debut = std::chrono::steady_clock::now();
    double somme = 0.0;
    for (long i = 0; i < appels; ++i)
        somme += f(i);
    const std::chrono::duration<double> duree = std::chrono::steady_clock::now() - debut;
    g_puits = g_puits + somme;
    std::printf("%-48s %10ld calls  %8.3f s  %14.0f calls/s\n", nom, appels, duree.count(),
                appels / duree.count());
}

} // namespace

int main(int argc, char** argv)
{
    const bool rapide = argc > 1 && std::strcmp(argv[1], "--quick") == 0;
    const long n = rapide ? 2000 : 2000000;
    std::printf("bench_geometry: %u hardware threads (single-threaded measurements)\n",
                std::thread::hardware_concurrency());

    Mesure("Donne_Intersection (crossing segments)", n, [](long i) {
        const double d = (i % 100) * 1e-3;
        double x = 0, y = 0;
        const int code = Donne_Intersection(0, d, 2, 2, 0, 2, 2 + d, 0, &x, &y, 1e-10);
        return x + code;
    });

    // A star-shaped contour of 1,000 points, probed at points spread over its box.
    CArray<ptD, ptD> contour;
    const int points = 1000;
    for (int k = 0; k < points; ++k)
    {
        const double a = 2.0 * 3.141592653589793 * k / points;
        const double r = 1.0 + 0.3 * std::sin(7.0 * a);
        contour.Add(ptD{r * std::cos(a), r * std::sin(a)});
    }
    Mesure("AppartientAContour (1,000-point contour)", rapide ? 200 : 200000, [&](long i) {
        const ptD p{-1.3 + 2.6 * ((i * 37) % 101) / 100.0, -1.3 + 2.6 * ((i * 61) % 97) / 96.0};
        return (double)AppartientAContour(contour, p);
    });

    Mesure("CVecteur::VecteurOrthogonal", n / 4, [](long i) {
        const CVecteur v(0, 0, 1.0 + (i % 50) * 0.1, 0.5 - (i % 30) * 0.07);
        return v.VecteurOrthogonal(0.05).x;
    });
    return 0;
}
