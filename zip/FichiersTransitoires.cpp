#include "zip/PaquetAffaire.h"

#include <cwchar>

namespace
{
std::wstring Majuscules(LPCTSTR lpszNom)
{
    std::wstring s = lpszNom ? lpszNom : L"";
    for (wchar_t& c : s)
        if (c >= L'a' && c <= L'z')
            c = (wchar_t)(c - L'a' + L'A');
    return s;
}

bool FinitPar(const std::wstring& s, const wchar_t* fin)
{
    std::size_t n = std::wcslen(fin);
    return s.size() >= n && s.compare(s.size() - n, n, fin) == 0;
}
} // namespace

BOOL Est_Fichier_Transitoire(LPCTSTR lpszNom)
{
    const std::wstring nom = Majuscules(lpszNom);
    return nom == L"LOCK_AFF" || nom.compare(0, 9, L"LOCK_PLA.") == 0 || FinitPar(nom, L".LOCK") ||
           FinitPar(nom, L".LCK") || nom.find(L".~") != std::wstring::npos;
}
