#include "System.h"

#include "CodePage.h"

#include <algorithm>
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
#include <unistd.h>
#endif

namespace
{
#ifndef _WIN32
// The POSIX path, or errno set to ENOENT for one that cannot exist here.
bool NativePath(LPCWSTR psz, std::string* pPath)
{
    if (AfxPosixPath(psz, pPath))
        return true;
    errno = ENOENT;
    return false;
}

// Copies text into a caller's buffer with the Windows convention for sizes.
BOOL CopyOut(const std::wstring& text, LPWSTR lpBuffer, LPDWORD pnSize)
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
    *pnSize = (DWORD)text.size();
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
    return CopyOut(AfxUtf8ToWide(h), lpBuffer, pnSize);
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
    return CopyOut(AfxUtf8ToWide(name), lpBuffer, pnSize);
}

DWORD GetLastError()
{
    return (DWORD)errno;
}

void SetLastError(DWORD dwErrCode)
{
    errno = (int)dwErrCode;
}

bool AfxPosixPath(LPCWSTR psz, std::string* pPath)
{
    std::wstring path = psz ? psz : L"";
    pPath->clear();
    if (path.size() >= 2 && path[1] == L':' && ((path[0] >= L'A' && path[0] <= L'Z') || (path[0] >= L'a' && path[0] <= L'z')))
        return false;
    std::replace(path.begin(), path.end(), L'\\', L'/');
    *pPath = AfxWideToUtf8(path);
    return true;
}

int _waccess(LPCWSTR path, int mode)
{
    std::string p;
    return NativePath(path, &p) ? ::access(p.c_str(), mode) : -1;
}

int _wunlink(LPCWSTR path)
{
    std::string p;
    return NativePath(path, &p) ? ::unlink(p.c_str()) : -1;
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
    std::string target;
    if (!NativePath(lpszPath, &target))
        return errno;
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
    // CREATE_NEW fails when the file exists; no sharing while the record is written.
    HANDLE h = ::CreateFileW(lpszPath, GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (h == INVALID_HANDLE_VALUE)
        return ::GetLastError() == ERROR_FILE_EXISTS ? EEXIST : EACCES;
    DWORD done = 0;
    BOOL ok = ::WriteFile(h, pData, nCount, &done, nullptr) && done == nCount;
    ::CloseHandle(h);
    if (!ok)
    {
        ::DeleteFileW(lpszPath);
        return EIO;
    }
    return 0;
}

TCHAR AfxPathSeparator()
{
    return L'\\';
}

BOOL AfxIsStdErrTerminal()
{
    return ::_isatty(_fileno(stderr)) ? TRUE : FALSE;
}

#endif

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
