// Files of one platform read by the other. "write DIR" saves a fixed set of the library's
// files under the data root DIR; "check DIR WORK", run by the build of the other
// platform, loads each of them, compares what it read with the values the writer put in,
// saves it again under the data root WORK and requires the same bytes back.
//
//   records:  AFF1/VORENAFF, AFF1/LUMACAFF (436 bytes, ANSI code page), AFF1/VORENPLA.03,
//             BRAXEL.CFG, AFF1/LOCK_AFF (512 bytes)
//   section:  ETUDE/SECTION.01        temperature field: ETUDE/TEMPER.01
//
// The section and the field are computed: the checker computes them again and allows
// 1e-9 relative (the platforms' mathematical libraries may differ in the last bit).
#include "Echange.h"

#include "prefa.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace
{
std::string Utf8(const CString& s)
{
    return AfxWideToUtf8(s.Std());
}

std::vector<char> Octets(const fs::path& p)
{
    std::ifstream in(p, std::ios::binary);
    return std::vector<char>(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void MemeTexte(const char* champ, const CString& lu, const CString& attendu)
{
    if (lu != attendu)
        Echec(std::string(champ) + ": read \"" + Utf8(lu) + "\", written \"" + Utf8(attendu) + "\"");
}

void MemeValeur(const char* champ, double lu, double attendu, double tolerance)
{
    if (!(std::fabs(lu - attendu) <= tolerance * std::max(std::fabs(lu), std::fabs(attendu))))
        Echec(std::string(champ) + ": read " + std::to_string(lu) + ", computed " + std::to_string(attendu));
}

// Texts that cross the code pages and the archive's three length forms.
const wchar_t* const kDesignation = L"Poutre précontrainte 30×60 – « béton » €";
CString TexteLong()
{
    CString s;
    for (int i = 0; i < 300; ++i)
        s += (wchar_t)(L'a' + i % 26);
    return s;
}

__time64_t DateFixe(int jour, int mois, int annee)
{
    struct tm t = {};
    t.tm_mday = jour;
    t.tm_mon = mois - 1;
    t.tm_year = annee - 1900;
    t.tm_hour = 12;
    t.tm_isdst = -1;
    return _mktime64(&t);
}

void Affaire(CAffaire& a)
{
    a.Texte1 = L"A-2024-017";
    a.Texte2 = kDesignation;
    a.Texte3 = L"Société Générale de Préfabrication";
    a.Texte4 = TexteLong();
    a.Texte5 = L"12, rue de l'Église";
    a.Texte6 = L"Besançon";
    a.Texte7 = L"+33 3 81 00 00 00";
    a.Date = DateFixe(15, 3, 2024);
    a.Texte8 = L"Ingénieur : Zoé";
    a.Texte9 = L"";
    a.Liste1[0] = L"C25/30";
    a.Liste1[1] = L"C30/37";
    a.Liste1[2] = L"C35/45";
    a.Texte10 = L"Prix 10 €";
    a.Liste2[0] = L"HA10";
    a.Liste2[1] = L"";
    a.Liste2[2] = L"HA25";
    a.Valeur1 = 0x0102;
    a.Valeur3 = 0xFFFE;
    a.Texte11 = L"Ω non ANSI";
    a.Valeur2 = 7;
    a.Texte12 = L"T12";
}

void Plan(CInfoPlan& p)
{
    p.Date1 = DateFixe(1, 2, 2023);
    p.Texte1 = L"Plan de coffrage";
    p.Texte2 = kDesignation;
    p.Texte3 = L"PC-03";
    p.Valeur1 = 1;
    p.Valeur2 = 2;
    p.Valeur3 = 0xFFFF;
    p.Valeur4 = 4;
    p.Nombre1 = -123456;
    p.Nombre2 = 2147483647;
    p.Date2 = DateFixe(28, 2, 2024);
    p.Texte4 = TexteLong();
    p.Date3 = DateFixe(31, 12, 2099);
    for (int i = 0; i < 2; ++i)
    {
        auto* m = new CInfoModifications;
        m->Indice = (char)('A' + i);
        m->Etat = i ? 'V' : ' ';
        m->Date = DateFixe(10 + i, 4, 2024);
        m->Texte = i ? CString(L"Armatures modifiées") : CString(L"Création");
        p.Modifications.AddTail(m);
    }
    p.Textes.AddTail(CString(L"note 1"));
    p.Textes.AddTail(CString(L"remarque « 2 »"));
    p.Texte5 = L"fin";
}

void Poste(CConfigBRAXEL& c)
{
    c.NomOrdinateur = L"BUREAU-ÉTUDES";
    c.NomUtilisateur = L"Zoé Müller";
}

// An L-shaped section with a rectangular opening (given clockwise, so subtracted).
void Section(CSectionGenerale& s)
{
    CPolygone* l = new CPolygone; // the lists own their contours
    const double pts[][2] = {{0, 0}, {0.40, 0}, {0.40, 0.15}, {0.15, 0.15}, {0.15, 0.60}, {0, 0.60}};
    for (const auto& p : pts)
        l->AddTail(p[0], p[1]);
    CPolygone* trou = new CPolygone;
    const double tr[][2] = {{0.05, 0.05}, {0.05, 0.10}, {0.10, 0.10}, {0.10, 0.05}};
    for (const auto& p : tr)
        trou->AddTail(p[0], p[1]);
    CListePolygone l1, l2;
    l1.AddTail(l);
    l2.AddTail(trou);
    s.CaracteristiquesSectionsPolygone(l1, l2);
}

// A 0.20 x 0.30 m member after half an hour of standard fire (Eurocode 2).
void Champ(CTemperatureGenerale& t)
{
    CPolygone section;
    section.AddTail(0.0, 0.0);
    section.AddTail(0.20, 0.0);
    section.AddTail(0.20, 0.30);
    section.AddTail(0.0, 0.30);
    CListePolygone aucune;
    CArray<CPolygone, CPolygone> zones;
    t.InitTableDonnees(section, 0.5, CTemperatureGenerale::EC2, aucune, 0, zones, 0, zones, 0.02, 0, 0, 0, 0, 0, 0);
    t.CalculTemperatureEC2(0, 0.5, 0.015, 0.0, CTemperatureGenerale::MONTEE_NORMALE, GRANULAT_SILICEUX, 0);
}

void Racine(const fs::path& racine)
{
    fs::create_directories(racine / "AFF1");
    fs::create_directories(racine / "ETUDE");
    fs::current_path(racine); // where BRAXEL.CFG lives
    DefinitEnvironnement(CString(racine.wstring()), 0);
}

CString LockAffaire()
{
    return Compose_Fichier_Affaire(L"AFF1", L"LOCK_AFF");
}

// Loads with charge() under the data root source, saves with sauve() under travail,
// and compares the files' bytes.
template <typename Charge, typename Sauve>
void RelitEtReecrit(const fs::path& source, const fs::path& travail, const std::vector<std::string>& fichiers,
                    Charge charge, Sauve sauve)
{
    Racine(source);
    charge();
    Racine(travail);
    sauve();
    for (const std::string& f : fichiers)
    {
        std::vector<char> lu = Octets(source / f), reecrit = Octets(travail / f);
        if (lu.empty())
            Echec(f + ": missing or empty");
        else if (lu != reecrit)
            Echec(f + ": saved again, the bytes differ");
    }
}

} // namespace

void EcritFichiers(const fs::path& racine)
{
    Racine(racine);
    CAffaire a;
    Affaire(a);
    if (a.GestionFichier(1, L"AFF1") != 1)
        Echec("VORENAFF not saved");
    CInfoPlan p;
    Plan(p);
    if (p.GestionFichier(1, L"AFF1", 3) != 1)
        Echec("VORENPLA.03 not saved");
    CConfigBRAXEL c;
    Poste(c);
    if (!c.GestionFichierCConfig(1))
        Echec("BRAXEL.CFG not saved");
    if (c.GestionFichierLock(1, LockAffaire()) != 0)
        Echec("LOCK_AFF not saved");
    CSectionGenerale s;
    Section(s);
    if (s.Ecriture(L"ETUDE", 1) != 1)
        Echec("SECTION.01 not saved");
    CTemperatureGenerale t;
    Champ(t);
    t.Ecriture(L"ETUDE", 1);
}

void VerifieFichiers(const fs::path& source, const fs::path& travail)
{
    CAffaire a, aAttendue;
    Affaire(aAttendue);
    RelitEtReecrit(
        source, travail, {"AFF1/VORENAFF", "AFF1/LUMACAFF"},
        [&] {
            if (a.GestionFichier(0, L"AFF1") != 1)
                Echec("VORENAFF not loaded");
        },
        [&] { a.GestionFichier(1, L"AFF1"); });
    MemeTexte("VORENAFF Texte2", a.Texte2, aAttendue.Texte2);
    MemeTexte("VORENAFF Texte4", a.Texte4, aAttendue.Texte4);
    MemeTexte("VORENAFF Texte11", a.Texte11, aAttendue.Texte11);
    MemeValeur("VORENAFF Date", (double)a.Date, (double)aAttendue.Date, 0);
    // The exchange record alone (the fall-back load): its narrow texts and its date.
    BYTE echange[CAffaire::TAILLE_ECHANGE];
    Racine(source);
    if (LectureFichier(Compose_Fichier_Affaire(L"AFF1", L"LUMACAFF"), echange, sizeof echange) != 0)
        Echec("LUMACAFF not read");
    CAffaire e;
    e.InitAffaire();
    e.LitEchange(echange);
    MemeTexte("LUMACAFF Texte6", e.Texte6, L"Besançon");
    MemeTexte("LUMACAFF Texte10", e.Texte10, L"Prix 10 €");
    MemeTexte("LUMACAFF Texte11", e.Texte11, L"? non ANSI"); // Windows-1252 has no omega
    struct tm minuit = {};
    minuit.tm_mday = 15;
    minuit.tm_mon = 2;
    minuit.tm_year = 124;
    minuit.tm_isdst = 0;
    MemeValeur("LUMACAFF Date", (double)e.Date, (double)_mktime64(&minuit), 0);

    CInfoPlan p, pAttendu;
    Plan(pAttendu);
    RelitEtReecrit(
        source, travail, {"AFF1/VORENPLA.03"},
        [&] {
            if (p.GestionFichier(0, L"AFF1", 3) != 1)
                Echec("VORENPLA.03 not loaded");
        },
        [&] { p.GestionFichier(1, L"AFF1", 3); });
    MemeTexte("VORENPLA Texte4", p.Texte4, pAttendu.Texte4);
    MemeValeur("VORENPLA Nombre1", p.Nombre1, pAttendu.Nombre1, 0);
    if (p.Modifications.GetCount() != 2)
        Echec("VORENPLA: the revisions were not read");
    else
        MemeTexte("VORENPLA revision 2", p.Modifications.GetTail()->Texte, L"Armatures modifiées");

    CConfigBRAXEL c, cAttendu, lock;
    Poste(cAttendu);
    RelitEtReecrit(
        source, travail, {"BRAXEL.CFG", "AFF1/LOCK_AFF"},
        [&] {
            if (!c.GestionFichierCConfig(0))
                Echec("BRAXEL.CFG not loaded");
            if (lock.GestionFichierLock(2, LockAffaire()) != 0)
                Echec("LOCK_AFF not read");
        },
        [&] {
            c.GestionFichierCConfig(1);
            lock.GestionFichierLock(1, LockAffaire());
        });
    MemeTexte("BRAXEL.CFG computer", c.NomOrdinateur, cAttendu.NomOrdinateur);
    MemeTexte("BRAXEL.CFG user", c.NomUtilisateur, cAttendu.NomUtilisateur);
    MemeTexte("LOCK_AFF user", lock.NomUtilisateur, cAttendu.NomUtilisateur);
    MemeTexte("LOCK_AFF computer", lock.NomOrdinateur, cAttendu.NomOrdinateur);

    CSectionGenerale s, sAttendue;
    Section(sAttendue);
    RelitEtReecrit(
        source, travail, {"ETUDE/SECTION.01"},
        [&] {
            if (s.Lecture(L"ETUDE", 1) != 1)
                Echec("SECTION.01 not loaded");
        },
        [&] { s.Ecriture(L"ETUDE", 1); });
    MemeValeur("SECTION Aire", s.Aire, sAttendue.Aire, 1e-9);
    MemeValeur("SECTION IxG", s.IxG, sAttendue.IxG, 1e-9);
    MemeValeur("SECTION Angle", s.Angle, sAttendue.Angle, 1e-9);
    MemeValeur("SECTION I1", s.I1, sAttendue.I1, 1e-9);

    CTemperatureGenerale t, tAttendu;
    Champ(tAttendu);
    RelitEtReecrit(
        source, travail, {"ETUDE/TEMPER.01"}, [&] { t.Lecture(L"ETUDE", 1); }, [&] { t.Ecriture(L"ETUDE", 1); });
    if (t.m_T1.GetSize() != tAttendu.m_T1.GetSize() || t.m_T1.GetSize() == 0)
        Echec("TEMPER.01: not the grid computed here");
    else
        for (INT_PTR i = 0; i < t.m_T1.GetSize(); ++i)
            for (INT_PTR j = 0; j < t.m_T1[i].GetSize() && j < tAttendu.m_T1[i].GetSize(); ++j)
                MemeValeur("TEMPER.01 T1", t.m_T1[i][j], tAttendu.m_T1[i][j], 1e-9);
}
