#include "System.h"

#include "CodePage.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <random>

#ifdef _WIN32
#include <io.h>
#include <windows.h>
#else
#include <dlfcn.h>
#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace
{
#ifndef _WIN32
std::string NativePath(LPCWSTR psz)
{
    return AfxWideToUtf8(psz ? std::wstring(psz) : std::wstring());
}

// Copies text into a caller's buffer with the Windows convention for sizes: the size
// needed counts the terminator; the length returned does for GetUserNameW only.
BOOL CopyOut(const std::wstring& text, LPWSTR lpBuffer, LPDWORD pnSize, bool bCountTerminator)
{
    if (pnSize == nullptr)
    {
        errno = EINVAL;
        return FALSE;
    }
    if (lpBuffer == nullptr || text.size() + 1 > *pnSize)
    {
        *pnSize = (DWORD)text.size() + 1;
        errno = ENOBUFS;
        return FALSE;
    }
    std::wmemcpy(lpBuffer, text.c_str(), text.size() + 1);
    *pnSize = (DWORD)text.size() + (bCountTerminator ? 1 : 0);
    return TRUE;
}

bool WriteAllFd(int fd, const void* p, UINT n)
{
    const char* c = static_cast<const char*>(p);
    while (n > 0)
    {
        ssize_t w = ::write(fd, c, n);
        if (w < 0)
        {
            if (errno == EINTR)
                continue;
            return false;
        }
        c += w;
        n -= (UINT)w;
    }
    return true;
}
#endif
} // namespace

#ifndef _WIN32

BOOL GetComputerNameW(LPWSTR lpBuffer, LPDWORD pnSize)
{
    char host[256] = {0};
    if (::gethostname(host, sizeof host - 1) != 0)
        return FALSE;
    // The first label only, as Windows gives the NetBIOS name without a domain.
    std::string h(host);
    std::size_t dot = h.find('.');
    if (dot != std::string::npos)
        h.resize(dot);
    return CopyOut(AfxUtf8ToWide(h), lpBuffer, pnSize, false);
}

BOOL GetUserNameW(LPWSTR lpBuffer, LPDWORD pnSize)
{
    std::string name;
    struct passwd pw;
    struct passwd* result = nullptr;
    char buf[4096];
    if (getpwuid_r(::geteuid(), &pw, buf, sizeof buf, &result) == 0 && result && result->pw_name)
        name = result->pw_name;
    else if (const char* user = std::getenv("USER"))
        name = user;
    if (name.empty())
    {
        errno = ENOENT;
        return FALSE;
    }
    return CopyOut(AfxUtf8ToWide(name), lpBuffer, pnSize, true);
}

DWORD GetLastError()
{
    return (DWORD)errno;
}

void SetLastError(DWORD dwErrCode)
{
    errno = (int)dwErrCode;
}

int _waccess(LPCWSTR path, int mode)
{
    return ::access(NativePath(path).c_str(), mode);
}

int _wunlink(LPCWSTR path)
{
    return ::unlink(NativePath(path).c_str());
}

int _wtoi(LPCWSTR psz)
{
    if (psz == nullptr)
        return 0;
    return (int)std::wcstol(psz, nullptr, 10);
}

CString AfxGetSystemErrorText(DWORD dwError)
{
    return AfxGetRuntimeErrorText((int)dwError);
}

CString AfxGetLibraryModuleName()
{
    Dl_info info;
    if (dladdr((void*)&AfxGetLibraryModuleName, &info) && info.dli_fname)
        return CString(AfxUtf8ToWide(info.dli_fname));
    return CString(L"prefa");
}

int AfxCreateNewFile(LPCTSTR lpszPath, const void* pData, UINT nCount)
{
    std::string target = NativePath(lpszPath);
    std::random_device rd;
    std::string temp = target + ".~new" + std::to_string(rd());
    int fd = ::open(temp.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (fd < 0)
        return errno;
    bool ok = WriteAllFd(fd, pData, nCount) && ::fsync(fd) == 0;
    int err = ok ? 0 : errno;
    ::close(fd);
    if (!ok)
    {
        ::unlink(temp.c_str());
        return err;
    }
    // link() publishes the complete record under its name, and fails if the name is taken.
    int r = ::link(temp.c_str(), target.c_str());
    err = r == 0 ? 0 : errno;
    ::unlink(temp.c_str());
    if (r == 0 || err == EEXIST)
        return err;
    // A file system without hard links: fall back to exclusive creation in place.
    fd = ::open(target.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (fd < 0)
        return errno;
    ok = WriteAllFd(fd, pData, nCount);
    err = ok ? 0 : errno;
    ::close(fd);
    if (!ok)
        ::unlink(target.c_str());
    return err;
}

TCHAR AfxPathSeparator()
{
    return L'/';
}

int AfxOsErrorToErrno(LONG lOsError)
{
    return (int)lOsError;
}

UINT GetACP()
{
    return 1252;
}

CString AfxGetEnvironmentVariable(LPCTSTR lpszName)
{
    const char* value = std::getenv(NativePath(lpszName).c_str());
    return value ? CString(AfxUtf8ToWide(value)) : CString();
}

void AfxSetEnvironmentVariable(LPCTSTR lpszName, LPCTSTR lpszValue)
{
    std::string name = NativePath(lpszName);
    if (lpszValue && *lpszValue)
        ::setenv(name.c_str(), NativePath(lpszValue).c_str(), 1);
    else
        ::unsetenv(name.c_str());
}

int AfxRunCommand(LPCTSTR lpszCommandLine)
{
    std::fflush(nullptr);
    int status = std::system(NativePath(lpszCommandLine).c_str());
    return status != -1 && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

BOOL AfxIsStdErrTerminal()
{
    return ::isatty(2) ? TRUE : FALSE;
}

#else // _WIN32

CString AfxGetSystemErrorText(DWORD dwError)
{
    LPWSTR buffer = nullptr;
    DWORD n = ::FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM |
                                   FORMAT_MESSAGE_IGNORE_INSERTS,
                               nullptr, dwError, 0, (LPWSTR)&buffer, 0, nullptr);
    CString text(n ? CString(buffer, (int)n) : CString());
    if (buffer)
        ::LocalFree(buffer);
    text.TrimRight();
    return text;
}

CString AfxGetLibraryModuleName()
{
    HMODULE module = nullptr;
    wchar_t path[MAX_PATH] = {0};
    if (::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                             (LPCWSTR)&AfxGetLibraryModuleName, &module))
        ::GetModuleFileNameW(module, path, MAX_PATH);
    return CString(path);
}

int AfxCreateNewFile(LPCTSTR lpszPath, const void* pData, UINT nCount)
{
    // Written under a temporary name, then moved to its own name by a move that fails
    // when the name is taken: another process sees no file or the whole record.
    std::random_device rd;
    std::wstring temp = std::wstring(lpszPath) + L".~new" + std::to_wstring(rd());
    HANDLE h = ::CreateFileW(temp.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (h == INVALID_HANDLE_VALUE)
        return AfxOsErrorToErrno((LONG)::GetLastError());
    DWORD done = 0;
    BOOL ok = ::WriteFile(h, pData, nCount, &done, nullptr) && done == nCount && ::FlushFileBuffers(h);
    DWORD err = ok ? 0 : ::GetLastError();
    ::CloseHandle(h);
    if (ok && !::MoveFileExW(temp.c_str(), lpszPath, MOVEFILE_WRITE_THROUGH))
    {
        ok = FALSE;
        err = ::GetLastError();
    }
    if (!ok)
    {
        ::DeleteFileW(temp.c_str());
        return err ? AfxOsErrorToErrno((LONG)err) : EIO;
    }
    return 0;
}

TCHAR AfxPathSeparator()
{
    return L'\\';
}

int AfxOsErrorToErrno(LONG lOsError)
{
    // The C run-time's own table (what _doserrno becomes in errno).
    switch (lOsError)
    {
    case 0: return 0;
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_NO_MORE_FILES:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_FILENAME_EXCED_RANGE: return ENOENT;
    case ERROR_TOO_MANY_OPEN_FILES: return EMFILE;
    case ERROR_ACCESS_DENIED:
    case ERROR_CURRENT_DIRECTORY:
    case ERROR_NETWORK_ACCESS_DENIED:
    case ERROR_CANNOT_MAKE:
    case ERROR_FAIL_I24:
    case ERROR_DRIVE_LOCKED:
    case ERROR_SEEK_ON_DEVICE:
    case ERROR_NOT_LOCKED:
    case ERROR_LOCK_FAILED: return EACCES;
    case ERROR_INVALID_HANDLE:
    case ERROR_INVALID_TARGET_HANDLE:
    case ERROR_DIRECT_ACCESS_HANDLE: return EBADF;
    case ERROR_ARENA_TRASHED:
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_INVALID_BLOCK:
    case ERROR_NOT_ENOUGH_QUOTA: return ENOMEM;
    case ERROR_BAD_ENVIRONMENT: return E2BIG;
    case ERROR_BAD_FORMAT: return ENOEXEC;
    case ERROR_NOT_SAME_DEVICE: return EXDEV;
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS: return EEXIST;
    case ERROR_NO_PROC_SLOTS:
    case ERROR_MAX_THRDS_REACHED:
    case ERROR_NESTING_NOT_ALLOWED: return EAGAIN;
    case ERROR_BROKEN_PIPE: return EPIPE;
    case ERROR_DISK_FULL: return ENOSPC;
    case ERROR_WAIT_NO_CHILDREN:
    case ERROR_CHILD_NOT_COMPLETE: return ECHILD;
    case ERROR_DIR_NOT_EMPTY: return ENOTEMPTY;
    default:
        // Write protection to sharing-buffer overflow (sharing and lock violations among
        // them) deny access; the executable-format errors are ENOEXEC.
        if (lOsError >= ERROR_WRITE_PROTECT && lOsError <= ERROR_SHARING_BUFFER_EXCEEDED)
            return EACCES;
        if (lOsError >= ERROR_INVALID_STARTING_CODESEG && lOsError <= ERROR_INFLOOP_IN_RELOC_CHAIN)
            return ENOEXEC;
        return EINVAL;
    }
}

CString AfxGetEnvironmentVariable(LPCTSTR lpszName)
{
    const wchar_t* value = ::_wgetenv(lpszName);
    return value ? CString(value) : CString();
}

void AfxSetEnvironmentVariable(LPCTSTR lpszName, LPCTSTR lpszValue)
{
    // An empty value removes the variable.
    ::_wputenv_s(lpszName, lpszValue ? lpszValue : L"");
}

int AfxRunCommand(LPCTSTR lpszCommandLine)
{
    // cmd.exe /c drops the first and the last quote of the line when it holds more than
    // two or any special character: quoted whole, the caller's own quotes survive.
    std::wstring line = L"\"" + std::wstring(lpszCommandLine ? lpszCommandLine : L"") + L"\"";
    std::fflush(nullptr);
    return ::_wsystem(line.c_str());
}

BOOL AfxIsStdErrTerminal()
{
    return ::_isatty(_fileno(stderr)) ? TRUE : FALSE;
}

#endif

int AfxPathFolderLength(const CString& strPath)
{
#ifdef _WIN32
    const wchar_t* separators = L"/\\:";
#else
    const wchar_t* separators = L"/\\";
#endif
    std::size_t cut = strPath.Std().find_last_of(separators);
    return cut == std::wstring::npos ? 0 : (int)cut + 1;
}

CString AfxGetRuntimeErrorText(int nErrno)
{
    return CString(std::strerror(nErrno));
}

int AfxGetErrno()
{
    return errno;
}

void AfxSetErrno(int nErrno)
{
    errno = nErrno;
}
