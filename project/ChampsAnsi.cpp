#include "project/ChampsAnsi.h"

#include <cstring>

void CopieChampAnsi(BYTE* pChamp, std::size_t nLargeur, const CString& texte)
{
    std::string ansi = AfxWideToAnsi(texte.Std());
    std::memcpy(pChamp, ansi.data(), std::min(ansi.size(), nLargeur));
}

CString LitChampAnsi(const BYTE* pChamp, std::size_t nLargeur)
{
    const char* p = reinterpret_cast<const char*>(pChamp);
    const void* zero = std::memchr(p, 0, nLargeur);
    std::size_t n = zero ? (std::size_t)(static_cast<const char*>(zero) - p) : nLargeur;
    return CString(AfxAnsiToWide(p, n));
}
