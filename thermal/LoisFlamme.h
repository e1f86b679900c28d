// The laws shared by the ITBTP and ZOLT methods: properties from three-coefficient
// records per material, 15 degrees ambient, and the flame-radiation boundary model.
//
// Choices where the methods leave it open, the same for both:
// - the fire-side gas is at 15 + R, R the rise of the standard curve; the exposed face
//   exchanges with it through 1/h, h = e hr + 6.0, and the unexposed face with the 15
//   degree air through 1/hu; an air cell's face carries the 1/6 of every face that meets
//   an air cell in series with these films (1/6 + 1/h, 1/6 + 1/hu);
// - theta_s is the mean temperature of the faces towards the fire-side gas and theta_u
//   the mean of the faces towards the unexposed air, each face taken between its
//   half-cell resistance and the film resistance of the step just taken (see
//   BilanThermique.h); they keep 15.0 while there is no such face.
#pragma once

#include "thermal/BilanThermique.h"
#include "thermal/ProprietesFlamme.h"

#include <vector>

struct ProprietesMateriauFlamme
{
    CoefficientsPropriete masseVolumique;
    CoefficientsPropriete chaleurSpecifique;
    CoefficientsPropriete conductivite;
};

class LoisFlamme : public LoisThermiques
{
public:
    enum Methode
    {
        ITBTP, // gas at the end of the step, truncated step count
        ZOLT   // gas at the start of the step, every started step taken
    };
    LoisFlamme(Methode methode, std::vector<ProprietesMateriauFlamme> materiaux);

    void Proprietes(int materiau, const double* theta, std::size_t n, double* lambda,
                    double* rhoC) const override;
    ConditionsPas PreparePas(int pas, double dt, const ResultatsFaces& faces) const override;
    long long NombrePas(double duree, double dt) const override;

    const std::vector<ProprietesMateriauFlamme>& Materiaux() const { return m_materiaux; }

private:
    Methode m_methode;
    std::vector<ProprietesMateriauFlamme> m_materiaux;
};

// Steps of a loop "k = 1, 2, ... while k < duree/dt + 1": every started step is taken.
long long NombrePasEntames(double duree, double dt);
