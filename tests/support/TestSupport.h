// Helpers shared by the test suites: hand-built little-endian byte strings, a scratch
// folder per test, the archive round trip in memory, and capture of message boxes.
#pragma once

#include "framework/Framework.h"

#include <cstdint>
#include <cstring>
#include <ostream>
#include <string>
#include <vector>

// Failure messages show texts as UTF-8 rather than as pointers.
template <typename CharT>
void PrintTo(const CStringT<CharT>& s, std::ostream* os)
{
    if constexpr (std::is_same<CharT, wchar_t>::value)
        *os << '"' << AfxWideToUtf8(s.Std()) << '"';
    else
        *os << '"' << AfxWideToUtf8(AfxAnsiToWide(s.Std())) << '"';
}

namespace prefa_test
{

// Builds expected byte layouts by hand, little-endian, field by field.
class Bytes
{
public:
    Bytes& u8(std::uint8_t v) { b.push_back(v); return *this; }
    Bytes& u16(std::uint16_t v) { return raw(&v, 2); }
    Bytes& u32(std::uint32_t v) { return raw(&v, 4); }
    Bytes& i32(std::int32_t v) { return raw(&v, 4); }
    Bytes& u64(std::uint64_t v) { return raw(&v, 8); }
    Bytes& i64(std::int64_t v) { return raw(&v, 8); }
    Bytes& f64(double v) { return raw(&v, 8); }
    Bytes& zeros(std::size_t n) { b.insert(b.end(), n, 0); return *this; }
    // An archive text as the framework writes it: wide marker, length, UTF-16LE.
    Bytes& text(const std::wstring& s);
    // A narrow field of the ANSI code page, zero padded to width bytes.
    Bytes& ansi(const std::string& s, std::size_t width);
    Bytes& raw(const void* p, std::size_t n)
    {
        const std::uint8_t* q = static_cast<const std::uint8_t*>(p);
        b.insert(b.end(), q, q + n);
        return *this;
    }
    std::size_t size() const { return b.size(); }
    std::vector<BYTE> b;
};

// Hex dump of a byte string, for readable failure messages.
std::string Hex(const std::vector<BYTE>& bytes);

// Stores what f writes into an archive and returns the bytes.
template <typename F>
std::vector<BYTE> Store(F&& f)
{
    CMemFile file;
    {
        CArchive ar(&file, CArchive::store);
        f(ar);
        ar.Close();
    }
    return file.GetData();
}

// Loads from the bytes with f; returns the number of bytes left unread.
template <typename F>
std::size_t Load(const std::vector<BYTE>& bytes, F&& f)
{
    CMemFile file(bytes);
    CArchive ar(&file, CArchive::load);
    f(ar);
    return (std::size_t)ar.GetBytesRemaining();
}

// A fresh folder for one test, removed with everything in it at the end.
class ScratchDir
{
public:
    ScratchDir();
    ~ScratchDir();
    ScratchDir(const ScratchDir&) = delete;
    ScratchDir& operator=(const ScratchDir&) = delete;
    const CString& Path() const { return m_path; }
    // Path of a name inside the folder.
    CString operator/(const CString& name) const;
    std::string Utf8() const;

private:
    CString m_path;
};

// Whole-file helpers for tests.
std::vector<BYTE> ReadAll(const CString& path);
void WriteAll(const CString& path, const std::vector<BYTE>& bytes);
bool Exists(const CString& path);

// Collects the message boxes shown while it lives instead of printing them.
class MessageBoxCapture
{
public:
    struct Box
    {
        CString text;
        UINT type;
    };
    MessageBoxCapture();
    ~MessageBoxCapture();
    std::vector<Box> boxes;

private:
    AfxMessageBoxHandler m_previous;
};

// Runs f and, when it throws a framework exception of type E, deletes it and
// returns true; any other outcome returns false.
template <typename E, typename F>
bool Throws(F&& f)
{
    try
    {
        f();
    }
    catch (E* e)
    {
        e->Delete();
        return true;
    }
    catch (CException* e)
    {
        e->Delete();
        return false;
    }
    return false;
}

// The archive exception's cause (or -1 when none was thrown).
template <typename F>
int ArchiveCause(F&& f)
{
    try
    {
        f();
    }
    catch (CArchiveException* e)
    {
        int c = e->m_cause;
        e->Delete();
        return c;
    }
    return -1;
}

} // namespace prefa_test
