// Member names: which ones may be unpacked, how names of other tools are decoded,
// and which files of a project folder are left out of a packing.
#include "zip/NomsZip.h"
#include "zip/PaquetAffaire.h"

#include <gtest/gtest.h>

TEST(NomsZip, AcceptsRelativeNamesUpTo255CharactersAndRefusesEscapesAndWhatWindowsCannotHold)
{
    const std::pair<CString, const wchar_t*> acceptes[] = {
        {L"E1\\TEMPER.01", L"E1/TEMPER.01"}, // old Windows tools' separator
        {L"E1/", L"E1"},
        {L"a..b/..c", L"a..b/..c"},          // dots inside names are not climbs
        {L"COM10.txt", L"COM10.txt"},        // not a device
        {L"console.txt", L"console.txt"},
        {L"~$plan \u00E9t\u00E9.dxf", L"~$plan \u00E9t\u00E9.dxf"},
        {CString(L'x', 255), nullptr},
    };
    for (const auto& c : acceptes)
    {
        CString relatif, raison;
        EXPECT_TRUE(VerifieNomZip(c.first, relatif, raison)) << AfxWideToUtf8(c.first.Std());
        EXPECT_EQ(c.second ? CString(c.second) : c.first, relatif);
    }
    const CString refuses[] = {
        L"", L"/", L"/etc/passwd", L"\\evil", L"C:/x", L"c:x", L"../x", L"..", L"a/../../x", L"..\\x",
        L"a\\..\\..\\x", L"a/./b", L"./a", L"a//b", L"a/b:flux", L"con", L"CON.txt", L"E1/lpt1.dat", L"com9",
        L"Aux", L"a\x01" L"b", L"a\x1F", L"a\x7F", L"a<b", L"a>b", L"a|b", L"a\"b", L"a?b", L"a*b", L"nom.", L"nom ",
        L"E1 /x", L"//serveur/partage", CString(L'x', 256),
    };
    for (const CString& nom : refuses)
    {
        CString relatif = L"x", raison;
        EXPECT_FALSE(VerifieNomZip(nom, relatif, raison)) << AfxWideToUtf8(nom.Std());
        EXPECT_FALSE(raison.IsEmpty()) << AfxWideToUtf8(nom.Std());
        EXPECT_TRUE(relatif.IsEmpty());
    }
}

TEST(NomsZip, NamesAreDecodedByFlagThenUtf8ThenTheSystemsCodePage)
{
    // "été" in UTF-8, in code page 850 (0x82) and in Windows-1252 (0xE9).
    const std::string utf8 = "\xC3\xA9t\xC3\xA9", cp850 = "\x82t\x82", ansi = "\xE9t\xE9";
    const std::wstring ete = L"\u00E9t\u00E9";
    EXPECT_EQ(ete, DecodeNomZip(utf8, true, 3).Std());
    EXPECT_EQ(ete, DecodeNomZip(utf8, false, 0).Std()); // unflagged but valid UTF-8
    for (int systeme : {0, 6, 10, 11, 14})              // DOS and Windows tools: OEM
        EXPECT_EQ(ete, DecodeNomZip(cp850, false, systeme).Std()) << systeme;
    for (int systeme : {3, 7, 19})                      // Unix, Macintosh, OS X: the ANSI code page
        EXPECT_EQ(ete, DecodeNomZip(ansi, false, systeme).Std()) << systeme;
    EXPECT_EQ(std::wstring(L"\u00DAt\u00DA"), DecodeNomZip(ansi, false, 0).Std()); // 0xE9 is another letter in OEM
    // Letters of French names in code page 850, by hand from the code chart.
    EXPECT_EQ(std::wstring(L"\u00E9\u00E0\u00E7\u00E8\u00C9\u00C0\u00C8\u00F4\u00EA\u00DF\u00A0"),
              Cp850VersWide("\x82\x85\x87\x8A\x90\xB7\xD4\x93\x88\xE1\xFF"));

    for (const char* valide : {"abc", "\xC2\x80", "\xC3\xA9\xE2\x82\xAC", "\xED\x9F\xBF", "\xF4\x8F\xBF\xBF"})
        EXPECT_TRUE(EstUtf8Valide(valide)) << valide;
    for (const char* invalide : {"\xC0\xAF", "\xC1\xBF", "\xE0\x9F\xBF", "\xF0\x8F\xBF\xBF", // overlong
                                 "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80",     // surrogate, past U+10FFFF
                                 "\xC3", "\xE2\x82", "\xC3t", "\x82t\x82"})                  // cut, stray
        EXPECT_FALSE(EstUtf8Valide(invalide)) << invalide;
}

TEST(NomsZip, LocksAndSaveTemporariesAreTransient)
{
    for (const wchar_t* nom : {L"LOCK_AFF", L"LOCK_PLA.03", L"lock_pla.123", L"VORENAFF.lock", L"plan.dxf.LOCK",
                               L"ETUDE.LCK", L"etude.lck", L"VORENAFF.~1a2b3c4d", L"LOCK_PLA.03.~new12"})
        EXPECT_TRUE(Est_Fichier_Transitoire(nom)) << AfxWideToUtf8(nom);
    for (const wchar_t* nom : {L"VORENAFF", L"VORENPLA.03", L"LOCK_AFF2", L"LOCK_PLA", L"LOCK_PLA3", L"xLOCK_AFF",
                               L"deadlock", L"lock", L"plan.lck2", L"plan~1.dxf", L"BLOCK_PLA.03"})
        EXPECT_FALSE(Est_Fichier_Transitoire(nom)) << AfxWideToUtf8(nom);
}
