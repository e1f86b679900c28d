// The cell heat-balance kernel shared by the grid methods (ITBTP, ZOLT, Eurocode 2).
//
// The grid is a flat row-major copy of the marker grid. Each cell is one of:
//   -1  gas on the fire side, at the gas temperature of the step, never updated;
//   -2  air on the unexposed side, at the ambient temperature, never updated;
//    0  air cell inside the section (the -3 cavity mark is passed in as 0);
//   >0  material cell: units digit - 1 is the material, tens digit - 1 the moisture index.
//
// Every exchange between a cell and a neighbour is a series of resistances:
//     R = (r_cell + r_neighbour) + r_face
// with r = 0.5 delta / lambda the half-cell resistance of a material cell (0 for an air or
// gas cell) and r_face the face resistance the method gives to that pair of kinds:
//     material-material  contact resistance (0 for Eurocode 2)
//     material-air cell  and air-air: the method's convection resistance
//     fire-side gas      1/h, the fire coefficient of the step (per cell for Eurocode 2)
//     unexposed air      1/hu, the unexposed coefficient, towards the ambient temperature
// An air cell meets the fire-side gas and the unexposed air as it meets another air cell,
// through the air-air resistance, in series with the film: its face is a face of air.
// The heat received in a step is Q = (sum of (theta_n - theta)/R) * delta * dt, the four
// neighbours summed in the fixed order left, right, up, down (a neighbour beyond the grid
// edge gives nothing); the new temperature is theta + Q / (capacity * dx * dy), or the
// evaporation plateau for a material whose threshold is below 100 degrees.
//
// How the step is bounded. With C = capacity * dx * dy and G = delta * sum of 1/R over the
// four faces (the cell's total conductance to its neighbours and films), a step is
//     theta' = theta (1 - dt G / C) + (dt / C) * sum of (delta / R) theta_n.
// When dt <= C / G every weight is non-negative: theta' is an average of the cell, its
// neighbours and the boundary temperatures, and cannot leave their range.
//  - Air cells. Every face of an air cell carries at least the air-air resistance (towards
//    a material cell the material-air one plus the neighbour's half-cell, towards the gas
//    or the unexposed air the air-air one plus the film), so G <= 4 delta / r_air-air and
//    the methods' cavity step, capacity * delta * r_air-air / 4, keeps every air cell
//    within range whatever the fire. The kernel still measures C / G of every air cell at
//    every step, and a method that restarts takes it as its step when it is smaller (air
//    cells on a grid whose step was not held to the cavity limit).
//  - Material cells. Each face has the cell's half-cell resistance delta / (2 lambda) in
//    series, so its conductance is below 2 lambda and, since
//        (a - b)^2 / (r_a + r_b + r_face) <= a^2 / r_a + b^2 / r_b,
//    the methods' limit rho c delta^2 / (4 lambda) (Eurocode 2: at every cell's current
//    temperature, through its restarts; ITBTP and ZOLT: at 0 degrees, where concrete's
//    rho c / lambda is smallest below 1900 degrees) holds dt times the largest eigenvalue
//    of the step's matrix to 2 or less (air cells under the cavity step alike): the
//    explicit scheme cannot amplify errors. It does not make every weight non-negative: a
//    hot face cell whose film or cooler neighbours conduct more than lambda gets a weight
//    a few per cent below zero, too little to carry it out of range.
// The kernel keeps the lowest and highest boundary temperatures seen (the initial one, the
// gas and the air of every step taken) and checks the field against them, widened by a
// billionth for rounding: after every step when the check is on (debug builds and tests,
// see DefinirControleBornesThermique), and on the final field always. A field that holds
// a NaN or leaves the range stops the run and is reported (StatistiquesBilan::horsBornes).
// The check is left out for laws with a heat source, which may heat beyond the range.
//
// Each new value depends only on the values of the previous step, so the rows can be split
// into bands among threads and the field is bit for bit the same for any thread count.
// Material properties are evaluated once per cell and per step, on contiguous runs.
//
// Face results, after each step: the temperature of every face between a cell and the
// fire-side gas (or the unexposed air) is the point between the half-cell resistance and
// the film resistance of the step just taken:
//     theta_face = theta + (theta_ambient - theta) * r / (r + R_film)
// The kernel keeps their mean (faces all have the width delta), in a fixed order, the mean
// of the unexposed faces and the largest unexposed face temperature ever reached.
#pragma once

#include "framework/Processeur.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

// Sets the number of threads of the thermal kernel: 0 (the default) chooses by itself
// (every core when the grid is large, one thread otherwise); n >= 1 uses exactly n
// (at most one per row). The result never depends on this setting.
void DefinirNombreThreadsThermique(int nThreads);
int NombreThreadsThermique();

// Checks the field against the boundary range after every step (true) or on the final
// field only (false). On by default in debug builds, off in optimised ones.
void DefinirControleBornesThermique(bool chaquePas);
bool ControleBornesThermique();

// Boundary conditions of one time step, prepared by the method's laws.
struct ConditionsPas
{
    double thetaGaz = 0.0;     // fire-side gas
    double thetaAir = 0.0;     // unexposed-side air
    double rFeu = 0.0;         // fire film resistance 1/h, when it does not depend on the cell
    double rNonExpose = 0.0;   // unexposed film resistance 1/hu
    bool rFeuParCellule = false; // true: ask the laws per cell (Eurocode 2 radiation)
};

// Face results after a step (or the method's initial values before the first one).
struct ResultatsFaces
{
    double moyenneExposee = 0.0;
    double moyenneNonExposee = 0.0;
    double maxNonExposee = 0.0;
    int nExposees = 0;
    int nNonExposees = 0;
};

// What one method supplies to the kernel.
class LoisThermiques
{
public:
    virtual ~LoisThermiques() = default;

    // Conductivity and volumetric heat capacity (rho c) of material m at the n
    // temperatures theta[0..n-1].
    virtual void Proprietes(int materiau, const double* theta, std::size_t n, double* lambda,
                            double* rhoC) const = 0;
    // Boundary conditions of step k (1-based) lasting dt hours, from the face results
    // after the previous step.
    virtual ConditionsPas PreparePas(int pas, double dt, const ResultatsFaces& faces) const = 0;
    // Fire film resistance for a face cell at theta, when rFeuParCellule is set.
    virtual double ResistanceFeu(const ConditionsPas& c, double theta) const { return c.rFeu; }

    // Number of steps for a duration (the methods round differently).
    virtual long long NombrePas(double duree, double dt) const = 0;
    // True when the step is reduced, and the fire restarted, as soon as a cell's explicit
    // stability limit falls below it.
    virtual bool Redemarrable() const { return false; }
    // Upper bound of the step at every (re)start (the cavity limit), infinity if none.
    virtual double PasMaximal() const;

    double tempInitiale = 20.0;   // every cell at the start
    double capaciteAir = 0.0;     // kcal/(m3 C) of an air cell
    double rContact = 0.0;        // material-material face resistance
    double rMateriauAir = 0.0;    // material-air cell face resistance (at least rAirAir)
    double rAirAir = 0.0;         // air-air face resistance, also air cell-gas and air cell-unexposed air
    std::vector<double> seuilEvaporation; // per material; the plateau applies below 100
    std::vector<double> teneurEau;        // per moisture index, m3 of water per m3
    std::vector<double> source;           // per material, kcal/(h m3)
    ResultatsFaces facesInitiales;        // before the first step
};

// Figures of a run.
struct StatistiquesBilan
{
    long long pas = 0;          // steps of the final (complete) run
    long long pasTotal = 0;     // steps including the runs abandoned by restarts
    int redemarrages = 0;
    int threads = 1;
    double dt = 0.0;            // the step used in the final run
    bool interrompu = false;    // stopped by the progress callback
    bool horsBornes = false;    // the field held a NaN or left the boundary range: stopped
    long long pasHorsBornes = 0; // the step after which it did
};

class BilanThermique
{
public:
    // masque: nLignes x nColonnes codes, row-major; delta: cell side in metres.
    BilanThermique(int nLignes, int nColonnes, const double* masque, double delta);

    // Runs the fire from the initial temperature for duree hours with the step dt, the
    // laws of one method, and an optional progress callback (fraction done; false stops).
    // A run that goes out of range (horsBornes) leaves the offending field in Temperatures().
    StatistiquesBilan Calculer(const LoisThermiques& lois, double duree, double dt,
                               const std::function<bool(double)>& progression = {});

    // Optional: called on the calling thread at every step of a run, once every band has
    // finished the step before and the field has passed the checks (no restart, within
    // range): the steps taken (0 for the initial field), the step dt in hours and the
    // field, row-major. A restart begins again at 0 with its new step.
    std::function<void(long long pas, double dt, const double* T)> observation;

    const std::vector<double>& Temperatures() const { return m_T; }
    // During a progress call: the field after the last step taken (row-major, every band
    // has finished it). Null outside a run.
    const double* ChampEnCours() const { return m_enCours; }
    const ResultatsFaces& Faces() const { return m_faces; }
    int NbLignes() const { return m_nl; }
    int NbColonnes() const { return m_nc; }

    enum : std::int8_t { kFeu = -1, kNonExpose = -2, kAir = 0, kMateriau = 1 };

private:
    struct Segment
    {
        std::int32_t debut, fin; // cell indices [debut, fin)
        std::int32_t materiau;
    };
    struct Face
    {
        std::int32_t cellule;
        std::int8_t nature; // kFeu or kNonExpose
    };
    struct Bande
    {
        int l0, l1;
        std::size_t seg0, seg1;   // material segments of the band (phase A)
        std::size_t rap0, rap1;   // fast runs of the band (phase B)
        std::size_t spe0, spe1;   // special cells of the band (phase B)
        std::size_t face0, face1; // faces of the band
    };

    void Preparer(const LoisThermiques& lois);
    void Bandes(int nThreads);
    struct Partage;
    void Travailler(int bande, Partage& p);
    PREFA_VECTORIEL_AVX2
    double PhaseProprietes(const Bande& b, const LoisThermiques& lois, const ConditionsPas* prec,
                           const double* T, std::vector<double>& lam, std::vector<double>& rc, double dt);
    PREFA_VECTORIEL_AVX2
    double PhaseEchanges(int bande, const LoisThermiques& lois, const ConditionsPas& c, const double* T,
                         double* Tn, double dt);
    double EchangeSpecial(std::size_t i, const LoisThermiques& lois, const ConditionsPas& c,
                          const double* T, double* conductance) const;
    void CumulerFaces(ResultatsFaces& f) const;

    int m_nl, m_nc;
    double m_delta;
    std::vector<std::int8_t> m_nature;
    std::vector<std::int16_t> m_materiau;  // material index, -1 when none
    std::vector<std::int16_t> m_humidite;  // moisture index, -1 when none
    std::vector<Segment> m_segments;       // runs of one material, by row
    std::vector<Segment> m_rapides;        // runs of plain interior material cells
    std::vector<std::int32_t> m_speciaux;  // every other updated cell
    std::vector<Face> m_facesListe;
    std::vector<Bande> m_bandes;

    std::vector<double> m_T, m_Tn;   // temperatures: current and next
    std::vector<double> m_r;         // half-cell resistance
    std::vector<double> m_cap;       // heat capacity of the cell, kcal/(m C)
    std::vector<double> m_stock;     // latent-heat store, kcal/m
    std::vector<double> m_src;       // source per cell, kcal/(h m3)
    std::vector<double> m_tFace;     // face temperatures of the last step
    std::vector<std::vector<double>> m_fluxH, m_fluxHaut, m_fluxBas; // per band, one row each
    ResultatsFaces m_faces;
    bool m_controleFinal = true;     // false for laws with a heat source
    const double* m_enCours = nullptr;
};
