#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <cerrno>

using namespace prefa_test;

TEST(CFile, OpenFailureFillsTheFileException)
{
    ScratchDir dir;
    CFile f;
    CFileException e;
    CString missing = dir / L"missing.bin";
    EXPECT_FALSE(f.Open(missing, CFile::modeRead | CFile::shareDenyWrite, &e));
    EXPECT_EQ(CFileException::fileNotFound, e.m_cause);
    EXPECT_EQ(ENOENT, e.m_lOsError);
    EXPECT_EQ(missing, e.m_strFileName);
    wchar_t text[256];
    EXPECT_TRUE(e.GetErrorMessage(text, 256));
    EXPECT_EQ(missing + L" was not found.", CString(text));
    // The message is cut to the buffer and stays terminated.
    wchar_t small[5];
    e.GetErrorMessage(small, 5);
    EXPECT_EQ(CString(missing.Left(4)), CString(small));

    EXPECT_TRUE(Throws<CFileException>([&] { CFile g(missing, CFile::modeRead); }));
}

TEST(CFile, WriteSeekAndReadBack)
{
    ScratchDir dir;
    CString path = dir / L"data.bin";
    {
        CFile f(path, CFile::modeCreate | CFile::modeWrite);
        f.Write("abcdef", 6);
        f.Close();
    }
    CFile f(path, CFile::modeRead | CFile::shareDenyWrite);
    EXPECT_EQ(6u, f.GetLength());
    f.Seek(2, CFile::begin);
    char buf[8] = {0};
    EXPECT_EQ(4u, f.Read(buf, 8));
    EXPECT_STREQ("cdef", buf);
    EXPECT_EQ(L"data.bin", f.GetFileName());
}

TEST(CMirrorFile, ReplacesTheTargetOnlyWhenClosed)
{
    ScratchDir dir;
    CString path = dir / L"record";
    WriteAll(path, {1, 2, 3});
    {
        CMirrorFile f;
        ASSERT_TRUE(f.Open(path, CFile::modeCreate | CFile::modeWrite));
        f.Write("new", 3);
        // Until the close the old record is what others read.
        EXPECT_EQ((std::vector<BYTE>{1, 2, 3}), ReadAll(path));
        f.Abort();
    }
    EXPECT_EQ((std::vector<BYTE>{1, 2, 3}), ReadAll(path));
    {
        CMirrorFile f;
        ASSERT_TRUE(f.Open(path, CFile::modeCreate | CFile::modeWrite));
        f.Write("new", 3);
        // Destroyed without Close: the save did not happen.
    }
    EXPECT_EQ((std::vector<BYTE>{1, 2, 3}), ReadAll(path));
    {
        CMirrorFile f;
        ASSERT_TRUE(f.Open(path, CFile::modeCreate | CFile::modeWrite));
        f.Write("new", 3);
        f.Close();
    }
    EXPECT_EQ((std::vector<BYTE>{'n', 'e', 'w'}), ReadAll(path));
    // No temporary file is left behind.
    CFileFind find;
    EXPECT_TRUE(find.FindFile(dir / L"*"));
    find.FindNextFile();
    EXPECT_EQ(CString(L"record"), find.GetFileName());
    // A folder that does not exist fails at the open, with the target's name.
    CMirrorFile g;
    CFileException e;
    EXPECT_FALSE(g.Open(dir / L"no/such/record", CFile::modeCreate | CFile::modeWrite, &e));
    EXPECT_EQ(CString(dir / L"no/such/record"), e.m_strFileName);
}

TEST(System, ExclusiveCreationRefusesAnExistingFile)
{
    ScratchDir dir;
    CString path = dir / L"LOCK_AFF";
    const char first[] = "first";
    EXPECT_EQ(0, AfxCreateNewFile(path, first, 5));
    EXPECT_EQ(EEXIST, AfxCreateNewFile(path, "second", 6));
    EXPECT_EQ((std::vector<BYTE>{'f', 'i', 'r', 's', 't'}), ReadAll(path));
    EXPECT_EQ(0, _waccess(path, 0));
    EXPECT_EQ(0, _wunlink(path));
    EXPECT_NE(0, _waccess(path, 0));
    EXPECT_NE(0, AfxCreateNewFile(dir / L"no/such/LOCK_AFF", first, 5));
}

TEST(System, IdentityAndFileFinding)
{
    wchar_t name[256];
    DWORD n = 256;
    EXPECT_TRUE(GetComputerNameW(name, &n));
    EXPECT_GT(n, 0u);
    EXPECT_EQ((DWORD)wcslen(name), n);
    n = 256;
    EXPECT_TRUE(GetUserNameW(name, &n));
    EXPECT_EQ((DWORD)wcslen(name) + 1, n); // unlike the computer's, the user's counts the terminator
    n = 1; // too small a buffer: FALSE and the size needed
    EXPECT_FALSE(GetUserNameW(name, &n));
    EXPECT_GT(n, 1u);

    ScratchDir dir;
    for (const wchar_t* f : {L"LOCK_PLA.01", L"LOCK_PLA.12", L"LOCK_AFF", L"XLOCK_PLA.3"})
        WriteAll(dir / f, {0});
    CFileFind find;
    std::vector<CString> found;
    BOOL more = find.FindFile(dir / L"LOCK_PLA.*");
    while (more)
    {
        more = find.FindNextFile();
        found.push_back(find.GetFileName());
        EXPECT_EQ(dir / find.GetFileName(), find.GetFilePath());
    }
    EXPECT_EQ((std::vector<CString>{L"LOCK_PLA.01", L"LOCK_PLA.12"}), found);
    EXPECT_FALSE(find.FindFile(dir / L"nothing*"));
    EXPECT_TRUE(CFileFind::MatchPattern(L"a*b?c", L"aXXbYc"));
    EXPECT_FALSE(CFileFind::MatchPattern(L"a*b?c", L"aXXbc"));
}
