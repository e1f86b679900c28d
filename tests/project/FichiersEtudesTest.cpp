#include "project/Environnement.h"
#include "project/FichiersEtudes.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <cerrno>

using namespace prefa_test;

TEST(FichiersEtudes, ComposedNames)
{
    // The platform's separator between the parts ('\\' on Windows, checked there by CheminsWindows).
    auto chemin = [](std::initializer_list<const wchar_t*> parties) {
        CString c;
        for (const wchar_t* p : parties)
            c += (c.IsEmpty() ? CString() : CString(AfxPathSeparator())) + p;
        return c;
    };
    DefinitEnvironnement(L"/srv/prefa", 1);
    EXPECT_EQ(chemin({L"/srv/prefa", L"ETUDE1", L"TEMPER.03"}), Compose_Fichier_Etudes(L"ETUDE1", L"TEMPER.", 3));
    EXPECT_EQ(chemin({L"/srv/prefa", L"ETUDE1", L"SECTION.12"}), Compose_Fichier_Etudes(L"ETUDE1", L"SECTION.", 12));
    // The number has two digits at least, not at most.
    EXPECT_EQ(chemin({L"/srv/prefa", L"A", L"VORENPLA.123"}), Compose_Fichier_Etudes(L"A", L"VORENPLA.", 123));
    EXPECT_EQ(chemin({L"/srv/prefa", L"A", L"VORENAFF"}), Compose_Fichier_Affaire(L"A", L"VORENAFF"));
    EXPECT_EQ(chemin({L"/srv/prefa", L"A", L"poutre.LCK"}), Compose_Fichier_Nomme(L"A", L"poutre", L".LCK"));
    EXPECT_EQ(chemin({L"/srv/prefa", L"A"}), Compose_Dossier_Affaire(L"A"));
    AnnuleDefinitionEnvironnement();
}

TEST(FichiersEtudes, WholeRecordReadAndWrite)
{
    ScratchDir dir;
    CString path = dir / L"LUMACAFF";
    std::vector<BYTE> record(436);
    for (std::size_t i = 0; i < record.size(); ++i)
        record[i] = (BYTE)(i * 7);
    EXPECT_EQ(0, EcritureFichier(path, record.data(), (UINT)record.size()));
    EXPECT_EQ(record, ReadAll(path));

    std::vector<BYTE> back(436, 0xEE);
    EXPECT_EQ(0, LectureFichier(path, back.data(), (UINT)back.size()));
    EXPECT_EQ(record, back);

    // A file shorter than the record is a failure, as is a missing one.
    std::vector<BYTE> bigger(512);
    EXPECT_EQ(EIO, LectureFichier(path, bigger.data(), (UINT)bigger.size()));
    EXPECT_EQ(ENOENT, LectureFichier(dir / L"absent", back.data(), 4));

    // A write that cannot happen leaves the previous record as it was.
    EXPECT_NE(0, EcritureFichier(dir / L"no/such/dir/LUMACAFF", record.data(), 4));
    std::vector<BYTE> other(10, 1);
    EXPECT_EQ(0, EcritureFichier(path, other.data(), (UINT)other.size()));
    EXPECT_EQ(other, ReadAll(path));
}
