#include "thermal/LoisEC2.h"

#include "framework/Processeur.h"

#include "thermal/CCourbeFeu.h"
#include "thermal/LoisFlamme.h"
#include "thermal/ProprietesEC2.h"

#include <algorithm>

namespace
{
constexpr double kAmbiant = 20.0;
// Film resistance of the unexposed face, 1/hu with hu = 9 W/(m2 K). The suite's programs
// hold it as the decimal below; the quotient rounds to the very same double.
constexpr double kResistanceNonExposee = 1.0 / CoefficientNonExposeEC2();
static_assert(kResistanceNonExposee == 0.12917777777777778, "the unexposed resistance must keep its value");
constexpr int kMateriauxCodables = 9; // a units digit names at most nine materials
} // namespace

LoisEC2::LoisEC2(int nMateriaux, double rho20, double dTeneur, const CCourbeFeu& courbe, int eGranulat,
                 int bConductiviteGranulat, double pasCavite)
    : m_rho20(rho20), m_courbe(courbe), m_hc(ConvectionEC2(courbe.Convection())), m_eGranulat(eGranulat),
      m_bGranulat(bConductiviteGranulat), m_pasCavite(pasCavite)
{
    const std::size_t n = (std::size_t)std::min(std::max(nMateriaux, 0), kMateriauxCodables - 1) + 1;
    tempInitiale = kAmbiant;
    capaciteAir = CapaciteAirEC2();
    rContact = 0.0;
    rMateriauAir = 1.0 / m_hc;
    rAirAir = rMateriauAir;
    seuilEvaporation.assign(n, 3000.0);
    teneurEau.assign(1, dTeneur);
    source.assign(n, 0.0);
    facesInitiales.moyenneExposee = kAmbiant;
    facesInitiales.moyenneNonExposee = kAmbiant;
    facesInitiales.maxNonExposee = kAmbiant;
}

namespace
{
// The properties of a run of cells, apart from the class: a virtual function cannot be
// built for several processors.
PREFA_VECTORIEL_AVX2
void ProprietesEC2(int materiau, int eGranulat, int bGranulat, double rho20, const double* theta, std::size_t n,
                   double* lambda, double* rhoC)
{
    // The cases are split so that each loop is a plain vectorisable sweep.
    if (bGranulat == 0 && materiau == 0)
        for (std::size_t j = 0; j < n; ++j)
            lambda[j] = ConductiviteEC2(0, theta[j], 0, 0);
    else if (bGranulat == 0)
        for (std::size_t j = 0; j < n; ++j)
            lambda[j] = 0.0;
    else if (eGranulat > 1)
        for (std::size_t j = 0; j < n; ++j)
            lambda[j] = ConductiviteEC2(0, theta[j], 2, 1);
    else
        for (std::size_t j = 0; j < n; ++j)
            lambda[j] = ConductiviteEC2(0, theta[j], 0, 1);
    if (materiau == 0)
        for (std::size_t j = 0; j < n; ++j)
            rhoC[j] = MasseVolumiqueEC2(rho20, theta[j]) * ChaleurSpecifiqueEC2(0, theta[j]);
    else
        for (std::size_t j = 0; j < n; ++j)
            rhoC[j] = MasseVolumiqueEC2(rho20, theta[j]) * ChaleurSpecifiqueEC2(materiau, theta[j]);
}
} // namespace

void LoisEC2::Proprietes(int materiau, const double* theta, std::size_t n, double* lambda, double* rhoC) const
{
    ProprietesEC2(materiau, m_eGranulat, m_bGranulat, m_rho20, theta, n, lambda, rhoC);
}

ConditionsPas LoisEC2::PreparePas(int pas, double dt, const ResultatsFaces&) const
{
    ConditionsPas c;
    c.thetaGaz = m_courbe.Temperature((pas - 1) * dt);
    c.thetaAir = kAmbiant;
    c.rNonExpose = kResistanceNonExposee;
    c.rFeuParCellule = true;
    return c;
}

double LoisEC2::ResistanceFeu(const ConditionsPas& c, double theta) const
{
    return 1.0 / (CoefficientRayonnementEC2(c.thetaGaz, theta) + m_hc);
}

long long LoisEC2::NombrePas(double duree, double dt) const { return NombrePasEntames(duree, dt); }

double LoisEC2::LimiteStabilite(int materiau, double theta, double delta) const
{
    // Same order of operations as the kernel's check, so that the automatic step is not
    // found unstable by one rounding.
    const double capacite = MasseVolumiqueEC2(m_rho20, theta) * ChaleurSpecifiqueEC2(materiau, theta) * (delta * delta);
    return capacite / (4.0 * ConductiviteEC2(materiau, theta, m_eGranulat, m_bGranulat));
}
