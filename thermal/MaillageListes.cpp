// What the mesh leaves in the working blocks and index lists beside the grids: their
// shape, the DTU method's row and column lists and active zone, and the constants of
// the concrete that the methods read.
#include "thermal/CTemperatureGenerale.h"
#include "thermal/MaillageInterne.h"

namespace prefa_maillage
{
void RemplitListesEtTravail(CTemperatureGenerale& t, bool dtu)
{
    const int nLignes = (int)t.m_T1.GetSize();
    const int nColonnes = (int)t.m_T1[0].GetSize();
    t.m_nTravail[TravailN::NB_LIGNES] = nLignes;
    t.m_nTravail[TravailN::NB_COLONNES] = nColonnes;
    if (dtu)
    {
        t.m_nTravail[TravailN::ZONE_LIGNE_DEBUT] = 1;
        t.m_nTravail[TravailN::ZONE_LIGNE_FIN] = nLignes;
        t.m_nTravail[TravailN::ZONE_COL_DEBUT] = 1;
        t.m_nTravail[TravailN::ZONE_COL_FIN] = nColonnes;
        t.m_nTravail[TravailN::COMPTE] = 1;
        t.m_NumLigne.Add(1);
        t.m_ColDebut.Add(0);
        t.m_ColFin.Add(0);
        for (int r = 2; r <= nLignes - 1; ++r)
        {
            // First section column (1-based): one past the first outside value met
            // scanning from the right.
            const CTemperatureGenerale::CLigne& ligne = t.m_T1[r - 1];
            int debut = 2;
            for (int j = nColonnes - 1; j >= 0; --j)
                if (ligne[j] != 0.0)
                {
                    debut = j + 2;
                    break;
                }
            t.m_NumLigne.Add(r);
            t.m_ColDebut.Add(debut);
            t.m_ColFin.Add(nColonnes - 1);
        }
        t.m_NumLigne.Add(nLignes - 1);
        t.m_ColDebut.Add(0);
        t.m_ColFin.Add(0);
        for (int c = 2; c <= nColonnes - 1; ++c)
        {
            t.m_NumColonne.Add(c);
            t.m_LigneDebut.Add(1);
        }
    }
    else
        t.m_nTravail[TravailN::COMPTE] = 1;

    t.m_dTravailA[TravailA::LAMBDA] = 1.4;       // conductivity, kcal/(h m C)
    t.m_dTravailA[TravailA::FACTEUR_FEU] = 0.85; // fire-curve factor
    t.m_dTravailA[TravailA::RHO] = 2400.0;       // density, kg/m3
    t.m_dTravailA[TravailA::C] = 0.22;           // specific heat, kcal/(kg C)
}
} // namespace prefa_maillage
