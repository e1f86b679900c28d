// The C run-time's 64-bit time functions, under their Windows names.
#pragma once

#include "Types.h"

#include <ctime>
#include <string>

#ifdef _WIN32
#include <time.h>
#else
typedef long long __time64_t; // as on Windows, so that the archive writes it in 8 bytes
typedef int errno_t;

// Seconds since 1970-01-01 UTC; stores them in *pt too when pt is not null.
__time64_t _time64(__time64_t* pt);
// Local time of *pt; 0 on success, an errno value (EINVAL) when it cannot be computed.
// As on Windows, times before 1970 or after the year 3000 cannot.
errno_t _localtime64_s(struct tm* ptm, const __time64_t* pt);
// The same in UTC.
errno_t _gmtime64_s(struct tm* ptm, const __time64_t* pt);
// Local calendar time to seconds (normalising *ptm as mktime does); -1 when impossible,
// and for dates outside 1970 to 3000 as on Windows.
__time64_t _mktime64(struct tm* ptm);
#endif

// *ptm in the strftime codes as the Windows run-time reads them, the same on every
// system: a to Z as C99 has them with the "C" locale's %c ("%m/%d/%y %H:%M:%S"), %x
// and %X, and the # flag (%#d: no leading zeros; %#c and %#x: the long date, as in
// "Tuesday, March 14, 1995"). %z and %Z give the zone as the system names it. False,
// with *pText empty, for a code Windows refuses (an unknown letter, a trailing %, the
// E and O modifiers, the GNU flags - _ ^).
bool AfxFormatTime(const wchar_t* pszFormat, const struct tm* ptm, std::wstring* pText);
