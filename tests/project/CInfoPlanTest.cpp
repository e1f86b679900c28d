#include "project/CInfoPlan.h"
#include "project/FichiersEtudes.h"
#include "ProjetFixture.h"

#include <cstring>

using namespace prefa_test;

namespace
{
void Remplit(CInfoPlan& p)
{
    p.Date1 = 0x11111111;
    p.Texte1 = L"Plan de coffrage";
    p.Texte2 = L"T2";
    p.Texte3 = L"Réf. 3";
    p.Valeur1 = 0x0101;
    p.Valeur2 = 0x0202;
    p.Valeur3 = 0x0303;
    p.Valeur4 = 0x0404;
    p.Nombre1 = -7;
    p.Nombre2 = 0x01020304;
    p.Date2 = 0x22222222;
    p.Texte4 = L"T4";
    p.Date3 = 0x33333333;
    auto* m1 = new CInfoModifications;
    m1->Indice = 'A';
    m1->Date = 0x44444444;
    m1->Texte = L"Création";
    m1->Etat = 'x';
    auto* m2 = new CInfoModifications;
    m2->Indice = 'B';
    m2->Date = 0x55555555;
    m2->Texte = L"Coût 5 €";
    m2->Etat = 'y';
    p.Modifications.AddTail(m1);
    p.Modifications.AddTail(m2);
    p.Textes.AddTail(CString(L"t1"));
    p.Textes.AddTail(CString(L"t2"));
    p.Textes.AddTail(CString(L"t3"));
    p.Texte5 = L"T5";
}

// A drawing record of a given version as its writers laid it out.
Bytes Fichier(std::uint32_t v)
{
    Bytes b;
    b.u32(v).u32(0x11111111).text(L"Plan de coffrage").u16(0x0101).u16(0x0202);
    b.u32(2).u8('A').u32(0x44444444).text(L"Création").u8('B').u32(0x55555555).text(L"Coût 5 €");
    b.u32(3).text(L"t1").text(L"t2").text(L"t3");
    if (v >= 2)
        b.i32(-7);
    if (v >= 3)
        b.text(L"Réf. 3");
    if (v >= 4)
        b.u16(0x0303).u16(0x0404);
    if (v >= 5)
        b.text(L"T2");
    if (v >= 6)
        b.i32(0x01020304);
    if (v >= 7)
        b.u32(0x22222222).text(L"T4").u32(0x33333333).u8('x').u8('y');
    if (v >= 8)
        b.text(L"T5");
    return b;
}

std::vector<BYTE> Sauve(CInfoPlan& p)
{
    return Store([&](CArchive& ar) { p.Serialize(ar, L"AFF1", 3); });
}

CInfoModifications* Modif(CInfoPlan& p, int i)
{
    POSITION pos = p.Modifications.FindIndex(i);
    return p.Modifications.GetAt(pos);
}
} // namespace

TEST(CInfoPlan, SavesVersion8WithTwoRevisionsByteForByte)
{
    CInfoPlan p;
    Remplit(p);
    std::vector<BYTE> octets = Sauve(p);
    EXPECT_EQ(octets, Fichier(8).b) << Hex(octets);

    CInfoPlan q;
    EXPECT_EQ(Load(octets, [&](CArchive& ar) { q.Serialize(ar, L"AFF1", 3); }), 0u);
    EXPECT_EQ(q.Version, 8u);
    EXPECT_EQ(Sauve(q), octets);
    EXPECT_EQ(Modif(q, 1)->Texte, L"Coût 5 €");
    EXPECT_EQ(Modif(q, 1)->Etat, 'y');
    EXPECT_EQ(q.Textes.GetTail(), L"t3");

    // No revision: no second marks at the end either.
    CInfoPlan vide;
    vide.Date1 = vide.Date2 = vide.Date3 = 1;
    Bytes attendu;
    attendu.u32(8).u32(1).text(L"").u16(0).u16(0).u32(0).u32(0).i32(0).text(L"").u16(0).u16(0).text(L"").i32(-1)
        .u32(1).text(L"").u32(1).text(L"");
    EXPECT_EQ(Sauve(vide), attendu.b);
}

TEST(CInfoPlan, CopiesAreDeepAndInitRestoresTheDefaults)
{
    CInfoPlan p;
    Remplit(p);
    CInfoPlan q(p);
    CInfoPlan r;
    r = p;
    EXPECT_EQ(Sauve(q), Sauve(p));
    EXPECT_EQ(Sauve(r), Sauve(p));
    EXPECT_NE(Modif(q, 0), Modif(p, 0));
    Modif(q, 0)->Texte = L"changé";
    EXPECT_EQ(Modif(p, 0)->Texte, L"Création");

    p.InitCInfoPlan();
    EXPECT_EQ(p.Modifications.GetCount(), 0);
    EXPECT_EQ(p.Textes.GetCount(), 0);
    EXPECT_EQ(p.Nombre2, -1);
    EXPECT_EQ(p.Date3, p.Date1);
}

class CInfoPlanFichiers : public ProjetFixture
{
protected:
    // The older drawing file: Texte3 sits in 13 bytes at offset 134.
    void EcritAncien(int nPlan, const std::string& texte3)
    {
        Bytes b;
        b.zeros(134).ansi(texte3, 13).zeros(20);
        WriteAll(Compose_Fichier_Etudes(L"AFF1", L"LUMACPLA.", nPlan), b.b);
    }
    CInfoPlan ChargeVersion(std::uint32_t v)
    {
        CInfoPlan p;
        p.Texte3 = L"avant";
        EXPECT_EQ(Load(Fichier(v).b, [&](CArchive& ar) { p.Serialize(ar, L"AFF1", 3); }), 0u);
        return p;
    }
};

TEST_F(CInfoPlanFichiers, OlderVersionsLoadWithTheirDefaults)
{
    EcritAncien(3, "Ancienne r\xE9" "f\xE9rence");   // 14 characters: the field holds 13

    __time64_t avant = _time64(nullptr);
    CInfoPlan v3 = ChargeVersion(3);
    EXPECT_EQ(v3.Texte3, L"Réf. 3");
    EXPECT_EQ(v3.Valeur3, 0x0101);
    EXPECT_EQ(v3.Valeur4, 0x0202);
    EXPECT_TRUE(v3.Texte2.IsEmpty());
    EXPECT_EQ(v3.Nombre2, -1);
    EXPECT_GE(v3.Date2, avant);
    EXPECT_LE(v3.Date2, _time64(nullptr));
    EXPECT_EQ(v3.Date3, v3.Date2);
    EXPECT_EQ(Modif(v3, 0)->Etat, ' ');
    EXPECT_EQ(Modif(v3, 1)->Etat, ' ');
    EXPECT_TRUE(v3.Texte5.IsEmpty());

    CInfoPlan v1 = ChargeVersion(1);
    EXPECT_EQ(v1.Nombre1, 0);
    EXPECT_EQ(v1.Texte3, L"Ancienne réfé");
    CInfoPlan v2 = ChargeVersion(2);
    EXPECT_EQ(v2.Nombre1, -7);
    EXPECT_EQ(v2.Texte3, L"Ancienne réfé");

    CInfoPlan v4 = ChargeVersion(4);
    EXPECT_EQ(v4.Valeur3, 0x0303);
    EXPECT_TRUE(v4.Texte2.IsEmpty());
    CInfoPlan v5 = ChargeVersion(5);
    EXPECT_EQ(v5.Texte2, L"T2");
    EXPECT_EQ(v5.Nombre2, -1);
    CInfoPlan v6 = ChargeVersion(6);
    EXPECT_EQ(v6.Nombre2, 0x01020304);
    EXPECT_TRUE(v6.Texte4.IsEmpty());
    CInfoPlan v7 = ChargeVersion(7);
    EXPECT_EQ(v7.Date2, 0x22222222);
    EXPECT_EQ(v7.Date3, 0x33333333);
    EXPECT_EQ(Modif(v7, 0)->Etat, 'x');
    EXPECT_TRUE(v7.Texte5.IsEmpty());
    CInfoPlan v12 = ChargeVersion(12);
    EXPECT_EQ(v12.Version, 12u);
    EXPECT_EQ(v12.Texte5, L"T5");

    // Without the older file an old record keeps Texte3 as it was.
    CInfoPlan p;
    p.Texte3 = L"garde";
    Load(Fichier(2).b, [&](CArchive& ar) { p.Serialize(ar, L"AFF1", 4); });
    EXPECT_EQ(p.Texte3, L"garde");
}

TEST_F(CInfoPlanFichiers, GestionFichierModes)
{
    MessageBoxCapture boites;
    CInfoPlan p;
    Remplit(p);
    ASSERT_EQ(p.GestionFichier(1, L"AFF1", 3), 1);
    EXPECT_EQ(ReadAll(Compose_Fichier_Etudes(L"AFF1", L"VORENPLA.", 3)), Fichier(8).b);
    CInfoPlan q;
    ASSERT_EQ(q.GestionFichier(0, L"AFF1", 3), 1);
    EXPECT_EQ(Sauve(q), Fichier(8).b);

    // Mode 2 with only the older file: Texte3 alone changes.
    EcritAncien(4, "Texte ancien");
    CInfoPlan r;
    Remplit(r);
    ASSERT_EQ(r.GestionFichier(2, L"AFF1", 4), 1);
    EXPECT_EQ(r.Texte3, L"Texte ancien");
    r.Texte3 = L"Réf. 3";
    EXPECT_EQ(Sauve(r), Fichier(8).b);

    // Nothing at all: mode 2 fails quietly, mode 0 reports.
    EXPECT_EQ(r.GestionFichier(2, L"AFF1", 5), 0);
    EXPECT_TRUE(boites.boxes.empty());
    EXPECT_EQ(r.GestionFichier(0, L"AFF1", 5), 0);
    ASSERT_EQ(boites.boxes.size(), 1u);
    EXPECT_GE(boites.boxes[0].text.Find(L"IDENTERR_1963"), 0);
    EXPECT_GE(boites.boxes[0].text.Find(L"..\\Infoplan - "), 0);
    EXPECT_GE(boites.boxes[0].text.Find(L" - 311\n"), 0);
    EXPECT_GE(boites.boxes[0].text.Find(Compose_Fichier_Etudes(L"AFF1", L"VORENPLA.", 5)), 0);

    // Truncated in the texts: the archive exception, with the revisions read so far kept.
    std::vector<BYTE> court = Fichier(8).b;
    court.resize(110);
    WriteAll(Compose_Fichier_Etudes(L"AFF1", L"VORENPLA.", 6), court);
    CInfoPlan s;
    EXPECT_EQ(ArchiveCause([&] { s.GestionFichier(0, L"AFF1", 6); }), CArchiveException::endOfFile);
    EXPECT_EQ(s.Modifications.GetCount(), 2);

    // A revision count the file cannot hold is refused before any revision is read.
    // The count follows the version, the date word, the title (3 bytes of marker, its
    // length, 16 wide characters) and the two values: 2 revisions become 1000.
    std::vector<BYTE> compte = Fichier(8).b;
    const std::size_t n = 4 + 4 + (3 + 1 + 2 * 16) + 2 + 2;
    ASSERT_EQ(2, compte[n]);
    compte[n] = 0xE8;
    compte[n + 1] = 0x03;
    WriteAll(Compose_Fichier_Etudes(L"AFF1", L"VORENPLA.", 6), compte);
    CInfoPlan t;
    EXPECT_EQ(ArchiveCause([&] { t.GestionFichier(0, L"AFF1", 6); }), CArchiveException::endOfFile);
    EXPECT_EQ(t.Modifications.GetCount(), 0);
}

TEST_F(CInfoPlanFichiers, DuplicationAndDeletionOnARealFolder)
{
    CInfoPlan p;
    Remplit(p);
    ASSERT_EQ(p.GestionFichier(1, L"AFF1", 3), 1);
    EcritAncien(3, "Ancien 3");
    WriteAll(Affaire(L"FERRAIL.03"), {1, 2, 3, 4, 5});
    WriteAll(Affaire(L"FERRAIL.13"), {9});           // another drawing
    WriteAll(Affaire(L"LOCK_PLA.03"), {7});          // its holder's business
    WriteAll(Affaire(L"SECTION.033"), {8});          // not drawing 3
    // A record of the old version: the duplicate gets a current record of its own.
    Bytes v2 = Fichier(2);
    WriteAll(Compose_Fichier_Etudes(L"AFF1", L"VORENPLA.", 3), v2.b);

    ASSERT_EQ(CopiePlanDuplication(L"AFF1", 3, L"AFF1", 14), 1);
    EXPECT_EQ(ReadAll(Affaire(L"FERRAIL.14")), (std::vector<BYTE>{1, 2, 3, 4, 5}));
    EXPECT_EQ(ReadAll(Affaire(L"LUMACPLA.14")), ReadAll(Affaire(L"LUMACPLA.03")));
    EXPECT_FALSE(Exists(Affaire(L"LOCK_PLA.14")));
    EXPECT_FALSE(Exists(Affaire(L"SECTION.034")));
    EXPECT_EQ(ReadAll(Affaire(L"VORENPLA.03")), v2.b);
    CInfoPlan copie;
    ASSERT_EQ(copie.GestionFichier(0, L"AFF1", 14), 1);
    EXPECT_EQ(copie.Version, 8u);
    EXPECT_EQ(copie.Texte3, L"Ancien 3");
    EXPECT_EQ(copie.Texte1, L"Plan de coffrage");
    EXPECT_EQ(copie.Modifications.GetCount(), 2);

    // Into another project folder.
    std::filesystem::create_directories(std::filesystem::path(m_racine.Utf8()) / "AFF2");
    ASSERT_EQ(CopiePlanDuplication(L"AFF1", 3, L"AFF2", 1), 1);
    EXPECT_TRUE(Exists(m_racine / CString(L"AFF2/VORENPLA.01")));
    EXPECT_TRUE(Exists(m_racine / CString(L"AFF2/FERRAIL.01")));
    // No source record: nothing to duplicate.
    EXPECT_EQ(CopiePlanDuplication(L"AFF1", 7, L"AFF1", 8), 0);
    EXPECT_FALSE(Exists(Affaire(L"VORENPLA.08")));

    ASSERT_EQ(Suppression_Plan(L"AFF1", 3), 1);
    for (const wchar_t* parti : {L"VORENPLA.03", L"LUMACPLA.03", L"FERRAIL.03"})
        EXPECT_FALSE(Exists(Affaire(parti))) << CStringA(parti).GetString();
    for (const wchar_t* reste : {L"VORENPLA.14", L"FERRAIL.13", L"LOCK_PLA.03", L"SECTION.033"})
        EXPECT_TRUE(Exists(Affaire(reste))) << CStringA(reste).GetString();
}
