// Member names: which ones may be unpacked, how names of other tools are decoded,
// and which files of a project folder are left out of a packing.
#include "zip/NomsZip.h"
#include "zip/PaquetAffaire.h"

#include <gtest/gtest.h>

TEST(NomsZip, NomsAcceptesRelatifsAvecBarres)
{
    const struct
    {
        const wchar_t* nom;
        const wchar_t* relatif;
    } cas[] = {
        {L"VORENAFF", L"VORENAFF"},
        {L"E1/TEMPER.01", L"E1/TEMPER.01"},
        {L"E1\\TEMPER.01", L"E1/TEMPER.01"}, // old Windows tools' separator
        {L"E1/", L"E1"},
        {L"Plan \u00E9t\u00E9.dxf", L"Plan \u00E9t\u00E9.dxf"},
        {L"a..b/..c", L"a..b/..c"},          // dots inside names are not climbs
        {L"COM10.txt", L"COM10.txt"},        // not a device
        {L"console.txt", L"console.txt"},
        {L"~$plan.dxf", L"~$plan.dxf"},
    };
    for (const auto& c : cas)
    {
        CString relatif, raison;
        EXPECT_TRUE(VerifieNomZip(c.nom, relatif, raison)) << AfxWideToUtf8(c.nom);
        EXPECT_EQ(std::wstring(c.relatif), relatif.Std());
    }
    CString relatif, raison;
    EXPECT_TRUE(VerifieNomZip(CString(L'x', 255), relatif, raison));
}

TEST(NomsZip, NomsRefusesQuiSortentDuDossierOuQueWindowsNeTientPas)
{
    const wchar_t* refuses[] = {
        L"", L"/", L"/etc/passwd", L"\\evil", L"C:/x", L"c:x", L"../x", L"..", L"a/../../x", L"..\\x",
        L"a\\..\\..\\x", L"a/./b", L"./a", L"a//b", L"a/b:flux", L"con", L"CON.txt", L"E1/lpt1.dat", L"com9",
        L"Aux", L"a\x01" L"b", L"a\x7F", L"a<b", L"a>b", L"a|b", L"a\"b", L"a?b", L"a*b", L"nom.", L"nom ",
        L"E1 /x", L"//serveur/partage",
    };
    for (const wchar_t* nom : refuses)
    {
        CString relatif = L"x", raison;
        EXPECT_FALSE(VerifieNomZip(nom, relatif, raison)) << AfxWideToUtf8(nom);
        EXPECT_FALSE(raison.IsEmpty()) << AfxWideToUtf8(nom);
        EXPECT_TRUE(relatif.IsEmpty());
    }
    CString relatif, raison;
    EXPECT_FALSE(VerifieNomZip(CString(L'x', 256), relatif, raison));
}

TEST(NomsZip, DecodageSelonDrapeauEtSysteme)
{
    // "été" in UTF-8, in code page 850 (0x82) and in Windows-1252 (0xE9).
    const std::string utf8 = "\xC3\xA9t\xC3\xA9", cp850 = "\x82t\x82", ansi = "\xE9t\xE9";
    const std::wstring ete = L"\u00E9t\u00E9";
    EXPECT_EQ(ete, DecodeNomZip(utf8, true, 3).Std());
    EXPECT_EQ(ete, DecodeNomZip(utf8, false, 0).Std()); // unflagged but valid UTF-8
    for (int systeme : {0, 6, 10, 11, 14})              // DOS and Windows tools: OEM
        EXPECT_EQ(ete, DecodeNomZip(cp850, false, systeme).Std()) << systeme;
    EXPECT_EQ(ete, DecodeNomZip(ansi, false, 3).Std()); // a Unix tool in Latin-1
    // The same byte means another letter in each code page.
    EXPECT_EQ(std::wstring(L"\u00DAt\u00DA"), DecodeNomZip(ansi, false, 0).Std());
    EXPECT_EQ(std::wstring(L"plain"), DecodeNomZip("plain", false, 0).Std());

    // Letters of French names in code page 850, by hand from the code chart.
    EXPECT_EQ(std::wstring(L"\u00E9\u00E0\u00E7\u00E8\u00C9\u00C0\u00C8\u00F4\u00EA\u00DF\u00A0"),
              Cp850VersWide("\x82\x85\x87\x8A\x90\xB7\xD4\x93\x88\xE1\xFF"));
}

TEST(NomsZip, Utf8Valide)
{
    EXPECT_TRUE(EstUtf8Valide("abc"));
    EXPECT_TRUE(EstUtf8Valide("\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80")); // é € and a 4-byte character
    EXPECT_FALSE(EstUtf8Valide("\xC0\xAF"));                           // overlong '/'
    EXPECT_FALSE(EstUtf8Valide("\xE0\x80\xAF"));                       // overlong on 3 bytes
    EXPECT_FALSE(EstUtf8Valide("\xED\xA0\x80"));                       // a surrogate
    EXPECT_FALSE(EstUtf8Valide("\xF4\x90\x80\x80"));                   // beyond U+10FFFF
    EXPECT_FALSE(EstUtf8Valide("\xC3"));                               // cut
    EXPECT_FALSE(EstUtf8Valide("\xC3t"));
    EXPECT_FALSE(EstUtf8Valide("\x82t\x82"));
}

TEST(NomsZip, FichiersTransitoires)
{
    for (const wchar_t* nom : {L"LOCK_AFF", L"LOCK_PLA.03", L"LOCK_PLA.123", L"VORENAFF.lock", L"plan.dxf.LOCK",
                               L"ETUDE.LCK", L"etude.lck", L"VORENAFF.~1a2b3c4d", L"LOCK_PLA.03.~new12"})
        EXPECT_TRUE(Est_Fichier_Transitoire(nom)) << AfxWideToUtf8(nom);
    for (const wchar_t* nom : {L"VORENAFF", L"LUMACAFF", L"VORENPLA.03", L"TEMPER.01", L"LOCK_AFF2", L"LOCK_PLA",
                               L"xLOCK_AFF", L"deadlock", L"lock", L"plan~1.dxf", L"BLOCK_PLA.03"})
        EXPECT_FALSE(Est_Fichier_Transitoire(nom)) << AfxWideToUtf8(nom);
}
