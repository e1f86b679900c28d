#include "CTime.h"

#include "CArchive.h"

#include <cstring>

CString CTimeSpan::Format(LPCTSTR pszFormat) const
{
    CString text;
    for (const wchar_t* p = pszFormat ? pszFormat : L""; *p; ++p)
    {
        if (*p != L'%')
        {
            text += *p;
            continue;
        }
        switch (*++p)
        {
        case L'%': text += L'%'; break;
        case L'D': text.AppendFormat(L"%I64d", GetDays()); break;
        case L'H': text.AppendFormat(L"%02ld", GetHours()); break;
        case L'M': text.AppendFormat(L"%02ld", GetMinutes()); break;
        case L'S': text.AppendFormat(L"%02ld", GetSeconds()); break;
        default: AfxThrowInvalidArgException(); // an unknown code, or a trailing %
        }
    }
    return text;
}

CTime CTime::GetCurrentTime()
{
    return CTime(_time64(nullptr));
}

CTime::CTime(int nYear, int nMonth, int nDay, int nHour, int nMin, int nSec, int nDST)
{
    if (nYear < 1900 || nMonth < 1 || nMonth > 12 || nDay < 1 || nDay > 31 || nHour < 0 || nHour > 23 ||
        nMin < 0 || nMin > 59 || nSec < 0 || nSec > 59)
        AfxThrowInvalidArgException();
    struct tm atm;
    std::memset(&atm, 0, sizeof atm);
    atm.tm_sec = nSec;
    atm.tm_min = nMin;
    atm.tm_hour = nHour;
    atm.tm_mday = nDay;
    atm.tm_mon = nMonth - 1;
    atm.tm_year = nYear - 1900;
    atm.tm_isdst = nDST;
    m_time = _mktime64(&atm);
    if (m_time == -1)
        AfxThrowInvalidArgException();
}

struct tm* CTime::GetGmtTm(struct tm* ptm) const
{
    struct tm t;
    if (ptm == nullptr || _gmtime64_s(&t, &m_time) != 0)
        return nullptr;
    *ptm = t;
    return ptm;
}

struct tm* CTime::GetLocalTm(struct tm* ptm) const
{
    struct tm t;
    if (ptm == nullptr || _localtime64_s(&t, &m_time) != 0)
        return nullptr;
    *ptm = t;
    return ptm;
}

int CTime::LocalPart(int tm::*pField, int nOffset) const
{
    struct tm t;
    return GetLocalTm(&t) ? t.*pField + nOffset : 0;
}

int CTime::GetYear() const { return LocalPart(&tm::tm_year, 1900); }
int CTime::GetMonth() const { return LocalPart(&tm::tm_mon, 1); }
int CTime::GetDay() const { return LocalPart(&tm::tm_mday, 0); }
int CTime::GetHour() const { return LocalPart(&tm::tm_hour, 0); }
int CTime::GetMinute() const { return LocalPart(&tm::tm_min, 0); }
int CTime::GetSecond() const { return LocalPart(&tm::tm_sec, 0); }
int CTime::GetDayOfWeek() const { return LocalPart(&tm::tm_wday, 1); }

CString CTime::FormatTm(LPCTSTR pszFormat, bool bLocal) const
{
    if (pszFormat == nullptr)
        return CString();
    struct tm t;
    if ((bLocal ? GetLocalTm(&t) : GetGmtTm(&t)) == nullptr)
        AfxThrowInvalidArgException();
    std::wstring text;
    if (!AfxFormatTime(pszFormat, &t, &text))
        AfxThrowInvalidArgException();
    // The framework formats into 128 characters and gives nothing when they do not suffice.
    if (text.size() > 127)
        text.clear();
    return CString(text);
}

CString CTime::Format(LPCTSTR pszFormat) const
{
    return FormatTm(pszFormat, true);
}

CString CTime::FormatGmt(LPCTSTR pszFormat) const
{
    return FormatTm(pszFormat, false);
}

namespace
{
// Both are their seconds in 64 bits.
template <class T>
CArchive& LoadSeconds(CArchive& ar, T& r)
{
    LONGLONG t;
    ar >> t;
    r = T(t);
    return ar;
}
} // namespace

CArchive& operator<<(CArchive& ar, CTime time)
{
    return ar << (LONGLONG)time.GetTime();
}

CArchive& operator>>(CArchive& ar, CTime& rtime)
{
    return LoadSeconds(ar, rtime);
}

CArchive& operator<<(CArchive& ar, CTimeSpan span)
{
    return ar << (LONGLONG)span.GetTimeSpan();
}

CArchive& operator>>(CArchive& ar, CTimeSpan& rspan)
{
    return LoadSeconds(ar, rspan);
}
