#include "support/TestSupport.h"

#include <gtest/gtest.h>

using namespace prefa_test;

namespace
{
template <typename... Args>
CString F(const wchar_t* format, const Args&... args)
{
    CString s;
    s.Format(format, args...);
    return s;
}

template <typename... Args>
bool Refused(const wchar_t* format, const Args&... args)
{
    CString s(L"before");
    bool refused = Throws<CInvalidArgException>([&] { s.Format(format, args...); });
    return refused && s == L"before";
}
} // namespace

TEST(CStringFormat, IntegerSizesAreTheFrameworks)
{
    EXPECT_EQ(CString(L"-1234567890123|18446744073709551615|1234567890ab|FF"),
              F(L"%I64d|%I64u|%I64x|%I64X", -1234567890123LL, 18446744073709551615ull, 0x1234567890ABLL, 0xFFull));
    // Without a size, and with I32 or l, an integer is 32 bits: a wider value is cut.
    EXPECT_EQ(CString(L"5|4294967295|-1|4294967295|ffffffff|-1|7"),
              F(L"%I32d|%I32u|%d|%u|%x|%ld|%lu", 0x100000005LL, -1, 0x1FFFFFFFFLL, -1, -1, 0xFFFFFFFFLL, 7UL));
    EXPECT_EQ(CString(L"4464|65535|-1|ff|-3|+0042|  0x1f|017"),
              F(L"%hd|%hu|%hhd|%hhx|%Id|%+05lld|%#6x|%#o", 70000, -1, 255, -1, (INT_PTR)-3, 42LL, 31, 15));
    const CString maxPointer = sizeof(void*) == 8 ? L"18446744073709551615" : L"4294967295";
    EXPECT_EQ(maxPointer + L"|-1|1", F(L"%Iu|%jd|%zu", (UINT_PTR)-1, -1LL, (std::size_t)1));
    // Characters, booleans and enumerations are integers too.
    enum Colour { red = 3 };
    EXPECT_EQ(CString(L"65|1|3"), F(L"%d|%d|%d", L'A', true, red));
    // Widths and precisions from the arguments.
    EXPECT_EQ(CString(L"[   42|7   |3.14|ab]"), F(L"[%*d|%-*d|%.*f|%.*s]", 5, 42, 4, 7, 2, 3.14159, 2, L"abc"));
    EXPECT_EQ(CString(L"1.235|  2.3|1.000000e+03|0.5|%"), F(L"%.3lf|%5.1f|%e|%g|%%", 1.23456, 2.26f, 1000.0, 0.5));
}

TEST(CStringFormat, TextsAndCharactersOfEitherWidth)
{
    // %s is the format's own width, %S the other; %hs is narrow and %ls or %ws wide.
    EXPECT_EQ(CString(L"caf\u00E9|\u20AC|wide|W|n|w"),
              F(L"%S|%S|%s|%ls|%hs|%ws", "caf\xE9", CStringA("\x80"), CString(L"wide"), L"W", "n", L"w"));
    EXPECT_EQ(CString(L"(null)|(null)"), F(L"%s|%S", (const wchar_t*)nullptr, (const char*)nullptr));
    EXPECT_EQ(CString(L"  abc|ab   |"), F(L"%5S|%-5.2hs|", "abc", "abc"));
    // %c takes a code of the own width, %C of the other (a narrow byte through the code page).
    EXPECT_EQ(CString(L"A|\u20AC|\u00E9|\u20AC|\u20AC|x"),
              F(L"%C|%C|%c|%c|%hc|%lc", 'A', (char)0x80, L'\u00E9', 0x20AC, 0x80, L'x'));

    // The narrow CStringA reads the same spellings the other way round.
    CStringA a;
    a.Format("%s|%S|%ls|%hs|%C|%c|%I64u", "n", L"\u00E9", CString(L"\u20AC"), CStringA("h"), L'\u00E9', 'c',
             (ULONGLONG)1 << 40);
    EXPECT_EQ(std::string("n|\xE9|\x80|h|\xE9|c|1099511627776"), a.Std());
    a.AppendFormat("+%S", L"\u4E2D"); // not in the code page
    EXPECT_EQ(std::string("n|\xE9|\x80|h|\xE9|c|1099511627776+?"), a.Std());
}

TEST(CStringFormat, PointersPrintAsTheFrameworkDoes)
{
    const std::wstring zeros(2 * sizeof(void*) - 4, L'0');
    EXPECT_EQ(CString(zeros + L"BEEF"), F(L"%p", (void*)0xBEEF));
    EXPECT_EQ(CString(zeros + L"00AB|"), F(L"%p|", (const char*)0xAB));
    EXPECT_EQ(CString(std::wstring(2 * sizeof(void*), L'0') + L"  |"), F(L"%-*p|", (int)(2 * sizeof(void*) + 2), nullptr));
}

TEST(CStringFormat, MalformedFormatsAndMismatchedArgumentsRaiseInvalidArgument)
{
    // Spellings the framework refuses, or that it has not.
    EXPECT_TRUE(Refused(L"%I65d", 1));
    EXPECT_TRUE(Refused(L"%I6d", 1));
    EXPECT_TRUE(Refused(L"%n", 1));
    EXPECT_TRUE(Refused(L"%Z", 1));
    EXPECT_TRUE(Refused(L"%1$d", 1));
    EXPECT_TRUE(Refused(L"100%", 1));
    EXPECT_TRUE(Refused(L"%y", 1));
    EXPECT_TRUE(Refused(L"%Lc", L'x'));
    EXPECT_TRUE(Refused(L"%hp", nullptr));
    EXPECT_TRUE(Refused(L"%I64f", 1.0));
    EXPECT_TRUE(Refused(L"%'d", 1));
    // Arguments that do not match the conversion, or are missing.
    EXPECT_TRUE(Refused(L"%d", L"text"));
    EXPECT_TRUE(Refused(L"%s", 5));
    EXPECT_TRUE(Refused(L"%s", "narrow"));
    EXPECT_TRUE(Refused(L"%S", L"wide"));
    EXPECT_TRUE(Refused(L"%S", CString(L"wide")));
    EXPECT_TRUE(Refused(L"%f", 1));
    EXPECT_TRUE(Refused(L"%d", 1.0));
    EXPECT_TRUE(Refused(L"%c", L"x"));
    EXPECT_TRUE(Refused(L"%p", 5));
    EXPECT_TRUE(Refused(L"%*d", 1.5, 2));
    EXPECT_TRUE(Refused(L"%d %d", 1));
    EXPECT_TRUE(Refused(L"%d"));

    // Extra arguments are ignored, as printf does.
    EXPECT_EQ(CString(L"1"), F(L"%d", 1, L"unused", 2.0));

    // What a caller writes around a format from its resources.
    CString shown;
    TRY
    {
        shown.Format(L"%I64 d", 1LL);
    }
    CATCH (CInvalidArgException, e)
    {
        shown = e->GetMessageText();
    }
    END_CATCH
    EXPECT_EQ(CString(L"Encountered an improper argument."), shown);
}
