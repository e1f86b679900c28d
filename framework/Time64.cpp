#include "Time64.h"

#include <cerrno>
#include <ctime>
#include <cwchar>

#ifndef _WIN32

namespace
{
// The Windows run-time's largest time (_MAX__TIME64_T, at the end of the year 3000):
// its 64-bit time functions refuse anything later, and anything before 1970.
const __time64_t kMaxTime64 = 32535244799LL;
} // namespace

__time64_t _time64(__time64_t* pt)
{
    __time64_t t = (__time64_t)std::time(nullptr);
    if (pt)
        *pt = t;
    return t;
}

namespace
{
// The broken-down time through the reentrant conversion f, within Windows' range.
errno_t BrokenDown(struct tm* (*f)(const time_t*, struct tm*), struct tm* ptm, const __time64_t* pt)
{
    if (ptm == nullptr || pt == nullptr || *pt < 0 || *pt > kMaxTime64)
        return EINVAL;
    time_t t = (time_t)*pt;
    return f(&t, ptm) ? 0 : EINVAL;
}
} // namespace

errno_t _localtime64_s(struct tm* ptm, const __time64_t* pt)
{
    return BrokenDown(localtime_r, ptm, pt);
}

errno_t _gmtime64_s(struct tm* ptm, const __time64_t* pt)
{
    return BrokenDown(gmtime_r, ptm, pt);
}

__time64_t _mktime64(struct tm* ptm)
{
    if (ptm == nullptr)
        return -1;
    __time64_t t = (__time64_t)mktime(ptm);
    return t < 0 || t > kMaxTime64 ? -1 : t;
}

#endif

// ---- strftime codes ----

namespace
{
// The C99 codes with one value each, which every run-time writes alike.
bool IsPlainCode(wchar_t c)
{
    return c != 0 && std::wcschr(L"aAbBCdegGHIjmMnpStuUVwWyYzZ%", c) != nullptr;
}

// Codes that stand for others (in the "C" locale), with and without the # flag.
const wchar_t* Expansion(wchar_t c, bool bAlternate)
{
    switch (c)
    {
    case L'c': return bAlternate ? L"%A, %B %#d, %Y, %H:%M:%S" : L"%m/%d/%y %H:%M:%S";
    case L'x': return bAlternate ? L"%A, %B %#d, %Y" : L"%m/%d/%y";
    case L'X': return bAlternate ? L"%#H:%#M:%#S" : L"%H:%M:%S";
    case L'D': return bAlternate ? L"%#m/%#d/%#y" : L"%m/%d/%y";
    case L'F': return bAlternate ? L"%#Y-%#m-%#d" : L"%Y-%m-%d";
    case L'R': return bAlternate ? L"%#H:%#M" : L"%H:%M";
    case L'r': return bAlternate ? L"%#I:%#M:%#S %p" : L"%I:%M:%S %p";
    case L'T': return bAlternate ? L"%#H:%#M:%#S" : L"%H:%M:%S";
    case L'h': return L"%b";
    default: return nullptr;
    }
}

bool Append(const wchar_t* p, const struct tm* ptm, std::wstring* pText)
{
    while (*p)
    {
        if (*p != L'%')
        {
            *pText += *p++;
            continue;
        }
        ++p;
        const bool bAlternate = *p == L'#';
        if (bAlternate)
            ++p;
        const wchar_t c = *p;
        if (c == 0)
            return false;
        ++p;
        if (const wchar_t* expansion = Expansion(c, bAlternate))
        {
            if (!Append(expansion, ptm, pText))
                return false;
            continue;
        }
        if (!IsPlainCode(c))
            return false;
        // One code at a time through the run-time, so that no other code reaches it.
        const wchar_t code[3] = {L'%', c, 0};
        wchar_t buffer[128];
        std::size_t n = std::wcsftime(buffer, 128, code, ptm);
        // # drops a number's leading zeros (and %e's space), keeping one digit.
        std::size_t first = 0;
        if (bAlternate && std::wcschr(L"CdegGHIjmMSUVWyY", c))
            while (first + 1 < n && (buffer[first] == L'0' || buffer[first] == L' '))
                ++first;
        pText->append(buffer + first, n - first);
    }
    return true;
}
} // namespace

bool AfxFormatTime(const wchar_t* pszFormat, const struct tm* ptm, std::wstring* pText)
{
    pText->clear();
    if (pszFormat == nullptr || ptm == nullptr)
        return false;
    if (Append(pszFormat, ptm, pText))
        return true;
    pText->clear();
    return false;
}
