// The longest run an engineer asks of the command: the reference beam (0.30 x 0.60 m,
// heated on every face, standard fire, Eurocode 2) at 1 mm cells for 4 hours on one
// core, with the field handed over every minute for a time history (240 fields, each
// copied as the command copies it), and the same run without the history.
// --quick runs it at 5 mm for half an hour (CI smoke run).
#include "thermal/BilanThermique.h"
#include "thermal/CTemperatureGenerale.h"
#include "thermal/GrilleBilan.h"

#include "PoutreReference.h"

#include <chrono>
#include <cstdio>
#include <ctime>
#include <cstring>
#include <thread>
#include <vector>

namespace
{
// Wall seconds of one run; cpu: its processor seconds (on a loaded machine the wall
// time counts the waits); fields: how many were handed over.
double Run(double pas, double heures, bool historique, int& champs, double& cpu)
{
    CTemperatureGenerale t;
    PoutreReference(t, pas);
    const std::size_t n = t.m_Masque.GetSize() * t.m_Masque[0].GetSize();
    std::vector<double> copie(n);
    champs = 0;
    if (historique)
    {
        for (int m = 1; m <= (int)(heures * 60 + 0.5); ++m)
            t.m_DureesReleves.push_back(m / 60.0);
        t.m_Releve = [&](std::size_t, const double* T) {
            std::copy(T, T + n, copie.begin());
            ++champs;
        };
    }
    const auto debut = std::chrono::steady_clock::now();
    const std::clock_t c0 = std::clock();
    t.CalculTemperatureEC2(0, heures, 0.015, 0.0, CTemperatureGenerale::MONTEE_NORMALE, GRANULAT_SILICEUX, 0);
    cpu = (double)(std::clock() - c0) / CLOCKS_PER_SEC;
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - debut).count();
}
} // namespace

int main(int argc, char** argv)
{
    const bool rapide = argc > 1 && std::strcmp(argv[1], "--quick") == 0;
    const double pas = rapide ? 0.005 : 0.001, heures = rapide ? 0.5 : 4.0;
    DefinirNombreThreadsThermique(1);
    std::printf("longest run: reference beam, %.0f mm cells, %.1f h, Eurocode 2, 1 thread (%u cores on the machine)\n",
                pas * 1000, heures, std::max(1u, std::thread::hardware_concurrency()));
    for (bool historique : {true, false})
    {
        int champs = 0;
        double cpu = 0;
        const double s = Run(pas, heures, historique, champs, cpu);
        const StatistiquesBilan st = DernieresStatistiquesBilan();
        const double cellules = (0.30 / pas) * (0.60 / pas);
        std::printf("%-22s %7lld steps %8.2f s wall %8.2f s cpu %10.3e updates/s (cpu) %4d fields\n",
                    historique ? "history every minute" : "no history", st.pasTotal, s, cpu,
                    cellules * st.pasTotal / cpu, champs);
    }
    return 0;
}
