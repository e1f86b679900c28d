// Basic types of the application framework, so that the library's sources read
// the same on Windows (where they come from the system headers) and elsewhere.
#pragma once

#include <cstddef>
#include <cstdint>

#ifdef _WIN32
#ifndef NOMINMAX
#define NOMINMAX
#endif
// The library and its callers are Unicode builds: TCHAR is wchar_t, and the system's
// functions are their wide (W) forms.
#ifndef UNICODE
#define UNICODE
#endif
#ifndef _UNICODE
#define _UNICODE
#endif
#include <windows.h>
#include <tchar.h>
static_assert(sizeof(TCHAR) == sizeof(wchar_t), "prefa needs UNICODE and _UNICODE defined before <windows.h>");
#else

typedef int BOOL;
typedef unsigned char BYTE;
typedef unsigned short WORD;
typedef std::uint32_t DWORD;
typedef std::int32_t LONG;
typedef std::uint32_t ULONG;
// long long, as on Windows: std::int64_t is long here, which the archive writes in
// the framework's 4 bytes.
typedef long long LONGLONG;
typedef unsigned long long ULONGLONG;
typedef unsigned int UINT;
typedef std::uintptr_t UINT_PTR;
typedef std::intptr_t INT_PTR;
typedef std::uintptr_t DWORD_PTR;
typedef unsigned int* PUINT;
typedef DWORD* LPDWORD;
typedef wchar_t WCHAR;
typedef wchar_t TCHAR;
typedef char CHAR;
typedef wchar_t* LPWSTR;
typedef const wchar_t* LPCWSTR;
typedef wchar_t* LPTSTR;
typedef const wchar_t* LPCTSTR;
typedef char* LPSTR;
typedef const char* LPCSTR;
typedef void* LPVOID;
typedef const void* LPCVOID;
typedef std::uint32_t COLORREF;

#ifndef TRUE
#define TRUE 1
#endif
#ifndef FALSE
#define FALSE 0
#endif

#define _T(x) L##x
#define _TEXT(x) L##x

#define RGB(r, g, b) \
    ((COLORREF)(((BYTE)(r) | ((WORD)((BYTE)(g)) << 8)) | (((DWORD)(BYTE)(b)) << 16)))
#define GetRValue(c) ((BYTE)(c))
#define GetGValue(c) ((BYTE)(((WORD)(c)) >> 8))
#define GetBValue(c) ((BYTE)((c) >> 16))

#endif // _WIN32

// An opaque list position, as the framework's lists hand out.
struct __POSITION {};
typedef __POSITION* POSITION;
