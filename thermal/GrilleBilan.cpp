#include "thermal/GrilleBilan.h"

#include "thermal/Releves.h"

#include <algorithm>
#include <vector>

namespace
{
thread_local StatistiquesBilan t_dernieres;
thread_local const BilanThermique* t_enCours = nullptr;

// Publishes the running kernel to the progress callback, which runs on this thread (a
// callback that runs a method of its own gets its kernel back afterwards).
struct Publication
{
    explicit Publication(const BilanThermique& b) : precedent(t_enCours) { t_enCours = &b; }
    ~Publication() { t_enCours = precedent; }
    const BilanThermique* precedent;
};
} // namespace

StatistiquesBilan DernieresStatistiquesBilan() { return t_dernieres; }
const BilanThermique* BilanEnCours() { return t_enCours; }

ResultatGrille CalculerSurGrille(CTemperatureGenerale& t, const LoisThermiques& lois, double delta, double duree,
                                 double dt)
{
    const int nl = (int)t.m_Masque.GetSize();
    const int nc = nl > 0 ? (int)t.m_Masque[0].GetSize() : 0;
    t.m_nTravail[TravailN::NB_LIGNES] = nl;
    t.m_nTravail[TravailN::NB_COLONNES] = nc;
    std::vector<double> masque((std::size_t)nl * (std::size_t)nc);
    for (int i = 0; i < nl; ++i)
    {
        const CTemperatureGenerale::CLigne& ligne = t.m_Masque[i];
        if (ligne.GetSize() < nc)
            AfxThrowInvalidArgException();
        std::copy(ligne.GetData(), ligne.GetData() + nc, masque.begin() + (std::ptrdiff_t)i * nc);
    }
    BilanThermique bilan(nl, nc, masque.data(), delta);
    bilan.observation = ObservateurReleves(t, lois);
    ResultatGrille res;
    {
        const Publication publication(bilan);
        res.stats = bilan.Calculer(lois, duree, dt, t.m_Progression);
    }
    res.faces = bilan.Faces();
    t_dernieres = res.stats;
    const std::vector<double>& T = bilan.Temperatures();
    t.m_T1.SetSize(nl);
    for (int i = 0; i < nl; ++i)
    {
        CTemperatureGenerale::CLigne& ligne = t.m_T1[i];
        ligne.SetSize(nc);
        if (res.stats.horsBornes)
            std::fill(ligne.GetData(), ligne.GetData() + nc, -1.0);
        else
            std::copy(T.begin() + (std::ptrdiff_t)i * nc, T.begin() + (std::ptrdiff_t)(i + 1) * nc, ligne.GetData());
    }
    return res;
}
