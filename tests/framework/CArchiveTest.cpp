#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <limits>

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
