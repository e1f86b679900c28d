#include "project/CAffaire.h"
#include "project/FichiersEtudes.h"
#include "ProjetFixture.h"

#include <cstring>

using namespace prefa_test;

namespace
{
void Remplit(CAffaire& a)
{
    a.Texte1 = L"A-1";
    a.Texte2 = L"Désignation";
    a.Texte3 = L"Client";
    a.Texte4 = L"T4";
    a.Texte5 = L"5 rue";
    a.Texte6 = L"Ville";
    a.Texte7 = L"Tel";
    a.Date = 0x12345678;
    a.Texte8 = L"T8";
    a.Texte9 = L"T9";
    a.Liste1[0] = L"L10";
    a.Liste1[1] = L"L11";
    a.Liste1[2] = L"L12";
    a.Texte10 = L"Prix 10 €";
    a.Liste2[0] = L"L20";
    a.Liste2[1] = L"";
    a.Liste2[2] = L"L22";
    a.Valeur1 = 0x0102;
    a.Valeur3 = 0x0304;
    a.Texte11 = L"T11";
    a.Valeur2 = 0x0506;
    a.Texte12 = L"T12";
}

// The main file of a record, for a given version, with lists of the given counts.
Bytes Fichier(std::uint32_t version, DWORD motDate2 = 0x12345678, std::uint32_t n1 = 3, std::uint32_t n2 = 3)
{
    Bytes b;
    b.u32(version).text(L"A-1").text(L"Désignation").text(L"Client").text(L"T4").text(L"5 rue").text(L"Ville").text(L"Tel");
    b.u32(0x12345678).u32(motDate2).text(L"T8").text(L"T9");
    b.u32(n1);
    for (std::uint32_t i = 0; i < n1; ++i)
        b.text(L"L1" + std::to_wstring(i));
    b.u16(0).text(L"Prix 10 €");
    b.u32(n2);
    for (std::uint32_t i = 0; i < n2; ++i)
        b.text(i == 1 ? L"" : L"L2" + std::to_wstring(i));
    b.u16(0x0102).text(L"T11").u32(0);
    if (version >= 2)
        b.u16(0x0506);
    if (version >= 3)
        b.u16(0x0304);
    if (version >= 4)
        b.text(L"T12");
    return b;
}

CAffaire Charge(const std::vector<BYTE>& bytes)
{
    CAffaire a;
    std::size_t reste = Load(bytes, [&](CArchive& ar) { a.Serialize(ar); });
    EXPECT_EQ(reste, 0u);
    return a;
}
} // namespace

TEST(CAffaire, SavesTheVersion4LayoutByteForByte)
{
    CAffaire a;
    Remplit(a);
    std::vector<BYTE> octets = Store([&](CArchive& ar) { a.Serialize(ar); });
    EXPECT_EQ(octets, Fichier(4).b) << Hex(octets);

    CAffaire relu = Charge(octets);
    EXPECT_EQ(relu.Texte2, L"Désignation");
    EXPECT_EQ(relu.Texte10, L"Prix 10 €");
    EXPECT_EQ(relu.Date, 0x12345678);
    EXPECT_EQ(relu.Liste2[1], L"");
    EXPECT_EQ(relu.Liste2[2], L"L22");
    EXPECT_EQ(relu.Valeur1, 0x0102);
    EXPECT_EQ(relu.Valeur2, 0x0506);
    EXPECT_EQ(relu.Valeur3, 0x0304);
    EXPECT_EQ(relu.Texte12, L"T12");
}

TEST(CAffaire, OlderVersionsLoadWithDefaultsAndNewerOnesAreNotRejected)
{
    CAffaire v1 = Charge(Fichier(1).b);
    EXPECT_EQ(v1.Valeur2, 0);
    EXPECT_EQ(v1.Valeur3, 0);
    EXPECT_TRUE(v1.Texte12.IsEmpty());
    EXPECT_EQ(v1.Texte11, L"T11");

    CAffaire v2 = Charge(Fichier(2).b);
    EXPECT_EQ(v2.Valeur2, 0x0506);
    EXPECT_EQ(v2.Valeur3, 0);
    EXPECT_TRUE(v2.Texte12.IsEmpty());

    CAffaire v3 = Charge(Fichier(3).b);
    EXPECT_EQ(v3.Valeur2, 0x0506);
    EXPECT_EQ(v3.Valeur3, 0x0304);
    EXPECT_TRUE(v3.Texte12.IsEmpty());

    // A later version is read as version 4 (its further fields are not known yet).
    CAffaire v9 = Charge(Fichier(9).b);
    EXPECT_EQ(v9.Texte12, L"T12");

    // Loading over a filled record empties the later text of an old file.
    CAffaire plein;
    Remplit(plein);
    Load(Fichier(3).b, [&](CArchive& ar) { plein.Serialize(ar); });
    EXPECT_TRUE(plein.Texte12.IsEmpty());
}

TEST(CAffaire, ListCountsOtherThanThreeAndTheSecondTimeWord)
{
    // Five texts: three kept, two dropped; the second time word is thrown away.
    CAffaire cinq = Charge(Fichier(4, 0x7FFFFFFF, 5, 3).b);
    EXPECT_EQ(cinq.Liste1[0], L"L10");
    EXPECT_EQ(cinq.Liste1[2], L"L12");
    EXPECT_EQ(cinq.Texte10, L"Prix 10 €");
    EXPECT_EQ(cinq.Date, 0x12345678);

    // One text: only the first entry changes, the others keep their value.
    CAffaire a;
    a.Liste2[1] = L"avant1";
    a.Liste2[2] = L"avant2";
    Load(Fichier(4, 0x12345678, 3, 1).b, [&](CArchive& ar) { a.Serialize(ar); });
    EXPECT_EQ(a.Liste2[0], L"L20");
    EXPECT_EQ(a.Liste2[1], L"avant1");
    EXPECT_EQ(a.Liste2[2], L"avant2");

    // A count the file cannot hold is refused before any of its texts is read.
    Bytes b;
    b.u32(4).text(L"A-1").text(L"").text(L"").text(L"").text(L"").text(L"").text(L"").u32(0).u32(0).text(L"").text(L"");
    b.u32(1000).text(L"a").text(L"b").text(L"c");
    CAffaire refus;
    refus.Liste1[0] = L"avant";
    EXPECT_EQ(ArchiveCause([&] { Load(b.b, [&](CArchive& ar) { refus.Serialize(ar); }); }),
              (int)CArchiveException::endOfFile);
    EXPECT_EQ(refus.Liste1[0], L"avant");

    // Dates after 2038 survive the unsigned word.
    CAffaire tard;
    tard.Date = 0xF0000000LL;
    CAffaire relu = Charge(Store([&](CArchive& ar) { tard.Serialize(ar); }));
    EXPECT_EQ(relu.Date, 0xF0000000LL);
}

TEST(CAffaire, CopyAndAssignmentCopyEveryMember)
{
    CAffaire a;
    Remplit(a);
    CAffaire b(a);
    CAffaire c;
    c = a;
    for (const CAffaire* x : {&b, &c})
    {
        std::vector<BYTE> attendu = Store([&](CArchive& ar) { const_cast<CAffaire&>(a).Serialize(ar); });
        EXPECT_EQ(Store([&](CArchive& ar) { const_cast<CAffaire*>(x)->Serialize(ar); }), attendu);
    }
}

TEST(CAffaire, ExchangeRecordOffsetsAndBoundedCopies)
{
    CAffaire a;
    Remplit(a);
    a.Texte2 = CString(std::wstring(50, L'x').c_str());      // cut to 43
    a.Texte3 = CString(std::wstring(27, L'y').c_str());      // exactly full: no terminator
    a.Texte11 = L"àé€";
    BYTE e[CAffaire::TAILLE_ECHANGE];
    std::memset(e, 0xCC, sizeof e);
    a.RemplitEchange(e);

    CString date = CAffaire::TexteDateEchange(a.Date);
    std::string dateA = AfxWideToAnsi(date.Std());
    Bytes attendu;
    attendu.ansi("A-1", 11).ansi(std::string(43, 'x'), 44).ansi(std::string(27, 'y'), 28).ansi("T4", 13)
        .ansi("5 rue", 28).ansi("Ville", 28).ansi("Tel", 17).ansi(dateA, 9).ansi(dateA, 9).ansi("T8", 17)
        .ansi("T9", 17).ansi("L10", 21).ansi("L11", 21).ansi("L12", 21);
    ASSERT_EQ(attendu.size(), 284u);
    attendu.u32(151019).u16(0x0304).u16(0x0506).u32(0).u16(0).ansi("Prix 10 \x80", 22).zeros(14);
    ASSERT_EQ(attendu.size(), 334u);
    attendu.ansi("L20", 17).ansi("", 17).ansi("L22", 17).zeros(1).u16(0x0102).ansi("\xE0\xE9\x80", 22).zeros(26);
    ASSERT_EQ(attendu.size(), 436u);
    EXPECT_EQ(std::vector<BYTE>(e, e + sizeof e), attendu.b) << Hex(std::vector<BYTE>(e, e + sizeof e));
    EXPECT_EQ(e[54], 0);
    EXPECT_EQ(dateA.size(), 8u);

    // Every text longer than its field: cut to the width, the byte after it still 0.
    CAffaire longs;
    CString* textes[] = {&longs.Texte1, &longs.Texte2, &longs.Texte3, &longs.Texte4, &longs.Texte5, &longs.Texte6,
                         &longs.Texte7, &longs.Texte8, &longs.Texte9, &longs.Liste1[0], &longs.Liste1[1],
                         &longs.Liste1[2], &longs.Texte10, &longs.Liste2[0], &longs.Liste2[1], &longs.Liste2[2],
                         &longs.Texte11};
    for (int k = 0; k < 17; ++k)
        *textes[k] = CString(std::wstring(60, (wchar_t)(L'a' + k)).c_str());
    longs.RemplitEchange(e);
    Bytes pleins;
    const std::size_t largeurs[] = {10, 43, 27, 12, 27, 27, 16};
    for (int k = 0; k < 7; ++k)
        pleins.ansi(std::string(largeurs[k], (char)('a' + k)), largeurs[k] + 1);
    pleins.ansi(dateA, 9).ansi(dateA, 9).ansi(std::string(16, 'h'), 17).ansi(std::string(16, 'i'), 17);
    pleins.ansi(std::string(20, 'j'), 21).ansi(std::string(20, 'k'), 21).ansi(std::string(20, 'l'), 21);
    pleins.u32(151019).u16(0x0304).u16(0x0506).u32(0).u16(0).ansi(std::string(22, 'm'), 22).zeros(14);
    pleins.ansi(std::string(16, 'n'), 17).ansi(std::string(16, 'o'), 17).ansi(std::string(16, 'p'), 17).zeros(1);
    pleins.u16(0x0102).ansi(std::string(22, 'q'), 22).zeros(26);
    longs.Valeur1 = 0x0102, longs.Valeur2 = 0x0506, longs.Valeur3 = 0x0304, longs.Date = a.Date;
    longs.RemplitEchange(e);
    EXPECT_EQ(std::vector<BYTE>(e, e + sizeof e), pleins.b) << Hex(std::vector<BYTE>(e, e + sizeof e));
    a.RemplitEchange(e);

    // Read back: the texts come back through the code page, Texte2 as cut.
    CAffaire b;
    b.LitEchange(e);
    EXPECT_EQ(b.Texte2.GetLength(), 43);
    EXPECT_EQ(b.Texte3, a.Texte3);
    EXPECT_EQ(b.Texte10, L"Prix 10 €");
    EXPECT_EQ(b.Texte11, L"àé€");
    EXPECT_EQ(b.Valeur1, 0x0102);
    EXPECT_EQ(b.Valeur2, 0x0506);
    EXPECT_EQ(b.Valeur3, 0x0304);
    EXPECT_EQ(b.Liste2[2], L"L22");
    EXPECT_EQ(CAffaire::TexteDateEchange(b.Date), date);
}

TEST(CAffaire, ExchangeDatesAndTheCenturyRule)
{
    auto locale = [](__time64_t t) {
        struct tm x;
        EXPECT_EQ(_localtime64_s(&x, &t), 0);
        return x;
    };
    struct tm t80 = locale(CAffaire::DateDepuisTexteEchange(L"01/02/80"));
    EXPECT_EQ(t80.tm_year + 1900, 2080);
    EXPECT_EQ(t80.tm_mon, 1);
    EXPECT_EQ(t80.tm_mday, 1);
    struct tm t81 = locale(CAffaire::DateDepuisTexteEchange(L"01/02/81"));
    EXPECT_EQ(t81.tm_year + 1900, 1981);
    EXPECT_EQ(t81.tm_hour, 0);
    EXPECT_EQ(t81.tm_min, 0);
    struct tm t00 = locale(CAffaire::DateDepuisTexteEchange(L"31/12/00"));
    EXPECT_EQ(t00.tm_year + 1900, 2000);
    EXPECT_EQ(t00.tm_mon, 11);
    EXPECT_EQ(t00.tm_mday, 31);

    EXPECT_EQ(CAffaire::TexteDateEchange(CAffaire::DateDepuisTexteEchange(L"09/03/07")), L"09/03/07");
    EXPECT_EQ(CAffaire::TexteDateEchange(CAffaire::DateDepuisTexteEchange(L"28/11/95")), L"28/11/95");

    EXPECT_TRUE(Throws<CInvalidArgException>([] { CAffaire::DateDepuisTexteEchange(L"01/13/90"); }));
    EXPECT_TRUE(Throws<CInvalidArgException>([] { CAffaire::DateDepuisTexteEchange(L"00/01/90"); }));
    EXPECT_TRUE(Throws<CInvalidArgException>([] { CAffaire::DateDepuisTexteEchange(L"01/00/90"); }));
    EXPECT_TRUE(Throws<CInvalidArgException>([] { CAffaire::DateDepuisTexteEchange(L"32/01/90"); }));
    EXPECT_TRUE(Throws<CInvalidArgException>([] { CAffaire::DateDepuisTexteEchange(L""); }));
}

class CAffaireFichiers : public ProjetFixture
{
};

TEST_F(CAffaireFichiers, SaveWritesBothFilesAndLoadReadsTheMainOne)
{
    CAffaire a;
    Remplit(a);
    MessageBoxCapture boites;
    ASSERT_EQ(a.GestionFichier(1, L"AFF1"), 1);
    EXPECT_EQ(ReadAll(Affaire(L"VORENAFF")), Fichier(4).b);
    BYTE e[CAffaire::TAILLE_ECHANGE];
    a.RemplitEchange(e);
    EXPECT_EQ(ReadAll(Affaire(L"LUMACAFF")), std::vector<BYTE>(e, e + sizeof e));
    // Only the two records: the temporary files of the save are gone.
    int n = 0;
    for (auto& f : std::filesystem::directory_iterator(std::filesystem::path(m_racine.Utf8()) / "AFF1"))
        n += f.is_regular_file() ? 1 : 0;
    EXPECT_EQ(n, 2);

    for (int mode : {0, 2})
    {
        CAffaire b;
        ASSERT_EQ(b.GestionFichier(mode, L"AFF1"), 1);
        EXPECT_EQ(b.Texte12, L"T12");
    }
    EXPECT_TRUE(boites.boxes.empty());
}

TEST_F(CAffaireFichiers, MissingFilesAndTheFallBackOnTheExchangeRecord)
{
    MessageBoxCapture boites;
    CAffaire a;
    // No file at all: mode 2 is quiet, mode 0 reports.
    EXPECT_EQ(a.GestionFichier(2, L"AFF1"), 0);
    EXPECT_TRUE(boites.boxes.empty());
    EXPECT_EQ(a.GestionFichier(0, L"AFF1"), 0);
    ASSERT_EQ(boites.boxes.size(), 1u);
    const CString& texte = boites.boxes[0].text;
    EXPECT_EQ(texte.Find(L"Erreur de fichier"), 0);
    EXPECT_GE(texte.Find(L"IDENTERR_2137"), 0);
    EXPECT_GE(texte.Find(L"..\\Affaire"), 0);
    EXPECT_GE(texte.Find(L" - 288\n"), 0);
    EXPECT_GE(texte.Find(Compose_Fichier_Affaire(L"AFF1", L"VORENAFF")), 0);
    EXPECT_EQ(boites.boxes[0].type & MB_ICONERROR, (UINT)MB_ICONERROR);

    // Only an exchange record without the marker: the two later values stay 0.
    CAffaire source;
    Remplit(source);
    BYTE e[CAffaire::TAILLE_ECHANGE];
    source.RemplitEchange(e);
    std::memcpy(e + 169, "01/02/81", 8);
    std::memset(e + 284, 0, 4);
    WriteAll(Affaire(L"LUMACAFF"), std::vector<BYTE>(e, e + sizeof e));
    CAffaire b;
    b.Texte12 = L"reste?";
    ASSERT_EQ(b.GestionFichier(2, L"AFF1"), 1);
    EXPECT_EQ(b.Valeur2, 0);
    EXPECT_EQ(b.Valeur3, 0);
    EXPECT_EQ(b.Valeur1, 0x0102);
    EXPECT_TRUE(b.Texte12.IsEmpty());
    EXPECT_EQ(b.Texte10, L"Prix 10 €");
    EXPECT_EQ(CAffaire::TexteDateEchange(b.Date), L"01/02/81");
    // Mode 0 does not fall back.
    EXPECT_EQ(b.GestionFichier(0, L"AFF1"), 0);

    // A short exchange record is a failed read: quiet 0.
    WriteAll(Affaire(L"LUMACAFF"), std::vector<BYTE>(e, e + 435));
    EXPECT_EQ(b.GestionFichier(2, L"AFF1"), 0);
    // A wrong date in it raises.
    std::memcpy(e + 169, "01/13/81", 8);
    WriteAll(Affaire(L"LUMACAFF"), std::vector<BYTE>(e, e + sizeof e));
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { b.GestionFichier(2, L"AFF1"); }));
}

TEST_F(CAffaireFichiers, AFailedOrMalformedFileKeepsThePreviousRecord)
{
    CAffaire a;
    Remplit(a);
    ASSERT_EQ(a.GestionFichier(1, L"AFF1"), 1);
    std::vector<BYTE> avant = ReadAll(Affaire(L"VORENAFF"));

    // A truncated main file raises the archive exception out of the load.
    std::vector<BYTE> court(avant.begin(), avant.end() - 3);
    WriteAll(Affaire(L"VORENAFF"), court);
    CAffaire b;
    EXPECT_EQ(ArchiveCause([&] { b.GestionFichier(0, L"AFF1"); }), CArchiveException::endOfFile);

    // A save into a folder that does not exist reports and creates nothing.
    MessageBoxCapture boites;
    EXPECT_EQ(a.GestionFichier(1, L"ABSENT"), 0);
    ASSERT_EQ(boites.boxes.size(), 1u);
    EXPECT_GE(boites.boxes[0].text.Find(L"IDENTERR_2137"), 0);
    EXPECT_FALSE(Exists(m_racine / CString(L"ABSENT")));
}
