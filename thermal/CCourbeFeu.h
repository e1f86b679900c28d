// Fire curves: the temperature of the gas on the fire side against time, given to the
// Eurocode 2 method through CTemperatureGenerale::CalculTemperatureEC2's curve argument.
//
// Which methods take which curves:
//  - Eurocode 2: any curve (the three below, a table, the parametric fire). Its surface
//    coefficient is its radiation at the gas and face temperatures plus the curve's
//    convection coefficient, which also sets the exchange with cavity air and the
//    cavity's time step, as the curve number does for the method's own three curves.
//  - ITBTP, ZOLT and DTU: the standard fire only. Their boundary models (flame
//    temperature from the standard rise, emissivity falling with the face-to-gas ratio,
//    the DTU's 0.85 factor) are built on it; they take no curve.
#pragma once

#include "thermal/CTemperatureGenerale.h"

class CCourbeFeu
{
public:
    virtual ~CCourbeFeu() = default;
    // Gas temperature in degrees Celsius t hours after the fire starts. The kernel asks
    // from several threads at once: implementations keep no state.
    virtual double Temperature(double heures) const = 0;
    // Convection coefficient between the gas and the exposed faces, W/(m2 K).
    virtual double Convection() const { return 25.0; }
};

// The three curves of the Eurocode 2 method as the suite's programs have always run it
// (CalculTemperatureEC2 with a curve number): standard, external with its 0.684, and
// hydrocarbon, all three taking the time in hours; the hydrocarbon curve brings 50
// W/(m2 K) of convection, the others 25; an unknown number gives 0 degrees.
class CCourbeFeuMontee : public CCourbeFeu
{
public:
    explicit CCourbeFeuMontee(CTemperatureGenerale::MONTEE_TEMPERATURE eMontee) : m_eMontee((int)eMontee) {}
    double Temperature(double heures) const override;
    double Convection() const override;

private:
    int m_eMontee; // kept as a number: callers pass numbers outside the enumeration

};

// The nominal curves of EN 1991-1-2 (3.2), time in minutes as the standard writes them:
//   standard     20 + 345 log10(8 t + 1)                                  25 W/(m2 K)
//   external     20 + 660 (1 - 0.687 e^(-0.32 t) - 0.313 e^(-3.8 t))      25 W/(m2 K)
//   hydrocarbon  20 + 1080 (1 - 0.325 e^(-0.167 t) - 0.675 e^(-2.5 t))    50 W/(m2 K)
// The standard curve is computed exactly as the method's own, so that both give the
// same field to the last bit. The external and hydrocarbon curves differ from the
// method's numbered ones, which apply the exponents to hours.
class CCourbeFeuNormalisee : public CCourbeFeu
{
public:
    enum TYPE
    {
        NORMALISEE = 0,
        EXTERIEURE = 1,
        HYDROCARBURE = 2
    };
    explicit CCourbeFeuNormalisee(TYPE type) : m_type(type) {}
    double Temperature(double heures) const override;
    double Convection() const override;

private:
    TYPE m_type;
};
