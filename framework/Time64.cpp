#include "Time64.h"

#ifndef _WIN32

#include <cerrno>
#include <ctime>

__time64_t _time64(__time64_t* pt)
{
    __time64_t t = (__time64_t)std::time(nullptr);
    if (pt)
        *pt = t;
    return t;
}

errno_t _localtime64_s(struct tm* ptm, const __time64_t* pt)
{
    if (ptm == nullptr || pt == nullptr || *pt < 0)
        return EINVAL;
    time_t t = (time_t)*pt;
    if (localtime_r(&t, ptm) == nullptr)
        return EINVAL;
    return 0;
}

__time64_t _mktime64(struct tm* ptm)
{
    if (ptm == nullptr)
        return -1;
    return (__time64_t)mktime(ptm);
}

#endif
