#include "zip/NomsZip.h"

#include <cwctype>

namespace
{
// Code page 850, bytes 0x80 to 0xFF (the lower half is ASCII).
const char16_t kCp850[128] = {
    0x00C7, 0x00FC, 0x00E9, 0x00E2, 0x00E4, 0x00E0, 0x00E5, 0x00E7, 0x00EA, 0x00EB, 0x00E8, 0x00EF, 0x00EE,
    0x00EC, 0x00C4, 0x00C5, 0x00C9, 0x00E6, 0x00C6, 0x00F4, 0x00F6, 0x00F2, 0x00FB, 0x00F9, 0x00FF, 0x00D6,
    0x00DC, 0x00F8, 0x00A3, 0x00D8, 0x00D7, 0x0192, 0x00E1, 0x00ED, 0x00F3, 0x00FA, 0x00F1, 0x00D1, 0x00AA,
    0x00BA, 0x00BF, 0x00AE, 0x00AC, 0x00BD, 0x00BC, 0x00A1, 0x00AB, 0x00BB, 0x2591, 0x2592, 0x2593, 0x2502,
    0x2524, 0x00C1, 0x00C2, 0x00C0, 0x00A9, 0x2563, 0x2551, 0x2557, 0x255D, 0x00A2, 0x00A5, 0x2510, 0x2514,
    0x2534, 0x252C, 0x251C, 0x2500, 0x253C, 0x00E3, 0x00C3, 0x255A, 0x2554, 0x2569, 0x2566, 0x2560, 0x2550,
    0x256C, 0x00A4, 0x00F0, 0x00D0, 0x00CA, 0x00CB, 0x00C8, 0x0131, 0x00CD, 0x00CE, 0x00CF, 0x2518, 0x250C,
    0x2588, 0x2584, 0x00A6, 0x00CC, 0x2580, 0x00D3, 0x00DF, 0x00D4, 0x00D2, 0x00F5, 0x00D5, 0x00B5, 0x00FE,
    0x00DE, 0x00DA, 0x00DB, 0x00D9, 0x00FD, 0x00DD, 0x00AF, 0x00B4, 0x00AD, 0x00B1, 0x2017, 0x00BE, 0x00B6,
    0x00A7, 0x00F7, 0x00B8, 0x00B0, 0x00A8, 0x00B7, 0x00B9, 0x00B3, 0x00B2, 0x25A0, 0x00A0,
};

bool EstAscii(const std::string& s)
{
    for (unsigned char c : s)
        if (c >= 0x80)
            return false;
    return true;
}

// Systems whose zip tools wrote names in the OEM code page: MS-DOS (FAT), OS/2 HPFS,
// Windows NTFS (10, and 11 as Info-ZIP marked it), VFAT.
bool SystemeOem(int nSysteme)
{
    return nSysteme == 0 || nSysteme == 6 || nSysteme == 10 || nSysteme == 11 || nSysteme == 14;
}

// DOS device names, which Windows opens as devices whatever the extension.
bool NomDePeripherique(const std::wstring& composant)
{
    std::wstring base = composant.substr(0, composant.find(L'.'));
    for (wchar_t& c : base)
        c = (wchar_t)std::towupper(c);
    if (base == L"CON" || base == L"PRN" || base == L"AUX" || base == L"NUL")
        return true;
    return base.size() == 4 && (base.compare(0, 3, L"COM") == 0 || base.compare(0, 3, L"LPT") == 0) &&
           base[3] >= L'1' && base[3] <= L'9';
}
} // namespace

std::string EncodeNomZip(const CString& strNom)
{
    std::wstring nom = strNom.Std();
    for (wchar_t& c : nom)
        if (c == L'\\')
            c = L'/';
    return AfxWideToUtf8(nom);
}

bool EstUtf8Valide(const std::string& s)
{
    const unsigned char* p = (const unsigned char*)s.data();
    const unsigned char* fin = p + s.size();
    while (p < fin)
    {
        unsigned c = *p++;
        if (c < 0x80)
            continue;
        int suite;
        unsigned min;
        if (c >= 0xC2 && c <= 0xDF)
            suite = 1, min = 0x80, c &= 0x1F;
        else if (c >= 0xE0 && c <= 0xEF)
            suite = 2, min = 0x800, c &= 0x0F;
        else if (c >= 0xF0 && c <= 0xF4)
            suite = 3, min = 0x10000, c &= 0x07;
        else
            return false;
        if (fin - p < suite)
            return false;
        for (int k = 0; k < suite; ++k, ++p)
        {
            if ((*p & 0xC0) != 0x80)
                return false;
            c = (c << 6) | (*p & 0x3F);
        }
        if (c < min || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF))
            return false;
    }
    return true;
}

std::wstring Cp850VersWide(const std::string& s)
{
    std::wstring w;
    w.reserve(s.size());
    for (unsigned char c : s)
        w.push_back(c < 0x80 ? (wchar_t)c : (wchar_t)kCp850[c - 0x80]);
    return w;
}

CString DecodeNomZip(const std::string& brut, bool bDrapeauUtf8, int nSystemeOrigine)
{
    if (EstAscii(brut))
        return CString(std::wstring(brut.begin(), brut.end()));
    if (bDrapeauUtf8 || EstUtf8Valide(brut))
        return CString(AfxUtf8ToWide(brut));
    if (SystemeOem(nSystemeOrigine))
        return CString(Cp850VersWide(brut));
    return CString(AfxAnsiToWide(brut));
}

BOOL VerifieNomZip(const CString& strNom, CString& strRelatif, CString& strRaison)
{
    std::wstring nom = strNom.Std();
    for (wchar_t& c : nom)
        if (c == L'\\')
            c = L'/';
    if (!nom.empty() && nom.back() == L'/')
        nom.pop_back(); // a folder
    strRelatif.Empty();
    if (nom.empty())
        return strRaison = L"empty name", FALSE;
    if (nom[0] == L'/')
        return strRaison = L"absolute path", FALSE;
    if (nom.size() >= 2 && nom[1] == L':')
        return strRaison = L"drive letter", FALSE;

    std::size_t debut = 0;
    while (debut <= nom.size())
    {
        std::size_t fin = nom.find(L'/', debut);
        if (fin == std::wstring::npos)
            fin = nom.size();
        std::wstring composant = nom.substr(debut, fin - debut);
        if (composant.empty())
            return strRaison = L"empty folder name", FALSE;
        if (composant == L"." || composant == L"..")
            return strRaison = L"\"" + CString(composant) + L"\" in the path", FALSE;
        for (wchar_t c : composant)
        {
            if (c < 0x20 || c == 0x7F)
                return strRaison = L"control character", FALSE;
            if (c == L':')
                return strRaison = L"colon (drive or stream name)", FALSE;
            if (c == L'<' || c == L'>' || c == L'"' || c == L'|' || c == L'?' || c == L'*')
                return strRaison = L"character that Windows refuses", FALSE;
        }
        if (composant.back() == L'.' || composant.back() == L' ')
            return strRaison = L"name ending in a dot or a space", FALSE;
        if (NomDePeripherique(composant))
            return strRaison = L"device name", FALSE;
        if (composant.size() > 255)
            return strRaison = L"name longer than 255 characters", FALSE;
        debut = fin + 1;
    }
    strRelatif = CString(nom);
    return TRUE;
}
