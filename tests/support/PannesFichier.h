// Failed saves on demand: the file layer's fault hook, and a walk that makes each
// step of a save fail in turn (every write, flush and rename) and checks that the
// files it replaces are each either the old bytes or the new ones, never anything
// else, and that no temporary file is left behind.
#pragma once

#include "framework/FileFault.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace prefa_test
{

// Records the file layer's steps while it lives; the nEchec-th (from 1; 0 for none)
// fails with nErreur.
class PannesFichier
{
public:
    explicit PannesFichier(std::size_t nEchec = 0, LONG nErreur = ENOSPC) : m_nEchec(nEchec), m_nErreur(nErreur)
    {
        Courante() = this;
        m_precedent = AfxSetFileFaultHook(&Crochet);
    }
    ~PannesFichier()
    {
        AfxSetFileFaultHook(m_precedent);
        Courante() = nullptr;
    }
    PannesFichier(const PannesFichier&) = delete;
    PannesFichier& operator=(const PannesFichier&) = delete;

    std::vector<AFX_FILE_STEP> etapes;

private:
    static PannesFichier*& Courante()
    {
        static PannesFichier* p = nullptr;
        return p;
    }
    static LONG Crochet(AFX_FILE_STEP nEtape)
    {
        PannesFichier* p = Courante();
        p->etapes.push_back(nEtape);
        return p->etapes.size() == p->m_nEchec ? p->m_nErreur : 0;
    }

    std::size_t m_nEchec;
    LONG m_nErreur;
    AFX_FILE_FAULT_HOOK m_precedent = nullptr;
};

// Names of the temporary files in a folder (an interrupted save's litter).
inline std::vector<std::string> Temporaires(const std::string& dossier)
{
    std::vector<std::string> t;
    for (const auto& e : std::filesystem::directory_iterator(dossier))
        if (AfxIsTempFileName(CString(e.path().filename().wstring())))
            t.push_back(e.path().filename().string());
    return t;
}

// Walks a save through a failure at each of its steps. The files it replaces
// (fichiers, in the order the save replaces them) must hold their old bytes before;
// sauve() runs the save and says whether it reported success; bRequis tells whether
// a failure to replace file k must fail the save.
inline void EprouveLesPannes(const std::vector<CString>& fichiers, const std::function<bool()>& sauve,
                             const std::vector<bool>& bRequis = {})
{
    std::vector<std::vector<BYTE>> anciens, nouveaux;
    for (const CString& f : fichiers)
        anciens.push_back(ReadAll(f));
    auto restaure = [&] {
        for (std::size_t k = 0; k < fichiers.size(); ++k)
            WriteAll(fichiers[k], anciens[k]);
    };
    const std::string dossier = std::filesystem::path(fichiers[0].Std()).parent_path().string();

    // A clean save, counted: the step at which each file is replaced.
    std::vector<std::size_t> renommage;
    std::size_t nEtapes = 0;
    {
        PannesFichier compte;
        ASSERT_TRUE(sauve());
        nEtapes = compte.etapes.size();
        for (std::size_t i = 0; i < nEtapes; ++i)
        {
            if (compte.etapes[i] != afxFileRename)
                continue;
            // The bytes reach the disk before the name is given to them.
            ASSERT_TRUE(i > 0 && compte.etapes[i - 1] == afxFileFlush) << "no flush before rename " << i;
            renommage.push_back(i + 1);
        }
    }
    ASSERT_EQ(renommage.size(), fichiers.size());
    for (std::size_t k = 0; k < fichiers.size(); ++k)
    {
        nouveaux.push_back(ReadAll(fichiers[k]));
        ASSERT_NE(nouveaux[k], anciens[k]) << "the walk needs a save that changes every file";
    }

    for (std::size_t n = 1; n <= nEtapes; ++n)
    {
        SCOPED_TRACE("failing step " + std::to_string(n) + " of " + std::to_string(nEtapes));
        restaure();
        bool ok;
        {
            PannesFichier panne(n);
            ok = sauve();
            ASSERT_GE(panne.etapes.size(), n);
        }
        bool attendu = true;
        for (std::size_t k = 0; k < fichiers.size(); ++k)
        {
            const bool remplace = n > renommage[k];
            EXPECT_EQ(ReadAll(fichiers[k]), remplace ? nouveaux[k] : anciens[k]) << AfxWideToUtf8(fichiers[k].Std());
            if (!remplace && (bRequis.empty() || bRequis[k]))
                attendu = false;
        }
        EXPECT_EQ(ok, attendu);
        EXPECT_TRUE(Temporaires(dossier).empty());
    }
    restaure();
}

} // namespace prefa_test
