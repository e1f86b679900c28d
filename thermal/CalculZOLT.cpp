// The ZOLT method: the flame-radiation boundary model of the ITBTP method with several
// materials, gas taken at the start of each step. Only concrete (material 0) has
// properties; the records of materials 1..n are zero, as they always were.
// Every started step is taken (the last one may run past the duration).
#include "thermal/CTemperatureGenerale.h"
#include "thermal/GrilleBilan.h"
#include "thermal/LoisFlamme.h"

#include <algorithm>

namespace
{
constexpr int kMateriauxCodables = 9;
}

void CTemperatureGenerale::CalculTemperatureZOLT(int nMateriaux, double dDuree, double dPasImpose)
{
    const int n = std::min(std::max(nMateriaux, 0), kMateriauxCodables - 1);
    std::vector<ProprietesMateriauFlamme> mat((std::size_t)n + 1);
    mat[0] = {{m_dTravailA[TravailA::RHO], 56.0, 0.0},
              {m_dTravailA[TravailA::C], 0.0, 0.0},
              {m_dTravailA[TravailA::LAMBDA], 0.15, 0.006}};

    const double delx = GetDELX();
    double deltaMin = 1000.0;
    if (m_Masque.GetSize() > 0 && m_Masque[0].GetSize() > 0)
        deltaMin = std::min(deltaMin, delx);
    // The air limit always counts; a material limit of 0/0 (zero records) is passed over.
    double dt = deltaMin * 0.27 / 24.0;
    for (const ProprietesMateriauFlamme& p : mat)
    {
        const double limite =
            deltaMin * deltaMin * p.masseVolumique.p0 * p.chaleurSpecifique.p0 / (4.0 * p.conductivite.p0);
        if (limite < dt)
            dt = limite;
    }
    if (dPasImpose != 0.0)
        dt = dPasImpose;

    m_dTravailA[TravailA::MOY_EXPO] = 15.0;
    const LoisFlamme lois(LoisFlamme::ZOLT, std::move(mat));
    const ResultatGrille r = CalculerSurGrille(*this, lois, delx, dDuree, dt);
    m_dTravailB[TravailB::DT] = dt;
    m_dTravailA[TravailA::MOY_EXPO] = r.faces.moyenneExposee;
}
