// Windows paths: backslashes between the parts the library composes, drive letters
// (a folder part of their own, "C:NAME" being a name in drive C's current folder), and
// forward slashes that Windows also takes.
#include "project/Environnement.h"
#include "project/FichiersEtudes.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace prefa_test;

TEST(CheminsWindows, ComposedNamesUseBackslashes)
{
    DefinitEnvironnement(L"D:\\Prefa\\Donnees", 1);
    EXPECT_EQ(CString(L"D:\\Prefa\\Donnees\\ETUDE1\\TEMPER.03"), Compose_Fichier_Etudes(L"ETUDE1", L"TEMPER.", 3));
    EXPECT_EQ(CString(L"D:\\Prefa\\Donnees\\A\\VORENAFF"), Compose_Fichier_Affaire(L"A", L"VORENAFF"));
    EXPECT_EQ(CString(L"D:\\Prefa\\Donnees\\A\\poutre.LCK"), Compose_Fichier_Nomme(L"A", L"poutre", L".LCK"));
    EXPECT_EQ(CString(L"D:\\Prefa\\Donnees\\A"), Compose_Dossier_Affaire(L"A"));
    // A drive's root as the data root.
    DefinitEnvironnement(L"D:", 1);
    EXPECT_EQ(CString(L"D:\\A\\VORENAFF"), Compose_Fichier_Affaire(L"A", L"VORENAFF"));
    AnnuleDefinitionEnvironnement();
}

TEST(CheminsWindows, FileNamesAfterBackslashesSlashesAndDriveLetters)
{
    for (const wchar_t* path : {L"C:\\Etudes\\SECTION.01", L"C:/Etudes/SECTION.01", L"C:SECTION.01",
                                L"\\\\serveur\\partage\\SECTION.01", L"SECTION.01"})
    {
        CFile f;
        f.Open(path, CFile::modeRead); // no such file: the name stays, as the framework's does
        EXPECT_EQ(CString(L"SECTION.01"), f.GetFileName()) << CString(path).GetString();
    }
    EXPECT_EQ(3, AfxPathFolderLength(L"C:\\x"));
    EXPECT_EQ(2, AfxPathFolderLength(L"C:x"));
    EXPECT_EQ(0, AfxPathFolderLength(L"x"));
}

TEST(CheminsWindows, FindingFilesOnADrive)
{
    ScratchDir dir;
    for (const wchar_t* f : {L"LOCK_PLA.01", L"LOCK_PLA.12", L"LOCK_AFF"})
        WriteAll(dir / f, {0});
    // The scratch folder is a full Windows path: drive letter and backslashes.
    ASSERT_EQ(L':', dir.Path()[1]);
    for (const CString& folder : {dir.Path() + L"\\", dir.Path() + L"/"})
    {
        CFileFind find;
        std::vector<CString> paths;
        BOOL more = find.FindFile(folder + L"LOCK_PLA.*");
        while (more)
        {
            more = find.FindNextFile();
            paths.push_back(find.GetFilePath());
        }
        EXPECT_EQ((std::vector<CString>{folder + L"LOCK_PLA.01", folder + L"LOCK_PLA.12"}), paths);
    }
    // "D:NAME": the current folder of that drive.
    std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(dir.Path().Std());
    CString drive = dir.Path().Left(2);
    CFileFind find;
    ASSERT_TRUE(find.FindFile(drive + L"LOCK_A*"));
    find.FindNextFile();
    EXPECT_EQ(drive + L"LOCK_AFF", find.GetFilePath());
    std::filesystem::current_path(before);
}
