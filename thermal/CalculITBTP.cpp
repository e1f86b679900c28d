// The ITBTP method: concrete properties from the field's members varied by fixed
// coefficients, the flame-radiation boundary model, gas taken at the end of each step.
// The zero-filled table of the second argument has no effect on the result and is not
// built. The air step applies to any grid with air cells: cavity marks, or the air cells
// the Eurocode 2 method leaves in their place.
#include "thermal/CTemperatureGenerale.h"
#include "thermal/GrilleBilan.h"
#include "thermal/LoisFlamme.h"

#include <algorithm>

namespace
{
constexpr int kMateriauxCodables = 9;

bool ContientAir(const CTemperatureGenerale::CGrille& masque)
{
    for (INT_PTR i = 0; i < masque.GetSize(); ++i)
    {
        const CTemperatureGenerale::CLigne& ligne = masque[i];
        for (INT_PTR j = 0; j < ligne.GetSize(); ++j)
            if (ligne[j] == -3.0 || ligne[j] == 0.0)
                return true;
    }
    return false;
}
} // namespace

void CTemperatureGenerale::CalculTemperatureITBTP(int nMateriaux, int nTable, double dDuree, double dPasImpose)
{
    (void)nTable;
    const int n = std::min(std::max(nMateriaux, 0), kMateriauxCodables - 1);
    std::vector<ProprietesMateriauFlamme> mat((std::size_t)n + 1);
    mat[0] = {{m_dTravailA[TravailA::RHO], 56.0, 0.0},
              {m_dTravailA[TravailA::C], 0.0, 0.0},
              {m_dTravailA[TravailA::LAMBDA], 0.15, 0.006}};
    for (int m = 1; m <= n; ++m)
        mat[(std::size_t)m] = {{2400.0, 56.0, 0.0}, {0.22, 0.0, 0.0}, {1.4, 0.15, 0.006}};

    const double delx = GetDELX();
    double dt;
    if (dPasImpose != 0.0)
        dt = dPasImpose;
    else if (ContientAir(m_Masque))
        dt = delx * 0.27 / 24.0; // air capacity over four times the 6.0 convection
    else
        dt = delx * delx * mat[0].masseVolumique.p0 * mat[0].chaleurSpecifique.p0 / (4.0 * mat[0].conductivite.p0);

    m_dTravailA[TravailA::MOY_EXPO] = 15.0;
    const LoisFlamme lois(LoisFlamme::ITBTP, std::move(mat));
    const ResultatGrille r = CalculerSurGrille(*this, lois, delx, dDuree, dt);
    m_dTravailB[TravailB::DT] = dt;
    m_dTravailA[TravailA::MOY_EXPO] = r.faces.moyenneExposee;
}
