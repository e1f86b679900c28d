// The laws of the Eurocode 2 method for the cell-balance kernel.
//
// Choices where the method leaves it open:
// - an air cell exchanges with the fire-side gas through 1/hc + 1/h (its own face of air,
//   as towards another air cell, in series with the total surface coefficient h at the
//   gas and the air cell's temperature) and with the unexposed air through 1/hc plus the
//   unexposed-face resistance. Its conductance stays below 4 hc delta, so the cavity step
//   keeps it stable whatever the radiation;
// - face results (see BilanThermique.h): the mean exposed-face temperature goes to
//   m_dTravailA[TravailA::MOY_EXPO]; the second mean is the mean unexposed-face temperature
//   (m_dTravailB[TravailB::MOY_NONEXPO]); the conductivity of concrete is taken at the mean exposed-face
//   temperature (m_dTravailB[TravailB::LAMBDA]); the largest unexposed-face temperature ever reached
//   goes to m_dTravailB[TravailB::MAX_SURFACE]. All four start at 20.0.
// - a step that is zero or not a number (extra materials have no capacity) cannot
//   advance the fire: the field then stays at 20 degrees instead of looping forever;
// - the restarts watch air cells too, with their limit C / G (see BilanThermique.h): it
//   only bites where the step was not held to the cavity limit, as on a second call whose
//   cavity marks the first one turned into air cells.
#pragma once

#include "thermal/BilanThermique.h"

class CCourbeFeu;

class LoisEC2 : public LoisThermiques
{
public:
    // The curve gives the gas temperature and the fire-side convection; it must outlive
    // the laws.
    LoisEC2(int nMateriaux, double rho20, double teneurEau, const CCourbeFeu& courbe, int eGranulat,
            int bConductiviteGranulat, double pasCavite);

    void Proprietes(int materiau, const double* theta, std::size_t n, double* lambda,
                    double* rhoC) const override;
    ConditionsPas PreparePas(int pas, double dt, const ResultatsFaces& faces) const override;
    double ResistanceFeu(const ConditionsPas& c, double theta) const override;
    long long NombrePas(double duree, double dt) const override;
    bool Redemarrable() const override { return true; }
    double PasMaximal() const override { return m_pasCavite; }

    // Explicit limit rho c delta^2 / (4 lambda) of material m at theta.
    double LimiteStabilite(int materiau, double theta, double delta) const;

private:
    double m_rho20;
    const CCourbeFeu& m_courbe;
    double m_hc; // fire-side convection, kcal/(h m2 C)
    int m_eGranulat, m_bGranulat;
    double m_pasCavite;
};
