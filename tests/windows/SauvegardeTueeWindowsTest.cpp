// A save killed half-way: a child process (this program again, running only the saver
// below) saves the project record again and again until TerminateProcess stops it.
// The record always loads whole, and the killed save's litter goes with the next save.
#include "project/CAffaire.h"
#include "project/ProjetFixture.h"
#include "project/SauvegardeTuee.h"

#include <random>

using namespace prefa_test;

namespace
{
const wchar_t* const kRacine = L"PREFA_TEST_SAUVEUR";
}

// The child's part: runs only when the test below starts this program with the data
// root in the environment; saves for ever, and says when the record first exists.
TEST(SauvegardeTueeWindowsEnfant, Sauveur)
{
    const CString racine = AfxGetEnvironmentVariable(kRacine);
    if (racine.IsEmpty())
        GTEST_SKIP() << "the child process of KilledSavesLeaveNoLitterAfterTheNextSave";
    std::filesystem::current_path(racine.Std());
    DefinitEnvironnement(racine, 1);
    CAffaire a;
    for (int i = 0;; ++i)
    {
        a.Texte1.Format(L"version %d", i);
        a.Texte2 = CString(L'x', 2000 + i % 1000);
        ASSERT_EQ(a.GestionFichier(1, L"AFF1"), 1);
        if (i == 0)
            WriteAll(racine + L"\\pret", {1});
    }
}

class SauvegardeTueeWindows : public ProjetFixture
{
};

TEST_F(SauvegardeTueeWindows, KilledSavesLeaveNoLitterAfterTheNextSave)
{
    wchar_t programme[MAX_PATH];
    ASSERT_GT(::GetModuleFileNameW(nullptr, programme, MAX_PATH), 0u);
    std::wstring ligne = L"\"" + std::wstring(programme) + L"\" --gtest_filter=SauvegardeTueeWindowsEnfant.Sauveur";
    AfxSetEnvironmentVariable(kRacine, m_racine.Path());
    const CString pret = m_racine / L"pret";
    const std::string dossier = m_racine.Utf8() + "/AFF1";
    std::mt19937 g(3);
    int nAvecDechets = 0;
    for (int tour = 0; tour < 40 && nAvecDechets < 3; ++tour)
    {
        _wunlink(pret);
        STARTUPINFOW si = {};
        si.cb = sizeof si;
        PROCESS_INFORMATION pi = {};
        std::vector<wchar_t> l(ligne.begin(), ligne.end());
        l.push_back(0);
        ASSERT_TRUE(::CreateProcessW(nullptr, l.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr, nullptr,
                                     &si, &pi));
        // The record exists, or the child ended on its own.
        while (!Exists(pret) && ::WaitForSingleObject(pi.hProcess, 1) == WAIT_TIMEOUT)
        {
        }
        ::Sleep(std::uniform_int_distribution<DWORD>(0, 3)(g));
        ::TerminateProcess(pi.hProcess, 99);
        ::WaitForSingleObject(pi.hProcess, INFINITE);
        DWORD code = 0;
        ::GetExitCodeProcess(pi.hProcess, &code);
        ::CloseHandle(pi.hThread);
        ::CloseHandle(pi.hProcess);
        ASSERT_EQ(code, 99u) << "the saving process stopped on its own";

        if (ApresSauvegardeTuee(dossier, tour))
            ++nAvecDechets;
    }
    AfxSetEnvironmentVariable(kRacine, nullptr);
    // The kills did land in the middle of saves.
    EXPECT_GT(nAvecDechets, 0);
}
