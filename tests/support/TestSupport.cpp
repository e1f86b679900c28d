#include "support/TestSupport.h"

#include <atomic>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>

namespace fs = std::filesystem;

namespace prefa_test
{

Bytes& Bytes::text(const std::wstring& s)
{
    std::u16string u = AfxWideToUtf16(s);
    u8(0xFF).u16(0xFFFE);
    if (u.size() < 0xFF)
        u8((std::uint8_t)u.size());
    else if (u.size() < 0xFFFE)
        u8(0xFF).u16((std::uint16_t)u.size());
    else
        u8(0xFF).u16(0xFFFF).u32((std::uint32_t)u.size());
    for (char16_t c : u)
        u16((std::uint16_t)c);
    return *this;
}

Bytes& Bytes::ansi(const std::string& s, std::size_t width)
{
    std::size_t n = std::min(s.size(), width);
    raw(s.data(), n);
    return zeros(width - n);
}

std::string Hex(const std::vector<BYTE>& bytes)
{
    std::string out;
    char buf[8];
    for (std::size_t i = 0; i < bytes.size(); ++i)
    {
        std::snprintf(buf, sizeof buf, "%02X%s", bytes[i], (i % 16 == 15) ? "\n" : " ");
        out += buf;
    }
    return out;
}

static fs::path ToPath(const CString& p)
{
    return fs::path(p.Std());
}

ScratchDir::ScratchDir()
{
    static std::atomic<unsigned> counter{0};
    std::random_device rd;
    fs::path base = fs::temp_directory_path() /
                    ("prefa_test_" + std::to_string(rd()) + "_" + std::to_string(counter++));
    fs::create_directories(base);
    m_path = CString(base.wstring());
}

ScratchDir::~ScratchDir()
{
    std::error_code ec;
    fs::remove_all(ToPath(m_path), ec);
}

CString ScratchDir::operator/(const CString& name) const
{
    // With the platform's separators, as the library composes paths.
    return CString((ToPath(m_path) / ToPath(name)).make_preferred().wstring());
}

std::string ScratchDir::Utf8() const
{
    return ToPath(m_path).string();
}

std::vector<BYTE> ReadAll(const CString& path)
{
    std::ifstream in(ToPath(path), std::ios::binary);
    return std::vector<BYTE>((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

void WriteAll(const CString& path, const std::vector<BYTE>& bytes)
{
    std::ofstream out(ToPath(path), std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()), (std::streamsize)bytes.size());
}

bool Exists(const CString& path)
{
    std::error_code ec;
    return fs::exists(ToPath(path), ec);
}

MessageBoxCapture::MessageBoxCapture()
{
    m_previous = AfxSetMessageBoxHandler([this](const CString& text, UINT type) {
        boxes.push_back({text, type});
        return IDOK;
    });
}

MessageBoxCapture::~MessageBoxCapture()
{
    AfxSetMessageBoxHandler(m_previous);
}

} // namespace prefa_test
