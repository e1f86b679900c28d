// Sections whose cavities open onto the fire, by the three grid methods and the three
// Eurocode 2 fire curves, at 5, 2.5 and 1.25 mm cells: bar temperatures, the largest move
// of a bar at each halving of the cells, whether the field stayed within the range of its
// boundary temperatures, steps, restarts, wall time and cell updates per second. Then the
// cost of checking that range after every step, on the reference beam.
//   box   a 0.20 m square whose 0.16 x 0.08 m cavity runs 2 cm past its right side
//   slab  a 0.30 x 0.16 m hollow-core strip, 0.10 m cores every 0.15 m, end cores cut open
// --quick: 5 mm cells and a 36 second fire (CI smoke run).
#include "geometry/CPolygone.h"
#include "thermal/BilanThermique.h"
#include "thermal/CTemperatureGenerale.h"
#include "thermal/GrilleBilan.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <thread>
#include <vector>

namespace
{
const double kMarge = 0.03; // fire-side gas around the section's box

struct Section
{
    const char* nom;
    CPolygone contour;
    std::vector<CPolygone> cavites;
    std::vector<CPointD> barres;
    double largeur, hauteur;
};

CPolygone Rectangle(double x0, double y0, double x1, double y1)
{
    CPolygone p;
    p.AddTail(x0, y0);
    p.AddTail(x1, y0);
    p.AddTail(x1, y1);
    p.AddTail(x0, y1);
    return p;
}

CPolygone Cercle(double cx, double cy, double r)
{
    const double pi = std::acos(-1.0);
    CPolygone p;
    for (int k = 0; k < 32; ++k)
        p.AddTail(cx + r * std::cos(2 * pi * k / 32), cy + r * std::sin(2 * pi * k / 32));
    return p;
}

std::vector<Section> Sections()
{
    std::vector<Section> s(2);
    s[0] = {"box", Rectangle(0, 0, 0.20, 0.20), {Rectangle(0.06, 0.02, 0.22, 0.10)}, {}, 0.20, 0.20};
    s[0].barres = {CPointD(0.03, 0.03), CPointD(0.10, 0.14), CPointD(0.17, 0.17), CPointD(0.03, 0.10)};
    s[1] = {"slab", Rectangle(0, 0, 0.30, 0.16), {}, {}, 0.30, 0.16};
    for (double x : {0.0, 0.15, 0.30})
        s[1].cavites.push_back(Cercle(x, 0.08, 0.05));
    s[1].barres = {CPointD(0.075, 0.03), CPointD(0.15, 0.02), CPointD(0.225, 0.13), CPointD(0.04, 0.02)};
    return s;
}

// The mesh's cell codes (section 11, cavity -3 wherever it reaches, gas -1) on a grid that
// keeps the same margin of gas at every cell size.
void Mailler(CTemperatureGenerale& t, Section& s, double pas)
{
    const int nl = (int)std::lround((s.hauteur + 2 * kMarge) / pas);
    const int nc = (int)std::lround((s.largeur + 2 * kMarge) / pas);
    t.RAZListesEtDonnees();
    t.m_TypeCalcul = CTemperatureGenerale::EC2;
    t.m_Masque.SetSize(nl);
    for (int i = 0; i < nl; ++i)
    {
        t.m_Masque[i].SetSize(nc);
        for (int j = 0; j < nc; ++j)
        {
            const CPointD p(-kMarge + (j + 0.5) * pas, s.hauteur + kMarge - (i + 0.5) * pas);
            double code = s.contour.AppartientAPolygone(p) != -1 ? 11.0 : -1.0;
            for (CPolygone& c : s.cavites)
                if (c.AppartientAPolygone(p) == 0)
                    code = -3.0;
            t.m_Masque[i][j] = code;
        }
    }
    t.SetDELX(pas);
    t.m_dTravailA[TravailA::LAMBDA] = 1.4;
    t.m_dTravailA[TravailA::RHO] = 2400.0;
    t.m_dTravailA[TravailA::C] = 0.22;
    t.m_dXOrigine = s.largeur + kMarge; // lookup x = largeur - x
}

struct Cas
{
    const char* nom;
    int methode; // 0 Eurocode 2, 1 ITBTP, 2 ZOLT
    int courbe;
};
const Cas kCas[] = {{"EC2 std", 0, 0}, {"EC2 ext", 0, 1}, {"EC2 hyd", 0, 2}, {"ITBTP", 1, 0}, {"ZOLT", 2, 0}};

struct Resultat
{
    std::vector<double> barres;
    StatistiquesBilan stats;
    double secondes, cellules;
};

Resultat Calculer(Section& s, const Cas& c, double pas, double duree)
{
    CTemperatureGenerale t;
    Mailler(t, s, pas);
    const auto debut = std::chrono::steady_clock::now();
    if (c.methode == 0)
        t.CalculTemperatureEC2(0, duree, 0.015, 0.0, (CTemperatureGenerale::MONTEE_TEMPERATURE)c.courbe,
                               GRANULAT_SILICEUX, 0);
    else if (c.methode == 1)
        t.CalculTemperatureITBTP(0, 0, duree, 0.0);
    else
        t.CalculTemperatureZOLT(0, duree, 0.0);
    Resultat r;
    r.secondes = std::chrono::duration<double>(std::chrono::steady_clock::now() - debut).count();
    r.stats = DernieresStatistiquesBilan();
    r.cellules = (double)t.m_Masque.GetSize() * (double)t.m_Masque[0].GetSize();
    for (const CPointD& b : s.barres)
        r.barres.push_back(t.T(s.largeur - b.x, b.y + kMarge - pas));
    return r;
}

// Wall time of the Eurocode 2 method on the reference beam, with the range checked after
// every step or on the final field only.
double Poutre(bool chaquePas, double duree)
{
    CTemperatureGenerale t;
    Section s{"beam", Rectangle(0, 0, 0.30, 0.60), {}, {}, 0.30, 0.60};
    Mailler(t, s, 0.005);
    DefinirControleBornesThermique(chaquePas);
    const auto debut = std::chrono::steady_clock::now();
    t.CalculTemperatureEC2(0, duree, 0.015, 0.0, CTemperatureGenerale::MONTEE_NORMALE, GRANULAT_SILICEUX, 0);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - debut).count();
}
} // namespace

int main(int argc, char** argv)
{
    const bool rapide = argc > 1 && std::strcmp(argv[1], "--quick") == 0;
    const double duree = rapide ? 0.01 : 0.5;
    std::vector<double> pasListe = {0.005};
    if (!rapide)
        pasListe.insert(pasListe.end(), {0.0025, 0.00125});
    DefinirNombreThreadsThermique(1);
    DefinirControleBornesThermique(false);
    std::printf("open cavities, %.2f h of fire, one thread; %u cores\n", duree,
                std::max(1u, std::thread::hardware_concurrency()));
    std::printf("%-5s %-8s %6s %9s %9s %9s %9s %9s %6s %9s %4s %8s %10s\n", "", "case", "cell", "bar 1", "bar 2",
                "bar 3", "bar 4", "max move", "range", "steps", "rst", "wall s", "updates/s");
    for (Section& s : Sections())
        for (const Cas& c : kCas)
        {
            std::vector<double> avant;
            for (double pas : pasListe)
            {
                const Resultat r = Calculer(s, c, pas, duree);
                double mouvement = avant.empty() ? NAN : 0.0;
                for (std::size_t k = 0; k < avant.size(); ++k)
                    mouvement = std::max(mouvement, std::fabs(r.barres[k] - avant[k]));
                std::printf("%-5s %-8s %4.2fmm %9.3f %9.3f %9.3f %9.3f %9.3f %6s %9lld %4d %8.3f %10.3e\n", s.nom,
                            c.nom, pas * 1000, r.barres[0], r.barres[1], r.barres[2], r.barres[3], mouvement,
                            r.stats.horsBornes ? "OUT" : "ok", r.stats.pasTotal, r.stats.redemarrages, r.secondes,
                            r.cellules * (double)r.stats.pasTotal / r.secondes);
                avant = r.barres;
            }
        }
    const double dureePoutre = rapide ? 0.1 : 2.0;
    const double sans = Poutre(false, dureePoutre), avec = Poutre(true, dureePoutre);
    std::printf("range check after every step, EC2 reference beam 0.30 x 0.60 m, 5 mm, %.1f h: %.3f s without, "
                "%.3f s with (%+.1f %%)\n",
                dureePoutre, sans, avec, 100.0 * (avec - sans) / sans);
    return 0;
}
