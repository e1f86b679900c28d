// Times the offset and clean-up of a 10,000-point contour, the containment test on
// it, and the properties of a 10,000-point section: the suite's and the exact ones
// (with the plastic axes).
//   bench_section [--quick]
#include "section/CProprietesSection.h"
#include "section/CSectionGenerale.h"

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <thread>

namespace
{
// A wavy closed outline (metres): radius 1 + 0.1 sin(12 t), n points, counter-clockwise.
CPolygone Ondule(int n)
{
    CPolygone p;
    for (int i = 0; i < n; ++i)
    {
        const double t = 2.0 * 3.141592653589793 * i / n;
        const double r = 1.0 + 0.1 * std::sin(12.0 * t);
        p.AddTail(r * std::cos(t), r * std::sin(t));
    }
    return p;
}

template <typename F>
double Chrono(int repetitions, F&& f)
{
    const auto t0 = std::chrono::steady_clock::now();
    for (int i = 0; i < repetitions; ++i)
        f();
    const auto t1 = std::chrono::steady_clock::now();
    return std::chrono::duration<double>(t1 - t0).count() / repetitions;
}
} // namespace

int main(int argc, char** argv)
{
    const bool rapide = argc > 1 && std::strcmp(argv[1], "--quick") == 0;
    const int n = rapide ? 500 : 10000;
    const int rep = rapide ? 1 : 5;
    std::printf("bench_section: %u cores, contour of %d points%s\n",
                std::thread::hardware_concurrency(), n, rapide ? " (quick)" : "");

    const CPolygone base = Ondule(n);
    std::size_t restants = 0;
    double aire = 0.0;
    const double tDecale = Chrono(rep, [&] {
        CPolygone p(base);
        p.Decale(0.02, 0);
        p.PointsIdentiques(1, 0.0);
        p.EliminePointAligne(0.0);
        restants = (std::size_t)p.GetCount();
        aire = p.Surface();
    });
    std::printf("  offset inwards by 0.02 and clean: %.2f ms (%zu points left, area %.6f)\n",
                tDecale * 1e3, restants, aire);

    const double tDehors = Chrono(rep, [&] {
        CPolygone p(base);
        p.Decale(-0.02, 0);
        restants = (std::size_t)p.GetCount();
    });
    std::printf("  offset outwards by 0.02:          %.2f ms (%zu points)\n", tDehors * 1e3, restants);

    CPolygone q(base);
    const int tests = rapide ? 100 : 2000;
    int dedans = 0;
    const double tApp = Chrono(1, [&] {
        for (int i = 0; i < tests; ++i)
            dedans += q.AppartientAPolygone(CPointD(-1.2 + 2.4 * i / tests, 0.05)) == 0;
    });
    std::printf("  containment: %.0f calls/s (%d of %d inside)\n", tests / tApp, dedans, tests);

    CListePolygone l1, l2;
    l1.AddTail(new CPolygone(base));
    CSectionGenerale s;
    const double tSection = Chrono(rapide ? 1 : 20, [&] { s.CaracteristiquesSectionsPolygone(l1, l2); });
    std::printf("  section properties: %.3f ms (area %.6f, IxG %.6f, IyG %.6f)\n", tSection * 1e3,
                std::fabs(s.Aire), s.IxG, s.IyG);

    CProprietesSection exactes;
    const double tExactes = Chrono(rapide ? 1 : 20, [&] { exactes.Calcule(l1, l2); });
    std::printf("  exact properties with plastic axes: %.3f ms, %.2f M vertices/s (area %.6f, Ix %.6f, "
                "Wpl,x %.6f)\n",
                tExactes * 1e3, n / tExactes * 1e-6, exactes.m_Aire, exactes.m_AxeX.I, exactes.m_PlastiqueX.W);
    return 0;
}
