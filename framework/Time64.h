// The C run-time's 64-bit time functions, under their Windows names.
#pragma once

#include "Types.h"

#include <ctime>

#ifdef _WIN32
#include <time.h>
#else
typedef long long __time64_t; // as on Windows, so that the archive writes it in 8 bytes
typedef int errno_t;

// Seconds since 1970-01-01 UTC; stores them in *pt too when pt is not null.
__time64_t _time64(__time64_t* pt);
// Local time of *pt; 0 on success, an errno value (EINVAL) when it cannot be computed.
errno_t _localtime64_s(struct tm* ptm, const __time64_t* pt);
// Local calendar time to seconds (normalising *ptm as mktime does); -1 when impossible.
__time64_t _mktime64(struct tm* ptm);
#endif
