// What the library asks of the operating system, behind one portable face: the
// workstation's identity, system error texts, the library's module name, file tests
// and removal under the C run-time's names, and exclusive creation of small files.
#pragma once

#include "CString.h"
#include "Types.h"

#include <string>
#include <vector>

#ifndef _WIN32
// Computer and user names with the Windows calling convention: *pnSize holds the
// buffer's size in characters on entry; on success, the name's length (its length and
// the terminator for GetUserNameW); when too small, FALSE and the size needed.
BOOL GetComputerNameW(LPWSTR lpBuffer, LPDWORD pnSize);
BOOL GetUserNameW(LPWSTR lpBuffer, LPDWORD pnSize);
// The calling thread's last system error (errno on POSIX).
DWORD GetLastError();
void SetLastError(DWORD dwErrCode);

int _waccess(LPCWSTR path, int mode);  // 0 when the file exists (mode 0) or allows mode
int _wunlink(LPCWSTR path);            // 0 on success, -1 with errno set
int _wtoi(LPCWSTR psz);
// The ANSI code page of narrow texts: Windows-1252 here.
UINT GetACP();

// A caller's path as the POSIX calls take it: UTF-8, with every backslash read as a
// separator ("dir\\sub\\x.bin" is dir/sub/x.bin), since a name born on Windows never
// holds one. A path that begins with a drive letter ("C:\\x", "C:x") names no POSIX
// file: false then, and the file functions fail with ENOENT (CFile with the bad-path
// cause).
bool AfxPosixPath(LPCWSTR psz, std::string* pPath);
#endif

// The C run-time's errno value for the OS error number of a file exception: Windows'
// system codes are mapped as its run-time maps them (ERROR_SHARING_VIOLATION is EACCES);
// elsewhere the number already is an errno value.
int AfxOsErrorToErrno(LONG lOsError);

// Environment variables as wide texts (the system's wide environment on Windows, UTF-8
// elsewhere). Setting a null or empty value removes the variable.
CString AfxGetEnvironmentVariable(LPCTSTR lpszName);
void AfxSetEnvironmentVariable(LPCTSTR lpszName, LPCTSTR lpszValue);

// A program's arguments after its name, in UTF-8. Windows hands main() its arguments
// in the ANSI code page, which cannot hold every name or password: they are read
// again from the wide command line there.
std::vector<std::string> AfxGetArgumentsUtf8(int argc, char** argv);

// Runs a command line through the system's command interpreter (cmd.exe on Windows,
// /bin/sh elsewhere) and returns the program's exit code, -1 when it did not exit.
int AfxRunCommand(LPCTSTR lpszCommandLine);

// The system's message text for an error number of GetLastError().
CString AfxGetSystemErrorText(DWORD dwError);
// The C run-time's text for an errno value (strerror).
CString AfxGetRuntimeErrorText(int nErrno);
// The current errno value (so that callers need not include the run-time's headers).
int AfxGetErrno();
void AfxSetErrno(int nErrno);
// Full path of the module (shared library or program) that holds the library.
CString AfxGetLibraryModuleName();

// Creates lpszPath holding exactly nCount bytes, only if no file of that name exists
// (a dangling symbolic link counts as one): the bytes are written under a temporary
// name first and then linked into place, so another process sees either no file or
// the whole record. Returns 0 on success,
// EEXIST when the file already exists, another errno value on failure.
int AfxCreateNewFile(LPCTSTR lpszPath, const void* pData, UINT nCount);

// What a name designates, the final symbolic link not followed: a dangling link is a
// name that exists (afxOtherFile), not a free one.
enum AFX_FILE_KIND
{
    afxNoFile,      // nothing of that name
    afxRegularFile,
    afxDirectory,
    afxOtherFile    // a symbolic link, a pipe, a device, a socket
};
AFX_FILE_KIND AfxGetFileKind(LPCTSTR lpszPath);

// Reads the first nCount bytes of lpszPath, which must be a regular file itself: a
// symbolic link is not followed and a pipe or a device is refused at once, never
// waited on. 0 on success, EIO when the file is shorter, EINVAL when the name is not
// a regular file, another errno value on failure.
int AfxReadRegularFile(LPCTSTR lpszPath, void* pData, UINT nCount);

// Creates a new temporary file beside lpszPath, named lpszPath + ".~" and 8 hex
// digits, open for writing and marked as in use for as long as it stays open. The
// temporary files that interrupted saves of the same path left behind (no longer in
// use) are removed first, so that a killed save leaves no lasting litter. Returns the
// open handle (the file descriptor on POSIX) with the name in strTemp, or -1 with the
// OS error number in *pnError.
INT_PTR AfxCreateTempFileBeside(LPCTSTR lpszPath, CString& strTemp, LONG* pnError);
// TRUE for a file name of that form (".~" and 8 hex digits at its end): the
// temporary file of a save in progress or interrupted, never a record.
BOOL AfxIsTempFileName(LPCTSTR lpszName);

// TRUE when the process's standard error is a terminal (progress display is then useful).
BOOL AfxIsStdErrTerminal();

// The platform's path separator ('\\' on Windows, '/' elsewhere).
TCHAR AfxPathSeparator();
// The length of a path's folder part, its last separator included: '/' and '\\' end
// it, and on Windows so does the ':' of a drive letter ("C:SECTION.01"). 0 for a bare name.
int AfxPathFolderLength(const CString& strPath);
