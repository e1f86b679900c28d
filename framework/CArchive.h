// The framework's archive: a buffered binary stream over a CFile, little-endian and
// unaligned. Texts carry the framework's length prefix (0xFF 0xFFFE for wide text,
// then a 1-, 2-, 4- or 8-byte length) and UTF-16LE characters; narrow texts written
// by older builds (no 0xFFFE marker) are read through the ANSI code page.
//
// Loading never trusts a length: a count that cannot fit in the bytes left in the
// file raises CArchiveException::endOfFile before anything is allocated.
#pragma once

#include "CException.h"
#include "CFile.h"
#include "CString.h"

#include <algorithm>
#include <cstring>
#include <vector>

class CArchive
{
public:
    enum Mode
    {
        store = 0,
        load = 1,
        bNoFlushOnDelete = 2,
        bNoByteSwap = 4
    };

    CArchive(CFile* pFile, UINT nMode, int nBufSize = 4096, void* lpBuf = nullptr);
    ~CArchive(); // flushes a storing archive that was not closed, swallowing errors
    CArchive(const CArchive&) = delete;
    CArchive& operator=(const CArchive&) = delete;

    BOOL IsLoading() const { return (m_nMode & load) != 0; }
    BOOL IsStoring() const { return (m_nMode & load) == 0; }
    CFile* GetFile() const { return m_pFile; }

    void Close();  // flushes and detaches; the file stays open
    void Abort();  // detaches without flushing
    void Flush();

    UINT Read(void* lpBuf, UINT nMax);       // reads up to nMax bytes, returns the count read
    void Write(const void* lpBuf, UINT nMax);
    // Reads exactly nCount bytes or raises the end-of-file archive exception.
    void EnsureRead(void* lpBuf, UINT nCount);
    // Bytes that a load can still deliver (buffered plus unread in the file).
    ULONGLONG GetBytesRemaining() const;
    // Raises the end-of-file archive exception unless nCount items of nItemSize bytes
    // can still be read: loaders call it before allocating for a count read from a file.
    void CheckAvailable(ULONGLONG nCount, ULONGLONG nItemSize) const;

    CArchive& operator<<(BYTE by) { return Put(by); }
    CArchive& operator<<(WORD w) { return Put(w); }
    CArchive& operator<<(LONG l) { return Put(l); }
    CArchive& operator<<(DWORD dw) { return Put(dw); }
    CArchive& operator<<(float f) { return Put(f); }
    CArchive& operator<<(double d) { return Put(d); }
    CArchive& operator<<(LONGLONG ll) { return Put(ll); }
    CArchive& operator<<(ULONGLONG ull) { return Put(ull); }
#ifdef _WIN32
    // LONG is long there, a type of its own; elsewhere it is int itself.
    CArchive& operator<<(int i) { return Put((LONG)i); }
    CArchive& operator<<(unsigned u) { return Put((DWORD)u); }
#endif
    CArchive& operator<<(short w) { return Put(w); }
    CArchive& operator<<(char ch) { return Put(ch); }
    CArchive& operator<<(signed char ch) { return Put(ch); }
    CArchive& operator<<(bool b) { return Put((BYTE)(b ? 1 : 0)); }
    CArchive& operator<<(const CString& s);
    CArchive& operator<<(const CStringA& s);

    CArchive& operator>>(BYTE& by) { return Get(by); }
    CArchive& operator>>(WORD& w) { return Get(w); }
    CArchive& operator>>(LONG& l) { return Get(l); }
    CArchive& operator>>(DWORD& dw) { return Get(dw); }
    CArchive& operator>>(float& f) { return Get(f); }
    CArchive& operator>>(double& d) { return Get(d); }
    CArchive& operator>>(LONGLONG& ll) { return Get(ll); }
    CArchive& operator>>(ULONGLONG& ull) { return Get(ull); }
#ifdef _WIN32
    CArchive& operator>>(int& i)
    {
        LONG l;
        Get(l);
        i = (int)l;
        return *this;
    }
    CArchive& operator>>(unsigned& u)
    {
        DWORD dw;
        Get(dw);
        u = dw;
        return *this;
    }
#endif
    CArchive& operator>>(short& w) { return Get(w); }
    CArchive& operator>>(char& ch) { return Get(ch); }
    CArchive& operator>>(signed char& ch) { return Get(ch); }
    CArchive& operator>>(bool& b)
    {
        BYTE by;
        Get(by);
        b = by != 0;
        return *this;
    }
    CArchive& operator>>(CString& s);
    CArchive& operator>>(CStringA& s);

    // Writes a text's length prefix (with the wide marker when bUnicode).
    void WriteStringLength(ULONGLONG nLength, bool bUnicode);
    // Reads a length prefix; *pbUnicode tells whether the wide marker was present.
    ULONGLONG ReadStringLength(bool* pbUnicode);

private:
    template <typename T>
    CArchive& Put(T v)
    {
        static_assert(sizeof(T) <= 8, "scalar");
        BYTE b[sizeof(T)];
        std::memcpy(b, &v, sizeof(T));
        if (!LittleEndian())
            std::reverse(b, b + sizeof(T));
        Write(b, sizeof(T));
        return *this;
    }
    template <typename T>
    CArchive& Get(T& v)
    {
        BYTE b[sizeof(T)];
        EnsureRead(b, sizeof(T));
        if (!LittleEndian())
            std::reverse(b, b + sizeof(T));
        std::memcpy(&v, b, sizeof(T));
        return *this;
    }
    static bool LittleEndian()
    {
        const WORD probe = 1;
        BYTE first;
        std::memcpy(&first, &probe, 1);
        return first == 1;
    }
    void CheckMode(bool bLoading) const;
    void FillBuffer();
    [[noreturn]] void Throw(int cause) const;

    CFile* m_pFile;
    UINT m_nMode;
    std::vector<BYTE> m_buffer;
    std::size_t m_nBufPos = 0; // next byte to read or write in the buffer
    std::size_t m_nBufEnd = 0; // end of the valid bytes when loading
    bool m_bClosed = false;
};

// The framework's global forms for texts.
inline CArchive& operator<<(CArchive& ar, LPCTSTR psz) { return ar << CString(psz); }
