#include "thermal/LoisFlamme.h"

#include "framework/Processeur.h"

#include <cmath>
#include <utility>

namespace
{
constexpr double kAmbiant = 15.0;
constexpr double kConvection = 6.0;
constexpr double kMaxPas = 1e15; // beyond this a step count is not a calculation
} // namespace

long long NombrePasEntames(double duree, double dt)
{
    const double m = duree / dt + 1.0;
    if (!(m > 1.0) || !(m < kMaxPas))
        return 0;
    return (long long)std::ceil(m) - 1;
}

LoisFlamme::LoisFlamme(Methode methode, std::vector<ProprietesMateriauFlamme> materiaux)
    : m_methode(methode), m_materiaux(std::move(materiaux))
{
    tempInitiale = kAmbiant;
    capaciteAir = 0.27;
    rContact = 1.6666666666666667e-05;                                   // 1/60000
    rAirAir = 0.16666666666666666;                                       // 1/6
    rMateriauAir = methode == ZOLT ? 0.16668333333333332 : rAirAir;      // ZOLT adds the contact
    seuilEvaporation.assign(m_materiaux.size(), 3000.0);
    teneurEau.assign(m_materiaux.size(), 0.0);
    facesInitiales.moyenneExposee = kAmbiant;
    facesInitiales.moyenneNonExposee = kAmbiant;
    facesInitiales.maxNonExposee = kAmbiant;
}

namespace
{
// Apart from the class: a virtual function cannot be built for several processors.
PREFA_VECTORIEL_AVX2
void ProprietesFlamme(const ProprietesMateriauFlamme& p, const double* theta, std::size_t n, double* lambda,
                      double* rhoC)
{
    const CoefficientsPropriete rho = p.masseVolumique, c = p.chaleurSpecifique, la = p.conductivite;
    for (std::size_t j = 0; j < n; ++j)
    {
        lambda[j] = ValeurPropriete(la, theta[j]);
        rhoC[j] = ValeurPropriete(rho, theta[j]) * ValeurPropriete(c, theta[j]);
    }
}
} // namespace

void LoisFlamme::Proprietes(int materiau, const double* theta, std::size_t n, double* lambda, double* rhoC) const
{
    ProprietesFlamme(m_materiaux[(std::size_t)materiau], theta, n, lambda, rhoC);
}

ConditionsPas LoisFlamme::PreparePas(int pas, double dt, const ResultatsFaces& faces) const
{
    const double thetaS = faces.moyenneExposee;
    const double t = m_methode == ITBTP ? pas * dt : (pas - 1) * dt;
    const double R = ElevationGazNormalisee(t);
    const double tf = TemperatureFlamme(R);
    const double hr = CoefficientRayonnementFlamme(tf, thetaS);
    const double e = m_methode == ITBTP ? FacteurEmissiviteITBTP(pas, thetaS, R) : FacteurEmissiviteZOLT(pas, thetaS, R);
    ConditionsPas c;
    c.thetaGaz = kAmbiant + R;
    c.thetaAir = kAmbiant;
    c.rFeu = 1.0 / (e * hr + kConvection);
    c.rNonExpose = 1.0 / CoefficientNonExposeFlamme(faces.moyenneNonExposee);
    return c;
}

long long LoisFlamme::NombrePas(double duree, double dt) const
{
    if (m_methode == ZOLT)
        return NombrePasEntames(duree, dt);
    const double n = duree / dt;
    return n >= 1.0 && n < kMaxPas ? (long long)n : 0;
}
