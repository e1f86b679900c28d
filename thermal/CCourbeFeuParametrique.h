// The parametric fire of EN 1991-1-2, Annex A: the gas temperature of a compartment fire
// from the compartment's physical data, heating to a peak then cooling linearly.
//
//   O    opening factor Av sqrt(heq) / At, m^(1/2), 0.02 to 0.20
//   q    design fire load density per unit of the enclosure's total area At, qt,d,
//        MJ/m2, 50 to 1000
//   b    thermal inertia sqrt(rho c lambda) of the enclosure, J/(m2 s^(1/2) K), 100 to 2200
//   tlim 25, 20 or 15 minutes for a slow, medium or fast fire growth rate
//
// Heating (A.1): 20 + 1325 (1 - 0.324 e^(-0.2 t*) - 0.204 e^(-1.7 t*) - 0.472 e^(-19 t*))
// with t* = t Gamma, Gamma = (O/b)^2 / (0.04/1160)^2, t in hours, up to
// tmax = max(0.2e-3 q / O, tlim). When tmax is tlim the fire is fuel controlled and the
// heating runs on Gamma_lim from Olim = 0.1e-3 q / tlim (A.8 to A.10), times k of A.11
// when O > 0.04, q < 75 and b < 1160.
// Cooling (A.11): from the peak theta_max down at 625, 250 (3 - t*max) or 250 degrees per
// unit of t* = t Gamma, for t*max = 0.2e-3 q / O Gamma up to 0.5, below 2, or from 2
// (A.12), measured from t*max x (x = 1, or tlim Gamma / t*max when fuel controlled).
// The curve stays at 20 degrees once it has cooled there. Convection: 35 W/(m2 K).
#pragma once

#include "thermal/CCourbeFeu.h"

class CCourbeFeuParametrique : public CCourbeFeu
{
public:
    enum CROISSANCE
    {
        LENTE = 0,   // slow: tlim 25 min
        MOYENNE = 1, // medium: 20 min
        RAPIDE = 2   // fast: 15 min
    };
    static constexpr double kOMin = 0.02, kOMax = 0.20;
    static constexpr double kQMin = 50.0, kQMax = 1000.0;
    static constexpr double kBMin = 100.0, kBMax = 2200.0;

    // 0 when the three values lie in the annex's ranges; else 1 (O), 2 (q) or 3 (b),
    // the first one outside (a value that is not a number is outside).
    static int HorsDomaine(double O, double q, double b);

    // Inputs outside the ranges are computed as given; check them with HorsDomaine.
    CCourbeFeuParametrique(double O, double q, double b, CROISSANCE croissance);

    double Temperature(double heures) const override;
    double Convection() const override { return 35.0; }

    double Gamma() const { return m_gamma; }
    // The Gamma of the heating phase: Gamma, or Gamma_lim (times k) when fuel controlled.
    double GammaChauffe() const { return m_gammaChauffe; }
    bool Combustible() const { return m_combustible; } // fuel controlled
    double TMax() const { return m_tmax; }              // hours
    double TetaMax() const { return m_tetaMax; }        // degrees Celsius
    // Time at which the cooling reaches 20 degrees, hours.
    double FinRefroidissement() const;

private:
    static double Chauffe(double tEtoile);
    double m_gamma = 0, m_gammaChauffe = 0, m_tmax = 0, m_tetaMax = 20;
    double m_tEtoileMax = 0; // t*max of A.12
    double m_origine = 0;    // t*max x: where the cooling line starts, in t*
    double m_pente = 0;      // degrees per unit of t* while cooling
    bool m_combustible = false;
};
