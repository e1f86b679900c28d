// The library's wide path texts as file-system paths, and file dates as seconds
// since 1970, for the folder walks of packing and unpacking.
#pragma once

#include "framework/Framework.h"

#include <filesystem>

// A path text (a caller's backslashes count as separators where '/' is the
// system's separator, since a Windows-born name never holds one).
std::filesystem::path CheminNatif(const CString& strChemin);
CString CheminTexte(const std::filesystem::path& chemin);

// Last modification of a file, in whole seconds since 1970 (UTC).
__time64_t DateFichier(const std::filesystem::path& chemin, std::error_code& ec);
void DefinitDateFichier(const std::filesystem::path& chemin, __time64_t nDate, std::error_code& ec);
