// Conversions between the library's wide texts and their encodings in files:
// the system's ANSI code page (Windows-1252 outside Windows) for narrow fields,
// UTF-16LE for archive texts, UTF-8 for POSIX path names and text files.
#pragma once

#include <string>

// Narrow text in the ANSI code page to wide text. Each byte gives one character;
// the five bytes that Windows-1252 leaves undefined decode to the code point of the
// same value, as Windows does.
std::wstring AfxAnsiToWide(const char* psz, std::size_t nLength);
std::wstring AfxAnsiToWide(const std::string& s);

// Wide text to the ANSI code page; a character the code page lacks becomes '?'.
std::string AfxWideToAnsi(const wchar_t* psz, std::size_t nLength);
std::string AfxWideToAnsi(const std::wstring& s);

// UTF-16 code units (surrogate pairs for characters beyond the basic plane).
std::u16string AfxWideToUtf16(const std::wstring& s);
std::wstring AfxUtf16ToWide(const char16_t* p, std::size_t nUnits);

// UTF-8, for path names handed to POSIX and for the environment record.
std::string AfxWideToUtf8(const std::wstring& s);
std::wstring AfxUtf8ToWide(const std::string& s);
