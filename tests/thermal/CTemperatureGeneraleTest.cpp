// The temperature field: shape accessors, copy and comparison, archive form and the
// study file.
#include "thermal/CTemperatureGenerale.h"

#include "project/Environnement.h"
#include "project/FichiersEtudes.h"
#include "project/MessErreur.h"
#include "support/PannesFichier.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <limits>

using namespace prefa_test;

namespace
{
// A field of the given shape whose node (i, j) holds 10 i + j.
CTemperatureGenerale Champ(int lignes, int colonnes, CTemperatureGenerale::TYPE_CALCUL_TEMPERATURE type)
{
    CTemperatureGenerale t;
    t.m_TypeCalcul = type;
    for (int i = 0; i < lignes; ++i)
    {
        CTemperatureGenerale::CLigne l, m;
        for (int j = 0; j < colonnes; ++j)
        {
            l.Add(10.0 * i + j);
            m.Add(11.0);
        }
        t.m_T1.Add(l);
        t.m_T2.Add(l);
        t.m_Masque.Add(m);
    }
    t.m_nTravail[TravailN::NB_LIGNES] = lignes;
    t.m_nTravail[TravailN::NB_COLONNES] = colonnes;
    t.SetDELX(0.01);
    return t;
}
} // namespace

TEST(CArrayEx, ComparesExactlyAndCopiesDeep)
{
    CArrayEx<double, double> a, b;
    a.Add(1.0);
    a.Add(2.0);
    b = a;
    EXPECT_TRUE(a == b);
    b[1] = 2.0 + 1e-15;
    EXPECT_FALSE(a == b);
    b[1] = 2.0;
    b.Add(3.0);
    EXPECT_FALSE(a == b) << "sizes differ";
    CArrayEx<double, double> n;
    n.Add(std::nan(""));
    EXPECT_FALSE(n == n) << "a NaN never compares equal";

    CTemperatureGenerale::CGrille g1, g2;
    g1.Add(a);
    g2 = g1;
    g1[0][0] = 5.0; // the copy holds its own rows
    EXPECT_EQ(1.0, g2[0][0]);
    EXPECT_FALSE(g1 == g2);
}

TEST(CTemperatureGenerale, ShapeDependsOnTheGridKind)
{
    CTemperatureGenerale dtu = Champ(12, 9, CTemperatureGenerale::DTU);
    EXPECT_EQ(10, dtu.GetSizeT());
    EXPECT_EQ(8, dtu.GetSizeT(3));
    CTemperatureGenerale ec2 = Champ(12, 9, CTemperatureGenerale::EC2);
    EXPECT_EQ(12, ec2.GetSizeT());
    EXPECT_EQ(9, ec2.GetSizeT(3));
    EXPECT_EQ(12, ec2.GetNbLignes());
    EXPECT_EQ(9, ec2.GetNbColonnes());
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { ec2.GetSizeT(12); }));
}

TEST(CTemperatureGenerale, NodeAccessorsCheckIndicesAndMarkers)
{
    CTemperatureGenerale t = Champ(3, 4, CTemperatureGenerale::ITBTP);
    t.m_Masque[1][2] = -2.0;
    EXPECT_EQ(-1.0, t.T(1, 2)) << "outside cell";
    EXPECT_EQ(12.0, t.GetT1(1, 2)) << "raw value";
    EXPECT_EQ(23.0, t.T(2, 3));
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { t.T(3, 0); }));
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { t.T(0, 4); }));
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { t.GetT1(-1, 0); }));
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { t.GetT1(0, 4); }));
    t.m_T1[2].RemoveAt(3); // marker present, temperature missing
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { t.T(2, 3); }));
}

TEST(CTemperatureGenerale, CopyLeavesTheTranslationBehindAndComparesExactly)
{
    CTemperatureGenerale t = Champ(3, 2, CTemperatureGenerale::ZOLT);
    t.m_PtTranslation = CPointD(0.25, 0.10);
    t.m_TabTemps.Add(2.0);
    t.m_NumLigne.Add(4);
    t.m_dTravailA[TravailA::C] = 0.22;
    t.m_nTravail[TravailN::COMPTE] = 1;
    t.m_dTravailB[TravailB::MIN_DIAG] = 7.5;
    t.m_dXOrigine = 15.0;
    t.m_nNbMaillesEnrobage = 3;

    CTemperatureGenerale copie(t);
    EXPECT_EQ(0.0, copie.GetPtTranslation().x);
    EXPECT_EQ(0.0, copie.GetPtTranslation().y);
    EXPECT_EQ(1, copie == t);
    EXPECT_EQ(15.0, copie.m_dXOrigine);
    EXPECT_EQ(3, copie.m_nNbMaillesEnrobage);
    EXPECT_EQ(CTemperatureGenerale::ZOLT, copie.GetTypeCalcul());

    CTemperatureGenerale affecte;
    affecte.m_PtTranslation = CPointD(1.0, 1.0);
    affecte = t;
    EXPECT_EQ(0.0, affecte.GetPtTranslation().x);
    EXPECT_EQ(1, affecte == t);

    // Every block takes part in the comparison, to the last bit.
    CTemperatureGenerale autre(t);
    autre.m_T1[2][1] += 1e-12;
    EXPECT_EQ(0, autre == t);
    autre = t;
    autre.m_Masque[0][0] = 12.0;
    EXPECT_EQ(0, autre == t);
    autre = t;
    autre.m_T2[1].Add(0.0);
    EXPECT_EQ(0, autre == t);
    autre = t;
    autre.m_dTravailB[TravailB::MIN_DIAG] = 7.5000001;
    EXPECT_EQ(0, autre == t);
    autre = t;
    autre.m_nTravail[TravailN::COMPTE] = 2;
    EXPECT_EQ(0, autre == t);
    autre = t;
    autre.m_dXOrigine = 15.5;
    EXPECT_EQ(0, autre == t);
    autre = t;
    autre.m_LigneDebut.Add(1);
    EXPECT_EQ(0, autre == t);
    autre = t;
    autre.m_dTravailA[TravailA::T140] = std::nan("");
    EXPECT_EQ(0, autre == autre) << "a NaN makes even a field differ from itself";

    // The reset keeps the two values callers set apart.
    t.RAZListesEtDonnees();
    EXPECT_EQ(0, t.m_T1.GetSize());
    EXPECT_EQ(0, t.m_TabTemps.GetSize());
    EXPECT_EQ(0.0, t.m_dTravailB[TravailB::MIN_DIAG]);
    EXPECT_EQ(0.0, t.GetPtTranslation().x);
    EXPECT_EQ(CTemperatureGenerale::DTU, t.GetTypeCalcul());
    EXPECT_EQ(15.0, t.m_dXOrigine);
    EXPECT_EQ(3, t.m_nNbMaillesEnrobage);
}

// The working blocks are shared with the suite's programs slot by slot: a slot renamed to
// another place would pass every calculation and break every caller. Places as the suite
// documents them, counted from 1.
TEST(CTemperatureGenerale, WorkSlotsStayWhereTheSuiteKeepsThem)
{
    EXPECT_EQ(1, TravailA::T140 + 1);
    EXPECT_EQ(2, TravailA::T180 + 1);
    EXPECT_EQ(5, TravailA::MOY_EXPO + 1);
    EXPECT_EQ(8, TravailA::LAMBDA + 1);
    EXPECT_EQ(10, TravailA::RHO + 1);
    EXPECT_EQ(11, TravailA::C + 1);
    EXPECT_EQ(7, TravailN::NB_LIGNES + 1);
    EXPECT_EQ(8, TravailN::NB_COLONNES + 1);
    EXPECT_EQ(14, TravailN::COMPTE + 1);
    EXPECT_EQ(4, TravailB::LAMBDA + 1);
    EXPECT_EQ(5, TravailB::DT + 1);
    EXPECT_EQ(6, TravailB::DELX + 1);
    EXPECT_EQ(15, TravailB::MAX_SURFACE + 1);
    EXPECT_EQ(11 * sizeof(double), sizeof(CTemperatureGenerale::m_dTravailA));
    EXPECT_EQ(14 * sizeof(int), sizeof(CTemperatureGenerale::m_nTravail));
    EXPECT_EQ(18 * sizeof(double), sizeof(CTemperatureGenerale::m_dTravailB));
}

TEST(CTemperatureGenerale, ArchiveFormIsByteExact)
{
    CTemperatureGenerale t = Champ(3, 2, CTemperatureGenerale::EC2);
    t.SetDELX(0.02);
    t.m_PtTranslation = CPointD(0.25, -0.5);
    const std::vector<BYTE> octets = Store([&](CArchive& ar) { t.Serialize(ar); });
    Bytes attendu;
    attendu.i32(1).i32(3).i32(3).i32(2).f64(0.02).f64(0.25).f64(-0.5);
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 2; ++j)
            attendu.f64(10.0 * i + j);
    EXPECT_EQ(Hex(attendu.b), Hex(octets));

    // Loading appends rows: twice into one object gives 6 rows, the shape read last.
    CTemperatureGenerale lu;
    EXPECT_EQ(0u, Load(octets, [&](CArchive& ar) { lu.Serialize(ar); }));
    EXPECT_EQ(CTemperatureGenerale::EC2, lu.GetTypeCalcul());
    EXPECT_EQ(3, lu.GetNbLignes());
    EXPECT_EQ(2, lu.GetNbColonnes());
    EXPECT_EQ(0.02, lu.GetDELX());
    EXPECT_EQ(0.25, lu.GetPtTranslation().x);
    EXPECT_EQ(-0.5, lu.GetPtTranslation().y);
    EXPECT_TRUE(lu.m_T1 == t.m_T1);
    EXPECT_EQ(21.0, lu.GetT1(2, 1));
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { lu.T(0, 0); })) << "no marker grid is stored";
    Load(octets, [&](CArchive& ar) { lu.Serialize(ar); });
    EXPECT_EQ(6, lu.m_T1.GetSize());
    EXPECT_EQ(3, lu.GetNbLignes());
}

TEST(CTemperatureGenerale, MalformedArchivesRaiseBeforeAllocating)
{
    CTemperatureGenerale t = Champ(3, 2, CTemperatureGenerale::DTU);
    std::vector<BYTE> octets = Store([&](CArchive& ar) { t.Serialize(ar); });
    octets.resize(octets.size() - 3);
    CTemperatureGenerale lu;
    EXPECT_EQ(CArchiveException::endOfFile, ArchiveCause([&] { Load(octets, [&](CArchive& ar) { lu.Serialize(ar); }); }));

    // Counts that the bytes left cannot hold.
    Bytes enorme;
    enorme.i32(1).i32(0).i32(0x7fffffff).i32(0x7fffffff).f64(0.01).f64(0).f64(0).f64(1.0);
    CTemperatureGenerale h;
    EXPECT_EQ(CArchiveException::endOfFile, ArchiveCause([&] { Load(enorme.b, [&](CArchive& ar) { h.Serialize(ar); }); }));
    EXPECT_EQ(0, h.m_T1.GetSize());
    Bytes negatif;
    negatif.i32(1).i32(0).i32(-1).i32(2).f64(0.01).f64(0).f64(0);
    EXPECT_NE(-1, ArchiveCause([&] { Load(negatif.b, [&](CArchive& ar) { h.Serialize(ar); }); }));
    Bytes sansColonne;
    sansColonne.i32(1).i32(0).i32(0x7fffffff).i32(0).f64(0.01).f64(0).f64(0);
    EXPECT_NE(-1, ArchiveCause([&] { Load(sansColonne.b, [&](CArchive& ar) { h.Serialize(ar); }); }));
    EXPECT_EQ(0, h.m_T1.GetSize());

    // No row but columns: the product is zero, yet one row buffer of that many columns
    // would be 800 MB (or, at 2^31 - 1, std::bad_alloc out of the loader).
    for (std::int32_t nColonnes : {100000000, 0x7fffffff, 1})
    {
        Bytes sansLigne;
        sansLigne.i32(1).i32(3).i32(0).i32(nColonnes).f64(0.01).f64(0).f64(0).zeros(64);
        EXPECT_EQ(CArchiveException::badIndex,
                  ArchiveCause([&] { Load(sansLigne.b, [&](CArchive& ar) { h.Serialize(ar); }); }))
            << nColonnes;
    }
    // The empty field (the shape of a reset object) still loads.
    Bytes vide;
    vide.i32(1).i32(3).i32(0).i32(0).f64(0.01).f64(0).f64(0);
    EXPECT_EQ(0u, Load(vide.b, [&](CArchive& ar) { h.Serialize(ar); }));
    EXPECT_EQ(CTemperatureGenerale::EC2, h.GetTypeCalcul());

    // The method number must be one of the four methods.
    for (std::int32_t type : {-1, 4, 0x7fffffff, 0, 3})
    {
        Bytes b;
        b.i32(1).i32(type).i32(1).i32(1).f64(0.01).f64(0).f64(0).f64(20.0);
        CTemperatureGenerale m;
        const int cause = ArchiveCause([&] { Load(b.b, [&](CArchive& ar) { m.Serialize(ar); }); });
        if (type == 0 || type == 3)
        {
            EXPECT_EQ(-1, cause);
            EXPECT_EQ(type, (int)m.GetTypeCalcul());
        }
        else
        {
            EXPECT_EQ(CArchiveException::badIndex, cause) << type;
            EXPECT_EQ(0, m.m_T1.GetSize());
        }
    }
}

TEST(CTemperatureGenerale, StudyFileRoundTripAndFailures)
{
    ScratchDir dir;
    DefinitEnvironnement(dir.Path(), 0);
    std::filesystem::create_directories(std::filesystem::path(dir.Utf8()) / "E1");

    CTemperatureGenerale t = Champ(4, 3, CTemperatureGenerale::DTU);
    t.m_PtTranslation = CPointD(0.1, 0.2);
    t.Ecriture(L"E1", 3);
    const CString chemin = Compose_Fichier_Etudes(L"E1", L"TEMPER.", 3);
    ASSERT_TRUE(Exists(chemin));
    EXPECT_EQ(Store([&](CArchive& ar) { t.Serialize(ar); }), ReadAll(chemin));

    CTemperatureGenerale lu;
    lu.Lecture(L"E1", 3);
    EXPECT_TRUE(lu.m_T1 == t.m_T1);
    EXPECT_EQ(0.2, lu.GetPtTranslation().y);

    // A missing file leaves the object exactly as it was, translation included.
    CTemperatureGenerale avant = Champ(2, 2, CTemperatureGenerale::ZOLT);
    avant.m_PtTranslation = CPointD(3.0, 4.0);
    CTemperatureGenerale intact(avant);
    avant.Lecture(L"E1", 4);
    EXPECT_EQ(1, avant == intact);
    EXPECT_EQ(3.0, avant.GetPtTranslation().x);

    // An unwritable path is reported and writes nothing; the old file is kept.
    {
        MessageBoxCapture boxes;
        t.Ecriture(L"NoSuchStudy", 3);
        ASSERT_EQ(1u, boxes.boxes.size());
        const std::wstring texte = boxes.boxes[0].text.GetString();
        EXPECT_NE(std::wstring::npos, texte.find(L"IDENTERR_2133"));
        EXPECT_NE(std::wstring::npos, texte.find(L"TemperatureGenerale"));
        EXPECT_NE(std::wstring::npos, texte.find(L"4705"));
    }
    EXPECT_FALSE(Exists(Compose_Fichier_Etudes(L"NoSuchStudy", L"TEMPER.", 3)));

    // A save failing at any write, flush or rename keeps the previous field whole.
    CTemperatureGenerale suivant = Champ(5, 3, CTemperatureGenerale::EC2);
    EprouveLesPannes({chemin}, [&] {
        MessageBoxCapture boxes;
        suivant.Ecriture(L"E1", 3);
        return boxes.boxes.empty();
    });
    AnnuleDefinitionEnvironnement();
}
