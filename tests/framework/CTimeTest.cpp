#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <ctime>

using namespace prefa_test;

namespace
{
// Central European time (UTC+1, summer time from the last Sunday of March to the
// last Sunday of October) while it lives, so that local and universal time differ
// wherever the suite runs. A POSIX zone rule: no zone database needed. The Windows
// run-time reads only "CET-1CEST" and its own summer rule: the dates below are far from
// the changes of either.
class CentralEuropeanTime
{
public:
    CentralEuropeanTime() : m_old(AfxGetEnvironmentVariable(L"TZ"))
    {
        AfxSetEnvironmentVariable(L"TZ", L"CET-1CEST,M3.5.0,M10.5.0/3");
        tzset();
    }
    ~CentralEuropeanTime()
    {
        AfxSetEnvironmentVariable(L"TZ", m_old); // empty: removed
        tzset();
    }

private:
    CString m_old;
};
} // namespace

TEST(CTime, PartsAreLocalTimeAndSecondsAreUniversal)
{
    CentralEuropeanTime zone;
    // 2024-01-15 10:20:30 in winter is 09:20:30 UTC; 2024-07-01 12:00 in summer is 10:00 UTC.
    CTime winter(2024, 1, 15, 10, 20, 30);
    EXPECT_EQ(1705310430LL, winter.GetTime());
    EXPECT_EQ(2024, winter.GetYear());
    EXPECT_EQ(1, winter.GetMonth());
    EXPECT_EQ(15, winter.GetDay());
    EXPECT_EQ(10, winter.GetHour());
    EXPECT_EQ(20, winter.GetMinute());
    EXPECT_EQ(30, winter.GetSecond());
    EXPECT_EQ(2, winter.GetDayOfWeek()); // a Monday; Sunday is 1
    CTime summer(2024, 7, 1, 12, 0, 0);
    EXPECT_EQ(1719828000LL, summer.GetTime());
    EXPECT_EQ(CString(L"2024-07-01 12:00:00"), summer.Format(L"%Y-%m-%d %H:%M:%S"));
    EXPECT_EQ(CString(L"2024-07-01 10:00:00"), summer.FormatGmt(L"%Y-%m-%d %H:%M:%S"));
    EXPECT_EQ(CString(L"01:00"), CTime((__time64_t)0).Format(L"%H:%M"));
    struct tm gmt;
    ASSERT_EQ(&gmt, summer.GetGmtTm(&gmt));
    EXPECT_EQ(10, gmt.tm_hour);

    // A day past the month's end rolls over (2024 is a leap year).
    EXPECT_EQ(CTime(2024, 3, 2, 0, 0, 0), CTime(2024, 2, 31, 0, 0, 0));
    // Parts out of range, and dates outside 1970 to 3000, are refused.
    const int bad[][6] = {{1899, 1, 1, 0, 0, 0}, {2024, 0, 1, 0, 0, 0}, {2024, 13, 1, 0, 0, 0},
                          {2024, 1, 0, 0, 0, 0}, {2024, 1, 32, 0, 0, 0}, {2024, 1, 1, 24, 0, 0},
                          {2024, 1, 1, 0, 60, 0},  {2024, 1, 1, 0, 0, 60},  {1969, 12, 31, 23, 0, 0},
                          {3001, 1, 2, 0, 0, 0}};
    for (const auto& p : bad)
        EXPECT_TRUE(Throws<CInvalidArgException>([&] { CTime t(p[0], p[1], p[2], p[3], p[4], p[5]); }))
            << p[0] << "-" << p[1] << "-" << p[2] << " " << p[3] << ":" << p[4] << ":" << p[5];
    // 1970-01-01 00:30 local is still 1969 in UTC.
    EXPECT_TRUE(Throws<CInvalidArgException>([] { CTime t(1970, 1, 1, 0, 30, 0); }));

    // A time with no calendar form has no parts and no text.
    CTime before1970((__time64_t)-1);
    EXPECT_EQ(0, before1970.GetYear());
    EXPECT_EQ(0, before1970.GetDayOfWeek());
    EXPECT_EQ(nullptr, before1970.GetLocalTm(&gmt));
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { before1970.Format(L"%Y"); }));
}

TEST(CTime, FormatReadsTheCodesAsWindowsDoes)
{
    // 2024-03-05 08:07:06 UTC, a Tuesday, the 65th day of the year.
    const CTime t((__time64_t)1709626026LL);
    struct Case
    {
        const wchar_t* format;
        const wchar_t* text;
    } cases[] = {
        {L"%c", L"03/05/24 08:07:06"},
        {L"%x|%X", L"03/05/24|08:07:06"},
        {L"%#c", L"Tuesday, March 5, 2024, 08:07:06"},
        {L"%#x", L"Tuesday, March 5, 2024"},
        {L"%#d/%#m %#H:%#M %#y|%j %#j|%e|%#e", L"5/3 8:7 24|065 65| 5|5"},
        {L"%a %A %b %h %B %p %y %Y %C %%", L"Tue Tuesday Mar Mar March AM 24 2024 20 %"},
        {L"%D|%F|%T|%R|%r|%#T", L"03/05/24|2024-03-05|08:07:06|08:07|08:07:06 AM|8:7:6"},
        {L"%u %w %U %W %V %G %g", L"2 2 09 10 10 2024 24"},
        {L"%I%n%t.", L"08\n\t."},
        {L"plain text", L"plain text"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(CString(c.text), t.FormatGmt(c.format)) << AfxWideToUtf8(c.format);
    // ISO weeks at the turn of the year: the days before the first Thursday's week
    // belong to the previous year's last week, a late Monday to next year's first.
    const struct
    {
        int y, m, d;
        const wchar_t* text;
    } iso[] = {{2021, 1, 1, L"53 2020 20 5"}, {2024, 12, 30, L"01 2025 25 1"}, {2026, 12, 31, L"53 2026 26 4"},
               {2027, 1, 3, L"53 2026 26 7"}, {2027, 1, 4, L"01 2027 27 1"}, {2019, 12, 29, L"52 2019 19 7"}};
    for (const auto& j : iso)
        EXPECT_EQ(CString(j.text), CTime(j.y, j.m, j.d, 12, 0, 0).Format(L"%V %G %g %u")) << j.y << "-" << j.m;

    // # keeps the last digit of a zero.
    EXPECT_EQ(CString(L"8:0:0"), CTime((__time64_t)1709625600LL).FormatGmt(L"%#H:%#M:%#S"));

    // Codes Windows does not have (or that only other systems know) are refused.
    for (const wchar_t* f : {L"%Q", L"100%", L"%Ec", L"%Od", L"%-d", L"%_d", L"%^a", L"%k", L"%l", L"%s", L"%P", L"%+"})
        EXPECT_TRUE(Throws<CInvalidArgException>([&] { t.FormatGmt(f); })) << AfxWideToUtf8(f);

    // The framework's buffer holds 127 characters: a longer text comes back empty.
    EXPECT_EQ(CString(std::wstring(123, L'x') + L"2024"), t.FormatGmt(CString(std::wstring(123, L'x') + L"%Y")));
    EXPECT_EQ(CString(), t.FormatGmt(CString(std::wstring(124, L'x') + L"%Y")));
}

TEST(CTime, SpansArithmeticAndComparisons)
{
    const CTimeSpan span(1, 2, 3, 4);
    EXPECT_EQ(93784LL, span.GetTotalSeconds());
    EXPECT_EQ(26, span.GetTotalHours());
    EXPECT_EQ(1563, span.GetTotalMinutes());
    EXPECT_EQ(CString(L"1 days 02:03:04 %"), span.Format(L"%D days %H:%M:%S %%"));
    // A negative span's parts are truncated toward zero.
    const CTimeSpan back(-93784);
    EXPECT_EQ(CString(L"-1|-2|-3|-4"), back.Format(L"%D|%H|%M|%S"));
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { span.Format(L"%X"); }));
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { span.Format(L"50%"); }));

    const CTime t0((__time64_t)1000000000LL);
    CTime t1 = t0 + span;
    EXPECT_EQ(1000093784LL, t1.GetTime());
    EXPECT_EQ(span, t1 - t0);
    EXPECT_EQ(back, t0 - t1);
    EXPECT_EQ(t0, t1 - span);
    t1 -= span;
    EXPECT_EQ(t0, t1);
    t1 += CTimeSpan(1);
    EXPECT_TRUE(t0 < t1 && t1 > t0 && t0 <= t1 && t1 >= t0 && t0 != t1 && !(t0 == t1));
    EXPECT_TRUE(back < span && span - back == CTimeSpan(2 * 93784) && back + span == CTimeSpan());

    const CTime now = CTime::GetCurrentTime();
    EXPECT_NEAR((double)_time64(nullptr), (double)now.GetTime(), 2.0);
}

TEST(CTime, ArchiveFormIsTheSixtyFourBitSeconds)
{
    const CTime t((__time64_t)0x123456789LL);
    const CTimeSpan span(-2);
    auto bytes = Store([&](CArchive& ar) { ar << t << span; });
    EXPECT_EQ(Bytes().i64(0x123456789LL).i64(-2).b, bytes) << Hex(bytes);
    CTime t2;
    CTimeSpan span2;
    Load(bytes, [&](CArchive& ar) { ar >> t2 >> span2; });
    EXPECT_EQ(t, t2);
    EXPECT_EQ(span, span2);
}
