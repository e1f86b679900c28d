#include "CodePage.h"

#include <cstdint>

#ifdef _WIN32

#include "CException.h"

#include <climits>
#include <windows.h>

namespace
{
int Count(std::size_t nLength)
{
    // The system's conversions take int counts.
    if (nLength > (std::size_t)INT_MAX)
        AfxThrowInvalidArgException();
    return (int)nLength;
}
} // namespace

std::wstring AfxAnsiToWide(const char* psz, std::size_t nLength)
{
    int n = Count(nLength);
    if (n == 0)
        return std::wstring();
    int nWide = ::MultiByteToWideChar(CP_ACP, 0, psz, n, nullptr, 0);
    std::wstring out((std::size_t)nWide, L'\0');
    ::MultiByteToWideChar(CP_ACP, 0, psz, n, &out[0], nWide);
    return out;
}

std::string AfxWideToAnsi(const wchar_t* psz, std::size_t nLength)
{
    int n = Count(nLength);
    if (n == 0)
        return std::string();
    // A character beyond the basic plane is one character, one '?', as on POSIX where it
    // is one wchar_t; the system would give one '?' per surrogate. No ANSI code page but
    // UTF-8 has such characters: the pair becomes U+FFFF, which none has either.
    std::wstring text(psz, (std::size_t)n);
    if (::GetACP() != CP_UTF8)
    {
        std::size_t k = 0;
        for (std::size_t i = 0; i < text.size(); ++i, ++k)
        {
            bool pair = text[i] >= 0xD800 && text[i] <= 0xDBFF && i + 1 < text.size() && text[i + 1] >= 0xDC00 &&
                        text[i + 1] <= 0xDFFF;
            text[k] = pair ? L'\xFFFF' : text[i];
            i += pair ? 1 : 0;
        }
        text.resize(k);
        n = (int)k;
    }
    // No best-fit mapping ('\u0100' is not 'A'): a character the code page lacks becomes
    // its default character, '?', as on every platform of the library.
    int nAnsi = ::WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, text.data(), n, nullptr, 0, nullptr, nullptr);
    std::string out((std::size_t)nAnsi, '\0');
    ::WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, text.data(), n, &out[0], nAnsi, nullptr, nullptr);
    return out;
}

#else // Windows-1252 elsewhere

namespace
{
// Windows-1252 bytes 0x80 to 0x9F. Zero marks the five bytes the code page leaves
// undefined; Windows decodes them to the code point of the same value.
const char16_t kHigh1252[32] = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
    0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178,
};

wchar_t DecodeByte(unsigned char b)
{
    if (b >= 0x80 && b <= 0x9F && kHigh1252[b - 0x80] != 0)
        return (wchar_t)kHigh1252[b - 0x80];
    return (wchar_t)b;
}

char EncodeChar(wchar_t c)
{
    std::uint32_t u = (std::uint32_t)c;
    if (u < 0x80 || (u >= 0xA0 && u <= 0xFF))
        return (char)u;
    for (int i = 0; i < 32; ++i)
    {
        char16_t m = kHigh1252[i];
        if ((m != 0 && m == u) || (m == 0 && u == 0x80u + (std::uint32_t)i))
            return (char)(0x80 + i);
    }
    return '?';
}
} // namespace

std::wstring AfxAnsiToWide(const char* psz, std::size_t nLength)
{
    std::wstring out;
    out.reserve(nLength);
    for (std::size_t i = 0; i < nLength; ++i)
        out.push_back(DecodeByte((unsigned char)psz[i]));
    return out;
}


std::string AfxWideToAnsi(const wchar_t* psz, std::size_t nLength)
{
    std::string out;
    out.reserve(nLength);
    for (std::size_t i = 0; i < nLength; ++i)
    {
        std::uint32_t u = (std::uint32_t)psz[i];
        // A surrogate pair (from a 16-bit wchar_t) is one character: one '?'.
        if (sizeof(wchar_t) == 2 && u >= 0xD800 && u <= 0xDBFF && i + 1 < nLength &&
            (std::uint32_t)psz[i + 1] >= 0xDC00 && (std::uint32_t)psz[i + 1] <= 0xDFFF)
            ++i;
        out.push_back(EncodeChar(psz[i]));
    }
    return out;
}

#endif

std::wstring AfxAnsiToWide(const std::string& s)
{
    return AfxAnsiToWide(s.data(), s.size());
}

std::string AfxWideToAnsi(const std::wstring& s)
{
    return AfxWideToAnsi(s.data(), s.size());
}

std::u16string AfxWideToUtf16(const std::wstring& s)
{
    if (sizeof(wchar_t) == 2)
        return std::u16string(s.begin(), s.end());
    std::u16string out;
    out.reserve(s.size());
    for (wchar_t c : s)
    {
        std::uint32_t u = (std::uint32_t)c;
        if (u >= 0x10000 && u <= 0x10FFFF)
        {
            u -= 0x10000;
            out.push_back((char16_t)(0xD800 + (u >> 10)));
            out.push_back((char16_t)(0xDC00 + (u & 0x3FF)));
        }
        else if (u > 0x10FFFF)
            out.push_back(u'\xFFFD');
        else
            out.push_back((char16_t)u);
    }
    return out;
}

std::wstring AfxUtf16ToWide(const char16_t* p, std::size_t nUnits)
{
    if (sizeof(wchar_t) == 2)
        return std::wstring(p, p + nUnits);
    std::wstring out;
    out.reserve(nUnits);
    for (std::size_t i = 0; i < nUnits; ++i)
    {
        std::uint32_t u = p[i];
        if (u >= 0xD800 && u <= 0xDBFF && i + 1 < nUnits && p[i + 1] >= 0xDC00 && p[i + 1] <= 0xDFFF)
        {
            u = 0x10000 + ((u - 0xD800) << 10) + (std::uint32_t)(p[i + 1] - 0xDC00);
            ++i;
        }
        // A lone surrogate is kept as it is, so that a text read and written again
        // gives back the same bytes.
        out.push_back((wchar_t)u);
    }
    return out;
}

std::string AfxWideToUtf8(const std::wstring& s)
{
    std::string out;
    out.reserve(s.size());
    std::u16string u16 = AfxWideToUtf16(s);
    std::wstring full = AfxUtf16ToWide(u16.data(), u16.size());
    for (wchar_t wc : full)
    {
        std::uint32_t c = (std::uint32_t)wc;
        if (c >= 0xD800 && c <= 0xDFFF)
            c = 0xFFFD;
        if (c < 0x80)
            out.push_back((char)c);
        else if (c < 0x800)
        {
            out.push_back((char)(0xC0 | (c >> 6)));
            out.push_back((char)(0x80 | (c & 0x3F)));
        }
        else if (c < 0x10000)
        {
            out.push_back((char)(0xE0 | (c >> 12)));
            out.push_back((char)(0x80 | ((c >> 6) & 0x3F)));
            out.push_back((char)(0x80 | (c & 0x3F)));
        }
        else
        {
            out.push_back((char)(0xF0 | (c >> 18)));
            out.push_back((char)(0x80 | ((c >> 12) & 0x3F)));
            out.push_back((char)(0x80 | ((c >> 6) & 0x3F)));
            out.push_back((char)(0x80 | (c & 0x3F)));
        }
    }
    return out;
}

std::wstring AfxUtf8ToWide(const std::string& s)
{
    // Only the shortest form of a scalar value is read: overlong forms, surrogates and
    // values beyond U+10FFFF could smuggle a '/' or a NUL past a check of the bytes.
    // Every maximal part of a bad sequence becomes one replacement character, as the
    // Unicode standard recommends, so that a good character after it is never lost.
    std::u16string u16;
    u16.reserve(s.size());
    const std::size_t n = s.size();
    std::size_t i = 0;
    while (i < n)
    {
        const unsigned char b = (unsigned char)s[i];
        std::uint32_t c;
        int extra;
        // The range of the second byte: narrower than 80-BF where the lead byte alone
        // would allow an overlong form, a surrogate or a value beyond U+10FFFF.
        unsigned char bas = 0x80, haut = 0xBF;
        if (b < 0x80) { c = b; extra = 0; }
        else if (b >= 0xC2 && b <= 0xDF) { c = b & 0x1F; extra = 1; }
        else if (b >= 0xE0 && b <= 0xF4)
        {
            extra = b < 0xF0 ? 2 : 3;
            c = b & (extra == 2 ? 0x0F : 0x07);
            bas = b == 0xE0 ? 0xA0 : b == 0xF0 ? 0x90 : 0x80;
            haut = b == 0xED ? 0x9F : b == 0xF4 ? 0x8F : 0xBF;
        }
        else { u16.push_back(u'\xFFFD'); ++i; continue; }
        int k = 1;
        for (; k <= extra; ++k)
        {
            if (i + (std::size_t)k >= n)
                break;
            const unsigned char suite = (unsigned char)s[i + k];
            if (suite < (k == 1 ? bas : 0x80) || suite > (k == 1 ? haut : 0xBF))
                break;
            c = (c << 6) | (suite & 0x3F);
        }
        if (k <= extra)
        {
            // A cut or broken sequence: what was read of it is one replacement.
            u16.push_back(u'\xFFFD');
            i += (std::size_t)k;
            continue;
        }
        i += (std::size_t)extra + 1;
        if (c >= 0x10000)
        {
            c -= 0x10000;
            u16.push_back((char16_t)(0xD800 + (c >> 10)));
            u16.push_back((char16_t)(0xDC00 + (c & 0x3FF)));
        }
        else
            u16.push_back((char16_t)c);
    }
    return AfxUtf16ToWide(u16.data(), u16.size());
}
