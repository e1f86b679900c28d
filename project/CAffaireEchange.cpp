// The 436-byte exchange record "LUMACAFF" of the project record.
#include "project/CAffaire.h"

#include "project/ChampsAnsi.h"

#include <cstring>

namespace
{
// Offsets and widths of the exchange record's fields. Each text field is followed by
// a byte that always stays zero, because the next field starts one byte further.
struct Champ
{
    std::size_t nOffset;
    std::size_t nLargeur;
};
const Champ TEXTE1 = {0, 10};
const Champ TEXTE2 = {11, 43};
const Champ TEXTE3 = {55, 27};
const Champ TEXTE4 = {83, 12};
const Champ TEXTE5 = {96, 27};
const Champ TEXTE6 = {124, 27};
const Champ TEXTE7 = {152, 16};
const Champ DATE1 = {169, 8};
const Champ DATE2 = {178, 8};
const Champ TEXTE8 = {187, 16};
const Champ TEXTE9 = {204, 16};
const Champ LISTE1[3] = {{221, 20}, {242, 20}, {263, 20}};
const std::size_t MARQUEUR = 284;
const std::size_t VALEUR3 = 288;
const std::size_t VALEUR2 = 290;
const Champ TEXTE10 = {298, 22};
const Champ LISTE2[3] = {{334, 16}, {351, 16}, {368, 16}};
const std::size_t VALEUR1 = 386;
const Champ TEXTE11 = {388, 22};

void Ecrit(BYTE* p, const Champ& c, const CString& texte)
{
    CopieChampAnsi(p + c.nOffset, c.nLargeur, texte);
}

CString Lit(const BYTE* p, const Champ& c)
{
    return LitChampAnsi(p + c.nOffset, c.nLargeur);
}

template <typename T>
void EcritEntier(BYTE* p, std::size_t nOffset, T v)
{
    for (std::size_t i = 0; i < sizeof(T); ++i)
        p[nOffset + i] = (BYTE)((v >> (8 * i)) & 0xFF);
}

template <typename T>
T LitEntier(const BYTE* p, std::size_t nOffset)
{
    T v = 0;
    for (std::size_t i = 0; i < sizeof(T); ++i)
        v = (T)(v | ((T)p[nOffset + i] << (8 * i)));
    return v;
}
} // namespace

CString CAffaire::TexteDateEchange(__time64_t date)
{
    struct tm t;
    std::memset(&t, 0, sizeof t);
    int nJour = 0, nMois = 0;
    if (_localtime64_s(&t, &date) == 0)
    {
        nJour = t.tm_mday;
        nMois = t.tm_mon + 1;
    }
    else
        std::memset(&t, 0, sizeof t); // the year then reads 1900, "00"
    CString annee;
    annee.Format(L"%04d", t.tm_year + 1900);
    CString texte;
    texte.Format(L"%02d/%02d/%2.2s", nJour, nMois, annee.Right(2));
    return texte;
}

__time64_t CAffaire::DateDepuisTexteEchange(const CString& texte)
{
    int nJour = _wtoi(texte.Left(2));
    int nMois = _wtoi(texte.Mid(3));
    int nAn = _wtoi(texte.Right(2));
    // Two-digit years: 81 to 99 are the 1900s, 00 to 80 the 2000s.
    nAn += nAn > 80 ? 1900 : 2000;
    if (nAn < 1900 || nMois < 1 || nMois > 12 || nJour < 1 || nJour > 31)
        AfxThrowInvalidArgException();
    struct tm t;
    std::memset(&t, 0, sizeof t);
    t.tm_mday = nJour;
    t.tm_mon = nMois - 1;
    t.tm_year = nAn - 1900;
    t.tm_isdst = 0;
    __time64_t date = _mktime64(&t);
    if (date == -1)
        AfxThrowInvalidArgException();
    return date;
}

void CAffaire::RemplitEchange(BYTE* p) const
{
    std::memset(p, 0, TAILLE_ECHANGE);
    Ecrit(p, TEXTE1, Texte1);
    Ecrit(p, TEXTE2, Texte2);
    Ecrit(p, TEXTE3, Texte3);
    Ecrit(p, TEXTE4, Texte4);
    Ecrit(p, TEXTE5, Texte5);
    Ecrit(p, TEXTE6, Texte6);
    Ecrit(p, TEXTE7, Texte7);
    CString date = TexteDateEchange(Date);
    Ecrit(p, DATE1, date);
    Ecrit(p, DATE2, date);
    Ecrit(p, TEXTE8, Texte8);
    Ecrit(p, TEXTE9, Texte9);
    for (int i = 0; i < 3; ++i)
        Ecrit(p, LISTE1[i], Liste1[i]);
    EcritEntier<DWORD>(p, MARQUEUR, MARQUEUR_ECHANGE);
    EcritEntier<WORD>(p, VALEUR3, Valeur3);
    EcritEntier<WORD>(p, VALEUR2, Valeur2);
    Ecrit(p, TEXTE10, Texte10);
    for (int i = 0; i < 3; ++i)
        Ecrit(p, LISTE2[i], Liste2[i]);
    EcritEntier<WORD>(p, VALEUR1, Valeur1);
    Ecrit(p, TEXTE11, Texte11);
}

void CAffaire::LitEchange(const BYTE* p)
{
    Texte1 = Lit(p, TEXTE1);
    Texte2 = Lit(p, TEXTE2);
    Texte3 = Lit(p, TEXTE3);
    Texte4 = Lit(p, TEXTE4);
    Texte5 = Lit(p, TEXTE5);
    Texte6 = Lit(p, TEXTE6);
    Texte7 = Lit(p, TEXTE7);
    Date = DateDepuisTexteEchange(Lit(p, DATE1));
    Texte8 = Lit(p, TEXTE8);
    Texte9 = Lit(p, TEXTE9);
    for (int i = 0; i < 3; ++i)
        Liste1[i] = Lit(p, LISTE1[i]);
    // Files of programs that predate the two later values carry no marker.
    if (LitEntier<DWORD>(p, MARQUEUR) == MARQUEUR_ECHANGE)
    {
        Valeur3 = LitEntier<WORD>(p, VALEUR3);
        Valeur2 = LitEntier<WORD>(p, VALEUR2);
    }
    Texte10 = Lit(p, TEXTE10);
    for (int i = 0; i < 3; ++i)
        Liste2[i] = Lit(p, LISTE2[i]);
    Valeur1 = LitEntier<WORD>(p, VALEUR1);
    Texte11 = Lit(p, TEXTE11);
}
