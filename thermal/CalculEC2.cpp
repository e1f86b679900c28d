// The Eurocode 2 method: the laws of LoisEC2 on the shared cell-balance kernel, with the
// automatic step of the explicit limit and a restart from t = 0 whenever a cell's limit
// falls below the step. The curve number selects one of the method's own curves; any
// other curve comes through the second form.
#include "thermal/CCourbeFeu.h"
#include "thermal/CTemperatureGenerale.h"
#include "thermal/GrilleBilan.h"
#include "thermal/LoisEC2.h"
#include "thermal/ProprietesEC2.h"

#include <algorithm>
#include <limits>

int CTemperatureGenerale::CalculTemperatureEC2(int nMateriaux, double dDuree, double dTeneurEau, double dPasImpose,
                                               MONTEE_TEMPERATURE eMontee, TYPE_GRANULAT eGranulat,
                                               int bConductiviteGranulat)
{
    return CalculTemperatureEC2(nMateriaux, dDuree, dTeneurEau, dPasImpose, CCourbeFeuMontee(eMontee), eGranulat,
                                bConductiviteGranulat);
}

int CTemperatureGenerale::CalculTemperatureEC2(int nMateriaux, double dDuree, double dTeneurEau, double dPasImpose,
                                               const CCourbeFeu& courbe, TYPE_GRANULAT eGranulat,
                                               int bConductiviteGranulat)
{
    if (m_Masque.GetSize() == 0)
        return -1;
    // Widths are kept as floats, as the suite's programs have always done.
    const double delta = LargeurMaille(GetDELX());

    // The cavity mark becomes an air cell and brings the air's own step limit.
    bool cavite = false;
    double deltaMin = 1000.0;
    for (INT_PTR i = 0; i < m_Masque.GetSize(); ++i)
    {
        CLigne& ligne = m_Masque[i];
        for (INT_PTR j = 0; j < ligne.GetSize(); ++j)
        {
            if (ligne[j] == -3.0)
            {
                cavite = true;
                ligne[j] = 0.0;
            }
            deltaMin = std::min(deltaMin, delta);
        }
    }

    const double hc = ConvectionEC2(courbe.Convection());
    const double pasCavite =
        cavite ? deltaMin * CapaciteAirEC2() / (4.0 * hc) : std::numeric_limits<double>::infinity();
    LoisEC2 lois(nMateriaux, m_dTravailA[TravailA::RHO], dTeneurEau, courbe, eGranulat, bConductiviteGranulat,
                 pasCavite);

    double dt = lois.LimiteStabilite(0, 20.0, deltaMin);
    // Extra materials have no capacity: their limit (0, or 0/0) takes over, as it always did.
    for (int m = 1; m <= nMateriaux && m <= 1; ++m)
    {
        const double limite = lois.LimiteStabilite(m, 20.0, deltaMin);
        if (!(limite >= dt))
            dt = limite;
    }
    if (cavite)
        dt = std::min(dt, pasCavite);
    if (dPasImpose != 0.0)
        dt = dPasImpose;

    m_dTravailA[TravailA::MOY_EXPO] = 20.0;
    m_dTravailB[TravailB::MOY_NONEXPO] = 20.0;
    m_dTravailB[TravailB::MAX_SURFACE] = 20.0;
    const ResultatGrille r = CalculerSurGrille(*this, lois, delta, dDuree, dt);
    m_dTravailB[TravailB::DT] = r.stats.dt;
    m_dTravailA[TravailA::MOY_EXPO] = r.faces.moyenneExposee;
    m_dTravailB[TravailB::MOY_NONEXPO] = r.faces.moyenneNonExposee;
    m_dTravailB[TravailB::LAMBDA] = ConductiviteEC2(0, r.faces.moyenneExposee, eGranulat, bConductiviteGranulat);
    m_dTravailB[TravailB::MAX_SURFACE] = r.faces.maxNonExposee;
    return r.stats.horsBornes ? -2 : 0;
}
