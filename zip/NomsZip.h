// Member names of zip archives: how they are written (UTF-8, '/' between folders),
// how names from other tools are read, and which names may be unpacked.
#pragma once

#include "framework/Framework.h"

#include <string>

// The bytes of a member name: UTF-8, folders separated by '/' (a caller's
// backslashes become slashes).
std::string EncodeNomZip(const CString& strNom);

// A member name as stored in the archive, to wide text. Names flagged UTF-8 (the
// language-encoding flag) are UTF-8. Unflagged names that are valid UTF-8 are
// taken as UTF-8 too (Linux tools wrote them so); otherwise they are in the code
// page of the system that made the archive: DOS and Windows tools (host 0, 6, 10,
// 11, 14) wrote the OEM code page, 850 in Western Europe; others the ANSI one.
CString DecodeNomZip(const std::string& brut, bool bDrapeauUtf8, int nSystemeOrigine);

// Code page 850 (the OEM code page of Western European Windows) to wide text.
std::wstring Cp850VersWide(const std::string& s);

// TRUE when the bytes are well-formed UTF-8 (no overlong forms, no surrogates).
bool EstUtf8Valide(const std::string& s);

// Checks that a member name can be unpacked inside a target folder on any system
// of the suite: relative, no "." or ".." component, no drive letter or colon, no
// empty component, no control character nor one that Windows refuses (< > " | ? *),
// no component ending in a dot or a space, no device name (CON, NUL, COM1 ...),
// components of at most 255 characters. Backslashes count as separators, as they
// do on Windows. On success gives the relative path with '/' separators and no
// trailing '/', and returns TRUE; otherwise gives the reason in strRaison.
BOOL VerifieNomZip(const CString& strNom, CString& strRelatif, CString& strRaison);
