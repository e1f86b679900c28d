#include "thermal/BilanThermique.h"

#include "framework/CException.h"

#include <algorithm>
#include <cmath>
#include <condition_variable>
#include <limits>
#include <mutex>
#include <thread>

namespace
{
std::atomic<int> g_nThreads{0};
#ifdef NDEBUG
std::atomic<bool> g_controleChaquePas{false};
#else
std::atomic<bool> g_controleChaquePas{true};
#endif

// Below this many cells a step is too short for threads to pay off.
constexpr std::size_t kCellulesParallele = 40000;

// Latent heat of the water of a cubic metre, kcal.
constexpr double kChaleurLatenteEau = 538800.0;

// A step above an air cell's limit by rounding only (the methods compute the cavity step
// in another order) is no reason to restart the fire.
constexpr double kMargeLimiteAir = 1e-9;

// True when a value of T[0..n-1] is a NaN or lies outside [bas, haut] widened by a
// billionth for rounding. Written as one branch-free sweep.
bool HorsPlage(const double* T, std::size_t n, double bas, double haut)
{
    const double marge = 1e-9 * std::max({1.0, std::fabs(bas), std::fabs(haut)});
    const double lo = bas - marge, hi = haut + marge;
    bool hors = false;
    for (std::size_t i = 0; i < n; ++i)
        hors |= !(T[i] >= lo) | !(T[i] <= hi);
    return hors;
}

// All threads of a run meet here between the two phases of a step. A waiter spins a
// little, since the others are usually only microseconds behind, then sleeps until the
// last one arrives: with more threads than free cores, spinning or yielding waiters would
// keep taking the core from the thread they wait for.
class Barriere
{
public:
    explicit Barriere(int n) : m_n(n) {}
    void Attendre()
    {
        if (m_n == 1)
            return;
        const unsigned g = m_generation.load(std::memory_order_acquire);
        if (m_compte.fetch_add(1, std::memory_order_acq_rel) == m_n - 1)
        {
            m_compte.store(0, std::memory_order_relaxed);
            bool dormeurs;
            {
                // Under the lock, so that a waiter cannot check and then sleep through it.
                std::lock_guard<std::mutex> verrou(m_mutex);
                m_generation.fetch_add(1, std::memory_order_release);
                dormeurs = m_dormeurs > 0;
            }
            if (dormeurs)
                m_reveil.notify_all();
            return;
        }
        for (int tours = 0; tours < kTours; ++tours)
            if (m_generation.load(std::memory_order_acquire) != g)
                return;
        std::unique_lock<std::mutex> verrou(m_mutex);
        ++m_dormeurs;
        m_reveil.wait(verrou, [&] { return m_generation.load(std::memory_order_acquire) != g; });
        --m_dormeurs;
    }

private:
    static constexpr int kTours = 1 << 14; // some tens of microseconds
    const int m_n;
    std::atomic<int> m_compte{0};
    std::atomic<unsigned> m_generation{0};
    std::mutex m_mutex;
    std::condition_variable m_reveil;
    int m_dormeurs = 0; // waiters asleep, under m_mutex
};

bool EstMateriau(std::int8_t n) { return n == BilanThermique::kMateriau; }
} // namespace

void DefinirNombreThreadsThermique(int nThreads) { g_nThreads.store(std::max(0, nThreads)); }
int NombreThreadsThermique() { return g_nThreads.load(); }
void DefinirControleBornesThermique(bool chaquePas) { g_controleChaquePas.store(chaquePas); }
bool ControleBornesThermique() { return g_controleChaquePas.load(); }

double LoisThermiques::PasMaximal() const { return std::numeric_limits<double>::infinity(); }

// State shared by the threads of one run.
struct BilanThermique::Partage
{
    explicit Partage(int n) : barriere(n), limites(n, 0.0), hors(n, 0) {}
    Barriere barriere;
    const LoisThermiques* lois = nullptr;
    const std::function<bool(double)>* progression = nullptr;
    double duree = 0.0;
    double dt0 = 0.0;
    bool chaquePas = false;      // check the range after every step
    std::vector<double> limites; // per band: smallest stability limit below dt, or +inf
    std::vector<char> hors;      // per band: its part of the field is out of range
    bool arret = false;          // written by band 0 only, before a barrier
    int tampon = 0;              // buffer holding the final field
    double bas = 0.0, haut = 0.0; // boundary range of the final run
    StatistiquesBilan stats;
    ResultatsFaces faces;
};

BilanThermique::BilanThermique(int nLignes, int nColonnes, const double* masque, double delta)
    : m_nl(std::max(0, nLignes)), m_nc(std::max(0, nColonnes)), m_delta(delta)
{
    const std::size_t n = (std::size_t)m_nl * (std::size_t)m_nc;
    m_nature.assign(n, kAir);
    m_materiau.assign(n, -1);
    m_humidite.assign(n, -1);
    for (std::size_t i = 0; i < n; ++i)
    {
        const double v = masque[i];
        if (v == -1.0)
            m_nature[i] = kFeu;
        else if (v == -2.0)
            m_nature[i] = kNonExpose;
        else if (v > 0.0)
        {
            // Codes are small (11, 12, 21 ...); anything beyond is refused below.
            const double dizaines = std::trunc(v / 10.0);
            const double unites = v - 10.0 * dizaines;
            if (dizaines > 30000.0)
                AfxThrowInvalidArgException();
            m_nature[i] = kMateriau;
            m_materiau[i] = (std::int16_t)(unites - 1.0);
            m_humidite[i] = (std::int16_t)(dizaines - 1.0);
        }
        // 0.0 and the cavity mark -3.0 (and any other code) are air cells.
    }
    m_T.assign(n, 0.0);
    m_Tn.assign(n, 0.0);
    m_r.assign(n, 0.0);
    m_cap.assign(n, 0.0);
    m_stock.assign(n, 0.0);
    m_src.assign(n, 0.0);
}

// Checks the material and moisture indices against the laws' tables and builds the
// run lists the time loop walks.
void BilanThermique::Preparer(const LoisThermiques& lois)
{
    const std::size_t nMat = lois.seuilEvaporation.size();
    const std::size_t nHum = lois.teneurEau.size();
    const double dxdy = m_delta * m_delta;
    m_segments.clear();
    m_rapides.clear();
    m_speciaux.clear();
    m_facesListe.clear();
    m_controleFinal = true;
    for (int l = 0; l < m_nl; ++l)
    {
        const std::int32_t base = l * m_nc;
        for (int c = 0; c < m_nc; ++c)
        {
            const std::int32_t i = base + c;
            const std::int8_t nat = m_nature[i];
            m_r[i] = 0.0;
            m_src[i] = 0.0;
            m_cap[i] = 0.0;
            if (nat == kFeu || nat == kNonExpose)
                continue;
            bool rapide = false;
            if (nat == kMateriau)
            {
                const int m = m_materiau[i], h = m_humidite[i];
                if (m < 0 || (std::size_t)m >= nMat || h < 0 || (std::size_t)h >= nHum)
                    AfxThrowInvalidArgException();
                const double src = m < (int)lois.source.size() ? lois.source[m] : 0.0;
                m_src[i] = src;
                m_controleFinal = m_controleFinal && src == 0.0;
                if (c > 0 && !m_segments.empty() && m_segments.back().fin == i && m_segments.back().materiau == m)
                    ++m_segments.back().fin;
                else
                    m_segments.push_back({i, i + 1, m});
                rapide = l > 0 && l < m_nl - 1 && c > 0 && c < m_nc - 1 && src == 0.0 &&
                         !(lois.seuilEvaporation[m] < 100.0) && EstMateriau(m_nature[i - 1]) &&
                         EstMateriau(m_nature[i + 1]) && EstMateriau(m_nature[i - m_nc]) &&
                         EstMateriau(m_nature[i + m_nc]);
            }
            else
                m_cap[i] = lois.capaciteAir * dxdy;
            if (rapide)
            {
                if (!m_rapides.empty() && m_rapides.back().fin == i)
                    ++m_rapides.back().fin;
                else
                    m_rapides.push_back({i, i + 1, 0});
            }
            else
                m_speciaux.push_back(i);
            // Faces towards the outside air, in the same fixed order as the exchanges.
            const std::int32_t voisins[4] = {c > 0 ? i - 1 : -1, c < m_nc - 1 ? i + 1 : -1,
                                             l > 0 ? i - m_nc : -1, l < m_nl - 1 ? i + m_nc : -1};
            for (std::int32_t v : voisins)
                if (v >= 0 && (m_nature[v] == kFeu || m_nature[v] == kNonExpose))
                    m_facesListe.push_back({i, m_nature[v]});
        }
    }
    m_tFace.assign(m_facesListe.size(), 0.0);
}

void BilanThermique::Bandes(int nThreads)
{
    m_bandes.clear();
    for (int b = 0; b < nThreads; ++b)
    {
        Bande B;
        B.l0 = (int)((long long)m_nl * b / nThreads);
        B.l1 = (int)((long long)m_nl * (b + 1) / nThreads);
        const std::int32_t i0 = B.l0 * m_nc, i1 = B.l1 * m_nc;
        auto parSegment = [&](const std::vector<Segment>& v, std::size_t& a, std::size_t& z) {
            auto cle = [](const Segment& s, std::int32_t i) { return s.debut < i; };
            a = std::lower_bound(v.begin(), v.end(), i0, cle) - v.begin();
            z = std::lower_bound(v.begin(), v.end(), i1, cle) - v.begin();
        };
        parSegment(m_segments, B.seg0, B.seg1);
        parSegment(m_rapides, B.rap0, B.rap1);
        B.spe0 = std::lower_bound(m_speciaux.begin(), m_speciaux.end(), i0) - m_speciaux.begin();
        B.spe1 = std::lower_bound(m_speciaux.begin(), m_speciaux.end(), i1) - m_speciaux.begin();
        auto cleFace = [](const Face& f, std::int32_t i) { return f.cellule < i; };
        B.face0 = std::lower_bound(m_facesListe.begin(), m_facesListe.end(), i0, cleFace) - m_facesListe.begin();
        B.face1 = std::lower_bound(m_facesListe.begin(), m_facesListe.end(), i1, cleFace) - m_facesListe.begin();
        m_bandes.push_back(B);
    }
}

StatistiquesBilan BilanThermique::Calculer(const LoisThermiques& lois, double duree, double dt,
                                           const std::function<bool(double)>& progression)
{
    Preparer(lois);
    const std::size_t n = m_T.size();
    int nThreads = NombreThreadsThermique();
    if (nThreads == 0)
        nThreads = n >= kCellulesParallele ? (int)std::max(1u, std::thread::hardware_concurrency()) : 1;
    nThreads = std::max(1, std::min(nThreads, m_nl));
    Bandes(nThreads);
    m_fluxH.assign((std::size_t)nThreads, std::vector<double>((std::size_t)m_nc));
    m_fluxHaut = m_fluxH;
    m_fluxBas = m_fluxH;

    Partage p(nThreads);
    p.lois = &lois;
    p.progression = progression ? &progression : nullptr;
    p.duree = duree;
    p.dt0 = dt;
    p.chaquePas = m_controleFinal && ControleBornesThermique();
    std::vector<std::thread> threads;
    threads.reserve(nThreads - 1);
    for (int b = 1; b < nThreads; ++b)
        threads.emplace_back([this, b, &p] { Travailler(b, p); });
    Travailler(0, p);
    for (std::thread& t : threads)
        t.join();
    m_enCours = nullptr;
    if (p.tampon == 1)
        m_T.swap(m_Tn);
    if (m_controleFinal && !p.stats.horsBornes && HorsPlage(m_T.data(), n, p.bas, p.haut))
    {
        p.stats.horsBornes = true;
        p.stats.pasHorsBornes = p.stats.pas;
    }
    m_faces = p.faces;
    p.stats.threads = nThreads;
    return p.stats;
}

// One band's share of the whole run, in step with the other bands.
void BilanThermique::Travailler(int bande, Partage& p)
{
    const LoisThermiques& lois = *p.lois;
    const Bande& B = m_bandes[bande];
    const std::size_t nb = m_bandes.size();
    std::vector<double> lam((std::size_t)m_nc), rc((std::size_t)m_nc);
    double* T[2] = {m_T.data(), m_Tn.data()};
    const std::size_t i0 = (std::size_t)B.l0 * m_nc, i1 = (std::size_t)B.l1 * m_nc;
    const double dxdy = m_delta * m_delta;
    double dt = p.dt0;
    int redemarrages = 0;
    long long pasTotal = 0;
    for (;;)
    {
        dt = std::min(dt, lois.PasMaximal());
        std::fill(T[0] + i0, T[0] + i1, lois.tempInitiale);
        std::fill(T[1] + i0, T[1] + i1, lois.tempInitiale);
        for (std::size_t i = i0; i < i1; ++i)
            m_stock[i] = EstMateriau(m_nature[i]) ? dxdy * lois.teneurEau[m_humidite[i]] * kChaleurLatenteEau : 0.0;
        ResultatsFaces faces = lois.facesInitiales;
        const long long N = dt > 0.0 ? lois.NombrePas(p.duree, dt) : 0;
        ConditionsPas prec;
        int cur = 0;
        bool redemarre = false, hors = false;
        double bas = lois.tempInitiale, haut = lois.tempInitiale; // boundary temperatures seen
        double limiteAir = std::numeric_limits<double>::infinity(); // of the step just taken
        long long k = 1;
        for (;; ++k)
        {
            // Phase A: properties at the current temperatures, stability, face temperatures.
            const double limiteBande = PhaseProprietes(B, lois, k > 1 ? &prec : nullptr, T[cur], lam, rc, dt);
            p.limites[bande] = std::min(limiteBande, limiteAir);
            p.hors[bande] = p.chaquePas && HorsPlage(T[cur] + i0, i1 - i0, bas, haut);
            if (bande == 0 && p.progression && k > 1)
            {
                m_enCours = T[cur];
                p.arret = !(*p.progression)((double)(k - 1) / (double)N);
            }
            p.barriere.Attendre();
            double limite = std::numeric_limits<double>::infinity();
            for (std::size_t b = 0; b < nb; ++b)
            {
                limite = std::min(limite, p.limites[b]);
                hors = hors || p.hors[b];
            }
            if (lois.Redemarrable() && limite < dt)
            {
                dt = limite;
                ++redemarrages;
                redemarre = true;
                p.barriere.Attendre(); // nobody reads the shared limits any more
                break;
            }
            if (hors)
                break;
            if (bande == 0 && observation)
                observation(k - 1, dt, T[cur]);
            if (k > 1)
                CumulerFaces(faces);
            if (k > N || p.arret)
                break;
            const ConditionsPas c = lois.PreparePas((int)k, dt, faces);
            bas = std::min({bas, c.thetaGaz, c.thetaAir});
            haut = std::max({haut, c.thetaGaz, c.thetaAir});
            limiteAir = PhaseEchanges(bande, lois, c, T[cur], T[cur ^ 1], dt);
            ++pasTotal;
            p.barriere.Attendre();
            cur ^= 1;
            prec = c;
        }
        if (redemarre)
            continue;
        if (bande == 0)
        {
            p.tampon = cur;
            p.faces = faces;
            p.bas = bas;
            p.haut = haut;
            p.stats.pas = k - 1;
            p.stats.pasTotal = pasTotal;
            p.stats.redemarrages = redemarrages;
            p.stats.dt = dt;
            p.stats.interrompu = p.arret;
            p.stats.horsBornes = hors;
            p.stats.pasHorsBornes = hors ? k - 1 : 0;
        }
        return;
    }
}

double BilanThermique::PhaseProprietes(const Bande& B, const LoisThermiques& lois, const ConditionsPas* prec,
                                       const double* T, std::vector<double>& lam, std::vector<double>& rc,
                                       double dt)
{
    const double demi = 0.5 * m_delta;
    const double dxdy = m_delta * m_delta;
    const bool stabilite = lois.Redemarrable();
    double limite = std::numeric_limits<double>::infinity();
    double* __restrict r = m_r.data();
    double* __restrict cap = m_cap.data();
    for (std::size_t s = B.seg0; s < B.seg1; ++s)
    {
        const Segment& seg = m_segments[s];
        const std::size_t n = (std::size_t)(seg.fin - seg.debut);
        double* __restrict la = lam.data();
        double* __restrict rh = rc.data();
        lois.Proprietes(seg.materiau, T + seg.debut, n, la, rh);
        double* __restrict rs = r + seg.debut;
        double* __restrict cs = cap + seg.debut;
        bool instable = false;
        for (std::size_t j = 0; j < n; ++j)
        {
            rs[j] = demi / la[j];
            cs[j] = rh[j] * dxdy;
            instable |= cs[j] < 4.0 * la[j] * dt;
        }
        // The explicit limit rho c delta^2 / (4 lambda), only where it is below the step.
        if (stabilite && instable)
            for (std::size_t j = 0; j < n; ++j)
                if (cs[j] < 4.0 * la[j] * dt)
                {
                    const double l = cs[j] / (4.0 * la[j]);
                    if (l < dt)
                        limite = std::min(limite, l);
                }
    }
    if (prec)
        for (std::size_t f = B.face0; f < B.face1; ++f)
        {
            const Face& F = m_facesListe[f];
            const double t = T[F.cellule];
            const double ri = r[F.cellule];
            double film, amb;
            if (F.nature == kFeu)
            {
                film = prec->rFeuParCellule ? lois.ResistanceFeu(*prec, t) : prec->rFeu;
                amb = prec->thetaGaz;
            }
            else
            {
                film = prec->rNonExpose;
                amb = prec->thetaAir;
            }
            m_tFace[f] = t + (amb - t) * ri / (ri + film);
        }
    return limite;
}

// Face means summed over the whole list in one fixed order, whatever the bands.
void BilanThermique::CumulerFaces(ResultatsFaces& f) const
{
    double se = 0.0, sn = 0.0;
    int ne = 0, nn = 0;
    double mx = f.maxNonExposee;
    for (std::size_t k = 0; k < m_facesListe.size(); ++k)
    {
        const double t = m_tFace[k];
        if (m_facesListe[k].nature == kFeu)
        {
            se += t * m_delta;
            ++ne;
        }
        else
        {
            sn += t * m_delta;
            ++nn;
            mx = std::max(mx, t);
        }
    }
    if (ne > 0)
        f.moyenneExposee = se / (ne * m_delta);
    if (nn > 0)
        f.moyenneNonExposee = sn / (nn * m_delta);
    f.maxNonExposee = mx;
    f.nExposees = ne;
    f.nNonExposees = nn;
}

double BilanThermique::EchangeSpecial(std::size_t i, const LoisThermiques& lois, const ConditionsPas& c,
                                      const double* T, double* conductance) const
{
    const double t = T[i];
    const double ri = m_r[i];
    const bool mat = EstMateriau(m_nature[i]);
    // Towards the outside: the material's half-cell, or the air cell's own face of air,
    // then the film.
    const double rDedans = mat ? ri : lois.rAirAir;
    double g = 0.0;
    auto face = [&](std::size_t v) -> double {
        double R, tv;
        switch (m_nature[v])
        {
        case kFeu:
            R = rDedans + (c.rFeuParCellule ? lois.ResistanceFeu(c, t) : c.rFeu);
            tv = c.thetaGaz;
            break;
        case kNonExpose:
            R = rDedans + c.rNonExpose;
            tv = c.thetaAir;
            break;
        case kMateriau:
            R = (ri + m_r[v]) + (mat ? lois.rContact : lois.rMateriauAir);
            tv = T[v];
            break;
        default:
            R = (ri + m_r[v]) + (mat ? lois.rMateriauAir : lois.rAirAir);
            tv = T[v];
            break;
        }
        if (conductance)
            g += 1.0 / R;
        return (tv - t) / R;
    };
    const std::size_t l = i / (std::size_t)m_nc, col = i % (std::size_t)m_nc;
    double q = 0.0;
    if (col > 0)
        q += face(i - 1);
    if (col + 1 < (std::size_t)m_nc)
        q += face(i + 1);
    if (l > 0)
        q += face(i - m_nc);
    if (l + 1 < (std::size_t)m_nl)
        q += face(i + m_nc);
    if (conductance)
        *conductance = g;
    return q;
}

// Returns the smallest explicit limit C / G of the band's air cells that lies below dt
// (restartable laws only), or infinity.
double BilanThermique::PhaseEchanges(int bande, const LoisThermiques& lois, const ConditionsPas& c,
                                     const double* __restrict T, double* __restrict Tn, double dt)
{
    const Bande& B = m_bandes[(std::size_t)bande];
    const double dd = m_delta * dt;
    const double dxdy = m_delta * m_delta;
    const double rc = lois.rContact;
    const std::size_t nc = (std::size_t)m_nc;
    const double* __restrict r = m_r.data();
    const double* __restrict cap = m_cap.data();
    // Plain interior cells, row by row. Each face's flux (theta_n - theta)/R is computed
    // once and used with its sign by both cells: negating is exact, so this gives the
    // very bits of a per-cell sum, with half the divisions.
    double* __restrict fh = m_fluxH[bande].data();
    double* __restrict fHaut = m_fluxHaut[bande].data();
    double* __restrict fBas = m_fluxBas[bande].data();
    int ligneHaut = -1; // row whose downward fluxes fHaut holds
    for (std::size_t s = B.rap0; s < B.rap1;)
    {
        const int l = m_rapides[s].debut / m_nc;
        const std::size_t base = (std::size_t)l * nc;
        const double* __restrict Tl = T + base;
        const double* __restrict rl = r + base;
        auto fluxBas = [&](std::size_t ligne, double* __restrict f) {
            const double* __restrict Ta = T + ligne * nc;
            const double* __restrict ra = r + ligne * nc;
            for (std::size_t j = 0; j < nc; ++j)
                f[j] = (Ta[j + nc] - Ta[j]) / ((ra[j] + ra[j + nc]) + rc);
        };
        if (ligneHaut != l - 1)
            fluxBas((std::size_t)(l - 1), fHaut);
        fluxBas((std::size_t)l, fBas);
        for (std::size_t j = 0; j + 1 < nc; ++j)
            fh[j] = (Tl[j + 1] - Tl[j]) / ((rl[j] + rl[j + 1]) + rc);
        for (; s < B.rap1 && m_rapides[s].debut / m_nc == l; ++s)
        {
            const std::size_t a = (std::size_t)m_rapides[s].debut - base, z = (std::size_t)m_rapides[s].fin - base;
            for (std::size_t j = a; j < z; ++j)
            {
                const double q = ((-fh[j - 1] + fh[j]) + -fHaut[j]) + fBas[j];
                Tn[base + j] = Tl[j] + q * dd / cap[base + j];
            }
        }
        std::swap(fHaut, fBas);
        ligneHaut = l;
    }
    const bool limiterAir = lois.Redemarrable();
    double limiteAir = std::numeric_limits<double>::infinity();
    for (std::size_t s = B.spe0; s < B.spe1; ++s)
    {
        const std::size_t i = (std::size_t)m_speciaux[s];
        const double t = T[i];
        const bool mat = EstMateriau(m_nature[i]);
        double G = 0.0;
        const double Q = EchangeSpecial(i, lois, c, T, !mat && limiterAir ? &G : nullptr) * dd + m_src[i] * dxdy * dt;
        if (!mat && limiterAir)
        {
            const double limite = cap[i] / (m_delta * G);
            if (limite * (1.0 + kMargeLimiteAir) < dt)
                limiteAir = std::min(limiteAir, limite);
        }
        if (mat)
        {
            const int m = m_materiau[i];
            if (lois.seuilEvaporation[m] < 100.0 && t >= lois.seuilEvaporation[m])
            {
                // Evaporation plateau: the water's latent heat absorbs Q first.
                if (m_stock[i] >= Q)
                {
                    m_stock[i] -= Q;
                    Tn[i] = t;
                }
                else
                {
                    Tn[i] = t + (Q - m_stock[i]) / cap[i];
                    m_stock[i] = 0.0;
                }
                continue;
            }
        }
        Tn[i] = t + Q / cap[i];
    }
    return limiteAir;
}
