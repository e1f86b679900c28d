// A rectangular member meshed as the command meshes it. Grid methods: full width with
// gas columns on both sides, the strip of concrete that the mesh lays over the section
// turned into gas, then the exposure of its four sides. DTU: the method's slab model.
#pragma once

#include "thermal/CTemperatureGenerale.h"
#include "thermal/ExpositionFaces.h"

#include <gtest/gtest.h>

#include <vector>

namespace prefa_test
{
inline CPolygone Rectangle(double largeur, double hauteur)
{
    CPolygone p;
    p.AddTail(0.0, 0.0);
    p.AddTail(largeur, 0.0);
    p.AddTail(largeur, hauteur);
    p.AddTail(0.0, hauteur);
    return p;
}

// Sides of Rectangle: 0 bottom, 1 right, 2 top, 3 left.
inline void Membre(CTemperatureGenerale& t, double largeur, double hauteur, double pas,
                   CTemperatureGenerale::TYPE_CALCUL_TEMPERATURE type, std::vector<bool> exposee = {})
{
    CPolygone section = Rectangle(largeur, hauteur);
    CListePolygone aucune;
    CArray<CPolygone, CPolygone> aucun;
    const bool dtu = type == CTemperatureGenerale::DTU;
    t.InitTableDonnees(section, 1.0, type, aucune, 0, aucun, 0, aucun, pas, dtu ? 1 : 0, 0.0, 0.0, 0.0, 0.0, 0.0);
    for (INT_PTR j = 0; j < t.m_Masque[1].GetSize() && !dtu; ++j)
        t.m_Masque[1][j] = t.m_T1[1][j] = -1.0;
    if (!exposee.empty())
    {
        ASSERT_EQ(1, ExposerFaces(t, section, exposee));
    }
}

inline int EC2Normalise(CTemperatureGenerale& t, double duree)
{
    return t.CalculTemperatureEC2(0, duree, 0.015, 0.0, CTemperatureGenerale::MONTEE_NORMALE, GRANULAT_SILICEUX, 0);
}
} // namespace prefa_test
