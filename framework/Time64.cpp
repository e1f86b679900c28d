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

// Weeks in an ISO 8601 year: 53 when it begins on a Thursday, or on a Wednesday in a
// leap year (the year ends on a Thursday then, or the one before on a Wednesday).
int IsoWeeksInYear(int year)
{
    auto p = [](int y) { return (y + y / 4 - y / 100 + y / 400) % 7; };
    return p(year) == 4 || p(year - 1) == 3 ? 53 : 52;
}

// The ISO 8601 week (%V) and its year (%G) of a date.
void IsoWeek(const struct tm* ptm, int* pWeek, int* pYear)
{
    const int year = ptm->tm_year + 1900;
    const int weekday = ptm->tm_wday == 0 ? 7 : ptm->tm_wday; // Monday is 1
    int week = (ptm->tm_yday + 1 - weekday + 10) / 7;
    int isoYear = year;
    if (week < 1)
        week = IsoWeeksInYear(--isoYear);
    else if (week > IsoWeeksInYear(year))
    {
        week = 1;
        ++isoYear;
    }
    *pWeek = week;
    *pYear = isoYear;
}

// The C99 codes that older run-times (Windows' msvcrt) leave out, written here so that
// every system gives the same text; false for the codes the run-time writes itself.
bool OwnCode(wchar_t c, const struct tm* ptm, wchar_t* buffer, std::size_t size, std::size_t* pn)
{
    int week = 0, isoYear = 0;
    if (c == L'V' || c == L'G' || c == L'g')
        IsoWeek(ptm, &week, &isoYear);
    int n;
    switch (c)
    {
    case L'e': n = std::swprintf(buffer, size, L"%2d", ptm->tm_mday); break;
    case L'C': n = std::swprintf(buffer, size, L"%02d", (ptm->tm_year + 1900) / 100); break;
    case L'u': n = std::swprintf(buffer, size, L"%d", ptm->tm_wday == 0 ? 7 : ptm->tm_wday); break;
    case L'V': n = std::swprintf(buffer, size, L"%02d", week); break;
    case L'G': n = std::swprintf(buffer, size, L"%d", isoYear); break;
    case L'g': n = std::swprintf(buffer, size, L"%02d", isoYear % 100); break;
    case L'n': n = std::swprintf(buffer, size, L"\n"); break;
    case L't': n = std::swprintf(buffer, size, L"\t"); break;
    default: return false;
    }
    *pn = n < 0 ? 0 : (std::size_t)n;
    return true;
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
        std::size_t n = 0;
        if (!OwnCode(c, ptm, buffer, 128, &n))
            n = std::wcsftime(buffer, 128, code, ptm);
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
