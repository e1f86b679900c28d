// What the library takes from Windows itself: the ANSI code page of the system, the
// computer and user names, and the system's texts for its error numbers.
#include "project/CConfigBRAXEL.h"
#include "project/MessErreur.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace prefa_test;

// scripts/test-windows runs this test under Windows-1252 and again under Windows-1251
// (Wine takes the code page from the locale it is started in).
TEST(SystemeWindows, NarrowTextsFollowTheSystemCodePage)
{
    const std::wstring texte = L"\u00E9\u0416\u20AC";    // e acute, Cyrillic Zhe, euro
    const std::wstring emoji = L"\U0001F600";            // one character, two wchar_t here
    CString attendue = AfxGetEnvironmentVariable(L"PREFA_TEST_ACP"); // set by the 1251 run
    if (!attendue.IsEmpty())
        ASSERT_EQ((UINT)_wtoi(attendue), GetACP());
    switch (GetACP())
    {
    case 1252:
        EXPECT_EQ(std::string("\xE9?\x80"), AfxWideToAnsi(texte));
        EXPECT_EQ(std::wstring(L"\u00E9\u0081\u20AC"), AfxAnsiToWide(std::string("\xE9\x81\x80")));
        break;
    case 1251:
        EXPECT_EQ(std::string("?\xC6\x88"), AfxWideToAnsi(texte));
        EXPECT_EQ(std::wstring(L"\u0416\u20AC"), AfxAnsiToWide(std::string("\xC6\x88")));
        break;
    default:
        GTEST_SKIP() << "expectations are written for the code pages 1251 and 1252, not " << GetACP();
    }
    // Beyond the basic plane, no best fit ('A' for A macron), a lone surrogate: one '?' each.
    EXPECT_EQ(std::string("a?b?c?"), AfxWideToAnsi(L"a" + emoji + L"b\u0100c" + std::wstring(1, (wchar_t)0xD800)));
    // The narrow texts of CString follow the same code page.
    EXPECT_EQ(CStringA(AfxWideToAnsi(texte).c_str()), CStringA(CString(texte.c_str())));
}

TEST(SystemeWindows, WorkstationNamesComeFromTheSystem)
{
    ScratchDir dir;
    std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(dir.Path().Std()); // no BRAXEL.CFG here
    CConfigBRAXEL poste;
    std::filesystem::current_path(before);
    // Windows also publishes both names in every program's environment.
    EXPECT_FALSE(poste.NomOrdinateur.IsEmpty());
    EXPECT_EQ(AfxGetEnvironmentVariable(L"COMPUTERNAME"), poste.NomOrdinateur);
    EXPECT_EQ(AfxGetEnvironmentVariable(L"USERNAME"), poste.NomUtilisateur);

    // Too small a buffer: FALSE, the system's error, and the size needed.
    wchar_t nom[2];
    DWORD n = 1;
    EXPECT_FALSE(GetComputerNameW(nom, &n));
    EXPECT_EQ((DWORD)ERROR_BUFFER_OVERFLOW, GetLastError());
    EXPECT_EQ((DWORD)poste.NomOrdinateur.GetLength() + 1, n);
}

TEST(SystemeWindows, SystemErrorTextsAndRunTimeNumbers)
{
    // Cause -2 of MessErreur: the last system error, with the system's own text.
    SetLastError(ERROR_SHARING_VIOLATION);
    CString cause = MessErreurTexteCause(MESSERREUR_ERREUR_SYSTEME);
    CString texte = AfxGetSystemErrorText(ERROR_SHARING_VIOLATION);
    EXPECT_EQ(CString(L"32 - ") + texte, cause);
    EXPECT_FALSE(texte.IsEmpty());
    EXPECT_EQ(-1, texte.FindOneOf(L"\r\n")); // the system ends its texts with a line break
    EXPECT_NE(AfxGetRuntimeErrorText(32), texte); // 32 is EPIPE for the run-time

    // The system's numbers as the C run-time maps them.
    EXPECT_EQ(ENOENT, AfxOsErrorToErrno(ERROR_PATH_NOT_FOUND));
    EXPECT_EQ(EACCES, AfxOsErrorToErrno(ERROR_SHARING_VIOLATION));
    EXPECT_EQ(EACCES, AfxOsErrorToErrno(ERROR_LOCK_VIOLATION));
    EXPECT_EQ(EEXIST, AfxOsErrorToErrno(ERROR_ALREADY_EXISTS));
    EXPECT_EQ(ENOSPC, AfxOsErrorToErrno(ERROR_DISK_FULL));
    EXPECT_EQ(EINVAL, AfxOsErrorToErrno(ERROR_INVALID_PARAMETER));
    EXPECT_EQ(ENOEXEC, AfxOsErrorToErrno(ERROR_BAD_EXE_FORMAT));
    EXPECT_EQ(EINVAL, AfxOsErrorToErrno(ERROR_HANDLE_EOF));
}
