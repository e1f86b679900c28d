#include "support/TestSupport.h"

#include <gtest/gtest.h>

TEST(CodePage, Windows1252DecodesEveryByteAsWindowsDoes)
{
    std::string all;
    for (int b = 0; b < 256; ++b)
        all.push_back((char)b);
    std::wstring w = AfxAnsiToWide(all);
    ASSERT_EQ(256u, w.size());
    EXPECT_EQ(L'A', w[0x41]);
    EXPECT_EQ(0x20AC, (int)w[0x80]); // euro sign
    EXPECT_EQ(0x201A, (int)w[0x82]);
    EXPECT_EQ(0x0178, (int)w[0x9F]);
    EXPECT_EQ(0x00E9, (int)w[0xE9]);
    EXPECT_EQ(0x00A0, (int)w[0xA0]);
    // The five undefined bytes decode to the code point of the same value.
    for (int b : {0x81, 0x8D, 0x8F, 0x90, 0x9D})
        EXPECT_EQ(b, (int)w[(std::size_t)b]) << b;
    // And every byte survives the round trip.
    EXPECT_EQ(all, AfxWideToAnsi(w));
}

TEST(CodePage, CharactersOutsideTheCodePageBecomeQuestionMarks)
{
    EXPECT_EQ(std::string("?a?"), AfxWideToAnsi(std::wstring(L"\u0100a\u4E2D")));
    EXPECT_EQ(std::string("\x80"), AfxWideToAnsi(std::wstring(L"\u20AC")));
    EXPECT_EQ(std::string("?"), AfxWideToAnsi(std::wstring(1, (wchar_t)0x1F600)));
}

TEST(CodePage, Utf8AndUtf16RoundTrips)
{
    std::wstring text = L"b\u00E9ton \u20AC ";
    text.push_back((wchar_t)0x1F525);
    EXPECT_EQ(text, AfxUtf8ToWide(AfxWideToUtf8(text)));
    std::u16string u = AfxWideToUtf16(text);
    EXPECT_EQ(text.size() + (sizeof(wchar_t) == 4 ? 1u : 0u), u.size());
    EXPECT_EQ(text, AfxUtf16ToWide(u.data(), u.size()));
    EXPECT_EQ(std::string("\xE2\x82\xAC"), AfxWideToUtf8(L"\u20AC"));
    // Malformed UTF-8 gives replacement characters, never a read past the end.
    EXPECT_EQ(std::wstring(L"a\uFFFD"), AfxUtf8ToWide(std::string("a\xE2\x82")));
}

// Each bound of well-formed UTF-8, on both sides: the shortest form only (C2, E0 A0,
// F0 90), no surrogate (ED 9F / ED A0), nothing beyond U+10FFFF (F4 8F / F4 90, F5).
// Each maximal part of a bad sequence is one U+FFFD and the next byte is read afresh.
TEST(CodePage, Utf8RejectsOverlongFormsSurrogatesAndValuesBeyondUnicode)
{
    auto lu = [](const char* octets) { return AfxWideToUtf16(AfxUtf8ToWide(std::string(octets))); };
    const char16_t R = 0xFFFD;
    EXPECT_EQ((std::u16string{R, R}), lu("\xC0\x80"));        // overlong NUL
    EXPECT_EQ((std::u16string{R, R}), lu("\xC1\xBF"));        // overlong U+007F
    EXPECT_EQ((std::u16string{0x80}), lu("\xC2\x80"));
    EXPECT_EQ((std::u16string{R, R, R}), lu("\xE0\x80\x80"));  // overlong NUL
    EXPECT_EQ((std::u16string{R, R, R}), lu("\xE0\x9F\xBF"));  // overlong U+07FF
    EXPECT_EQ((std::u16string{0x800}), lu("\xE0\xA0\x80"));
    EXPECT_EQ((std::u16string{0xD7FF}), lu("\xED\x9F\xBF"));
    EXPECT_EQ((std::u16string{R, R, R}), lu("\xED\xA0\x80"));  // U+D800
    EXPECT_EQ((std::u16string{R, R, R}), lu("\xED\xBF\xBF"));  // U+DFFF
    EXPECT_EQ((std::u16string{0xE000}), lu("\xEE\x80\x80"));
    EXPECT_EQ((std::u16string{R, R, R, R}), lu("\xF0\x8F\xBF\xBF")); // overlong U+FFFF
    EXPECT_EQ((std::u16string{0xD800, 0xDC00}), lu("\xF0\x90\x80\x80"));
    EXPECT_EQ((std::u16string{0xDBFF, 0xDFFF}), lu("\xF4\x8F\xBF\xBF"));
    EXPECT_EQ((std::u16string{R, R, R, R}), lu("\xF4\x90\x80\x80")); // U+110000
    EXPECT_EQ((std::u16string{R, R, R, R}), lu("\xF5\x80\x80\x80"));
    // A sequence cut by a good character: one replacement for its start, then the character.
    EXPECT_EQ((std::u16string{R, u'a', R, u'b'}), lu("\xE2\x82" "a\xF0\x9F\x94" "b"));
    EXPECT_EQ((std::u16string{R, R, u'/'}), lu("\xC0\xAF/")); // an overlong '/' is no '/'
}
