// Time of the DTU method on a 0.30 x 0.60 m section for a 2 h fire, at 10 mm and 5 mm
// cells, and the cell updates per second of its time loop.
#include "thermal/CTemperatureGenerale.h"

#include <chrono>
#include <cstdio>
#include <cstring>
#include <thread>

namespace
{
void Mesure(double pas, double duree, int repetitions)
{
    CPolygone s;
    s.AddTail(0, 0);
    s.AddTail(0.30, 0);
    s.AddTail(0.30, 0.60);
    s.AddTail(0, 0.60);
    CArray<CPolygone, CPolygone> vide;
    CTemperatureGenerale modele;
    modele.InitTableDonnees(s, duree, CTemperatureGenerale::DTU, CListePolygone(), 0, vide, 0, vide, pas, 0, 0.0,
                            0.0, 0.0, 0.0, 0.0);
    double meilleur = 1e300;
    int etapes = 0;
    for (int k = 0; k < repetitions; ++k)
    {
        CTemperatureGenerale t(modele);
        etapes = 0;
        t.m_Progression = [&](double) { ++etapes; return true; };
        const auto debut = std::chrono::steady_clock::now();
        t.CalculTemperatureDTU();
        const double s = std::chrono::duration<double>(std::chrono::steady_clock::now() - debut).count();
        meilleur = std::min(meilleur, s);
        ++etapes; // the last step reports nothing after it
    }
    const double cellules = (double)modele.GetNbLignes() * modele.GetNbColonnes();
    std::printf("DTU %.0f mm, %g h: grid %d x %d, %d steps, %.3f ms, %.1f M cell updates/s\n", pas * 1000, duree,
                modele.GetNbLignes(), modele.GetNbColonnes(), etapes, meilleur * 1e3,
                cellules * etapes / meilleur / 1e6);
}
} // namespace

int main(int argc, char** argv)
{
    const bool rapide = argc > 1 && std::strcmp(argv[1], "--quick") == 0;
    std::printf("cores: %u\n", std::thread::hardware_concurrency());
    if (rapide)
    {
        Mesure(0.01, 0.25, 1);
        return 0;
    }
    Mesure(0.01, 2.0, 5);
    Mesure(0.005, 2.0, 3);
    return 0;
}
