// The temperature field itself: construction, reset, copy, comparison, accessors,
// archive form and the study file.
#include "thermal/CTemperatureGenerale.h"

#include "project/FichierArchive.h"

#include "project/FichiersEtudes.h"
#include "project/MessErreur.h"

#include <algorithm>
#include <iterator>

IMPLEMENT_SERIAL(CTemperatureGenerale, CObject, 1)

namespace
{
// Format version of the archive form.
const LONG VERSION_TEMPERATURE = 1;

template <class T, std::size_t N>
bool MemesValeurs(const T (&a)[N], const T (&b)[N])
{
    // Element-wise ==, so that a NaN never compares equal (unlike a byte compare).
    for (std::size_t k = 0; k < N; ++k)
        if (!(a[k] == b[k]))
            return false;
    return true;
}
} // namespace

CTemperatureGenerale::CTemperatureGenerale()
    : m_TypeCalcul(DTU), m_dXOrigine(0.0), m_nNbMaillesEnrobage(0)
{
    RAZListesEtDonnees();
}

CTemperatureGenerale::CTemperatureGenerale(const CTemperatureGenerale& other)
    : CObject(), m_TypeCalcul(DTU), m_dXOrigine(0.0), m_nNbMaillesEnrobage(0)
{
    RAZListesEtDonnees();
    CopyTemperature(other);
}

CTemperatureGenerale::~CTemperatureGenerale()
{
    RAZListesEtDonnees();
}

CTemperatureGenerale CTemperatureGenerale::operator=(const CTemperatureGenerale& other)
{
    if (this != &other)
        CopyTemperature(other);
    return *this;
}

void CTemperatureGenerale::RAZListesEtDonnees()
{
    m_PtTranslation.x = 0.0;
    m_PtTranslation.y = 0.0;
    std::fill(std::begin(m_dTravailA), std::end(m_dTravailA), 0.0);
    std::fill(std::begin(m_nTravail), std::end(m_nTravail), 0);
    std::fill(std::begin(m_dTravailB), std::end(m_dTravailB), 0.0);
    m_TypeCalcul = DTU;
    m_TabTemps.RemoveAll();
    m_NumLigne.RemoveAll();
    m_ColDebut.RemoveAll();
    m_ColFin.RemoveAll();
    m_NumColonne.RemoveAll();
    m_LigneDebut.RemoveAll();
    m_T1.RemoveAll();
    m_T2.RemoveAll();
    m_Masque.RemoveAll();
    // m_dXOrigine and m_nNbMaillesEnrobage survive a reset: callers set them apart.
}

void CTemperatureGenerale::CopyTemperature(const CTemperatureGenerale& source)
{
    if (this == &source)
    {
        // A self-copy keeps the data; only the reset's side effects would apply, and
        // they would destroy what is to be copied.
        m_PtTranslation.x = 0.0;
        m_PtTranslation.y = 0.0;
        return;
    }
    RAZListesEtDonnees();
    m_TabTemps = source.m_TabTemps;
    m_NumLigne = source.m_NumLigne;
    m_ColDebut = source.m_ColDebut;
    m_ColFin = source.m_ColFin;
    m_NumColonne = source.m_NumColonne;
    m_LigneDebut = source.m_LigneDebut;
    m_T1 = source.m_T1;
    m_T2 = source.m_T2;
    m_Masque = source.m_Masque;
    std::copy(std::begin(source.m_dTravailA), std::end(source.m_dTravailA), m_dTravailA);
    std::copy(std::begin(source.m_nTravail), std::end(source.m_nTravail), m_nTravail);
    std::copy(std::begin(source.m_dTravailB), std::end(source.m_dTravailB), m_dTravailB);
    m_nNbMaillesEnrobage = source.m_nNbMaillesEnrobage;
    m_TypeCalcul = source.m_TypeCalcul;
    m_dXOrigine = source.m_dXOrigine;
    // The translation point stays (0, 0): a copy is a field, not a placed section.
}

int CTemperatureGenerale::operator==(const CTemperatureGenerale& o) const
{
    return m_TabTemps == o.m_TabTemps && m_NumLigne == o.m_NumLigne && m_ColDebut == o.m_ColDebut &&
           m_ColFin == o.m_ColFin && m_NumColonne == o.m_NumColonne && m_LigneDebut == o.m_LigneDebut &&
           m_Masque == o.m_Masque && m_T2 == o.m_T2 && m_T1 == o.m_T1 &&
           MemesValeurs(m_dTravailA, o.m_dTravailA) && MemesValeurs(m_nTravail, o.m_nTravail) &&
           MemesValeurs(m_dTravailB, o.m_dTravailB) && m_nNbMaillesEnrobage == o.m_nNbMaillesEnrobage &&
           m_TypeCalcul == o.m_TypeCalcul && m_dXOrigine == o.m_dXOrigine;
}

int CTemperatureGenerale::GetSizeT() const
{
    const int n = (int)m_T1.GetSize();
    return m_TypeCalcul == DTU ? n - 2 : n;
}

int CTemperatureGenerale::GetSizeT(int i) const
{
    const int n = (int)m_T1[i].GetSize();
    return m_TypeCalcul == DTU ? n - 1 : n;
}

double CTemperatureGenerale::GetT1(int i, int j) const
{
    return m_T1[i][j];
}

double CTemperatureGenerale::T(int i, int j) const
{
    if (m_Masque[i][j] < 0.0)
    {
        (void)m_T1[i][j]; // the node must exist in both grids
        return -1.0;
    }
    return m_T1[i][j];
}

void CTemperatureGenerale::Serialize(CArchive& ar)
{
    if (ar.IsStoring())
    {
        const int nLignes = GetNbLignes();
        const int nColonnes = GetNbColonnes();
        ar << VERSION_TEMPERATURE;
        ar << (LONG)m_TypeCalcul;
        ar << (LONG)nLignes;
        ar << (LONG)nColonnes;
        ar << GetDELX();
        m_PtTranslation.Serialize(ar);
        for (int i = 0; i < nLignes; ++i)
        {
            const CLigne& ligne = m_T1[i];
            for (int j = 0; j < nColonnes; ++j)
                ar << ligne[j];
        }
        return;
    }

    LONG version, type, nLignes, nColonnes;
    double dDelx;
    ar >> version; // every version so far has this layout
    ar >> type >> nLignes >> nColonnes >> dDelx;
    m_PtTranslation.Serialize(ar);
    if (type < DTU || type > EC2)
        AfxThrowArchiveException(CArchiveException::badIndex, ar.GetFile()->GetFilePath());
    // A grid is empty in both directions or in neither: a row count without columns
    // (or the reverse) carries no bytes, so nothing in the file could justify it.
    if (nLignes < 0 || nColonnes < 0 || (nLignes == 0) != (nColonnes == 0))
        AfxThrowArchiveException(CArchiveException::badIndex, ar.GetFile()->GetFilePath());
    ar.CheckAvailable((ULONGLONG)nLignes * (ULONGLONG)nColonnes, sizeof(double));
    m_TypeCalcul = (TYPE_CALCUL_TEMPERATURE)type;
    m_nTravail[TravailN::NB_LIGNES] = nLignes;
    m_nTravail[TravailN::NB_COLONNES] = nColonnes;
    SetDELX(dDelx);
    if (nLignes == 0)
        return;
    CLigne ligne;
    ligne.SetSize(nColonnes);
    double* p = ligne.GetData();
    for (int i = 0; i < nLignes; ++i)
    {
        for (int j = 0; j < nColonnes; ++j)
            ar >> p[j];
        m_T1.Add(ligne); // appended: loading expects a fresh or reset object
    }
}

void CTemperatureGenerale::Lecture(CString nom, int numero)
{
    // A missing or locked file changes nothing; a malformed one raises.
    SerialiseFichier(Compose_Fichier_Etudes(nom, L"TEMPER.", numero), false, nullptr,
                     [this](CArchive& ar) { Serialize(ar); });
}

void CTemperatureGenerale::Ecriture(CString nom, int numero)
{
    // Saved through a mirror file: a failed save keeps the previous field.
    CFileException erreur;
    if (!SerialiseFichierRapporte(Compose_Fichier_Etudes(nom, L"TEMPER.", numero), true, &erreur,
                                  [this](CArchive& ar) { Serialize(ar); }))
        MessErreur(L"IDENTERR_2133", L"TemperatureGenerale", 4705, &erreur, AfxGetLibraryModuleName(),
                   IDS_PREFA_ERREUR_FICHIER, L"", L"");
}
