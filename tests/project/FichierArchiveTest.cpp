#include "project/FichierArchive.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <new>

using namespace prefa_test;

namespace
{
int NombreFichiers(const ScratchDir& d)
{
    int n = 0;
    for (auto& f : std::filesystem::directory_iterator(d.Utf8()))
        n += f.is_regular_file() ? 1 : 0;
    return n;
}
} // namespace

TEST(FichierArchive, AnInterruptedSaveLeavesThePreviousFileWhole)
{
    ScratchDir d;
    CString chemin = d / CString(L"VORENAFF");
    WriteAll(chemin, {1, 2, 3});

    // The serialisation fails half-way through 10000 bytes: old file kept, no leftovers.
    CFileException erreur;
    EXPECT_EQ(ArchiveCause([&] {
                  SerialiseFichierRapporte(chemin, true, &erreur, [](CArchive& ar) {
                      for (int i = 0; i < 5000; ++i)
                          ar << (WORD)i;
                      AfxThrowArchiveException(CArchiveException::genericException);
                  });
              }),
              CArchiveException::genericException);
    EXPECT_EQ(ReadAll(chemin), (std::vector<BYTE>{1, 2, 3}));
    EXPECT_EQ(NombreFichiers(d), 1);

    // A complete save replaces it.
    ASSERT_TRUE(SerialiseFichierRapporte(chemin, true, &erreur, [](CArchive& ar) { ar << (DWORD)0x04030201; }));
    EXPECT_EQ(ReadAll(chemin), (std::vector<BYTE>{1, 2, 3, 4}));
    EXPECT_EQ(NombreFichiers(d), 1);

    // Loading reads it back; a missing file is a FALSE with its cause, not an exception.
    DWORD lu = 0;
    ASSERT_TRUE(SerialiseFichierRapporte(chemin, false, &erreur, [&](CArchive& ar) { ar >> lu; }));
    EXPECT_EQ(lu, 0x04030201u);
    bool appele = false;
    EXPECT_FALSE(SerialiseFichierRapporte(d / CString(L"absent"), false, &erreur, [&](CArchive&) { appele = true; }));
    EXPECT_FALSE(appele);
    EXPECT_EQ(erreur.m_cause, CFileException::fileNotFound);

    // Memory running out in a load is the framework's memory exception.
    EXPECT_TRUE(Throws<CMemoryException>([&] {
        SerialiseFichierRapporte(chemin, false, &erreur, [](CArchive&) { throw std::bad_alloc(); });
    }));
}
