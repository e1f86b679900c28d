// Names that are no file on a disk, as Windows has them: devices (NUL) and named pipes.
// Neither is opened as a record nor taken for a free lock.
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <cerrno>

using namespace prefa_test;

namespace
{
// A server end of the named pipe waiting for a client, while it lives: opening the name
// as a file connects to it at once, and each open takes an instance of its own.
class Tube
{
public:
    explicit Tube(const CString& nom)
        : m_h(::CreateNamedPipeW(nom, PIPE_ACCESS_DUPLEX, PIPE_TYPE_BYTE | PIPE_WAIT, PIPE_UNLIMITED_INSTANCES, 512,
                                 512, 0, nullptr))
    {
        EXPECT_NE(INVALID_HANDLE_VALUE, m_h);
    }
    ~Tube() { ::CloseHandle(m_h); }
    Tube(const Tube&) = delete;
    Tube& operator=(const Tube&) = delete;

private:
    HANDLE m_h;
};
} // namespace

TEST(FichiersSpeciauxWindows, DevicesAndPipesAreRefusedAtOnce)
{
    CString tube;
    tube.Format(L"\\\\.\\pipe\\prefa-test-%lu", ::GetCurrentProcessId());
    for (const CString& nom : {CString(L"NUL"), tube})
    {
        SCOPED_TRACE(AfxWideToUtf8(nom.Std()));
        CFile f;
        CFileException e;
        {
            Tube t(tube);
            EXPECT_FALSE(f.Open(nom, CFile::modeRead | CFile::shareDenyWrite, &e));
            EXPECT_EQ(CFileException::accessDenied, e.m_cause);
            EXPECT_EQ(ERROR_INVALID_PARAMETER, e.m_lOsError);
            EXPECT_EQ(nom, e.m_strFileName);
        }
        {
            Tube t(tube);
            EXPECT_FALSE(f.Open(nom, CFile::modeCreate | CFile::modeWrite, &e));
            EXPECT_EQ(CFileException::accessDenied, e.m_cause);
        }
        BYTE tampon[4];
        {
            Tube t(tube);
            EXPECT_EQ(EINVAL, AfxReadRegularFile(nom, tampon, 4));
        }
        {
            Tube t(tube);
            EXPECT_EQ(afxOtherFile, AfxGetFileKind(nom));
        }
        {
            Tube t(tube);
            EXPECT_EQ(EEXIST, AfxCreateNewFile(nom, "x", 1)); // taken, as a lock's name
        }
    }

    // The same checks pass a regular file, and tell a short one and a folder.
    ScratchDir dir;
    const CString vrai = dir / L"vrai";
    WriteAll(vrai, {1, 2, 3, 4});
    BYTE tampon[4];
    EXPECT_EQ(0, AfxReadRegularFile(vrai, tampon, 4));
    EXPECT_EQ(4, tampon[3]);
    BYTE grand[5];
    EXPECT_EQ(EIO, AfxReadRegularFile(vrai, grand, 5));
    EXPECT_EQ(afxRegularFile, AfxGetFileKind(vrai));
    EXPECT_EQ(afxDirectory, AfxGetFileKind(dir.Path()));
    EXPECT_EQ(EINVAL, AfxReadRegularFile(dir.Path(), tampon, 4));
    EXPECT_EQ(afxNoFile, AfxGetFileKind(dir / L"absent"));
    EXPECT_EQ(ENOENT, AfxReadRegularFile(dir / L"absent", tampon, 4));
    EXPECT_EQ(0, AfxCreateNewFile(dir / L"LOCK_AFF", "l", 1));
    EXPECT_EQ(EEXIST, AfxCreateNewFile(dir / L"LOCK_AFF", "m", 1));
    EXPECT_EQ((std::vector<BYTE>{'l'}), ReadAll(dir / L"LOCK_AFF"));
}
