// The temperature field of one concrete cross-section exposed to fire: a grid of
// square cells of side DELX, each carrying a temperature (degrees Celsius; rises above
// ambient for the DTU method), with the cell-code grid and the index lists and working
// values that the calculation methods share.
//
// Road of a calculation: InitTableDonnees (mesh) -> one CalculTemperature... method
// -> T(x, y) lookups in the grid frame (section coordinates minus GetPtTranslation())
// -> Ecriture / Lecture of the "TEMPER.nn" study file.
//
// Grid layouts chosen by InitTableDonnees (m rows and n columns probed over the
// section's bounding box, top row first):
//  - DTU grid (type 0): row 0 is unexposed-side air (-2), rows 1..m the probed rows,
//    rows m+1 and m+2 fire-side gas (-1), so NbLignes = m + 3 and the lookup's row
//    constant 3 puts the bottom of the section at y = 0. Column 0 and column n + 1
//    are the mirrored side borders (NbColonnes = n + 2); column j lies at
//    x = (n - j) DELX + DELX/2, so the section's left edge is at x = 0 and the extra
//    columns of a full-width model lie to the right of it. Section nodes start at 0.0
//    (a rise), cavities are marked -3.0 (cooled like the unexposed side), the outside
//    cells above the section are -2.0, every other outside cell -1.0.
//  - Grid methods (types 1 to 3): row 0 and row NbLignes - 1 are border rows (-2.0
//    with option 1, else -1.0) as long as the probed rows, so that every row has
//    NbColonnes cells and the methods can sweep a rectangle; the extra concrete row of
//    a full-width model sits on top of the section. Column j probes the section at
//    x = W/2 + n DELX/2 - (j + 1/2) DELX (W the section's width): the grid is centred
//    on the section, and in the lookup frame x is measured from that centre line when
//    m_dXOrigine is n DELX/2. InitTableDonnees stores it 100 times larger, on purpose;
//    callers that look up points set the origin they use.
#pragma once

#include "framework/Framework.h"
#include "geometry/CListePolygone.h"
#include "geometry/CPointD.h"
#include "geometry/CPolygone.h"
#include "thermal/CArrayEx.h"
#include "thermal/EmplacementsTravail.h"

#include <functional>
#include <vector>

class CCourbeFeu;

// Aggregate of the concrete. Only the order matters to the Eurocode 2 method: values
// above 1 select its third conductivity law.
enum TYPE_GRANULAT
{
    GRANULAT_SILICEUX = 0,  // siliceous
    GRANULAT_CALCAIRE = 1,  // calcareous
    GRANULAT_LEGER = 2      // lightweight
};

class CTemperatureGenerale : public CObject
{
    DECLARE_SERIAL(CTemperatureGenerale)
public:
    enum TYPE_CALCUL_TEMPERATURE
    {
        DTU = 0,
        ITBTP = 1,
        ZOLT = 2,
        EC2 = 3
    };
    // Fire curve of the Eurocode 2 method.
    enum MONTEE_TEMPERATURE
    {
        MONTEE_NORMALE = 0,      // standard fire (ISO 834)
        MONTEE_EXTERIEURE = 1,   // external fire
        MONTEE_HYDROCARBURE = 2  // hydrocarbon fire
    };

    typedef CArrayEx<double, double> CLigne;
    typedef CArrayEx<CLigne, CLigne&> CGrille;

    CTemperatureGenerale();
    CTemperatureGenerale(const CTemperatureGenerale& other);
    ~CTemperatureGenerale() override;
    CTemperatureGenerale operator=(const CTemperatureGenerale& other);
    // 1 when every stored list, grid and working value is exactly equal; the
    // translation point (and the progress callback) take no part.
    int operator==(const CTemperatureGenerale& other) const;

    void RAZListesEtDonnees();
    // Deep copy of everything but the translation point, which is left at (0, 0), and
    // the progress callback, which the target keeps.
    void CopyTemperature(const CTemperatureGenerale& source);

    // Usable rows and columns: the DTU grid's border rows and column are not counted.
    int GetSizeT() const;
    int GetSizeT(int i) const;
    double GetT1(int i, int j) const;
    double T(int i, int j) const;
    double T(double x, double y) const;

    int GetNbLignes() const { return m_nTravail[TravailN::NB_LIGNES]; }
    int GetNbColonnes() const { return m_nTravail[TravailN::NB_COLONNES]; }
    double GetDELX() const { return m_dTravailB[TravailB::DELX]; }
    void SetDELX(double d) { m_dTravailB[TravailB::DELX] = d; }
    CPointD GetPtTranslation() const { return m_PtTranslation; }
    TYPE_CALCUL_TEMPERATURE GetTypeCalcul() const { return m_TypeCalcul; }

    // Builds the grid over the section; returns the cell side used (also DELX).
    double InitTableDonnees(CPolygone& section, double duree, TYPE_CALCUL_TEMPERATURE type,
                            CListePolygone cavites, int nMateriaux, CArray<CPolygone, CPolygone>& materiaux,
                            int nZonesHumides, CArray<CPolygone, CPolygone>& zonesHumides, double pas,
                            int option, double largeurUtile, double dimensionA, double dimensionB,
                            double epaisseur, double reserve);

    // DTU method: rises above ambient under the standard fire, with the two insulation
    // criteria times (minutes, 1300.0 when not reached) in TravailA::T140 and T180.
    void CalculTemperatureDTU();
    // Steps of the DTU method on the grids themselves (0-based node indices): the
    // interior sweep; the face updates from a and b (TravailB::A, B), Calcul141
    // choosing the unexposed one when P (TravailB::P) + 2 <= 0; and the additions of
    // a node of m_T2 to the exposed-side (455) or unexposed-side (440) sums.
    void Init56();
    void Calcul141(int i, int j);
    void Calcul145(int i, int j);
    void Calcul200(int i, int j);
    void Etiq455(int i, int j);
    void Etiq440(int i, int j);

    // Grid methods. A run whose field would hold a NaN or leave the range of its boundary
    // temperatures (an unstable imposed step, materials without properties) stops and
    // leaves -1.0 ("no value") in every cell of m_T1; DernieresStatistiquesBilan() says
    // so, and the Eurocode 2 method returns -2 (0 when it ran, -1 for an empty grid).
    void CalculTemperatureITBTP(int nMateriaux, int nTable, double dDuree, double dPasImpose);
    void CalculTemperatureZOLT(int nMateriaux, double dDuree, double dPasImpose);
    int CalculTemperatureEC2(int nMateriaux, double dDuree, double dTeneurEau, double dPasImpose,
                             MONTEE_TEMPERATURE eMontee, TYPE_GRANULAT eGranulat, int bConductiviteGranulat);
    // The same under any fire curve (CCourbeFeu.h): the gas temperature and the fire-side
    // convection come from the curve. With CCourbeFeuMontee(eMontee) it is the call above.
    int CalculTemperatureEC2(int nMateriaux, double dDuree, double dTeneurEau, double dPasImpose,
                             const CCourbeFeu& courbe, TYPE_GRANULAT eGranulat, int bConductiviteGranulat);

    void Serialize(CArchive& ar) override;
    // Reads <studies>/<nom>/TEMPER.<numero>; a missing or locked file changes nothing.
    void Lecture(CString nom, int numero);
    // Writes <studies>/<nom>/TEMPER.<numero>; an open failure is reported, nothing written.
    void Ecriture(CString nom, int numero);

    // ---- data model, in this order ----
    CArrayEx<double, double> m_TabTemps;  // durations wanted, hours
    CArrayEx<int, int> m_NumLigne;
    CArrayEx<int, int> m_ColDebut;
    CArrayEx<int, int> m_ColFin;
    CArrayEx<int, int> m_NumColonne;
    CArrayEx<int, int> m_LigneDebut;
    CGrille m_T1;      // temperatures, one inner array per row
    CGrille m_T2;      // next time step while an explicit method runs
    CGrille m_Masque;  // cell codes: negative outside the section
    double m_dTravailA[TravailA::TAILLE]; // slots named in EmplacementsTravail.h
    int m_nTravail[TravailN::TAILLE];
    double m_dTravailB[TravailB::TAILLE];
    CPointD m_PtTranslation;
    TYPE_CALCUL_TEMPERATURE m_TypeCalcul;
    double m_dXOrigine;
    int m_nNbMaillesEnrobage;

    // Optional progress report of the calculation methods: called now and then (once
    // per time step or every few steps, never inside a cell sweep) with the fraction
    // done, 0 to 1. Returning false stops the method early: m_T1 then holds the field
    // at the end of the last completed step and the working values describe that step
    // (the DTU criteria times stay 1300.0 unless already reached). Empty by default. During
    // a call from a grid method, BilanEnCours() (GrilleBilan.h) shows the field so far.
    std::function<bool(double fraction)> m_Progression;

    // Optional fields at several durations of one run, for time histories (every
    // method). m_DureesReleves lists durations in hours, in any order; as the run reaches
    // each one, m_Releve receives its index and the field, row-major in the layout of
    // m_T1, at the step where a run of that duration alone would stop (the grid
    // methods' step count, the DTU method's target): bit for bit what that run would
    // leave in m_T1, provided the time step is the same (a restart of the Eurocode 2
    // method, which makes the step smaller, delivers every field again from the smaller
    // step). Durations beyond the run's are not delivered. Called on the calling thread;
    // empty by default and, like m_Progression, neither copied nor compared.
    std::vector<double> m_DureesReleves;
    std::function<void(std::size_t indice, const double* champ)> m_Releve;

protected:
    // Calls m_Progression; false when the caller asked to stop.
    bool Progression(double fraction) const { return !m_Progression || m_Progression(fraction); }
};
