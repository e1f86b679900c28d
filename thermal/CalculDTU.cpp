// The DTU method: an explicit finite-difference scheme at Fourier number 1/4 on the DTU
// grid, in temperature rises above ambient and in minutes, under the standard fire
// 345 log10(8t + 1), with the two insulation criteria of the unexposed face.
//
// Choices where the method leaves room:
//  - The interior sweep averages the nodes whose eight neighbours all lie in the
//    section (the face sweep leaves exactly these alone). The exposed-side and
//    unexposed-side sums take the swept section nodes that have a negative neighbour
//    among their eight, classified by the smallest one (-1 exposed, -2 or less
//    unexposed), with their current value (m_T2 holds it for them). On a slab these
//    are the face rows themselves, so the means are the face means.
//  - The kind of each node (interior, exposed face, unexposed face, skipped) is fixed
//    once after the first mirroring of the side borders: outside cells never change
//    and the updates keep section nodes non-negative.
//  - A section node in the first or the last grid row has no neighbour beyond it: the
//    method raises the invalid-argument exception before changing anything.
//  - With no target duration, or a step that is not a positive number (DELX or the
//    material values not set), nothing is computed.
//
// The time loop runs on flat row-major copies of m_T1 and m_T2; the public Init56 and
// Calcul... operations work on the grids themselves with the same formulas.
#include "thermal/CTemperatureGenerale.h"
#include "thermal/ProprietesFlamme.h"
#include "thermal/Releves.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace
{
const double JAMAIS = 1300.0; // criterion time meaning "not reached"
const double kConvectionDTU = 6.0; // convective part of the exposed-face coefficient

// Exposed face node from its two neighbours a, b, the surface resistance R
// (conductivity over h), the cell side and the fire rise F.
inline double ValeurFaceExposee(double a, double b, double R, double D, double F)
{
    return ((a + b) * (R - D / 2) + 2 * F * D) * 0.5 / (D / 2 + R);
}

// Unexposed face node from a, b and the unexposed surface resistance R'.
inline double ValeurFaceNonExposee(double a, double b, double Rp, double D)
{
    return (Rp - D / 2) * (a + b) * 0.5 / (D / 2 + Rp);
}

// Surface value of an unexposed face node, the one the 180 criterion watches.
inline double ValeurSurface(double a, double b, double noeud)
{
    return ((a + b) / 2 + noeud) / 2;
}

enum GenreNoeud
{
    NOEUD_EXTERIEUR,
    NOEUD_INTERIEUR,
    NOEUD_SAUTE,
    NOEUD_EXPOSE,     // exposed face, whatever P holds
    NOEUD_NON_EXPOSE, // unexposed face, whatever P holds
    NOEUD_SELON_P     // by the kind of the outside neighbour P
};

// The face sweep's dispatch for the node in (i, j): which neighbours decide and feed
// it. Offsets are in flat row-major positions; v(di, dj) gives a neighbour's value.
struct Aiguillage
{
    GenreNoeud genre = NOEUD_EXTERIEUR;
    int p = 0, a = 0, b = 0; // offsets of P, a and b from the node
    double minCotes = 0.0, minDiagonales = 0.0;
};

template <class Valeur>
Aiguillage Aiguille(Valeur v, int nc)
{
    Aiguillage r;
    auto off = [nc](int di, int dj) { return di * nc + dj; };
    const double U = v(-1, 0), Dn = v(1, 0), L = v(0, -1), Rt = v(0, 1);
    const double UL = v(-1, -1), UR = v(-1, 1), DL = v(1, -1), DR = v(1, 1);
    r.minCotes = std::min(std::min(U, Dn), std::min(L, Rt));
    r.minDiagonales = std::min(std::min(UL, UR), std::min(DL, DR));
    auto dedans = [](double x) { return x >= 0.0; };
    auto fixe = [&](GenreNoeud g, int p, int a, int b) {
        r.genre = g;
        r.p = p;
        r.a = a;
        r.b = b;
    };
    // The fire is below and the unexposed face above; the cases are tried in order.
    if (dedans(U) && dedans(Dn) && dedans(L) && dedans(Rt))
    {
        if (dedans(UL) && dedans(UR) && dedans(DL) && dedans(DR))
            r.genre = NOEUD_INTERIEUR;
        else if (dedans(UR) && !dedans(DR))
            fixe(NOEUD_EXPOSE, off(1, 1), off(-1, 0), off(0, -1));
        else if (dedans(UR) && dedans(UL))
            fixe(NOEUD_EXPOSE, off(1, -1), off(0, 1), off(-1, 0));
        else if (dedans(UR))
            fixe(NOEUD_SELON_P, off(-1, -1), off(0, 1), off(1, 0));
        else
            fixe(NOEUD_NON_EXPOSE, off(-1, 1), off(0, -1), off(1, 0));
    }
    else if (!dedans(U))
    {
        if (dedans(Rt) && dedans(L))
            fixe(NOEUD_SELON_P, off(-1, 0), off(1, 0), off(1, 0));
        else
            r.genre = NOEUD_SAUTE;
    }
    else if (dedans(Rt))
    {
        if (dedans(Dn))
            fixe(NOEUD_SELON_P, off(0, -1), off(0, 1), off(0, 1));
        else if (!dedans(L))
            r.genre = NOEUD_SAUTE;
        else
            fixe(NOEUD_EXPOSE, off(1, 0), off(-1, 0), off(-1, 0));
    }
    else if (!dedans(Dn))
        r.genre = NOEUD_SAUTE;
    else
        fixe(NOEUD_SELON_P, off(0, 1), off(0, -1), off(0, -1));
    return r;
}

// The field on flat arrays with the node lists of the sweeps.
class NoyauDTU
{
public:
    explicit NoyauDTU(const CTemperatureGenerale& t)
    {
        const CTemperatureGenerale::CGrille& g = t.m_T1;
        nl = (int)g.GetSize();
        nc = nl > 0 ? (int)g[0].GetSize() : 0;
        if (nl != t.GetNbLignes() || nc != t.GetNbColonnes())
            AfxThrowInvalidArgException();
        T.resize((std::size_t)nl * nc);
        T2.assign(T.size(), 0.0);
        for (int i = 0; i < nl; ++i)
        {
            if (g[i].GetSize() != nc)
                AfxThrowInvalidArgException();
            std::copy(g[i].GetData(), g[i].GetData() + nc, T.begin() + (std::ptrdiff_t)i * nc);
            if (t.m_T2.GetSize() == nl && t.m_T2[i].GetSize() == nc)
                std::copy(t.m_T2[i].GetData(), t.m_T2[i].GetData() + nc, T2.begin() + (std::ptrdiff_t)i * nc);
        }
    }

    // Each side border column takes its neighbour's value.
    void Miroir()
    {
        if (nc < 2)
            return;
        for (int i = 0; i < nl; ++i)
        {
            double* ligne = &T[(std::size_t)i * nc];
            ligne[0] = ligne[1];
            ligne[nc - 1] = ligne[nc - 2];
        }
    }

    // Sorts every swept node into the face list (sweep order), the interior runs and
    // the side lists, from the current values.
    void Classe()
    {
        faces.clear();
        interieurs.clear();
        cotes.clear();
        nSautes = 0;
        for (int i = 0; i < nl; ++i)
            for (int j = 1; j < nc - 1; ++j)
            {
                const int k = i * nc + j;
                if (T[k] < 0.0)
                    continue;
                if (i == 0 || i == nl - 1)
                    AfxThrowInvalidArgException();
                const Aiguillage d = Aiguille([&](int di, int dj) { return T[k + di * nc + dj]; }, nc);
                switch (d.genre)
                {
                case NOEUD_INTERIEUR:
                    if (!interieurs.empty() && interieurs.back().fin == k)
                        ++interieurs.back().fin;
                    else
                        interieurs.push_back({k, k + 1});
                    break;
                case NOEUD_SAUTE:
                    ++nSautes;
                    break;
                case NOEUD_EXTERIEUR:
                    break;
                default:
                {
                    const bool expose = d.genre == NOEUD_EXPOSE ||
                                        (d.genre == NOEUD_SELON_P && T[k + d.p] + 2.0 > 0.0);
                    faces.push_back({k, k + d.a, k + d.b, expose});
                }
                }
                const double mini = std::min(d.minCotes, d.minDiagonales);
                if (mini < 0.0)
                    cotes.push_back({k, mini > -2.0});
            }
    }

    // Face sweep of one step, in place; sums and counts go to the object.
    void Faces(CTemperatureGenerale& t, double D, double F, double R, double Rp)
    {
        double sommeExpo = 0.0, sommeNonExpo = 0.0, maxSurface = t.m_dTravailB[TravailB::MAX_SURFACE];
        int nExpo = 0, nNonExpo = 0;
        double* v = T.data();
        for (const Face& f : faces)
        {
            const double a = v[f.a], b = v[f.b];
            if (f.expose)
            {
                const double n = ValeurFaceExposee(a, b, R, D, F);
                v[f.k] = n;
                sommeExpo += n;
                ++nExpo;
            }
            else
            {
                const double n = ValeurFaceNonExposee(a, b, Rp, D);
                v[f.k] = n;
                sommeNonExpo += n;
                ++nNonExpo;
                maxSurface = std::max(maxSurface, ValeurSurface(a, b, n));
            }
        }
        t.m_dTravailB[TravailB::SOMME_EXPO] += sommeExpo;
        t.m_dTravailB[TravailB::SOMME_NONEXPO] += sommeNonExpo;
        t.m_dTravailB[TravailB::SOMME_FACES] += sommeExpo + sommeNonExpo;
        t.m_dTravailB[TravailB::MAX_SURFACE] = maxSurface;
        t.m_nTravail[TravailN::FACE_EXPO] += nExpo;
        t.m_nTravail[TravailN::FACE_NONEXPO] += nNonExpo;
        t.m_nTravail[TravailN::SAUTES] += nSautes;
    }

    // Interior sweep: Jacobi average of the four side neighbours, then the side sums.
    void Interieur(CTemperatureGenerale& t)
    {
        const std::ptrdiff_t n = nc;
        double* __restrict a = T.data();
        double* __restrict b = T2.data();
        double somme = 0.0;
        for (const Suite& s : interieurs)
            for (int k = s.debut; k < s.fin; ++k)
            {
                const double x = 0.25 * (a[k - n] + a[k + n] + a[k - 1] + a[k + 1]);
                b[k] = x;
                somme += x;
            }
        double sommeExpo = 0.0, sommeNonExpo = 0.0;
        int nExpo = 0, nNonExpo = 0;
        for (const Cote& c : cotes)
        {
            b[c.k] = a[c.k]; // a node beside the outside keeps its value here
            if (c.expose)
            {
                sommeExpo += b[c.k];
                ++nExpo;
            }
            else
            {
                sommeNonExpo += b[c.k];
                ++nNonExpo;
            }
        }
        for (const Suite& s : interieurs)
            std::copy(b + s.debut, b + s.fin, a + s.debut);
        t.m_dTravailB[TravailB::SOMME_INT] = somme;
        t.m_dTravailB[TravailB::SOMME_COTE_EXPO] = sommeExpo;
        t.m_dTravailB[TravailB::SOMME_COTE_NONEXPO] = sommeNonExpo;
        t.m_nTravail[TravailN::COTE_EXPO] = nExpo;
        t.m_nTravail[TravailN::COTE_NONEXPO] = nNonExpo;
    }

    // Copies both fields back into the object's grids.
    void Restitue(CTemperatureGenerale& t) const
    {
        t.m_T2.RemoveAll();
        CTemperatureGenerale::CLigne ligne;
        ligne.SetSize(nc);
        for (int i = 0; i < nl; ++i)
        {
            std::copy(T.begin() + (std::ptrdiff_t)i * nc, T.begin() + (std::ptrdiff_t)(i + 1) * nc,
                      t.m_T1[i].GetData());
            std::copy(T2.begin() + (std::ptrdiff_t)i * nc, T2.begin() + (std::ptrdiff_t)(i + 1) * nc,
                      ligne.GetData());
            t.m_T2.Add(ligne);
        }
    }

    int nl = 0, nc = 0;
    std::vector<double> T, T2;

private:
    struct Face
    {
        int k, a, b;
        bool expose;
    };
    struct Suite
    {
        int debut, fin; // [debut, fin) in flat positions
    };
    struct Cote
    {
        int k;
        bool expose;
    };
    std::vector<Face> faces;
    std::vector<Suite> interieurs;
    std::vector<Cote> cotes;
    int nSautes = 0;
};
} // namespace

void CTemperatureGenerale::CalculTemperatureDTU()
{
    // Everything that can fail is checked before the object changes.
    NoyauDTU noyau(*this);
    noyau.Miroir();
    noyau.Classe();
    std::fill(noyau.T2.begin(), noyau.T2.end(), 0.0);

    const double D = GetDELX();
    std::vector<double> cibles;
    for (INT_PTR k = 0; k < m_TabTemps.GetSize(); ++k)
        cibles.push_back(m_TabTemps[k] * 60.0);

    m_dTravailA[TravailA::MOY_140] = 0.0;
    m_dTravailB[TravailB::MAX_180] = 0.0;
    m_nTravail[TravailN::DERNIERE_COL] = GetNbColonnes() - 1;
    m_dTravailA[TravailA::T140] = JAMAIS;
    m_dTravailA[TravailA::T180] = JAMAIS;
    m_dTravailB[TravailB::MAX_SURFACE] = 0.0;
    int nNoeuds = 0;
    for (INT_PTR k = 0; k < m_ColDebut.GetSize() && k < m_ColFin.GetSize(); ++k)
        if (m_ColDebut[k] > 0 && m_ColFin[k] > 0)
            nNoeuds += std::max(0, m_ColFin[k] - m_ColDebut[k] + 1);
    m_nTravail[TravailN::NOEUDS] = nNoeuds;
    m_dTravailA[TravailA::MOY_NONEXPO] = 0.0;
    m_dTravailA[TravailA::MOY_EXPO] = 0.0;
    m_dTravailB[TravailB::LAMBDA] = m_dTravailA[TravailA::LAMBDA];
    m_dTravailB[TravailB::DT] = 0.0;

    const double pas =
        m_dTravailA[TravailA::C] * 60.0 * m_dTravailA[TravailA::RHO] * D * D * 0.25 / m_dTravailB[TravailB::LAMBDA];
    if (cibles.empty() || !(pas > 0.0) || !std::isfinite(pas))
    {
        noyau.Restitue(*this);
        return;
    }
    const double tFinal = *std::max_element(cibles.begin(), cibles.end());

    std::size_t cible = 0;
    // Fields asked for at other durations: the field of the step at which a run with
    // that target would stop, before the interior sweep it would not run.
    const std::vector<std::size_t> releves = m_Releve ? OrdreReleves(m_DureesReleves) : std::vector<std::size_t>();
    std::size_t releve = 0;
    for (int etape = 1;; ++etape)
    {
        double& t = m_dTravailB[TravailB::DT];
        t += pas;
        m_dTravailB[TravailB::SOMME_FACES] = m_dTravailB[TravailB::SOMME_NONEXPO] =
            m_dTravailB[TravailB::SOMME_EXPO] = 0.0;
        m_nTravail[TravailN::SAUTES] = m_nTravail[TravailN::FACE_EXPO] = m_nTravail[TravailN::FACE_NONEXPO] = 0;

        double hp = 8.0 * std::pow(m_dTravailA[TravailA::MOY_NONEXPO], 0.1);
        if (!(hp >= 0.1))
            hp = 0.1;
        m_dTravailB[TravailB::HP] = hp;

        const double F = 345.0 * std::log10(8.0 * t + 1.0);
        const double G = F * m_dTravailA[TravailA::FACTEUR_FEU];
        m_dTravailA[TravailA::FEU] = F;
        // Radiation of the flame laws, the gas at G taken as the flame, for the share k.
        const double S = m_dTravailA[TravailA::MOY_EXPO];
        double k = (G - S) / (F - S);
        if (!(k > 0.0))
            k = 1.0;
        const double h = k * CoefficientRayonnementFlamme(G + 273.0, S) + kConvectionDTU;
        m_dTravailA[TravailA::H] = std::min(h, 2.0 * m_dTravailB[TravailB::LAMBDA] / D);

        noyau.Miroir();
        if (etape == 1)
            noyau.Interieur(*this);
        noyau.Faces(*this, D, F, m_dTravailB[TravailB::LAMBDA] / m_dTravailA[TravailA::H],
                    m_dTravailB[TravailB::LAMBDA] / hp);
        noyau.Miroir();

        const int nFaceNonExpo = m_nTravail[TravailN::FACE_NONEXPO], nCoteNonExpo = m_nTravail[TravailN::COTE_NONEXPO];
        if (nFaceNonExpo > 0 && nCoteNonExpo > 0)
            m_dTravailA[TravailA::MOY_NONEXPO] =
                (m_dTravailB[TravailB::SOMME_COTE_NONEXPO] + m_dTravailB[TravailB::SOMME_NONEXPO]) /
                (nCoteNonExpo + nFaceNonExpo);
        m_dTravailA[TravailA::MOY_EXPO] = (m_dTravailB[TravailB::SOMME_COTE_EXPO] + m_dTravailB[TravailB::SOMME_EXPO]) /
                                          (m_nTravail[TravailN::COTE_EXPO] + m_nTravail[TravailN::FACE_EXPO]);

        if (m_dTravailA[TravailA::MOY_NONEXPO] >= 140.0 && t <= m_dTravailA[TravailA::T140])
        {
            m_dTravailA[TravailA::T140] = t;
            m_dTravailA[TravailA::MOY_140] = m_dTravailA[TravailA::MOY_NONEXPO];
        }
        if (m_dTravailB[TravailB::MAX_SURFACE] >= 180.0 && t <= m_dTravailA[TravailA::T180])
        {
            m_dTravailA[TravailA::T180] = t;
            m_dTravailB[TravailB::MAX_180] = m_dTravailB[TravailB::MAX_SURFACE];
        }

        while (cible < cibles.size() && t >= cibles[cible])
            ++cible;
        while (releve < releves.size() && t >= m_DureesReleves[releves[releve]] * 60.0)
            m_Releve(releves[releve++], noyau.T.data());
        if (cible >= cibles.size() || !Progression(std::min(1.0, t / tFinal)))
            break;
        noyau.Interieur(*this);
    }
    noyau.Restitue(*this);
}

void CTemperatureGenerale::Init56()
{
    NoyauDTU noyau(*this);
    noyau.Classe();
    noyau.Interieur(*this);
    noyau.Restitue(*this);
}

void CTemperatureGenerale::Calcul200(int i, int j)
{
    const double D = GetDELX();
    const double R = m_dTravailB[TravailB::LAMBDA] / m_dTravailA[TravailA::H];
    const double n =
        ValeurFaceExposee(m_dTravailB[TravailB::A], m_dTravailB[TravailB::B], R, D, m_dTravailA[TravailA::FEU]);
    m_T1[i][j] = n;
    ++m_nTravail[TravailN::FACE_EXPO];
    m_dTravailB[TravailB::SOMME_EXPO] += n;
    m_dTravailB[TravailB::SOMME_FACES] += n;
}

void CTemperatureGenerale::Calcul145(int i, int j)
{
    const double D = GetDELX();
    const double a = m_dTravailB[TravailB::A], b = m_dTravailB[TravailB::B];
    const double n = ValeurFaceNonExposee(a, b, m_dTravailB[TravailB::LAMBDA] / m_dTravailB[TravailB::HP], D);
    m_T1[i][j] = n;
    ++m_nTravail[TravailN::FACE_NONEXPO];
    m_dTravailB[TravailB::SOMME_NONEXPO] += n;
    const double surface = ValeurSurface(a, b, n);
    if (surface >= m_dTravailB[TravailB::MAX_SURFACE])
        m_dTravailB[TravailB::MAX_SURFACE] = surface;
    m_dTravailB[TravailB::SOMME_FACES] += n;
}

void CTemperatureGenerale::Calcul141(int i, int j)
{
    // P (the outside neighbour that decides), a and b are already in the working values.
    if (m_dTravailB[TravailB::P] + 2.0 <= 0.0)
        Calcul145(i, j);
    else
        Calcul200(i, j);
}

void CTemperatureGenerale::Etiq455(int i, int j)
{
    m_dTravailB[TravailB::SOMME_COTE_EXPO] += m_T2[i][j];
    ++m_nTravail[TravailN::COTE_EXPO];
}

void CTemperatureGenerale::Etiq440(int i, int j)
{
    m_dTravailB[TravailB::SOMME_COTE_NONEXPO] += m_T2[i][j];
    ++m_nTravail[TravailN::COTE_NONEXPO];
}
