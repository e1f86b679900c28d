#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>

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

TEST(CFile, BackslashesAreSeparatorsEverywhere)
{
    // A caller's Windows-style path reaches the file in the sub-folder, not a file
    // named with backslashes; every function of the file layer reads it so.
    ScratchDir dir;
    std::filesystem::create_directory(std::filesystem::path((dir / L"sub").Std()));
    WriteAll(dir / L"sub/seed", {0});
    const CString folder = dir.Path() + L"\\sub\\";
    {
        CFile f;
        ASSERT_TRUE(f.Open(folder + L"x.bin", CFile::modeCreate | CFile::modeWrite));
        f.Write("ok", 2);
        f.Close();
    }
    EXPECT_EQ((std::vector<BYTE>{'o', 'k'}), ReadAll(dir / L"sub/x.bin"));
    EXPECT_EQ(0, _waccess(folder + L"x.bin", 0));
    CFile::Rename(folder + L"x.bin", folder + L"y.bin");
    {
        CMirrorFile m;
        ASSERT_TRUE(m.Open(folder + L"y.bin", CFile::modeCreate | CFile::modeWrite));
        m.Write("new", 3);
        m.Close();
    }
    EXPECT_EQ((std::vector<BYTE>{'n', 'e', 'w'}), ReadAll(dir / L"sub/y.bin"));
    EXPECT_EQ(0, AfxCreateNewFile(folder + L"LOCK_AFF", "l", 1));
    EXPECT_EQ(EEXIST, AfxCreateNewFile(folder + L"LOCK_AFF", "l", 1));
    CFileFind find;
    ASSERT_TRUE(find.FindFile(folder + L"*.bin"));
    find.FindNextFile();
    EXPECT_EQ(folder + L"y.bin", find.GetFilePath()); // in the caller's spelling
    CFile::Remove(find.GetFilePath());
    EXPECT_EQ(0, _wunlink(folder + L"LOCK_AFF"));
    std::vector<CString> left;
    CFileFind all;
    for (BOOL more = all.FindFile(dir / L"sub/*"); more;)
    {
        more = all.FindNextFile();
        left.push_back(all.GetFileName());
    }
    EXPECT_EQ((std::vector<CString>{L"seed"}), left);
}

TEST(CFile, DriveLettersAreBadPathsWhereSlashSeparates)
{
    if (AfxPathSeparator() != L'/')
        GTEST_SKIP() << "drive letters are paths here";
    for (const wchar_t* path : {L"C:\\data\\x.bin", L"c:x.bin", L"Z:/x"})
    {
        CFile f;
        CFileException e;
        EXPECT_FALSE(f.Open(path, CFile::modeCreate | CFile::modeWrite, &e)) << AfxWideToUtf8(path);
        EXPECT_EQ(CFileException::badPath, e.m_cause);
        EXPECT_EQ(CString(path), e.m_strFileName);
        int cause = -1;
        try
        {
            CFile::Remove(path);
        }
        catch (CFileException* x)
        {
            cause = x->m_cause;
            x->Delete();
        }
        EXPECT_EQ(CFileException::badPath, cause);
        AfxSetErrno(0);
        EXPECT_EQ(-1, _waccess(path, 0));
        EXPECT_EQ(ENOENT, AfxGetErrno());
        EXPECT_EQ(ENOENT, AfxCreateNewFile(path, "x", 1));
    }
    // A colon elsewhere is an ordinary character.
    ScratchDir dir;
    CFile f;
    EXPECT_TRUE(f.Open(dir / L"a:b", CFile::modeCreate | CFile::modeWrite));
}

TEST(CMirrorFile, RemovesTheLitterOfInterruptedSavesOnly)
{
    EXPECT_TRUE(AfxIsTempFileName(L"VORENAFF.~0badf00d"));
    EXPECT_TRUE(AfxIsTempFileName(L"/a/b.~1234ABCD"));
    for (const wchar_t* nom : {L"VORENAFF.~0badf00", L"VORENAFF~0badf00d", L"VORENAFF.~0badf00g", L".~0badf00",
                               L"VORENAFF.~0badf00d1", L""})
        EXPECT_FALSE(AfxIsTempFileName(nom)) << AfxWideToUtf8(nom);

    ScratchDir dir;
    const CString record = dir / L"record";
    WriteAll(record, {1});
    const std::vector<std::string> gardes{"record.~12345", "other.~0badf00d", "record.~0badf00g", "record.bak"};
    for (const char* perime : {"record.~0badf00d", "record.~1234ABCD"})
        WriteAll(dir / CString(AfxUtf8ToWide(perime)), {9});
    for (const std::string& g : gardes)
        WriteAll(dir / CString(AfxUtf8ToWide(g)), {7});

    // A save in progress keeps its temporary file from a second save of the same
    // record, which removes the stale ones; both then complete, in their order.
    CMirrorFile a;
    ASSERT_TRUE(a.Open(record, CFile::modeCreate | CFile::modeWrite));
    a.Write("A", 1);
    CMirrorFile b;
    ASSERT_TRUE(b.Open(record, CFile::modeCreate | CFile::modeWrite));
    b.Write("B", 1);
    a.Close();
    EXPECT_EQ((std::vector<BYTE>{'A'}), ReadAll(record));
    b.Close();
    EXPECT_EQ((std::vector<BYTE>{'B'}), ReadAll(record));

    // Exclusive creation clears the litter of its own name the same way.
    WriteAll(dir / L"LOCK_AFF.~00000001", {9});
    EXPECT_EQ(0, AfxCreateNewFile(dir / L"LOCK_AFF", "lock", 4));

    std::vector<std::string> restants;
    for (const auto& e : std::filesystem::directory_iterator(dir.Utf8()))
        restants.push_back(e.path().filename().string());
    std::sort(restants.begin(), restants.end());
    std::vector<std::string> attendus = gardes;
    attendus.push_back("record");
    attendus.push_back("LOCK_AFF");
    std::sort(attendus.begin(), attendus.end());
    EXPECT_EQ(attendus, restants);
}
