#include "System.h"

#include "CodePage.h"
#include "FileFault.h"

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
#include <shellapi.h>
#else
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
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

// The POSIX path, or an empty one (which no call can open) for a name that cannot exist here.
std::string NativePath(LPCWSTR psz)
{
    std::string path;
    return NativePath(psz, &path) ? path : std::string();
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
    if (LONG fault = AfxFileFault(afxFileWrite))
    {
        errno = (int)fault;
        return false;
    }
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

bool SyncFd(int fd)
{
    if (LONG fault = AfxFileFault(afxFileFlush))
    {
        errno = (int)fault;
        return false;
    }
    return ::fsync(fd) == 0;
}

bool ReadAllFd(int fd, void* p, UINT n)
{
    char* c = static_cast<char*>(p);
    while (n > 0)
    {
        ssize_t r = ::read(fd, c, n);
        if (r < 0 && errno == EINTR)
            continue;
        if (r <= 0)
        {
            if (r == 0)
                errno = EIO; // shorter than the record
            return false;
        }
        c += r;
        n -= (UINT)r;
    }
    return true;
}

// An exclusive flock, waited for: the only other holder is a cleaner that keeps it
// for the instant of a test.
bool LockFd(int fd)
{
    while (::flock(fd, LOCK_EX) != 0)
        if (errno != EINTR)
            return false;
    return true;
}

// Removes the temporary files of target (in its folder, target's name + ".~" and 8
// hex digits) that no process holds any more. A save in progress holds an exclusive
// flock on its temporary file until it is done; a killed one holds nothing.
void RemoveStaleTempFiles(const std::string& target)
{
    std::size_t cut = target.rfind('/');
    std::string folder = cut == std::string::npos ? "." : cut == 0 ? "/" : target.substr(0, cut);
    std::string base = cut == std::string::npos ? target : target.substr(cut + 1);
    DIR* dir = ::opendir(folder.c_str());
    if (dir == nullptr)
        return;
    while (const struct dirent* entry = ::readdir(dir))
    {
        std::string name = entry->d_name;
        if (name.size() != base.size() + 10 || name.compare(0, base.size(), base) != 0 ||
            !AfxIsTempFileName(AfxUtf8ToWide(name).c_str()))
            continue;
        std::string path = folder + "/" + name;
        int fd = ::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
        if (fd < 0)
            continue;
        // Removed only while locked here and still under that name: the lock shuts
        // out its owner, the name check a file renamed or replaced meanwhile.
        struct stat held, named;
        if (::fstat(fd, &held) == 0 && S_ISREG(held.st_mode) && ::flock(fd, LOCK_EX | LOCK_NB) == 0 &&
            ::lstat(path.c_str(), &named) == 0 && named.st_ino == held.st_ino && named.st_dev == held.st_dev)
            ::unlink(path.c_str());
        ::close(fd);
    }
    ::closedir(dir);
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

namespace
{
// Writes a new file's bytes to its temporary file h (strTemp), then gives them the
// name by a link, which fails if the name is taken (a dangling symbolic link
// included); an errno value.
int PublishNewFile(INT_PTR h, const CString& strTemp, LPCTSTR lpszPath, const void* pData, UINT nCount)
{
    LONG err = 0;
    const int fd = (int)h;
    const std::string temp = NativePath(strTemp);
    const std::string target = NativePath(lpszPath);
    if (!WriteAllFd(fd, pData, nCount) || !SyncFd(fd))
    {
        err = errno;
        ::unlink(temp.c_str());
        ::close(fd);
        return (int)err;
    }
    err = AfxFileFault(afxFileRename);
    if (err == 0)
        err = ::link(temp.c_str(), target.c_str()) == 0 ? 0 : errno;
    ::unlink(temp.c_str());
    ::close(fd);
    if (err != EPERM && err != EOPNOTSUPP && err != ENOSYS)
        return (int)err;
    // A file system without hard links: exclusive creation in place.
    int direct = ::open(target.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
    if (direct < 0)
        return errno;
    bool ok = WriteAllFd(direct, pData, nCount);
    err = ok ? 0 : errno;
    ::close(direct);
    if (!ok)
        ::unlink(target.c_str());
    return (int)err;
}

} // namespace

AFX_FILE_KIND AfxGetFileKind(LPCTSTR lpszPath)
{
    struct stat st;
    if (::lstat(NativePath(lpszPath).c_str(), &st) != 0)
        return afxNoFile;
    return S_ISREG(st.st_mode) ? afxRegularFile : S_ISDIR(st.st_mode) ? afxDirectory : afxOtherFile;
}

int AfxReadRegularFile(LPCTSTR lpszPath, void* pData, UINT nCount)
{
    // O_NONBLOCK: opening a pipe must not wait for a writer before it can be refused.
    int fd = ::open(NativePath(lpszPath).c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0)
        return errno == ELOOP ? EINVAL : errno;
    struct stat st;
    int err = 0;
    if (::fstat(fd, &st) != 0)
        err = errno;
    else if (!S_ISREG(st.st_mode))
        err = EINVAL;
    else if (!ReadAllFd(fd, pData, nCount))
        err = errno;
    ::close(fd);
    return err;
}

INT_PTR AfxCreateTempFileBeside(LPCTSTR lpszPath, CString& strTemp, LONG* pnError)
{
    RemoveStaleTempFiles(NativePath(lpszPath));
    std::random_device rd;
    LONG err = EEXIST;
    for (int attempt = 0; attempt < 16; ++attempt)
    {
        CString temp;
        temp.Format(L"%s.~%08x", lpszPath, (unsigned)rd());
        int fd = ::open(NativePath(temp).c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd < 0)
        {
            err = errno;
            if (err == EEXIST)
                continue;
            break;
        }
        // A cleaner that opened this name before the lock was taken may have removed
        // it; the file then has no name left, and another one is made. Without
        // locks on this file system, nothing is ever removed as stale.
        struct stat st;
        if (LockFd(fd) && ::fstat(fd, &st) == 0 && st.st_nlink == 0)
        {
            ::close(fd);
            continue;
        }
        strTemp = temp;
        return fd;
    }
    if (pnError)
        *pnError = err;
    return -1;
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

std::vector<std::string> AfxGetArgumentsUtf8(int argc, char** argv)
{
    return argc > 1 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>();
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

namespace
{
// Writes a new file's bytes to its temporary file h (strTemp), then gives them the
// name by a move that fails when the name is taken; an errno value.
int PublishNewFile(INT_PTR h, const CString& strTemp, LPCTSTR lpszPath, const void* pData, UINT nCount)
{
    LONG err = AfxFileFault(afxFileWrite);
    DWORD done = 0;
    if (err == 0 && !(::WriteFile((HANDLE)h, pData, nCount, &done, nullptr) && done == nCount))
        err = (LONG)::GetLastError();
    if (err == 0)
        err = AfxFileFault(afxFileFlush);
    if (err == 0 && !::FlushFileBuffers((HANDLE)h))
        err = (LONG)::GetLastError();
    ::CloseHandle((HANDLE)h);
    if (err == 0)
        err = AfxFileFault(afxFileRename);
    if (err == 0 && !::MoveFileExW(strTemp, lpszPath, MOVEFILE_WRITE_THROUGH))
        err = (LONG)::GetLastError();
    if (err != 0)
    {
        ::DeleteFileW(strTemp);
        return AfxOsErrorToErrno(err);
    }
    return 0;
}

} // namespace

AFX_FILE_KIND AfxGetFileKind(LPCTSTR lpszPath)
{
    // Opened for no access at all, the name itself (a link not followed): devices and
    // pipes answer their kind there, where their attributes may look like a file's.
    HANDLE h = ::CreateFileW(lpszPath, 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                             OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    DWORD a = INVALID_FILE_ATTRIBUTES;
    if (h != INVALID_HANDLE_VALUE)
    {
        BY_HANDLE_FILE_INFORMATION info;
        const bool bDisk = ::GetFileType(h) == FILE_TYPE_DISK;
        if (bDisk && ::GetFileInformationByHandle(h, &info))
            a = info.dwFileAttributes;
        ::CloseHandle(h);
        if (!bDisk)
            return afxOtherFile;
    }
    else if (::GetLastError() == ERROR_PIPE_BUSY)
        return afxOtherFile;
    if (a == INVALID_FILE_ATTRIBUTES)
        a = ::GetFileAttributesW(lpszPath); // a name that cannot be opened may still be taken
    if (a == INVALID_FILE_ATTRIBUTES)
        return afxNoFile;
    if (a & (FILE_ATTRIBUTE_REPARSE_POINT | FILE_ATTRIBUTE_DEVICE))
        return afxOtherFile;
    return (a & FILE_ATTRIBUTE_DIRECTORY) ? afxDirectory : afxRegularFile;
}

int AfxReadRegularFile(LPCTSTR lpszPath, void* pData, UINT nCount)
{
    // The reparse point itself is opened (a link is not followed), and refused; so is a
    // folder, which only backup semantics lets open.
    HANDLE h = ::CreateFileW(lpszPath, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                             FILE_FLAG_OPEN_REPARSE_POINT | FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (h == INVALID_HANDLE_VALUE)
    {
        DWORD e = ::GetLastError();
        return e == ERROR_FILE_NOT_FOUND || e == ERROR_PATH_NOT_FOUND ? ENOENT
               : e == ERROR_ACCESS_DENIED || e == ERROR_SHARING_VIOLATION ? EACCES : EIO;
    }
    BY_HANDLE_FILE_INFORMATION info;
    int err = 0;
    if (!::GetFileInformationByHandle(h, &info) || ::GetFileType(h) != FILE_TYPE_DISK ||
        (info.dwFileAttributes & (FILE_ATTRIBUTE_REPARSE_POINT | FILE_ATTRIBUTE_DIRECTORY)))
        err = EINVAL;
    BYTE* p = static_cast<BYTE*>(pData);
    while (err == 0 && nCount > 0)
    {
        DWORD got = 0;
        if (!::ReadFile(h, p, nCount, &got, nullptr))
            err = EIO;
        else if (got == 0)
            err = EIO; // shorter than the record
        p += got;
        nCount -= got;
    }
    ::CloseHandle(h);
    return err;
}

INT_PTR AfxCreateTempFileBeside(LPCTSTR lpszPath, CString& strTemp, LONG* pnError)
{
    // Stale temporary files go: one still open in a save in progress cannot be
    // deleted (it is not shared for deletion), so the attempt fails for it.
    CString path(lpszPath);
    int cut = std::max(path.ReverseFind(L'\\'), path.ReverseFind(L'/'));
    WIN32_FIND_DATAW found;
    HANDLE find = ::FindFirstFileW(path + L".~*", &found);
    if (find != INVALID_HANDLE_VALUE)
    {
        const CString base = path.Mid(cut + 1);
        do
        {
            CString name(found.cFileName);
            if (name.GetLength() == base.GetLength() + 10 && name.Left(base.GetLength()) == base &&
                AfxIsTempFileName(name))
                ::DeleteFileW(path.Left(cut + 1) + name);
        } while (::FindNextFileW(find, &found));
        ::FindClose(find);
    }
    std::random_device rd;
    LONG err = ERROR_FILE_EXISTS;
    for (int attempt = 0; attempt < 16; ++attempt)
    {
        CString temp;
        temp.Format(L"%s.~%08x", lpszPath, (unsigned)rd());
        HANDLE h = ::CreateFileW(temp, GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL,
                                 nullptr);
        if (h != INVALID_HANDLE_VALUE)
        {
            strTemp = temp;
            return (INT_PTR)h;
        }
        err = (LONG)::GetLastError();
        if (err != ERROR_FILE_EXISTS)
            break;
    }
    if (pnError)
        *pnError = err;
    return -1;
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

std::vector<std::string> AfxGetArgumentsUtf8(int argc, char** argv)
{
    std::vector<std::string> args;
    int n = 0;
    LPWSTR* wide = ::CommandLineToArgvW(::GetCommandLineW(), &n);
    if (wide == nullptr)
        return argc > 1 ? std::vector<std::string>(argv + 1, argv + argc) : args;
    for (int i = 1; i < n; ++i)
        args.push_back(AfxWideToUtf8(wide[i]));
    ::LocalFree(wide);
    return args;
}

#endif

int AfxCreateNewFile(LPCTSTR lpszPath, const void* pData, UINT nCount)
{
    // A name already taken is refused before anything is written (the usual case of a
    // lock held by another); the publishing settles the races. Written first under a
    // temporary name beside it: another process sees no file or the whole record.
    if (AfxGetFileKind(lpszPath) != afxNoFile)
        return EEXIST;
    CString strTemp;
    LONG err = 0;
    INT_PTR h = AfxCreateTempFileBeside(lpszPath, strTemp, &err);
    if (h < 0)
        return AfxOsErrorToErrno(err);
    return PublishNewFile(h, strTemp, lpszPath, pData, nCount);
}

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

BOOL AfxIsTempFileName(LPCTSTR lpszName)
{
    std::size_t n = lpszName ? std::wcslen(lpszName) : 0;
    if (n < 10)
        return FALSE;
    const wchar_t* suffix = lpszName + n - 10;
    if (suffix[0] != L'.' || suffix[1] != L'~')
        return FALSE;
    for (int i = 2; i < 10; ++i)
    {
        wchar_t c = suffix[i];
        if (!((c >= L'0' && c <= L'9') || (c >= L'a' && c <= L'f') || (c >= L'A' && c <= L'F')))
            return FALSE;
    }
    return TRUE;
}
