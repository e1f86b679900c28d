// Share modes, which Windows enforces between all openers of a file (POSIX only
// records them): a second open that the first one's share mode denies fails with the
// sharing-violation cause, and a save cannot replace a file that a reader holds.
#include "project/Environnement.h"
#include "project/FichiersEtudes.h"
#include "section/CSectionGenerale.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>

using namespace prefa_test;

namespace
{
// The cause of a second open of path with the given flags (none when it opens).
int SecondOpen(const CString& path, UINT flags)
{
    CFile f;
    CFileException e;
    if (f.Open(path, flags, &e))
        return CFileException::none;
    EXPECT_EQ(e.m_lOsError, ERROR_SHARING_VIOLATION);
    EXPECT_EQ(e.m_strFileName, path);
    return e.m_cause;
}
} // namespace

TEST(PartageFichiers, SecondOpensFollowTheFirstOpenersShareMode)
{
    ScratchDir dir;
    CString path = dir / L"VORENAFF";
    WriteAll(path, {1, 2, 3});
    const UINT lecture = CFile::modeRead | CFile::typeBinary;
    const UINT ecriture = CFile::modeWrite | CFile::typeBinary;
    {
        // The records' loads: read, deny writers. Readers come in, writers do not.
        CFile first(path, lecture | CFile::shareDenyWrite);
        EXPECT_EQ(CFileException::none, SecondOpen(path, lecture | CFile::shareDenyWrite));
        EXPECT_EQ(CFileException::sharingViolation, SecondOpen(path, ecriture | CFile::shareDenyNone));
        EXPECT_EQ(CFileException::sharingViolation, SecondOpen(path, CFile::modeReadWrite | CFile::shareDenyNone));
    }
    {
        CFile first(path, lecture | CFile::shareExclusive);
        EXPECT_EQ(CFileException::sharingViolation, SecondOpen(path, lecture | CFile::shareDenyNone));
    }
    {
        CFile first(path, lecture | CFile::shareDenyRead);
        EXPECT_EQ(CFileException::sharingViolation, SecondOpen(path, lecture | CFile::shareDenyNone));
        EXPECT_EQ(CFileException::none, SecondOpen(path, ecriture | CFile::shareDenyNone));
    }
    {
        // A writer that shares everything: a reader that denies writers cannot join it,
        // one that does not deny them can.
        CFile first(path, ecriture | CFile::shareDenyNone);
        EXPECT_EQ(CFileException::sharingViolation, SecondOpen(path, lecture | CFile::shareDenyWrite));
        EXPECT_EQ(CFileException::none, SecondOpen(path, lecture | CFile::shareDenyNone));
    }
    // Every handle closed: anything opens again.
    EXPECT_EQ(CFileException::none, SecondOpen(path, CFile::modeReadWrite | CFile::shareExclusive));
}

TEST(PartageFichiers, HeldFilesAreReportedAndKeptWhole)
{
    ScratchDir dir;
    DefinitEnvironnement(dir.Path(), 0);
    std::filesystem::create_directories((dir / L"ETUDE").Std());
    CSectionGenerale s;
    s.Aire = 0.18;
    ASSERT_EQ(1, s.Ecriture(L"ETUDE", 1));
    CString path = Compose_Fichier_Etudes(L"ETUDE", L"SECTION.", 1);
    std::vector<BYTE> avant = ReadAll(path);
    {
        // Another program reads the file: a save cannot replace it, says so, and the
        // file stays as it was; a whole-record read that denies writers still works.
        CFile lecteur(path, CFile::modeRead | CFile::shareDenyWrite);
        MessageBoxCapture boites;
        s.Aire = 0.5;
        EXPECT_EQ(0, s.Ecriture(L"ETUDE", 1));
        ASSERT_EQ(1u, boites.boxes.size());
        EXPECT_NE(-1, boites.boxes[0].text.Find(L"IDENTERR_2066"));
        EXPECT_EQ(avant, ReadAll(path));
        BYTE octets[4];
        EXPECT_EQ(0, LectureFichier(path, octets, 4));
    }
    {
        // Held exclusively: the whole-record helpers fail with the run-time's EACCES,
        // and a load leaves the object as it was.
        CFile detenteur(path, CFile::modeReadWrite | CFile::shareExclusive);
        BYTE octets[4];
        EXPECT_EQ(EACCES, LectureFichier(path, octets, 4));
        EXPECT_EQ(EACCES, EcritureFichier(path, octets, 4));
        CSectionGenerale relue;
        relue.Aire = 7;
        EXPECT_EQ(0, relue.Lecture(L"ETUDE", 1));
        EXPECT_EQ(7, relue.Aire);
    }
    EXPECT_EQ(avant, ReadAll(path));
    AnnuleDefinitionEnvironnement();
}
