#include "project/MessErreur.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>

using namespace prefa_test;

namespace
{
const wchar_t* const kLine = L"__________________________________________________\n";
}

TEST(MessErreur, FileExceptionBoxText)
{
    AfxRegisterString(IDS_PREFA_ERREUR_FICHIER, L"Erreur de fichier");
    MessageBoxCapture capture;
    CFileException e(CFileException::fileNotFound, ENOENT, L"/d/E1/TEMPER.03");
    MessErreur(L"IDENTERR_2133", L"TemperatureGenerale", 4705, &e, L"libprefa.so", IDS_PREFA_ERREUR_FICHIER, L"",
               L"");
    ASSERT_EQ(1u, capture.boxes.size());
    EXPECT_EQ((UINT)(MB_ICONERROR | MB_OK), capture.boxes[0].type);
    CString expected = CString(L"Erreur de fichier\n") + kLine +
                       L"TemperatureGenerale - libprefa.so - 4705\n2 - /d/E1/TEMPER.03 was not found.\nIDENTERR_2133";
    EXPECT_EQ(expected, capture.boxes[0].text);
    AfxUnregisterString(IDS_PREFA_ERREUR_FICHIER);
}

TEST(MessErreur, ErrnoCauseWithArgumentsAndNoResource)
{
    MessageBoxCapture capture;
    MessErreur(L"IDENTERR_583", L"..\\General", 120, EACCES, L"prefa", 0, L"/d/A/LOCK_AFF", L"second");
    ASSERT_EQ(1u, capture.boxes.size());
    CString cause;
    cause.Format(L"%d - EACCES : %s", EACCES, AfxGetRuntimeErrorText(EACCES));
    EXPECT_EQ(CString(L"/d/A/LOCK_AFF\nsecond\n") + kLine + L"..\\General - prefa - 120\n" + cause + L"\nIDENTERR_583",
              capture.boxes[0].text);
}

TEST(MessErreur, CauseNames)
{
    // The two ends of the table, and a value between two of its entries.
    EXPECT_EQ(CString(L"ENOENT"), MessErreurNomCause(ENOENT));
    EXPECT_EQ(CString(L"EDEADLOCK"), MessErreurNomCause(EDEADLOCK));
    EXPECT_EQ(CString(L"INCONNUE"), MessErreurNomCause(EPIPE));
    EXPECT_EQ(CString(L"INCONNUE"), MessErreurNomCause(12345));
    CString unknown = MessErreurTexteCause(12345);
    EXPECT_EQ(0, unknown.Find(L"12345 - INCONNUE : "));
}

TEST(MessErreur, SystemErrorAndLongMessages)
{
    SetLastError(ENOSPC);
    CString cause = MessErreurTexteCause(MESSERREUR_ERREUR_SYSTEME);
    EXPECT_EQ(CString(L"28 - ") + AfxGetSystemErrorText(ENOSPC), cause);

    // A file exception's message is cut to 255 characters.
    CString longName(std::wstring(400, L'n'));
    CFileException e(CFileException::accessDenied, EACCES, longName);
    CString text = MessErreurTexteCause(&e);
    CString prefix;
    prefix.Format(L"%d - ", EACCES);
    EXPECT_EQ(prefix.GetLength() + 255, text.GetLength());
    EXPECT_EQ(0, text.Find(prefix + L"Access to nnn"));
}
