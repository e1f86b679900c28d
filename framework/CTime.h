// The framework's time stamp and time span: seconds since 1970-01-01 UTC in 64 bits
// (__time64_t), read in the local time zone. As on Windows, a time before 1970 or
// after the year 3000 has no calendar form: its accessors give 0 and Format raises
// the invalid-argument exception. In an archive both are their 64-bit seconds, 8
// bytes little-endian.
#pragma once

#include "CString.h"
#include "Time64.h"
#include "Types.h"

// The system headers of Windows make GetCurrentTime a macro for GetTickCount.
#ifdef GetCurrentTime
#undef GetCurrentTime
#endif

class CArchive;

class CTimeSpan
{
public:
    CTimeSpan() = default;
    CTimeSpan(__time64_t time) : m_timeSpan(time) {}
    CTimeSpan(LONG lDays, int nHours, int nMins, int nSecs)
        : m_timeSpan(nSecs + 60 * (nMins + 60 * (nHours + 24LL * lDays)))
    {
    }

    // Whole days, hours, minutes and seconds, truncated toward zero; GetHours,
    // GetMinutes and GetSeconds are what remains within the larger unit.
    LONGLONG GetDays() const { return m_timeSpan / (24 * 3600); }
    LONGLONG GetTotalHours() const { return m_timeSpan / 3600; }
    LONG GetHours() const { return (LONG)(GetTotalHours() - GetDays() * 24); }
    LONGLONG GetTotalMinutes() const { return m_timeSpan / 60; }
    LONG GetMinutes() const { return (LONG)(GetTotalMinutes() - GetTotalHours() * 60); }
    LONGLONG GetTotalSeconds() const { return m_timeSpan; }
    LONG GetSeconds() const { return (LONG)(GetTotalSeconds() - GetTotalMinutes() * 60); }
    __time64_t GetTimeSpan() const { return m_timeSpan; }

    CTimeSpan operator+(CTimeSpan span) const { return CTimeSpan(m_timeSpan + span.m_timeSpan); }
    CTimeSpan operator-(CTimeSpan span) const { return CTimeSpan(m_timeSpan - span.m_timeSpan); }
    CTimeSpan& operator+=(CTimeSpan span) { m_timeSpan += span.m_timeSpan; return *this; }
    CTimeSpan& operator-=(CTimeSpan span) { m_timeSpan -= span.m_timeSpan; return *this; }
    bool operator==(CTimeSpan span) const { return m_timeSpan == span.m_timeSpan; }
    bool operator!=(CTimeSpan span) const { return m_timeSpan != span.m_timeSpan; }
    bool operator<(CTimeSpan span) const { return m_timeSpan < span.m_timeSpan; }
    bool operator>(CTimeSpan span) const { return m_timeSpan > span.m_timeSpan; }
    bool operator<=(CTimeSpan span) const { return m_timeSpan <= span.m_timeSpan; }
    bool operator>=(CTimeSpan span) const { return m_timeSpan >= span.m_timeSpan; }

    // %D days, %H hours (two digits), %M minutes, %S seconds, %% a percent sign; any
    // other code raises the invalid-argument exception.
    CString Format(LPCTSTR pszFormat) const;

private:
    __time64_t m_timeSpan = 0;
};

class CTime
{
public:
    static CTime GetCurrentTime();

    CTime() = default;
    CTime(__time64_t time) : m_time(time) {}
    // Local calendar time; nDST < 0 lets the system decide whether summer time
    // applies. Parts out of range (year before 1900, month outside 1 to 12, day
    // outside 1 to 31, hour, minute or second out of range) and dates the system
    // cannot place raise the invalid-argument exception; a day past the month's end
    // rolls over into the next month.
    CTime(int nYear, int nMonth, int nDay, int nHour, int nMin, int nSec, int nDST = -1);

    CTime& operator=(__time64_t time) { m_time = time; return *this; }
    CTime& operator+=(CTimeSpan span) { m_time += span.GetTimeSpan(); return *this; }
    CTime& operator-=(CTimeSpan span) { m_time -= span.GetTimeSpan(); return *this; }
    CTimeSpan operator-(CTime time) const { return CTimeSpan(m_time - time.m_time); }
    CTime operator-(CTimeSpan span) const { return CTime(m_time - span.GetTimeSpan()); }
    CTime operator+(CTimeSpan span) const { return CTime(m_time + span.GetTimeSpan()); }
    bool operator==(CTime time) const { return m_time == time.m_time; }
    bool operator!=(CTime time) const { return m_time != time.m_time; }
    bool operator<(CTime time) const { return m_time < time.m_time; }
    bool operator>(CTime time) const { return m_time > time.m_time; }
    bool operator<=(CTime time) const { return m_time <= time.m_time; }
    bool operator>=(CTime time) const { return m_time >= time.m_time; }

    // The broken-down time in *ptm, or null (and *ptm untouched) when it has none.
    struct tm* GetGmtTm(struct tm* ptm) const;
    struct tm* GetLocalTm(struct tm* ptm) const;
    __time64_t GetTime() const { return m_time; }

    // Local calendar parts (0 when the time has none); GetDayOfWeek counts from 1 for Sunday.
    int GetYear() const;
    int GetMonth() const;
    int GetDay() const;
    int GetHour() const;
    int GetMinute() const;
    int GetSecond() const;
    int GetDayOfWeek() const;

    // strftime codes as AfxFormatTime reads them (Time64.h), in local time or UTC.
    // A code Windows refuses, or a time with no calendar form, raises the
    // invalid-argument exception; a text longer than 127 characters comes back
    // empty, as in the framework.
    CString Format(LPCTSTR pszFormat) const;
    CString FormatGmt(LPCTSTR pszFormat) const;

private:
    int LocalPart(int tm::*pField, int nOffset) const;
    CString FormatTm(LPCTSTR pszFormat, bool bLocal) const;

    __time64_t m_time = 0;
};

CArchive& operator<<(CArchive& ar, CTime time);
CArchive& operator>>(CArchive& ar, CTime& rtime);
CArchive& operator<<(CArchive& ar, CTimeSpan span);
CArchive& operator>>(CArchive& ar, CTimeSpan& rspan);
