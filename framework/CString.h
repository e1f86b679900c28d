// CString (wide text) and CStringA (narrow text in the ANSI code page), with the
// framework's operations. Texts of the other width convert through the ANSI code
// page (a character it lacks becomes '?') when constructed, assigned or compared.
// Format follows printf rules through {fmt}'s printf API with the framework's
// spellings (%I64d, %S, %C, %hs, %ls ...): in a CString format, %s takes a wide text
// (a CString or a const wchar_t*) and %S a narrow one. A malformed format raises the
// invalid-argument exception (CInvalidArgException*): see CStringFormat.h.
#pragma once

#include "CodePage.h"
#include "Types.h"

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <cwctype>
#include <string>

[[noreturn]] void AfxThrowInvalidArgException();
// The application's string table (see MessageBox.h).
std::wstring AfxLoadStringResource(UINT nID, bool* pFound);

template <typename CharT>
class CStringT
{
public:
    typedef CharT XCHAR;
    typedef const CharT* PCXSTR;
    typedef CharT* PXSTR;
    typedef std::basic_string<CharT> StdString;

    CStringT() = default;
    CStringT(const CStringT&) = default;
    CStringT(CStringT&&) noexcept = default;
    CStringT(PCXSTR psz) : m_s(psz ? psz : EmptyLiteral()) {}
    CStringT(PCXSTR psz, int nLength) : m_s(psz ? StdString(psz, (std::size_t)std::max(0, nLength)) : StdString()) {}
    CStringT(CharT ch, int nRepeat = 1) : m_s((std::size_t)std::max(0, nRepeat), ch) {}
    CStringT(const StdString& s) : m_s(s) {}
    CStringT(StdString&& s) : m_s(std::move(s)) {}
    // Texts of the other width are converted through the ANSI code page.
    template <typename OtherT, typename = std::enable_if_t<!std::is_same<OtherT, CharT>::value>>
    CStringT(const OtherT* psz) : m_s(Convert(psz ? StdStringOf<OtherT>(psz) : StdStringOf<OtherT>())) {}
    template <typename OtherT, typename = std::enable_if_t<!std::is_same<OtherT, CharT>::value>>
    CStringT(const CStringT<OtherT>& s) : m_s(Convert(s.Std())) {}

    CStringT& operator=(const CStringT&) = default;
    CStringT& operator=(CStringT&&) noexcept = default;
    CStringT& operator=(PCXSTR psz) { m_s = psz ? psz : EmptyLiteral(); return *this; }
    CStringT& operator=(CharT ch) { m_s.assign(1, ch); return *this; }

    // Access
    int GetLength() const { return (int)m_s.size(); }
    bool IsEmpty() const { return m_s.empty(); }
    void Empty() { m_s.clear(); }
    PCXSTR GetString() const { return m_s.c_str(); }
    operator PCXSTR() const { return m_s.c_str(); }
    const StdString& Std() const { return m_s; }
    StdString& Std() { return m_s; }
    CharT GetAt(int i) const { CheckIndex(i); return m_s[(std::size_t)i]; }
    CharT operator[](int i) const { return GetAt(i); }
    void SetAt(int i, CharT ch) { CheckIndex(i); m_s[(std::size_t)i] = ch; }

    // Concatenation and comparison
    CStringT& operator+=(const CStringT& s) { m_s += s.m_s; return *this; }
    CStringT& operator+=(PCXSTR psz) { if (psz) m_s += psz; return *this; }
    CStringT& operator+=(CharT ch) { m_s += ch; return *this; }
    friend CStringT operator+(const CStringT& a, const CStringT& b) { return CStringT(a.m_s + b.m_s); }
    friend CStringT operator+(const CStringT& a, PCXSTR b) { CStringT r(a); r += b; return r; }
    friend CStringT operator+(PCXSTR a, const CStringT& b) { CStringT r(a); r += b; return r; }
    friend CStringT operator+(const CStringT& a, CharT b) { CStringT r(a); r += b; return r; }
    friend bool operator==(const CStringT& a, const CStringT& b) { return a.m_s == b.m_s; }
    friend bool operator==(const CStringT& a, PCXSTR b) { return a.m_s == (b ? b : EmptyLiteral()); }
    friend bool operator==(PCXSTR a, const CStringT& b) { return b == a; }
    friend bool operator!=(const CStringT& a, const CStringT& b) { return !(a == b); }
    friend bool operator!=(const CStringT& a, PCXSTR b) { return !(a == b); }
    friend bool operator!=(PCXSTR a, const CStringT& b) { return !(b == a); }
    friend bool operator<(const CStringT& a, const CStringT& b) { return a.m_s < b.m_s; }
    int Compare(PCXSTR psz) const { int c = m_s.compare(psz ? psz : EmptyLiteral()); return c < 0 ? -1 : (c > 0 ? 1 : 0); }
    int CompareNoCase(PCXSTR psz) const
    {
        CStringT a(*this), b(psz);
        a.MakeLower();
        b.MakeLower();
        return a.Compare(b);
    }

    // Extraction
    CStringT Left(int n) const { return CStringT(m_s.substr(0, (std::size_t)Clamp(n))); }
    CStringT Right(int n) const { int k = Clamp(n); return CStringT(m_s.substr(m_s.size() - (std::size_t)k)); }
    CStringT Mid(int iFirst) const { return Mid(iFirst, GetLength()); }
    CStringT Mid(int iFirst, int nCount) const
    {
        int f = Clamp(iFirst);
        int n = std::min(std::max(0, nCount), GetLength() - f);
        return CStringT(m_s.substr((std::size_t)f, (std::size_t)n));
    }

    // Searching (-1 when not found)
    int Find(CharT ch, int iStart = 0) const { return Pos(iStart < 0 ? StdString::npos : m_s.find(ch, (std::size_t)iStart)); }
    int Find(PCXSTR psz, int iStart = 0) const { return Pos(iStart < 0 || !psz ? StdString::npos : m_s.find(psz, (std::size_t)iStart)); }
    int ReverseFind(CharT ch) const { return Pos(m_s.rfind(ch)); }
    int FindOneOf(PCXSTR pszChars) const { return Pos(pszChars ? m_s.find_first_of(pszChars) : StdString::npos); }

    // Editing
    int Replace(PCXSTR pszOld, PCXSTR pszNew)
    {
        StdString o(pszOld ? pszOld : EmptyLiteral()), n(pszNew ? pszNew : EmptyLiteral());
        if (o.empty())
            return 0;
        int count = 0;
        for (std::size_t p = m_s.find(o); p != StdString::npos; p = m_s.find(o, p + n.size()), ++count)
            m_s.replace(p, o.size(), n);
        return count;
    }
    int Replace(CharT chOld, CharT chNew)
    {
        int count = 0;
        for (auto& c : m_s)
            if (c == chOld) { c = chNew; ++count; }
        return count;
    }
    int Remove(CharT ch)
    {
        std::size_t before = m_s.size();
        m_s.erase(std::remove(m_s.begin(), m_s.end(), ch), m_s.end());
        return (int)(before - m_s.size());
    }
    int Insert(int i, PCXSTR psz) { m_s.insert((std::size_t)Clamp(i), psz ? psz : EmptyLiteral()); return GetLength(); }
    int Insert(int i, CharT ch) { m_s.insert(m_s.begin() + Clamp(i), ch); return GetLength(); }
    int Delete(int i, int nCount = 1)
    {
        if (i >= 0 && i < GetLength() && nCount > 0)
            m_s.erase((std::size_t)i, (std::size_t)nCount);
        return GetLength();
    }
    CStringT& TrimLeft() { m_s.erase(0, FirstNonSpace()); return *this; }
    CStringT& TrimRight() { m_s.erase(LastNonSpaceEnd()); return *this; }
    CStringT& Trim() { TrimRight(); return TrimLeft(); }
    CStringT& TrimLeft(PCXSTR pszTargets) { std::size_t p = m_s.find_first_not_of(pszTargets); m_s.erase(0, p == StdString::npos ? m_s.size() : p); return *this; }
    CStringT& TrimRight(PCXSTR pszTargets) { std::size_t p = m_s.find_last_not_of(pszTargets); m_s.erase(p == StdString::npos ? 0 : p + 1); return *this; }
    CStringT& Trim(PCXSTR pszTargets) { TrimRight(pszTargets); return TrimLeft(pszTargets); }
    CStringT& MakeUpper() { for (auto& c : m_s) c = (CharT)ToUpper(c); return *this; }
    CStringT& MakeLower() { for (auto& c : m_s) c = (CharT)ToLower(c); return *this; }
    CStringT& MakeReverse() { std::reverse(m_s.begin(), m_s.end()); return *this; }

    // Raw buffer access, as callers of system functions use it.
    PXSTR GetBuffer(int nMinBufferLength = 0)
    {
        if (nMinBufferLength > GetLength())
            m_s.resize((std::size_t)nMinBufferLength);
        return &m_s[0];
    }
    PXSTR GetBufferSetLength(int nLength) { m_s.resize((std::size_t)std::max(0, nLength)); return &m_s[0]; }
    void ReleaseBuffer(int nNewLength = -1)
    {
        if (nNewLength < 0)
            nNewLength = (int)Traits::length(m_s.c_str());
        m_s.resize((std::size_t)std::min(nNewLength, GetLength()));
    }

    // printf-style formatting with the framework's spellings (CStringFormat.h); a
    // malformed format, or an argument that does not match it, raises the
    // invalid-argument exception and leaves the text as it was.
    template <typename... Args>
    void Format(PCXSTR pszFormat, const Args&... args);
    template <typename... Args>
    void AppendFormat(PCXSTR pszFormat, const Args&... args);
    // The application's string resource; FALSE (and an empty text) when not registered.
    BOOL LoadString(UINT nID)
    {
        bool found = false;
        m_s = Convert(AfxLoadStringResource(nID, &found));
        return found ? TRUE : FALSE;
    }

private:
    typedef std::char_traits<CharT> Traits;
    StdString m_s;

    static PCXSTR EmptyLiteral()
    {
        static const CharT empty[1] = {0};
        return empty;
    }
    template <typename C>
    static std::basic_string<C> StdStringOf(const C* p = nullptr) { return p ? std::basic_string<C>(p) : std::basic_string<C>(); }
    static StdString Convert(const StdString& s) { return s; }
    template <typename C>
    static StdString Convert(const std::basic_string<C>& s)
    {
        if constexpr (std::is_same<CharT, wchar_t>::value)
            return AfxAnsiToWide(s);
        else
            return AfxWideToAnsi(s);
    }
    void CheckIndex(int i) const
    {
        if (i < 0 || i >= GetLength())
            AfxThrowInvalidArgException();
    }
    int Clamp(int n) const { return std::min(std::max(0, n), GetLength()); }
    static int Pos(std::size_t p) { return p == StdString::npos ? -1 : (int)p; }
    static bool IsSpace(CharT c)
    {
        if constexpr (std::is_same<CharT, wchar_t>::value)
            return std::iswspace((wint_t)c) != 0;
        else
            return std::isspace((unsigned char)c) != 0;
    }
    static int ToUpper(CharT c)
    {
        if constexpr (std::is_same<CharT, wchar_t>::value)
            return (int)std::towupper((wint_t)c);
        else
            return std::toupper((unsigned char)c);
    }
    static int ToLower(CharT c)
    {
        if constexpr (std::is_same<CharT, wchar_t>::value)
            return (int)std::towlower((wint_t)c);
        else
            return std::tolower((unsigned char)c);
    }
    std::size_t FirstNonSpace() const
    {
        std::size_t i = 0;
        while (i < m_s.size() && IsSpace(m_s[i]))
            ++i;
        return i;
    }
    std::size_t LastNonSpaceEnd() const
    {
        std::size_t i = m_s.size();
        while (i > 0 && IsSpace(m_s[i - 1]))
            --i;
        return i;
    }
};

typedef CStringT<wchar_t> CString;
typedef CStringT<char> CStringA;
typedef CStringT<wchar_t> CStringW;

#include "CStringFormat.h"
