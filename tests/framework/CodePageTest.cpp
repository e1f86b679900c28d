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
