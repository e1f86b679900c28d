#include "CFile.h"

#include "CodePage.h"
#include "FileFault.h"
#include "System.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>

#ifdef _WIN32
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

IMPLEMENT_DYNAMIC(CFile, CObject)
IMPLEMENT_DYNAMIC(CMemFile, CFile)
IMPLEMENT_DYNAMIC(CMirrorFile, CFile)

namespace
{
#ifdef _WIN32
HANDLE H(INT_PTR h)
{
    return (HANDLE)h;
}
#else
// The POSIX path of a name already checked by Open.
std::string NativePath(LPCTSTR psz)
{
    std::string path;
    AfxPosixPath(psz, &path);
    return path;
}

// Raises the bad-path file exception for a name no POSIX file can have.
std::string CheckedPath(LPCTSTR psz)
{
    std::string path;
    if (!AfxPosixPath(psz, &path))
        AfxThrowFileException(CFileException::badPath, ENOENT, psz);
    return path;
}
#endif
} // namespace

CFile::CFile() : m_hFile(hFileNull)
{
}

CFile::CFile(LPCTSTR lpszFileName, UINT nOpenFlags) : m_hFile(hFileNull)
{
    CFileException e;
    if (!Open(lpszFileName, nOpenFlags, &e))
        AfxThrowFileException(e.m_cause, e.m_lOsError, e.m_strFileName);
}

CFile::~CFile()
{
    if (m_hFile != hFileNull)
        Abort();
}

CString CFile::GetFileName() const
{
    return m_strFileName.Mid(AfxPathFolderLength(m_strFileName));
}

void CFile::ThrowOsError(LONG lOsError) const
{
    AfxThrowFileException(CFileException::OsErrorToException(lOsError), lOsError, m_strFileName);
}

#ifdef _WIN32

BOOL CFile::Open(LPCTSTR lpszFileName, UINT nOpenFlags, CFileException* pError)
{
    if (m_hFile != hFileNull)
        Abort();
    m_strFileName = lpszFileName;
    DWORD access = (nOpenFlags & 3) == modeWrite ? GENERIC_WRITE
                   : (nOpenFlags & 3) == modeReadWrite ? (GENERIC_READ | GENERIC_WRITE) : GENERIC_READ;
    DWORD share;
    switch (nOpenFlags & 0x70)
    {
    case shareExclusive: share = 0; break;
    case shareDenyWrite: share = FILE_SHARE_READ; break;
    case shareDenyRead: share = FILE_SHARE_WRITE; break;
    default: share = FILE_SHARE_READ | FILE_SHARE_WRITE; break;
    }
    DWORD create = (nOpenFlags & modeCreate) ? ((nOpenFlags & modeNoTruncate) ? OPEN_ALWAYS : CREATE_ALWAYS)
                                             : OPEN_EXISTING;
    HANDLE h = ::CreateFileW(lpszFileName, access, share, nullptr, create, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (h == INVALID_HANDLE_VALUE)
    {
        LONG err = (LONG)::GetLastError();
        if (pError)
        {
            pError->m_cause = CFileException::OsErrorToException(err);
            pError->m_lOsError = err;
            pError->m_strFileName = lpszFileName;
        }
        return FALSE;
    }
    // Only files on a disk hold data: a device (NUL, CON, COM1) or a pipe is refused.
    if (::GetFileType(h) != FILE_TYPE_DISK)
    {
        ::CloseHandle(h);
        if (pError)
        {
            pError->m_cause = CFileException::accessDenied;
            pError->m_lOsError = ERROR_INVALID_PARAMETER;
            pError->m_strFileName = lpszFileName;
        }
        return FALSE;
    }
    m_hFile = (INT_PTR)h;
    return TRUE;
}

UINT CFile::Read(void* lpBuf, UINT nCount)
{
    DWORD got = 0;
    if (!::ReadFile(H(m_hFile), lpBuf, nCount, &got, nullptr))
        ThrowOsError((LONG)::GetLastError());
    return got;
}

void CFile::Write(const void* lpBuf, UINT nCount)
{
    if (LONG fault = AfxFileFault(afxFileWrite))
        ThrowOsError(fault);
    DWORD done = 0;
    if (!::WriteFile(H(m_hFile), lpBuf, nCount, &done, nullptr) || done != nCount)
        ThrowOsError((LONG)::GetLastError());
}

ULONGLONG CFile::Seek(LONGLONG lOff, UINT nFrom)
{
    LARGE_INTEGER d, r;
    d.QuadPart = lOff;
    if (!::SetFilePointerEx(H(m_hFile), d, &r, nFrom))
        ThrowOsError((LONG)::GetLastError());
    return (ULONGLONG)r.QuadPart;
}

ULONGLONG CFile::GetPosition() const
{
    LARGE_INTEGER d, r;
    d.QuadPart = 0;
    if (!::SetFilePointerEx(H(m_hFile), d, &r, FILE_CURRENT))
        ThrowOsError((LONG)::GetLastError());
    return (ULONGLONG)r.QuadPart;
}

ULONGLONG CFile::GetLength() const
{
    LARGE_INTEGER r;
    if (!::GetFileSizeEx(H(m_hFile), &r))
        ThrowOsError((LONG)::GetLastError());
    return (ULONGLONG)r.QuadPart;
}

void CFile::SetLength(ULONGLONG dwNewLen)
{
    Seek((LONGLONG)dwNewLen, begin);
    if (!::SetEndOfFile(H(m_hFile)))
        ThrowOsError((LONG)::GetLastError());
}

void CFile::Flush()
{
    if (m_hFile == hFileNull)
        return;
    if (LONG fault = AfxFileFault(afxFileFlush))
        ThrowOsError(fault);
    if (!::FlushFileBuffers(H(m_hFile)))
        ThrowOsError((LONG)::GetLastError());
}

void CFile::Close()
{
    if (m_hFile != hFileNull)
    {
        BOOL ok = ::CloseHandle(H(m_hFile));
        m_hFile = hFileNull;
        if (!ok)
            ThrowOsError((LONG)::GetLastError());
    }
}

void CFile::Abort()
{
    if (m_hFile != hFileNull)
    {
        ::CloseHandle(H(m_hFile));
        m_hFile = hFileNull;
    }
}

void CFile::Remove(LPCTSTR lpszFileName)
{
    if (!::DeleteFileW(lpszFileName))
    {
        LONG err = (LONG)::GetLastError();
        AfxThrowFileException(CFileException::OsErrorToException(err), err, lpszFileName);
    }
}

void CFile::Rename(LPCTSTR lpszOldName, LPCTSTR lpszNewName)
{
    if (!::MoveFileW(lpszOldName, lpszNewName))
    {
        LONG err = (LONG)::GetLastError();
        AfxThrowFileException(CFileException::OsErrorToException(err), err, lpszOldName);
    }
}

int CFileException::OsErrorToException(LONG lOsError)
{
    switch (lOsError)
    {
    case 0: return none;
    case ERROR_FILE_NOT_FOUND: return fileNotFound;
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME: return badPath;
    case ERROR_TOO_MANY_OPEN_FILES: return tooManyOpenFiles;
    case ERROR_ACCESS_DENIED: return accessDenied;
    case ERROR_INVALID_HANDLE: return invalidFile;
    case ERROR_CURRENT_DIRECTORY: return removeCurrentDir;
    case ERROR_NEGATIVE_SEEK:
    case ERROR_SEEK: return badSeek;
    case ERROR_SHARING_VIOLATION: return sharingViolation;
    case ERROR_LOCK_VIOLATION: return lockViolation;
    case ERROR_HANDLE_DISK_FULL:
    case ERROR_DISK_FULL: return diskFull;
    case ERROR_HANDLE_EOF: return endOfFile;
    case ERROR_CRC:
    case ERROR_WRITE_FAULT:
    case ERROR_READ_FAULT: return hardIO;
    default: return genericException;
    }
}

#else // POSIX

BOOL CFile::Open(LPCTSTR lpszFileName, UINT nOpenFlags, CFileException* pError)
{
    if (m_hFile != hFileNull)
        Abort();
    m_strFileName = lpszFileName;
    int flags = (nOpenFlags & 3) == modeWrite ? O_WRONLY : (nOpenFlags & 3) == modeReadWrite ? O_RDWR : O_RDONLY;
    if (nOpenFlags & modeCreate)
        flags |= O_CREAT | ((nOpenFlags & modeNoTruncate) ? 0 : O_TRUNC);
    // O_NONBLOCK: a pipe under a record's name must be refused below, not waited on.
    flags |= O_CLOEXEC | O_NONBLOCK;
    // Share modes are advisory on POSIX: nothing shuts other processes out.
    std::string path;
    const bool bPosixPath = AfxPosixPath(lpszFileName, &path);
    int fd = bPosixPath ? ::open(path.c_str(), flags, 0666) : -1;
    if (fd < 0)
    {
        int err = bPosixPath ? errno : ENOENT;
        if (pError)
        {
            pError->m_cause = bPosixPath ? CFileException::OsErrorToException(err) : CFileException::badPath;
            pError->m_lOsError = err;
            pError->m_strFileName = lpszFileName;
        }
        return FALSE;
    }
    // Only regular files hold data: a folder, a pipe or a device is refused.
    struct stat st;
    if (::fstat(fd, &st) == 0 && !S_ISREG(st.st_mode))
    {
        ::close(fd);
        if (pError)
        {
            pError->m_cause = CFileException::accessDenied;
            pError->m_lOsError = S_ISDIR(st.st_mode) ? EISDIR : EINVAL;
            pError->m_strFileName = lpszFileName;
        }
        return FALSE;
    }
    ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) & ~O_NONBLOCK);
    m_hFile = fd;
    return TRUE;
}

UINT CFile::Read(void* lpBuf, UINT nCount)
{
    UINT total = 0;
    while (total < nCount)
    {
        ssize_t n = ::read((int)m_hFile, (char*)lpBuf + total, nCount - total);
        if (n < 0)
        {
            if (errno == EINTR)
                continue;
            ThrowOsError(errno);
        }
        if (n == 0)
            break;
        total += (UINT)n;
    }
    return total;
}

void CFile::Write(const void* lpBuf, UINT nCount)
{
    if (LONG fault = AfxFileFault(afxFileWrite))
        ThrowOsError(fault);
    UINT total = 0;
    while (total < nCount)
    {
        ssize_t n = ::write((int)m_hFile, (const char*)lpBuf + total, nCount - total);
        if (n < 0)
        {
            if (errno == EINTR)
                continue;
            ThrowOsError(errno);
        }
        total += (UINT)n;
    }
}

ULONGLONG CFile::Seek(LONGLONG lOff, UINT nFrom)
{
    int whence = nFrom == current ? SEEK_CUR : nFrom == end ? SEEK_END : SEEK_SET;
    off_t r = ::lseek((int)m_hFile, (off_t)lOff, whence);
    if (r < 0)
        ThrowOsError(errno);
    return (ULONGLONG)r;
}

ULONGLONG CFile::GetPosition() const
{
    off_t r = ::lseek((int)m_hFile, 0, SEEK_CUR);
    if (r < 0)
        ThrowOsError(errno);
    return (ULONGLONG)r;
}

ULONGLONG CFile::GetLength() const
{
    struct stat st;
    if (::fstat((int)m_hFile, &st) != 0)
        ThrowOsError(errno);
    return (ULONGLONG)st.st_size;
}

void CFile::SetLength(ULONGLONG dwNewLen)
{
    if (::ftruncate((int)m_hFile, (off_t)dwNewLen) != 0)
        ThrowOsError(errno);
}

void CFile::Flush()
{
    if (m_hFile == hFileNull)
        return;
    if (LONG fault = AfxFileFault(afxFileFlush))
        ThrowOsError(fault);
    if (::fsync((int)m_hFile) != 0 && errno != EINVAL)
        ThrowOsError(errno);
}

void CFile::Close()
{
    if (m_hFile != hFileNull)
    {
        int r = ::close((int)m_hFile);
        m_hFile = hFileNull;
        if (r != 0 && errno != EINTR)
            ThrowOsError(errno);
    }
}

void CFile::Abort()
{
    if (m_hFile != hFileNull)
    {
        ::close((int)m_hFile);
        m_hFile = hFileNull;
    }
}

void CFile::Remove(LPCTSTR lpszFileName)
{
    if (::unlink(CheckedPath(lpszFileName).c_str()) != 0)
    {
        int err = errno;
        AfxThrowFileException(CFileException::OsErrorToException(err), err, lpszFileName);
    }
}

void CFile::Rename(LPCTSTR lpszOldName, LPCTSTR lpszNewName)
{
    if (::rename(CheckedPath(lpszOldName).c_str(), CheckedPath(lpszNewName).c_str()) != 0)
    {
        int err = errno;
        AfxThrowFileException(CFileException::OsErrorToException(err), err, lpszOldName);
    }
}

int CFileException::OsErrorToException(LONG lOsError)
{
    switch (lOsError)
    {
    case 0: return none;
    case ENOENT: return fileNotFound;
    case ENOTDIR:
    case ENAMETOOLONG:
    case ELOOP: return badPath;
    case EMFILE:
    case ENFILE: return tooManyOpenFiles;
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR: return accessDenied;
    case EBADF: return invalidFile;
    case EBUSY: return sharingViolation;
    case ESPIPE: return badSeek;
    case ENOSPC:
    case EDQUOT: return diskFull;
    case EIO: return hardIO;
    default: return genericException;
    }
}

#endif

// ---- CMemFile ----

UINT CMemFile::Read(void* lpBuf, UINT nCount)
{
    std::size_t left = m_nPosition < m_data.size() ? m_data.size() - m_nPosition : 0;
    std::size_t n = std::min<std::size_t>(nCount, left);
    if (n)
        std::memcpy(lpBuf, m_data.data() + m_nPosition, n);
    m_nPosition += n;
    return (UINT)n;
}

void CMemFile::Write(const void* lpBuf, UINT nCount)
{
    if (m_nPosition + nCount > m_data.size())
        m_data.resize(m_nPosition + nCount);
    if (nCount)
        std::memcpy(m_data.data() + m_nPosition, lpBuf, nCount);
    m_nPosition += nCount;
}

ULONGLONG CMemFile::Seek(LONGLONG lOff, UINT nFrom)
{
    LONGLONG base = nFrom == current ? (LONGLONG)m_nPosition : nFrom == end ? (LONGLONG)m_data.size() : 0;
    if (base + lOff < 0)
        AfxThrowFileException(CFileException::badSeek, -1, m_strFileName);
    m_nPosition = (std::size_t)(base + lOff);
    return m_nPosition;
}

void CMemFile::SetLength(ULONGLONG dwNewLen)
{
    m_data.resize((std::size_t)dwNewLen);
    m_nPosition = std::min(m_nPosition, m_data.size());
}

// ---- CMirrorFile ----

CMirrorFile::~CMirrorFile()
{
    Abort();
}

BOOL CMirrorFile::Open(LPCTSTR lpszFileName, UINT nOpenFlags, CFileException* pError)
{
    if (!(nOpenFlags & modeCreate) || (nOpenFlags & modeNoTruncate) || (nOpenFlags & 3) == modeRead)
        return CFile::Open(lpszFileName, nOpenFlags, pError);
    if (m_hFile != hFileNull)
        Abort();
    // The temporary file sits in the target's folder so that the final rename stays
    // within one file system and is atomic; the litter of interrupted saves of the
    // same target goes on the way.
    CString mirror;
    LONG err = 0;
    INT_PTR h = AfxCreateTempFileBeside(lpszFileName, mirror, &err);
    if (h == hFileNull)
    {
        if (pError)
        {
            pError->m_cause = CFileException::OsErrorToException(err);
            pError->m_lOsError = err;
            pError->m_strFileName = lpszFileName;
        }
        return FALSE;
    }
    m_hFile = h;
    m_strMirrorName = mirror;
    m_strFileName = lpszFileName;
    return TRUE;
}

void CMirrorFile::Close()
{
    if (m_strMirrorName.IsEmpty())
    {
        CFile::Close();
        return;
    }
    CString mirror = m_strMirrorName;
    m_strMirrorName.Empty();
    try
    {
        // The bytes reach the disk before the name does: a crash after the rename
        // must find the new record whole.
        CFile::Flush();
#ifdef _WIN32
        CFile::Close();
        if (LONG fault = AfxFileFault(afxFileRename))
            ThrowOsError(fault);
        if (!::MoveFileExW(mirror, m_strFileName, MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
        {
            LONG err = (LONG)::GetLastError();
            AfxThrowFileException(CFileException::OsErrorToException(err), err, m_strFileName);
        }
#else
        // Renamed while still open, so that the file stays marked in use (locked)
        // for as long as it has its temporary name.
        if (LONG fault = AfxFileFault(afxFileRename))
            ThrowOsError(fault);
        if (::rename(NativePath(mirror).c_str(), NativePath(m_strFileName).c_str()) != 0)
            ThrowOsError(errno);
        CFile::Abort(); // the record is in place and on disk: nothing left to fail
#endif
    }
    catch (CException*)
    {
        CFile::Abort();
        _wunlink(mirror);
        throw;
    }
}

void CMirrorFile::Abort()
{
    CFile::Abort();
    if (!m_strMirrorName.IsEmpty())
    {
        _wunlink(m_strMirrorName);
        m_strMirrorName.Empty();
    }
}
