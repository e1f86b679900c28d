#include "support/TestSupport.h"

#include <gtest/gtest.h>

using namespace prefa_test;

TEST(CString, FormatFollowsPrintfWithWideTexts)
{
    CString s;
    s.Format(L"%s\\%s\\%s%2.2d", CString(L"root"), L"study", CString(L"TEMPER."), 3);
    EXPECT_EQ(CString(L"root\\study\\TEMPER.03"), s);
    s.Format(L"%02d/%02d/%2.2s", 1, 2, CString(L"2080").Right(2));
    EXPECT_EQ(CString(L"01/02/80"), s);
    s.Format(L"%d - %s", -2, L"x");
    EXPECT_EQ(CString(L"-2 - x"), s);
    s.Format(L"%.3lf|%5.1f|%-4d|%u", 1.23456, 2.26, 7, 42u);
    EXPECT_EQ(CString(L"1.235|  2.3|7   |42"), s);
    s.Format(L"%2.2d", 123);
    EXPECT_EQ(CString(L"123"), s);
    // A mismatched format is refused with the framework's exception, not undefined behaviour.
    EXPECT_TRUE(Throws<CInvalidArgException>([] {
        CString t;
        t.Format(L"%d", L"text");
    }));
}

TEST(CString, EditingAndSearching)
{
    CString s(L"  a:b*c  ");
    EXPECT_EQ(2, s.Remove(L'*') + s.Remove(L':'));
    s.Trim();
    EXPECT_EQ(CString(L"abc"), s);
    EXPECT_EQ(1, s.Find(L'b'));
    EXPECT_EQ(-1, s.Find(L'z'));
    EXPECT_EQ(CString(L"ab"), s.Left(2));
    EXPECT_EQ(CString(L"bc"), s.Right(2));
    EXPECT_EQ(CString(L"bc"), s.Mid(1));
    EXPECT_EQ(CString(L""), s.Mid(5, 2));
    EXPECT_EQ(CString(L"abc"), s.Left(99));
    CString t(L"LOCK_PLA.12");
    EXPECT_EQ(12, _wtoi(t.Mid(t.Find(L'.') + 1)));
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { (void)s.GetAt(3); }));
    EXPECT_TRUE(Throws<CInvalidArgException>([&] { (void)s.GetAt(-1); }));
}

TEST(CString, ConversionBetweenWideAndNarrowUsesTheCodePage)
{
    CStringA a(L"caf\u00E9 \u20AC \u4E2D");
    EXPECT_EQ(std::string("caf\xE9 \x80 ?"), a.Std());
    CString w(a);
    EXPECT_EQ(CString(L"caf\u00E9 \u20AC ?"), w);
}

TEST(CString, BufferAccessAndResources)
{
    CString s;
    wchar_t* p = s.GetBuffer(10);
    p[0] = L'o';
    p[1] = L'k';
    p[2] = 0;
    s.ReleaseBuffer();
    EXPECT_EQ(CString(L"ok"), s);

    AfxRegisterString(40001, L"Project %s is locked by %s on %s");
    CString r;
    EXPECT_TRUE(r.LoadString(40001));
    EXPECT_EQ(CString(L"Project %s is locked by %s on %s"), r);
    AfxUnregisterString(40001);
    EXPECT_FALSE(r.LoadString(40001));
    EXPECT_TRUE(r.IsEmpty());
}

TEST(CString, EveryOperationAcrossWidthsGoesThroughTheCodePage)
{
    CStringA a;
    a = L"\u00E9";
    a += L"\u20AC";
    a += CString(L"\u4E2D"); // not in the code page
    EXPECT_EQ(std::string("\xE9\x80?"), a.Std());
    CString w = a + "!";
    EXPECT_EQ(CString(L"\u00E9\u20AC?!"), w);
    w = "\x80";
    EXPECT_TRUE(w == "\x80");
    EXPECT_TRUE(CStringA("\xE9") == L"\u00E9");
    EXPECT_TRUE(CStringA("\xE9") != L"e");
    // The five bytes Windows-1252 leaves undefined keep their value both ways.
    CString undefined(CStringA("\x81\x8D\x8F\x90\x9D"));
    EXPECT_EQ(CString(L"\u0081\u008D\u008F\u0090\u009D"), undefined);
    EXPECT_EQ(std::string("\x81\x8D\x8F\x90\x9D"), CStringA(undefined).Std());
}
