#include "zip/CheminsZip.h"

#include <chrono>

namespace fs = std::filesystem;

fs::path CheminNatif(const CString& strChemin)
{
    std::wstring s = strChemin.Std();
    if (AfxPathSeparator() == L'/')
        for (wchar_t& c : s)
            if (c == L'\\')
                c = L'/';
    return fs::u8path(AfxWideToUtf8(s));
}

CString CheminTexte(const fs::path& chemin)
{
    return CString(AfxUtf8ToWide(chemin.u8string()));
}

namespace
{
// The file clock's epoch is not fixed before C++20: measure its offset from the
// system clock (to the microsecond, which whole seconds absorb).
std::chrono::system_clock::duration EcartHorloges()
{
    auto f = fs::file_time_type::clock::now();
    auto s = std::chrono::system_clock::now();
    return s.time_since_epoch() -
           std::chrono::duration_cast<std::chrono::system_clock::duration>(f.time_since_epoch());
}
} // namespace

__time64_t DateFichier(const fs::path& chemin, std::error_code& ec)
{
    fs::file_time_type t = fs::last_write_time(chemin, ec);
    if (ec)
        return 0;
    auto depuis1970 = std::chrono::duration_cast<std::chrono::system_clock::duration>(t.time_since_epoch()) +
                      EcartHorloges();
    return (__time64_t)std::chrono::round<std::chrono::seconds>(depuis1970).count();
}

void DefinitDateFichier(const fs::path& chemin, __time64_t nDate, std::error_code& ec)
{
    auto depuis1970 = std::chrono::duration_cast<std::chrono::system_clock::duration>(std::chrono::seconds(nDate));
    auto t = fs::file_time_type(
        std::chrono::duration_cast<fs::file_time_type::duration>(depuis1970 - EcartHorloges()));
    fs::last_write_time(chemin, t, ec);
}
