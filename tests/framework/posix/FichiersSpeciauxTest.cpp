// Pipes and symbolic links under a file's name: POSIX things (the Windows build has its
// own test of devices and pipes).
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

using namespace prefa_test;

// A link named like the litter of an interrupted save is neither followed nor removed.
TEST(CMirrorFile, LeavesALinkAmongTheTemporaryNames)
{
    ScratchDir dir;
    const CString record = dir / L"record";
    WriteAll(dir / L"victim", {7});
    std::filesystem::create_symlink(dir.Utf8() + "/victim", dir.Utf8() + "/record.~deadbeef");
    WriteAll(dir / L"record.~0badf00d", {9});
    CMirrorFile f;
    ASSERT_TRUE(f.Open(record, CFile::modeCreate | CFile::modeWrite));
    f.Write("A", 1);
    f.Close();
    EXPECT_TRUE(std::filesystem::is_symlink(dir.Utf8() + "/record.~deadbeef"));
    EXPECT_FALSE(Exists(dir / L"record.~0badf00d"));
    EXPECT_EQ((std::vector<BYTE>{7}), ReadAll(dir / L"victim"));
}

// A pipe under a file's name used to block the open until a writer came; a dangling
// link read as no file at all.
TEST(CFile, NamesThatAreNoRegularFileAreRefusedAtOnce)
{
    ScratchDir dir;
    const CString tube = dir / L"tube";
    ASSERT_EQ(0, mkfifo(AfxWideToUtf8(tube.Std()).c_str(), 0600));
    alarm(30); // a regression blocks: let it fail rather than hang
    CFile f;
    CFileException e;
    EXPECT_FALSE(f.Open(tube, CFile::modeRead | CFile::shareDenyWrite, &e));
    EXPECT_EQ(CFileException::accessDenied, e.m_cause);
    EXPECT_EQ(EINVAL, e.m_lOsError);
    EXPECT_FALSE(f.Open(tube, CFile::modeCreate | CFile::modeWrite, &e));
    BYTE tampon[4];
    EXPECT_EQ(EINVAL, AfxReadRegularFile(tube, tampon, 4));
    alarm(0);
    EXPECT_EQ(afxOtherFile, AfxGetFileKind(tube));

    const CString pendant = dir / L"pendant";
    std::filesystem::create_symlink(dir.Utf8() + "/nowhere", AfxWideToUtf8(pendant.Std()));
    EXPECT_NE(0, _waccess(pendant, 0)); // what the run-time says: no such file
    EXPECT_EQ(afxOtherFile, AfxGetFileKind(pendant));
    EXPECT_EQ(EINVAL, AfxReadRegularFile(pendant, tampon, 4));
    EXPECT_EQ(EEXIST, AfxCreateNewFile(pendant, "x", 1));
    EXPECT_FALSE(Exists(dir / L"nowhere"));

    // A link to a regular file: records may be reached through it, locks may not.
    const CString vrai = dir / L"vrai";
    WriteAll(vrai, {1, 2, 3, 4});
    const CString lien = dir / L"lien";
    std::filesystem::create_symlink(AfxWideToUtf8(vrai.Std()), AfxWideToUtf8(lien.Std()));
    EXPECT_EQ(afxOtherFile, AfxGetFileKind(lien));
    EXPECT_EQ(EINVAL, AfxReadRegularFile(lien, tampon, 4));
    EXPECT_TRUE(f.Open(lien, CFile::modeRead));
    f.Close();

    EXPECT_EQ(afxRegularFile, AfxGetFileKind(vrai));
    EXPECT_EQ(0, AfxReadRegularFile(vrai, tampon, 4));
    EXPECT_EQ(4, tampon[3]);
    BYTE grand[5];
    EXPECT_EQ(EIO, AfxReadRegularFile(vrai, grand, 5));
    EXPECT_EQ(afxNoFile, AfxGetFileKind(dir / L"absent"));
    EXPECT_EQ(ENOENT, AfxReadRegularFile(dir / L"absent", tampon, 4));
    EXPECT_EQ(afxDirectory, AfxGetFileKind(dir.Path()));
    EXPECT_EQ(EINVAL, AfxReadRegularFile(dir.Path(), tampon, 4));
}
