#include "CArchive.h"

#include "CodePage.h"

#include <algorithm>

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

CArchive& CArchive::operator<<(const CString& s)
{
    std::u16string u = AfxWideToUtf16(s.Std());
    WriteStringLength(u.size(), true);
    if (LittleEndian())
        Write(u.data(), (UINT)(u.size() * 2));
    else
        for (char16_t c : u)
            *this << (WORD)c;
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
