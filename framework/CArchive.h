// The framework's archive: a buffered binary stream over a CFile, little-endian and
// unaligned. Texts carry the framework's length prefix (0xFF 0xFFFE for wide text,
// then a 1-, 2-, 4- or 8-byte length) and UTF-16LE characters; narrow texts written
// by older builds (no 0xFFFE marker) are read through the ANSI code page.
//
// Loading never trusts a length: a count that cannot fit in the bytes left in the
// file raises CArchiveException::endOfFile before anything is allocated.
//
// Scalars have the framework's widths on every platform, whatever the compiler's:
//     bool, char, BYTE                1 byte (bool as 0 or 1)
//     short, WORD, WCHAR, wchar_t     2 bytes (wchar_t as one UTF-16 code unit)
//     int, unsigned, LONG, DWORD,
//     long, unsigned long, float      4 bytes
//     LONGLONG, ULONGLONG, long long,
//     __time64_t, double              8 bytes
// Where the compiler's long or wchar_t is wider (Linux), a value that does not fit
// raises CArchiveException::genericException before anything is written.
// std::int64_t, size_t, INT_PTR, UINT_PTR and DWORD_PTR are long types on Linux, so
// they go in 4 checked bytes there, while the pointer-sized ones are 8 bytes on
// 64-bit Windows (as the framework itself writes them there): write counts with
// WriteCount, and 64-bit values as LONGLONG or ULONGLONG.
// Calls that would silently write something else than the framework does are
// deleted and do not compile: signed char, char16_t, char32_t and long double, and
// a pointer to anything but a CObject (which would otherwise become a bool) or a
// wide text.
//
// Objects (operator<< and operator>> on CObject pointers, WriteObject, ReadObject)
// go with the framework's tags, each a 16-bit word:
//     0x0000                          a null pointer
//     0xFFFF, schema (16 bits), name length (16 bits), name (ANSI bytes)
//                                     a class met for the first time, then the object
//     0x8000 | class index            a class met before, then the object
//     object index (1 to 0x7FFE)      an object met before: the same pointer again
//     0x7FFF, then 32 bits            the same tags once an index passes 0x7FFE:
//                                     the object index, or 0x80000000 | class index
// Classes and objects share one count from 1, in the order they first appear; an
// object is counted before its own members are written, so cycles come back as
// they were. A loading archive creates objects through the run-time class registry
// (IMPLEMENT_SERIAL); an unknown or unserialisable class, a class that is not the
// kind asked for or a schema other than the class's (without VERSIONABLE_SCHEMA)
// raises badClass or badSchema, and an index that names nothing, or an object
// nesting deeper than kMaxObjectDepth, raises badIndex. An object whose own
// Serialize fails is deleted before the exception goes on.
#pragma once

#include "CException.h"
#include "CFile.h"
#include "CString.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

// A schema flag of IMPLEMENT_SERIAL: objects written with another schema of the
// class still load, and Serialize asks GetObjectSchema which one it reads.
#define VERSIONABLE_SCHEMA (0x80000000)

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

    // Nesting of objects inside objects beyond which storing and loading refuse to
    // go (a hostile file would otherwise exhaust the stack).
    static const int kMaxObjectDepth = 1024;

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

    CArchive& operator<<(bool b) { return Put((BYTE)(b ? 1 : 0)); }
    CArchive& operator<<(char ch) { return Put(ch); }
    CArchive& operator<<(unsigned char by) { return Put(by); }
    CArchive& operator<<(wchar_t ch) { return Put(CodeUnit(ch)); }
    CArchive& operator<<(short w) { return Put(w); }
    CArchive& operator<<(unsigned short w) { return Put(w); }
    CArchive& operator<<(int i) { return Put(Fit<std::int32_t>(i)); }
    CArchive& operator<<(unsigned u) { return Put(Fit<std::uint32_t>(u)); }
    CArchive& operator<<(long l) { return Put(Fit<std::int32_t>(l)); }
    CArchive& operator<<(unsigned long ul) { return Put(Fit<std::uint32_t>(ul)); }
    CArchive& operator<<(long long ll) { return Put(ll); }
    CArchive& operator<<(unsigned long long ull) { return Put(ull); }
    CArchive& operator<<(float f) { return Put(f); }
    CArchive& operator<<(double d) { return Put(d); }
    CArchive& operator<<(const CString& s);
    CArchive& operator<<(const CStringA& s);
    CArchive& operator<<(signed char) = delete;
    CArchive& operator<<(char16_t) = delete;
    CArchive& operator<<(char32_t) = delete;
    CArchive& operator<<(long double) = delete;
    template <typename T, typename = std::enable_if_t<!std::is_base_of<CObject, std::remove_cv_t<T>>::value &&
                                                      !std::is_same<std::remove_cv_t<T>, wchar_t>::value>>
    CArchive& operator<<(T*) = delete;

    CArchive& operator>>(bool& b)
    {
        BYTE by;
        Get(by);
        b = by != 0;
        return *this;
    }
    CArchive& operator>>(char& ch) { return Get(ch); }
    CArchive& operator>>(unsigned char& by) { return Get(by); }
    CArchive& operator>>(wchar_t& ch) { return GetAs<WORD>(ch); }
    CArchive& operator>>(short& w) { return Get(w); }
    CArchive& operator>>(unsigned short& w) { return Get(w); }
    CArchive& operator>>(int& i) { return GetAs<std::int32_t>(i); }
    CArchive& operator>>(unsigned& u) { return GetAs<std::uint32_t>(u); }
    CArchive& operator>>(long& l) { return GetAs<std::int32_t>(l); }
    CArchive& operator>>(unsigned long& ul) { return GetAs<std::uint32_t>(ul); }
    CArchive& operator>>(long long& ll) { return Get(ll); }
    CArchive& operator>>(unsigned long long& ull) { return Get(ull); }
    CArchive& operator>>(float& f) { return Get(f); }
    CArchive& operator>>(double& d) { return Get(d); }
    CArchive& operator>>(CString& s);
    CArchive& operator>>(CStringA& s);
    CArchive& operator>>(signed char&) = delete;
    CArchive& operator>>(char16_t&) = delete;
    CArchive& operator>>(char32_t&) = delete;
    CArchive& operator>>(long double&) = delete;

    // Writes a text's length prefix (with the wide marker when bUnicode).
    void WriteStringLength(ULONGLONG nLength, bool bUnicode);
    // Reads a length prefix; *pbUnicode tells whether the wide marker was present.
    ULONGLONG ReadStringLength(bool* pbUnicode);

    // A count as the framework's collections write it: 16 bits below 0xFFFF, else
    // 0xFFFF and 32 bits below 0xFFFFFFFF, else 0xFFFFFFFF and 64 bits.
    void WriteCount(DWORD_PTR dwCount);
    DWORD_PTR ReadCount();

    // Text lines: WriteString writes the characters as UTF-16LE, nothing added (the
    // caller writes "\r\n" or "\n"). ReadString reads up to a line feed: a "\r\n" or
    // "\n" ends a line (a lone "\r" is text). The CString form drops the line end and
    // returns FALSE only at the end of the file with nothing read; the buffer form
    // reads at most nMax - 1 characters, keeps the line end as one "\n" and returns
    // null at the end of the file with nothing read.
    void WriteString(LPCTSTR lpsz);
    BOOL ReadString(CString& rString);
    LPTSTR ReadString(LPTSTR lpsz, UINT nMax);

    // Objects with the framework's tags (see above).
    void WriteObject(const CObject* pOb);
    // Reads an object or a null pointer; when pClassRefRequested is given the object
    // must be of that kind (CArchiveException::badClass otherwise).
    CObject* ReadObject(const CRuntimeClass* pClassRefRequested);
    void WriteClass(const CRuntimeClass* pClassRef);
    // Reads a class tag; with pObTag a tag naming an object is stored there (and null
    // returned), without it such a tag raises badIndex.
    CRuntimeClass* ReadClass(const CRuntimeClass* pClassRefRequested = nullptr, UINT* pSchema = nullptr,
                             DWORD* pObTag = nullptr);
    // The schema of the object being loaded, as the stream gives it (then (UINT)-1
    // until the next object).
    UINT GetObjectSchema();
    void SetObjectSchema(UINT nSchema) { m_nObjectSchema = nSchema; }

private:
    struct ObjectMaps; // the tables of classes and objects met, in CArchiveObject.cpp
    struct ObjectMapsDeleter
    {
        void operator()(ObjectMaps* p) const;
    };

    // Scalars go straight to or from the buffer when it has room (the common case
    // in the records' long runs of doubles), else through Write and EnsureRead.
    template <typename T>
    CArchive& Put(T v)
    {
        static_assert(sizeof(T) <= 8, "scalar");
        BYTE b[sizeof(T)];
        std::memcpy(b, &v, sizeof(T));
        if (!LittleEndian())
            std::reverse(b, b + sizeof(T));
        if (!(m_nMode & load) && !m_bClosed && m_buffer.size() - m_nBufPos >= sizeof(T))
        {
            std::memcpy(m_buffer.data() + m_nBufPos, b, sizeof(T));
            m_nBufPos += sizeof(T);
        }
        else
            Write(b, sizeof(T));
        return *this;
    }
    template <typename T>
    CArchive& Get(T& v)
    {
        BYTE b[sizeof(T)];
        if ((m_nMode & load) && !m_bClosed && m_nBufEnd - m_nBufPos >= sizeof(T))
        {
            std::memcpy(b, m_buffer.data() + m_nBufPos, sizeof(T));
            m_nBufPos += sizeof(T);
        }
        else
            EnsureRead(b, sizeof(T));
        if (!LittleEndian())
            std::reverse(b, b + sizeof(T));
        std::memcpy(&v, b, sizeof(T));
        return *this;
    }
    // Reads the framework's Stored type into a wider or equal V.
    template <typename Stored, typename V>
    CArchive& GetAs(V& v)
    {
        Stored s;
        Get(s);
        v = (V)s;
        return *this;
    }
    // The value in the framework's 32 bits, or the archive exception when it does not fit.
    template <typename Stored, typename V>
    Stored Fit(V v) const
    {
        if constexpr (sizeof(V) > sizeof(Stored))
            if (v != (V)(Stored)v)
                Throw(CArchiveException::genericException);
        return (Stored)v;
    }
    // A UTF-16 code unit; a character beyond the basic plane is not one.
    WORD CodeUnit(wchar_t ch) const
    {
        if constexpr (sizeof(wchar_t) > 2)
            if ((std::make_unsigned_t<wchar_t>)ch > 0xFFFF)
                Throw(CArchiveException::genericException);
        return (WORD)ch;
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
    void WriteUnits(const std::u16string& u);
    // Makes nCount bytes ready in the load buffer without consuming them; false when
    // the file ends first.
    bool Buffered(std::size_t nCount);
    char16_t BufferedUnit(std::size_t nOffset) const;
    // Reads a line's UTF-16 units into line, at most nRoom of them; the line end is
    // consumed and, with bKeepEnd, stored as one '\n'. False when nothing was read.
    bool ReadLineUnits(std::u16string& line, std::size_t nRoom, bool bKeepEnd);
    ObjectMaps& Maps();
    // A class or object met before: its index in 16 bits below 0x7FFF, else in the
    // big form; dwClassBit is 0x80000000 for a class.
    void WriteIndex(DWORD nIndex, DWORD dwClassBit);
    [[noreturn]] void Throw(int cause) const;

    CFile* m_pFile;
    UINT m_nMode;
    std::vector<BYTE> m_buffer;
    std::size_t m_nBufPos = 0; // next byte to read or write in the buffer
    std::size_t m_nBufEnd = 0; // end of the valid bytes when loading
    bool m_bClosed = false;
    UINT m_nObjectSchema = (UINT)-1;
    std::unique_ptr<ObjectMaps, ObjectMapsDeleter> m_pMaps; // made at the first object
};

// The framework's global forms for texts and objects.
inline CArchive& operator<<(CArchive& ar, LPCTSTR psz) { return ar << CString(psz); }
CArchive& operator<<(CArchive& ar, const CObject* pOb);
CArchive& operator>>(CArchive& ar, CObject*& pOb);
CArchive& operator>>(CArchive& ar, const CObject*& pOb);
