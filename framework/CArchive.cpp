#include "CArchive.h"

#include "CodePage.h"

#include <algorithm>
#include <cwchar>
#include <limits>

CArchive::CArchive(CFile* pFile, UINT nMode, int nBufSize, void* lpBuf)
    : m_pFile(pFile), m_nMode(nMode)
{
    (void)lpBuf;
    m_buffer.resize((std::size_t)std::max(nBufSize, 128));
}

CArchive::~CArchive()
{
    if (!m_bClosed && m_pFile && IsStoring() && !(m_nMode & bNoFlushOnDelete))
    {
        try
        {
            Flush();
        }
        catch (CException* e)
        {
            e->Delete();
        }
    }
}

void CArchive::Throw(int cause) const
{
    AfxThrowArchiveException(cause, m_pFile ? (LPCTSTR)m_pFile->GetFilePath() : nullptr);
}

void CArchive::CheckMode(bool bLoading) const
{
    if (m_bClosed || m_pFile == nullptr)
        Throw(CArchiveException::genericException);
    if (bLoading && !IsLoading())
        Throw(CArchiveException::writeOnly);
    if (!bLoading && IsLoading())
        Throw(CArchiveException::readOnly);
}

void CArchive::Close()
{
    if (!m_bClosed && IsStoring())
        Flush();
    m_bClosed = true;
}

void CArchive::Abort()
{
    m_bClosed = true;
}

void CArchive::Flush()
{
    if (m_bClosed || !IsStoring() || m_pFile == nullptr)
        return;
    if (m_nBufPos > 0)
    {
        m_pFile->Write(m_buffer.data(), (UINT)m_nBufPos);
        m_nBufPos = 0;
    }
}

void CArchive::Write(const void* lpBuf, UINT nMax)
{
    CheckMode(false);
    const BYTE* p = static_cast<const BYTE*>(lpBuf);
    while (nMax > 0)
    {
        if (m_nBufPos == m_buffer.size())
            Flush();
        std::size_t n = std::min<std::size_t>(nMax, m_buffer.size() - m_nBufPos);
        std::memcpy(m_buffer.data() + m_nBufPos, p, n);
        m_nBufPos += n;
        p += n;
        nMax -= (UINT)n;
    }
}

void CArchive::FillBuffer()
{
    m_nBufPos = 0;
    m_nBufEnd = m_pFile->Read(m_buffer.data(), (UINT)m_buffer.size());
}

UINT CArchive::Read(void* lpBuf, UINT nMax)
{
    CheckMode(true);
    BYTE* p = static_cast<BYTE*>(lpBuf);
    UINT total = 0;
    while (total < nMax)
    {
        if (m_nBufPos == m_nBufEnd)
        {
            FillBuffer();
            if (m_nBufEnd == 0)
                break;
        }
        std::size_t n = std::min<std::size_t>(nMax - total, m_nBufEnd - m_nBufPos);
        std::memcpy(p + total, m_buffer.data() + m_nBufPos, n);
        m_nBufPos += n;
        total += (UINT)n;
    }
    return total;
}

void CArchive::EnsureRead(void* lpBuf, UINT nCount)
{
    if (Read(lpBuf, nCount) != nCount)
        Throw(CArchiveException::endOfFile);
}

ULONGLONG CArchive::GetBytesRemaining() const
{
    if (!IsLoading() || m_pFile == nullptr)
        return 0;
    ULONGLONG length = m_pFile->GetLength();
    ULONGLONG position = m_pFile->GetPosition();
    ULONGLONG inFile = length > position ? length - position : 0;
    return inFile + (m_nBufEnd - m_nBufPos);
}

void CArchive::CheckAvailable(ULONGLONG nCount, ULONGLONG nItemSize) const
{
    CheckMode(true);
    ULONGLONG remaining = GetBytesRemaining();
    if (nItemSize != 0 && nCount > remaining / nItemSize)
        Throw(CArchiveException::endOfFile);
}

void CArchive::WriteStringLength(ULONGLONG nLength, bool bUnicode)
{
    if (bUnicode)
    {
        *this << (BYTE)0xFF;
        *this << (WORD)0xFFFE;
    }
    if (nLength < 0xFF)
    {
        *this << (BYTE)nLength;
        return;
    }
    *this << (BYTE)0xFF;
    if (nLength < 0xFFFE)
    {
        *this << (WORD)nLength;
        return;
    }
    *this << (WORD)0xFFFF;
    if (nLength < 0xFFFFFFFFull)
    {
        *this << (DWORD)nLength;
        return;
    }
    *this << (DWORD)0xFFFFFFFF;
    *this << (ULONGLONG)nLength;
}

ULONGLONG CArchive::ReadStringLength(bool* pbUnicode)
{
    bool unicode = false;
    BYTE b;
    WORD w;
    *this >> b;
    if (b < 0xFF)
    {
        *pbUnicode = false;
        return b;
    }
    *this >> w;
    if (w == 0xFFFE)
    {
        // The wide marker: the length itself follows, starting again with one byte.
        unicode = true;
        *this >> b;
        if (b < 0xFF)
        {
            *pbUnicode = true;
            return b;
        }
        *this >> w;
    }
    *pbUnicode = unicode;
    if (w < 0xFFFF)
        return w;
    DWORD dw;
    *this >> dw;
    if (dw < 0xFFFFFFFFu)
        return dw;
    ULONGLONG qw;
    *this >> qw;
    return qw;
}

void CArchive::WriteUnits(const std::u16string& u)
{
    if (LittleEndian())
        Write(u.data(), (UINT)(u.size() * 2));
    else
        for (char16_t c : u)
            *this << (WORD)c;
}

CArchive& CArchive::operator<<(const CString& s)
{
    std::u16string u = AfxWideToUtf16(s.Std());
    WriteStringLength(u.size(), true);
    WriteUnits(u);
    return *this;
}

CArchive& CArchive::operator<<(const CStringA& s)
{
    WriteStringLength((ULONGLONG)s.GetLength(), false);
    Write(s.GetString(), (UINT)s.GetLength());
    return *this;
}

namespace
{
// Reads a text's characters after its prefix; nothing is allocated before the
// length has been checked against the bytes left.
std::u16string ReadUnits(CArchive& ar, ULONGLONG nLength)
{
    ar.CheckAvailable(nLength, 2);
    std::u16string u((std::size_t)nLength, u'\0');
    for (auto& c : u)
    {
        WORD w;
        ar >> w;
        c = (char16_t)w;
    }
    return u;
}

std::string ReadBytes(CArchive& ar, ULONGLONG nLength)
{
    ar.CheckAvailable(nLength, 1);
    std::string s((std::size_t)nLength, '\0');
    ar.EnsureRead(&s[0], (UINT)nLength);
    return s;
}
} // namespace

CArchive& CArchive::operator>>(CString& s)
{
    bool unicode;
    ULONGLONG n = ReadStringLength(&unicode);
    if (unicode)
    {
        std::u16string u = ReadUnits(*this, n);
        s = CString(AfxUtf16ToWide(u.data(), u.size()));
    }
    else
        s = CString(AfxAnsiToWide(ReadBytes(*this, n)));
    return *this;
}

CArchive& CArchive::operator>>(CStringA& s)
{
    bool unicode;
    ULONGLONG n = ReadStringLength(&unicode);
    if (unicode)
    {
        std::u16string u = ReadUnits(*this, n);
        s = CStringA(AfxWideToAnsi(AfxUtf16ToWide(u.data(), u.size())));
    }
    else
        s = CStringA(ReadBytes(*this, n));
    return *this;
}

void CArchive::WriteCount(DWORD_PTR dwCount)
{
    if (dwCount < 0xFFFF)
    {
        *this << (WORD)dwCount;
        return;
    }
    *this << (WORD)0xFFFF;
    if (dwCount < 0xFFFFFFFFu)
    {
        *this << (DWORD)dwCount;
        return;
    }
    *this << (DWORD)0xFFFFFFFFu;
    *this << (ULONGLONG)dwCount;
}

DWORD_PTR CArchive::ReadCount()
{
    WORD w;
    *this >> w;
    if (w != 0xFFFF)
        return w;
    DWORD dw;
    *this >> dw;
    if (dw != 0xFFFFFFFFu)
        return dw;
    ULONGLONG qw;
    *this >> qw;
    if (qw > (ULONGLONG)std::numeric_limits<DWORD_PTR>::max())
        Throw(CArchiveException::badIndex);
    return (DWORD_PTR)qw;
}

// ---- text lines ----

bool CArchive::Buffered(std::size_t nCount)
{
    if (m_nBufEnd - m_nBufPos >= nCount)
        return true;
    std::memmove(m_buffer.data(), m_buffer.data() + m_nBufPos, m_nBufEnd - m_nBufPos);
    m_nBufEnd -= m_nBufPos;
    m_nBufPos = 0;
    while (m_nBufEnd < nCount)
    {
        UINT n = m_pFile->Read(m_buffer.data() + m_nBufEnd, (UINT)(m_buffer.size() - m_nBufEnd));
        if (n == 0)
            return false;
        m_nBufEnd += n;
    }
    return true;
}

char16_t CArchive::BufferedUnit(std::size_t nOffset) const
{
    const BYTE* p = m_buffer.data() + m_nBufPos + nOffset;
    return (char16_t)(p[0] | (p[1] << 8));
}

bool CArchive::ReadLineUnits(std::u16string& line, std::size_t nRoom, bool bKeepEnd)
{
    CheckMode(true);
    bool consumed = false;
    while (Buffered(2))
    {
        char16_t c = BufferedUnit(0);
        std::size_t nEnd = c == u'\n' ? 2 : (c == u'\r' && Buffered(4) && BufferedUnit(2) == u'\n') ? 4 : 0;
        if (nEnd)
        {
            if (bKeepEnd)
            {
                if (line.size() >= nRoom)
                    break; // the next call returns the line end alone
                line += u'\n';
            }
            m_nBufPos += nEnd;
            return true;
        }
        // A surrogate pair is not cut by the limit.
        bool pair = c >= 0xD800 && c < 0xDC00;
        if (line.size() + (pair ? 2 : 1) > nRoom)
            break;
        line += c;
        m_nBufPos += 2;
        consumed = true;
        if (pair && Buffered(2))
        {
            line += BufferedUnit(0);
            m_nBufPos += 2;
        }
    }
    return consumed;
}

void CArchive::WriteString(LPCTSTR lpsz)
{
    if (lpsz)
        WriteUnits(AfxWideToUtf16(lpsz));
}

BOOL CArchive::ReadString(CString& rString)
{
    std::u16string line;
    bool any = ReadLineUnits(line, line.max_size(), false);
    rString = CString(AfxUtf16ToWide(line.data(), line.size()));
    return any ? TRUE : FALSE;
}

LPTSTR CArchive::ReadString(LPTSTR lpsz, UINT nMax)
{
    if (lpsz == nullptr || nMax == 0)
        AfxThrowInvalidArgException();
    std::u16string line;
    bool any = ReadLineUnits(line, nMax - 1, true);
    std::wstring w = AfxUtf16ToWide(line.data(), line.size());
    std::wmemcpy(lpsz, w.c_str(), w.size() + 1);
    return any ? lpsz : nullptr;
}
