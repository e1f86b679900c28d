// The reference beam of the thermal benchmarks: a 0.30 x 0.60 m concrete rectangle of
// cells inside one ring of fire-side gas (heated on every face), with the material
// values the mesh would set.
#pragma once

#include "thermal/CTemperatureGenerale.h"

inline void PoutreReference(CTemperatureGenerale& t, double pas)
{
    const int nc = (int)(0.30 / pas + 0.5) + 2, nl = (int)(0.60 / pas + 0.5) + 2;
    t.RAZListesEtDonnees();
    t.m_Masque.SetSize(nl);
    for (int i = 0; i < nl; ++i)
    {
        t.m_Masque[i].SetSize(nc);
        for (int j = 0; j < nc; ++j)
            t.m_Masque[i][j] = (i == 0 || j == 0 || i == nl - 1 || j == nc - 1) ? -1.0 : 11.0;
    }
    t.SetDELX(pas);
    t.m_dTravailA[TravailA::LAMBDA] = 1.4;
    t.m_dTravailA[TravailA::RHO] = 2400.0;
    t.m_dTravailA[TravailA::C] = 0.22;
}
