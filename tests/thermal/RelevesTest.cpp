// Fields at several durations of one run: each one is the field that a run of that
// duration alone leaves, for every method, and a restart delivers them again.
#include "thermal/CTemperatureGenerale.h"
#include "thermal/GrilleBilan.h"
#include "MembreTestUtil.h"

#include <gtest/gtest.h>

#include <vector>

using namespace prefa_test;

namespace
{
typedef CTemperatureGenerale::TYPE_CALCUL_TEMPERATURE Type;

void Calculer(CTemperatureGenerale& t, Type type, double duree, double pas = 0.0,
              CTemperatureGenerale::MONTEE_TEMPERATURE montee = CTemperatureGenerale::MONTEE_NORMALE)
{
    switch (type)
    {
    case CTemperatureGenerale::DTU: t.CalculTemperatureDTU(); break;
    case CTemperatureGenerale::ITBTP: t.CalculTemperatureITBTP(0, 0, duree, pas); break;
    case CTemperatureGenerale::ZOLT: t.CalculTemperatureZOLT(0, duree, pas); break;
    default: t.CalculTemperatureEC2(0, duree, 0.015, pas, montee, GRANULAT_SILICEUX, 0);
    }
}

// The field that one run of each duration leaves in m_T1, row-major.
std::vector<double> Seul(Type type, double duree, double pas = 0.0,
                         CTemperatureGenerale::MONTEE_TEMPERATURE montee = CTemperatureGenerale::MONTEE_NORMALE)
{
    CTemperatureGenerale t;
    Membre(t, 0.12, 0.16, 0.02, type);
    t.m_TabTemps.RemoveAll();
    t.m_TabTemps.Add(duree); // the DTU method's target
    Calculer(t, type, duree, pas, montee);
    std::vector<double> v;
    for (int i = 0; i < (int)t.m_T1.GetSize(); ++i)
        for (int j = 0; j < (int)t.m_T1[i].GetSize(); ++j)
            v.push_back(t.m_T1[i][j]);
    return v;
}

TEST(Releves, EachDurationOfOneRunIsThatDurationsOwnRun)
{
    DefinirNombreThreadsThermique(2); // the kernel's bands must hand over whole fields
    for (Type type : {CTemperatureGenerale::EC2, CTemperatureGenerale::ITBTP, CTemperatureGenerale::ZOLT,
                      CTemperatureGenerale::DTU})
    {
        SCOPED_TRACE(type);
        CTemperatureGenerale t;
        Membre(t, 0.12, 0.16, 0.02, type);
        // In any order; 3 hours lies beyond the run and -1 before it: never delivered.
        t.m_DureesReleves = {1.0, 0.25, 3.0, 0.4, -1.0, 0.25};
        std::vector<std::vector<double>> champs(6);
        std::vector<int> appels(6, 0);
        const std::size_t n = (std::size_t)t.GetNbLignes() * t.GetNbColonnes();
        t.m_Releve = [&](std::size_t k, const double* T) {
            champs.at(k).assign(T, T + n);
            ++appels[k];
        };
        Calculer(t, type, 1.0);
        EXPECT_EQ(appels, (std::vector<int>{1, 1, 0, 1, 0, 1}));
        EXPECT_EQ(champs[0], Seul(type, 1.0));
        EXPECT_EQ(champs[1], Seul(type, 0.25));
        EXPECT_EQ(champs[3], Seul(type, 0.4));
        EXPECT_EQ(champs[5], champs[1]);
        EXPECT_NE(champs[1], champs[3]);
    }
    DefinirNombreThreadsThermique(0);
}

TEST(Releves, ARestartDeliversTheFieldsAgainFromTheSmallerStep)
{
    // Gas at 0 degrees (an unknown curve number): the member cools below 20 degrees,
    // where concrete conducts better, and the Eurocode 2 method restarts with a smaller
    // step part way through.
    const auto froid = (CTemperatureGenerale::MONTEE_TEMPERATURE)7;
    CTemperatureGenerale t;
    Membre(t, 0.12, 0.16, 0.02, CTemperatureGenerale::EC2);
    t.m_DureesReleves = {0.25, 2.0};
    std::vector<std::vector<double>> champs(2);
    int appels = 0;
    const std::size_t n = (std::size_t)t.GetNbLignes() * t.GetNbColonnes();
    t.m_Releve = [&](std::size_t k, const double* T) {
        champs[k].assign(T, T + n);
        ++appels;
    };
    Calculer(t, CTemperatureGenerale::EC2, 2.0, 0.0, froid);
    const StatistiquesBilan s = DernieresStatistiquesBilan();
    ASSERT_GE(s.redemarrages, 1);
    EXPECT_GT(appels, 2); // the quarter-hour field came before a restart
    // The run's final step, imposed on single runs, gives the same fields.
    EXPECT_EQ(champs[0], Seul(CTemperatureGenerale::EC2, 0.25, s.dt, froid));
    EXPECT_EQ(champs[1], Seul(CTemperatureGenerale::EC2, 2.0, s.dt, froid));
}
} // namespace
