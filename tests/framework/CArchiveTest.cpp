#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <limits>
#include <type_traits>

using namespace prefa_test;

namespace
{
std::vector<BYTE> StoreText(const CString& s)
{
    return Store([&](CArchive& ar) { ar << s; });
}

CString LoadText(const std::vector<BYTE>& bytes)
{
    CString s;
    Load(bytes, [&](CArchive& ar) { ar >> s; });
    return s;
}
} // namespace

TEST(CArchive, ScalarsAreLittleEndianAndUnaligned)
{
    auto bytes = Store([](CArchive& ar) {
        ar << (BYTE)0xAB << (WORD)0x1234 << (DWORD)0x89ABCDEFu << (LONG)-2 << 1.5 << (LONGLONG)-3
           << (ULONGLONG)0x0102030405060708ull << true << 2.0f;
    });
    Bytes expected;
    expected.u8(0xAB).u16(0x1234).u32(0x89ABCDEFu).i32(-2).f64(1.5).i64(-3).u64(0x0102030405060708ull).u8(1);
    float f = 2.0f;
    expected.raw(&f, 4);
    ASSERT_EQ(expected.b, bytes) << Hex(bytes);
    // The byte order really is little-endian, not just consistent.
    EXPECT_EQ(0x34, bytes[1]);
    EXPECT_EQ(0x12, bytes[2]);
    EXPECT_EQ(0x00, bytes[11]); // 1.5 is 0x3FF8000000000000: low byte first
    EXPECT_EQ(0xF8, bytes[17]);
    EXPECT_EQ(0x3F, bytes[18]);

    BYTE b; WORD w; DWORD dw; LONG l; double d; LONGLONG ll; ULONGLONG ull; bool flag; float fl;
    std::size_t left = Load(bytes, [&](CArchive& ar) { ar >> b >> w >> dw >> l >> d >> ll >> ull >> flag >> fl; });
    EXPECT_EQ(0u, left);
    EXPECT_EQ(0xAB, b);
    EXPECT_EQ(0x1234, w);
    EXPECT_EQ(0x89ABCDEFu, dw);
    EXPECT_EQ(-2, l);
    EXPECT_EQ(1.5, d);
    EXPECT_EQ(-3, ll);
    EXPECT_EQ(0x0102030405060708ull, ull);
    EXPECT_TRUE(flag);
    EXPECT_EQ(2.0f, fl);
}

TEST(CArchive, TextLengthClassesAreByteExact)
{
    // Empty and short texts: marker, one length byte, UTF-16LE characters.
    EXPECT_EQ((std::vector<BYTE>{0xFF, 0xFE, 0xFF, 0x00}), StoreText(L""));
    EXPECT_EQ((std::vector<BYTE>{0xFF, 0xFE, 0xFF, 0x02, 'A', 0, 0xE9, 0}), StoreText(L"A\u00E9"));

    struct Case
    {
        std::size_t length;
        std::vector<BYTE> prefix;
    };
    const Case cases[] = {
        {254, {0xFF, 0xFE, 0xFF, 0xFE}},
        {255, {0xFF, 0xFE, 0xFF, 0xFF, 0xFF, 0x00}},
        {0xFFFD, {0xFF, 0xFE, 0xFF, 0xFF, 0xFD, 0xFF}},
        {0xFFFE, {0xFF, 0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFE, 0xFF, 0x00, 0x00}},
        {0x10001, {0xFF, 0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0x01, 0x00, 0x01, 0x00}},
    };
    for (const Case& c : cases)
    {
        std::wstring text(c.length, L'x');
        text[0] = L'\u20AC';
        auto bytes = StoreText(CString(text));
        ASSERT_EQ(c.prefix.size() + 2 * c.length, bytes.size()) << "length " << c.length;
        EXPECT_EQ(c.prefix, std::vector<BYTE>(bytes.begin(), bytes.begin() + (long)c.prefix.size()))
            << "length " << c.length;
        EXPECT_EQ(0xAC, bytes[c.prefix.size()]);
        EXPECT_EQ(0x20, bytes[c.prefix.size() + 1]);
        EXPECT_EQ(CString(text), LoadText(bytes)) << "length " << c.length;
    }
}

TEST(CArchive, CharactersBeyondTheBasicPlaneUseSurrogatePairs)
{
    CString text(L"\U0001F525a"); // one wchar_t on POSIX, already a surrogate pair on Windows
    auto bytes = StoreText(text);
    EXPECT_EQ((std::vector<BYTE>{0xFF, 0xFE, 0xFF, 0x03, 0x3D, 0xD8, 0x25, 0xDD, 'a', 0}), bytes) << Hex(bytes);
    EXPECT_EQ(text, LoadText(bytes));
}

TEST(CArchive, NarrowTextsOfOlderBuildsAreReadThroughTheAnsiCodePage)
{
    // No 0xFFFE marker: one-byte length then Windows-1252 bytes.
    EXPECT_EQ(CString(L"\u20ACt\u00E9"), LoadText({0x03, 0x80, 't', 0xE9}));
    // A long narrow text: 0xFF then a 16-bit length.
    Bytes b;
    b.u8(0xFF).u16(300);
    for (int i = 0; i < 300; ++i)
        b.u8('z');
    EXPECT_EQ(CString(std::wstring(300, L'z')), LoadText(b.b));
    // A narrow CStringA is written without the marker and reads back.
    auto bytes = Store([](CArchive& ar) { ar << CStringA("ab"); });
    EXPECT_EQ((std::vector<BYTE>{0x02, 'a', 'b'}), bytes);
    CStringA back;
    Load(bytes, [&](CArchive& ar) { ar >> back; });
    EXPECT_EQ(CStringA("ab"), back);
}

TEST(CArchive, TruncatedStreamsRaiseEndOfFile)
{
    auto bytes = Store([](CArchive& ar) { ar << 3.25 << CString(L"hello"); });
    for (std::size_t cut = 0; cut < bytes.size(); ++cut)
    {
        std::vector<BYTE> part(bytes.begin(), bytes.begin() + (long)cut);
        int cause = ArchiveCause([&] {
            double d;
            CString s;
            Load(part, [&](CArchive& ar) { ar >> d >> s; });
        });
        EXPECT_EQ(CArchiveException::endOfFile, cause) << "cut at " << cut;
    }
}

TEST(CArchive, OversizedTextLengthIsRefusedBeforeAllocating)
{
    // A wide text that claims 2^31 characters, with ten bytes behind it.
    Bytes b;
    b.u8(0xFF).u16(0xFFFE).u8(0xFF).u16(0xFFFF).u32(0x80000000u).zeros(10);
    CString s(L"unchanged");
    int cause = ArchiveCause([&] { Load(b.b, [&](CArchive& ar) { ar >> s; }); });
    EXPECT_EQ(CArchiveException::endOfFile, cause);
    EXPECT_EQ(CString(L"unchanged"), s);

    // The 64-bit form, and a narrow text one byte too long.
    Bytes c;
    c.u8(0xFF).u16(0xFFFE).u8(0xFF).u16(0xFFFF).u32(0xFFFFFFFFu).u64(0x7FFFFFFFFFFFFFFFull);
    EXPECT_EQ(CArchiveException::endOfFile, ArchiveCause([&] { Load(c.b, [&](CArchive& ar) { ar >> s; }); }));
    EXPECT_EQ(CArchiveException::endOfFile,
              ArchiveCause([&] { Load({0x04, 'a', 'b', 'c'}, [&](CArchive& ar) { ar >> s; }); }));
}

TEST(CArchive, WrongDirectionRaisesTheArchiveException)
{
    CMemFile file;
    CArchive storing(&file, CArchive::store);
    EXPECT_EQ(CArchiveException::writeOnly, ArchiveCause([&] {
                  double d;
                  storing >> d;
              }));
    CMemFile source(std::vector<BYTE>{1, 2, 3, 4});
    CArchive loading(&source, CArchive::load);
    EXPECT_EQ(CArchiveException::readOnly, ArchiveCause([&] { loading << 1.0; }));
}

TEST(CArchive, LargeStreamsCrossTheBufferBoundary)
{
    // More than one 4096-byte buffer, with values straddling the boundaries.
    auto bytes = Store([](CArchive& ar) {
        ar << (BYTE)1;
        for (int i = 0; i < 3000; ++i)
            ar << (double)i * 0.5;
    });
    ASSERT_EQ(1u + 3000u * 8u, bytes.size());
    Load(bytes, [](CArchive& ar) {
        BYTE b;
        ar >> b;
        for (int i = 0; i < 3000; ++i)
        {
            double d;
            ar >> d;
            ASSERT_EQ((double)i * 0.5, d);
        }
        EXPECT_EQ(0u, ar.GetBytesRemaining());
    });
}

TEST(CArchive, ScalarsHaveTheFrameworksWidthsWhateverTheCompilers)
{
    // long, unsigned long and wchar_t are 8, 8 and 4 bytes on Linux; the framework writes
    // 4, 4 and 2. long long is 8 everywhere. size_t is written as the type it is: unsigned
    // long on Linux (4 bytes), unsigned long long on Windows (8), so records never hold one.
    auto bytes = Store([](CArchive& ar) {
        ar << (long)-2 << 5UL << (std::size_t)7 << L'\u00E9' << (long long)-3 << (unsigned long long)9
           << -4 << 6u << (short)-5 << (unsigned short)0xBEEF << 'A' << (unsigned char)0xC8 << false
           << (__time64_t)0x123456789LL << (LONG)-6 << (DWORD)0xFFFFFFFFu;
    });
    Bytes expected;
    expected.i32(-2).u32(5);
    if (std::is_same<std::size_t, unsigned long>::value)
        expected.u32(7);
    else
        expected.u64(7);
    expected.u16(0xE9).i64(-3).u64(9).i32(-4).u32(6).u16(0xFFFB).u16(0xBEEF).u8('A').u8(0xC8)
        .u8(0).i64(0x123456789LL).i32(-6).u32(0xFFFFFFFFu);
    ASSERT_EQ(expected.b, bytes) << Hex(bytes);

    long l; unsigned long ul; std::size_t z; wchar_t wc; long long ll; unsigned long long ull; int i; unsigned u;
    short sh; unsigned short us; char c; unsigned char uc; bool b; __time64_t t; LONG L; DWORD dw;
    Load(bytes, [&](CArchive& ar) { ar >> l >> ul >> z >> wc >> ll >> ull >> i >> u >> sh >> us >> c >> uc >> b >> t >> L >> dw; });
    EXPECT_EQ(-2, l); // sign-extended from 32 bits
    EXPECT_EQ(5u, ul);
    EXPECT_EQ(7u, z);
    EXPECT_EQ(L'\u00E9', wc);
    EXPECT_EQ(-3, ll);
    EXPECT_EQ(9u, ull);
    EXPECT_EQ(-4, i);
    EXPECT_EQ(6u, u);
    EXPECT_EQ(-5, sh);
    EXPECT_EQ(0xBEEF, us);
    EXPECT_EQ('A', c);
    EXPECT_EQ(0xC8, uc);
    EXPECT_FALSE(b);
    EXPECT_EQ(0x123456789LL, t);
    EXPECT_EQ(-6, L);
    EXPECT_EQ(0xFFFFFFFFu, dw);
    // An unsigned 32-bit value reads back unsigned into a wider unsigned long.
    unsigned long big = 0;
    Load(Bytes().u32(0xFFFFFFFEu).b, [&](CArchive& ar) { ar >> big; });
    EXPECT_EQ(0xFFFFFFFEul, big);
}

TEST(CArchive, ValuesBeyondTheFrameworksWidthAreRefusedBeforeWriting)
{
    // The 32-bit limits themselves go through.
    auto edges = Store([](CArchive& ar) {
        ar << (long)INT32_MIN << (long)INT32_MAX << (unsigned long)UINT32_MAX << (wchar_t)0xFFFF;
    });
    EXPECT_EQ(Bytes().i32(INT32_MIN).i32(INT32_MAX).u32(UINT32_MAX).u16(0xFFFF).b, edges) << Hex(edges);

    if (sizeof(long) > 4)
    {
        for (long long v : {(long long)INT32_MIN - 1, (long long)INT32_MAX + 1})
        {
            std::vector<BYTE> bytes;
            int cause = ArchiveCause([&] { bytes = Store([&](CArchive& ar) { ar << (BYTE)1 << (long)v; }); });
            EXPECT_EQ(CArchiveException::genericException, cause) << v;
        }
        EXPECT_EQ(CArchiveException::genericException,
                  ArchiveCause([] { Store([](CArchive& ar) { ar << (unsigned long)UINT32_MAX + 1; }); }));
    }
    if (sizeof(wchar_t) > 2)
    {
        EXPECT_EQ(CArchiveException::genericException,
                  ArchiveCause([] { Store([](CArchive& ar) { ar << (wchar_t)0x10000; }); }));
    }
}

TEST(CArchive, CountsTakeTwoFourOrEightBytes)
{
    struct Case
    {
        DWORD_PTR count;
        std::vector<BYTE> bytes;
    };
    std::vector<Case> cases = {
        {0, Bytes().u16(0).b},
        {0xFFFE, Bytes().u16(0xFFFE).b},
        {0xFFFF, Bytes().u16(0xFFFF).u32(0xFFFF).b},
        {0xFFFFFFFEu, Bytes().u16(0xFFFF).u32(0xFFFFFFFEu).b},
    };
    if (sizeof(DWORD_PTR) > 4)
        cases.push_back({(DWORD_PTR)0xFFFFFFFFu, Bytes().u16(0xFFFF).u32(0xFFFFFFFFu).u64(0xFFFFFFFFu).b});
    for (const Case& c : cases)
    {
        auto bytes = Store([&](CArchive& ar) { ar.WriteCount(c.count); });
        EXPECT_EQ(c.bytes, bytes) << c.count;
        DWORD_PTR back = 0;
        Load(bytes, [&](CArchive& ar) { back = ar.ReadCount(); });
        EXPECT_EQ(c.count, back);
    }
}

TEST(CArchive, TextLinesAreUtf16WithTheirEndsDropped)
{
    auto bytes = Store([](CArchive& ar) {
        ar.WriteString(L"premi\u00E8re\r\n");
        ar.WriteString(L"deux\n\nlone\rcr\n");
        ar.WriteString(CString(AfxUtf8ToWide("\xF0\x9F\x94\xA5last"))); // U+1F525: a pair in UTF-16
    });
    Bytes expected;
    for (char16_t c : std::u16string(u"premi\u00E8re\r\ndeux\n\nlone\rcr\n\xD83D\xDD25last"))
        expected.u16(c);
    ASSERT_EQ(expected.b, bytes) << Hex(bytes);

    std::vector<CString> lines;
    Load(bytes, [&](CArchive& ar) {
        CString line;
        while (ar.ReadString(line))
            lines.push_back(line);
        EXPECT_TRUE(line.IsEmpty());
    });
    EXPECT_EQ((std::vector<CString>{L"premi\u00E8re", L"deux", L"", L"lone\rcr",
                                    CString(AfxUtf8ToWide("\xF0\x9F\x94\xA5last"))}),
              lines);

    // The buffer form keeps the line end as one '\n' and stops at nMax - 1 characters.
    Load(bytes, [&](CArchive& ar) {
        wchar_t buf[8];
        EXPECT_EQ(buf, ar.ReadString(buf, 8));
        EXPECT_EQ(std::wstring(L"premi\u00E8r"), buf);
        ar.ReadString(buf, 8);
        EXPECT_EQ(std::wstring(L"e\n"), buf);
        ar.ReadString(buf, 6);
        EXPECT_EQ(std::wstring(L"deux\n"), buf);
        ar.ReadString(buf, 8);
        EXPECT_EQ(std::wstring(L"\n"), buf);
    });
    // A file that ends inside "\r\n" or after a lone "\r", and an empty file.
    Load(Bytes().u16('a').u16('\r').b, [&](CArchive& ar) {
        CString line;
        EXPECT_TRUE(ar.ReadString(line));
        EXPECT_EQ(CString(L"a\r"), line);
        EXPECT_FALSE(ar.ReadString(line));
        wchar_t buf[4];
        EXPECT_EQ(nullptr, ar.ReadString(buf, 4));
    });
}
