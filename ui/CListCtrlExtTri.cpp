// Sorting in the grid list: the built-in comparisons by type and the sort itself.
#include "CListCtrlExt.h"

#include <QCollator>
#include <QDateTime>
#include <QLocale>

#include <charconv>
#include <climits>
#include <cmath>
#include <cwctype>
#include <string>

namespace
{
// The leading integer of a text as the platform's _wtol reads it: blanks, a sign,
// digits; a value beyond the 32-bit long saturates; no digits gives 0.
long long EntierEnTete(const CString& s)
{
    const wchar_t* p = s.GetString();
    while (std::iswspace((wint_t)*p))
        ++p;
    bool bNegatif = *p == L'-';
    if (*p == L'-' || *p == L'+')
        ++p;
    long long v = 0;
    for (; *p >= L'0' && *p <= L'9'; ++p)
        v = std::min(v * 10 + (*p - L'0'), (long long)INT_MAX + 1);
    v = bNegatif ? -v : v;
    return std::max<long long>(INT_MIN, std::min<long long>(INT_MAX, v));
}

// The leading real of a text as the platform's _wtof reads it (a dot before decimals,
// whatever the locale); none gives 0.
double ReelEnTete(const CString& s)
{
    const wchar_t* p = s.GetString();
    while (std::iswspace((wint_t)*p))
        ++p;
    std::string ascii;
    for (; *p && *p < 0x80 && ascii.size() < 64; ++p)
        ascii += (char)*p;
    const char* debut = ascii.c_str();
    if (*debut == '+')
        ++debut;
    double v = 0;
    std::from_chars(debut, ascii.c_str() + ascii.size(), v);
    return v;
}

int Signe(long long v)
{
    return v < 0 ? -1 : v > 0 ? 1 : 0;
}

// A collator of the user's locale, made again only when the locale changes.
QCollator& Collateur(bool bCasse)
{
    thread_local QCollator avecCasse, sansCasse;
    thread_local QString nomLocale;
    QLocale locale;
    if (locale.name() != nomLocale || nomLocale.isEmpty())
    {
        nomLocale = locale.name();
        avecCasse = QCollator(locale);
        avecCasse.setCaseSensitivity(Qt::CaseSensitive);
        sansCasse = QCollator(locale);
        sansCasse.setCaseSensitivity(Qt::CaseInsensitive);
    }
    return bCasse ? avecCasse : sansCasse;
}

int CompareCollation(const CString& a, const CString& b, bool bCasse)
{
    QString qa = QString::fromWCharArray(a.GetString(), a.GetLength());
    QString qb = QString::fromWCharArray(b.GetString(), b.GetLength());
    int r = Collateur(bCasse).compare(qa, qb);
    return r < 0 ? -1 : r > 0 ? 1 : 0;
}

int CompareNombreTexte(const CString& a, const CString& b, bool bCasse)
{
    long long na = EntierEnTete(a), nb = EntierEnTete(b);
    if (na != 0 && nb != 0 && na != nb)
    {
        CString fa, fb;
        fa.Format(L"%ld", (long)na);
        fb.Format(L"%ld", (long)nb);
        if (fa.GetLength() == a.GetLength() && fb.GetLength() == b.GetLength())
            return Signe(na - nb);
    }
    return CompareCollation(a, b, bCasse);
}

// Date and time formats of the user's locale, with four-digit years as well.
const QStringList& FormatsDate()
{
    thread_local QStringList formats;
    thread_local QString nomLocale;
    QLocale locale;
    if (locale.name() == nomLocale && !formats.isEmpty())
        return formats;
    nomLocale = locale.name();
    formats.clear();
    QStringList dates;
    for (QLocale::FormatType f : {QLocale::ShortFormat, QLocale::LongFormat})
    {
        QString d = locale.dateFormat(f);
        if (d.contains(QLatin1String("yy")) && !d.contains(QLatin1String("yyyy")))
            dates << QString(d).replace(QLatin1String("yy"), QLatin1String("yyyy"));
        dates << d;
    }
    QStringList heures{locale.timeFormat(QLocale::LongFormat), locale.timeFormat(QLocale::ShortFormat),
                       QStringLiteral("H:mm:ss"), QStringLiteral("H:mm")};
    for (const QString& d : dates)
    {
        formats << d;
        for (const QString& h : heures)
            formats << d + QLatin1Char(' ') + h;
    }
    formats.removeDuplicates();
    return formats;
}

// Half a second, in days.
constexpr double kDemiSeconde = 5.787037037037037e-6;

// The platform's day numbers before its epoch hold the whole day (negative) and the
// time of day (a positive fraction): mirrored about the whole day, they become a
// monotonic scale.
double Lineaire(double d)
{
    if (d >= 0)
        return d;
    double jour = std::trunc(d);
    return 2 * jour - d;
}
} // namespace

BOOL CListCtrlExt::LitDate(const CString& texte, double& dDate)
{
    QString s = QString::fromWCharArray(texte.GetString(), texte.GetLength()).trimmed();
    if (s.isEmpty())
        return FALSE;
    QLocale locale;
    QDateTime dt;
    const QStringList& formats = FormatsDate();
    // A column's dates share their format: the one that read the last date goes first.
    thread_local int nDernier = 0;
    for (int k = 0; k < formats.size() && !dt.isValid(); ++k)
    {
        int i = (nDernier + k) % formats.size();
        dt = locale.toDateTime(s, formats[i]);
        if (dt.isValid())
            nDernier = i;
    }
    if (!dt.isValid())
        return FALSE;
    double jours = (double)QDate(1899, 12, 30).daysTo(dt.date());
    double fraction = dt.time().msecsSinceStartOfDay() / 86400000.0;
    dDate = jours >= 0 ? jours + fraction : jours - fraction;
    return TRUE;
}

int CListCtrlExt::CompareInteger(const CString& a, const CString& b)
{
    return Signe(EntierEnTete(a) - EntierEnTete(b));
}

int CListCtrlExt::CompareDouble(const CString& a, const CString& b)
{
    double da = ReelEnTete(a), db = ReelEnTete(b);
    return da < db ? -1 : da > db ? 1 : 0;
}

int CListCtrlExt::CompareText(const CString& a, const CString& b)
{
    return CompareCollation(a, b, true);
}

int CListCtrlExt::CompareStringNoCase(const CString& a, const CString& b)
{
    return CompareCollation(a, b, false);
}

int CListCtrlExt::CompareNumberString(const CString& a, const CString& b)
{
    return CompareNombreTexte(a, b, true);
}

int CListCtrlExt::CompareNumberStringNoCase(const CString& a, const CString& b)
{
    return CompareNombreTexte(a, b, false);
}

int CListCtrlExt::CompareDate(const CString& a, const CString& b)
{
    double da = 0, db = 0;
    // An unreadable text sorts after; an unreadable second text answers 1 as well, so
    // the order is deliberately not symmetric there.
    if (!LitDate(a, da) || !LitDate(b, db))
        return 1;
    return CompareDateValues(da, db);
}

int CListCtrlExt::CompareDateValues(double d1, double d2)
{
    d1 = Lineaire(d1);
    d2 = Lineaire(d2);
    if (std::fabs(d1 - d2) <= kDemiSeconde)
        return 0;
    return d1 < d2 ? -1 : 1;
}

int CListCtrlExt::CompareByType(int nType, const CString& a, const CString& b)
{
    switch (nType)
    {
    case COMPARE_AUCUNE: return 0;
    case COMPARE_ENTIER: return CompareInteger(a, b);
    case COMPARE_REEL: return CompareDouble(a, b);
    case COMPARE_NOMBRE_TEXTE: return CompareNumberString(a, b);
    case COMPARE_TEXTE_SANS_CASSE: return CompareStringNoCase(a, b);
    case COMPARE_NOMBRE_TEXTE_SANS_CASSE: return CompareNumberStringNoCase(a, b);
    case COMPARE_DATE: return CompareDate(a, b);
    default: return CompareText(a, b);
    }
}

// ---- sorting

int CListCtrlExt::CALLBACK_CompareProc(LPARAM lParam1, LPARAM lParam2, LPARAM lParamSort)
{
    return reinterpret_cast<const CListCtrlExt*>(lParamSort)->CompareLignes(lParam1, lParam2);
}

int CListCtrlExt::CompareLignes(LPARAM lParam1, LPARAM lParam2) const
{
    auto i1 = m_IndexTri.find((DWORD_PTR)lParam1), i2 = m_IndexTri.find((DWORD_PTR)lParam2);
    int n1 = i1 == m_IndexTri.end() ? -1 : i1->second, n2 = i2 == m_IndexTri.end() ? -1 : i2->second;
    if (n1 < 0 || n2 < 0 || n1 >= GetItemCount() || n2 >= GetItemCount())
        return 0;
    if (m_pfnCompareUtilisateur)
        return m_pfnCompareUtilisateur(n1, n2, (LPARAM)m_dwDataTri);
    const ColumnInfo* c = Colonne(m_nColonneTri);
    if (!c || !(c->m_nTri & 7))
        return 0;
    int r;
    if (!m_DatesTri.empty())
    {
        // Dates read once per row for the sort; unreadable ones answer 1 as CompareDate does.
        double a = m_DatesTri[(std::size_t)n1], b = m_DatesTri[(std::size_t)n2];
        r = std::isnan(a) || std::isnan(b) ? 1 : CompareDateValues(a, b);
    }
    else
    {
        CString a = GetItemText(n1, m_nColonneTri), b = GetItemText(n2, m_nColonneTri);
        r = c->m_pfnCompare ? c->m_pfnCompare(a, b) : CompareByType(c->m_nTypeComparaison, a, b);
    }
    return (c->m_nTri & TRI_CROISSANT) ? r : -r;
}

BOOL CListCtrlExt::SortItems(PFNLVCOMPARE pfnCompare, DWORD_PTR dwData)
{
    m_pfnCompareUtilisateur = pfnCompare;
    m_dwDataTri = dwData;
    BOOL r = SortColumn(m_nColonneTri);
    m_pfnCompareUtilisateur = nullptr;
    m_dwDataTri = 0;
    return r;
}

BOOL CListCtrlExt::SortColumn(int nCol)
{
    HideEditor(TRUE);
    m_nColonneTri = nCol;
    // Rows are found by their records while sorting: every row gets one.
    int n = GetItemCount();
    const ItemInfo* pCourante = Ligne(m_nRow);
    const ItemInfo* pPrecedente = Ligne(m_nPrevRow);
    m_IndexTri.clear();
    m_IndexTri.reserve((std::size_t)n);
    for (int i = 0; i < n; ++i)
        m_IndexTri[reinterpret_cast<DWORD_PTR>(LigneCreee(i))] = i;
    const ColumnInfo* c = Colonne(nCol);
    if (!m_pfnCompareUtilisateur && c && (c->m_nTri & 7) && !c->m_pfnCompare && c->m_nTypeComparaison == COMPARE_DATE)
    {
        m_DatesTri.assign((std::size_t)n, std::nan(""));
        for (int i = 0; i < n; ++i)
            LitDate(GetItemText(i, nCol), m_DatesTri[(std::size_t)i]);
    }
    BOOL r = CListCtrl::SortItems(&CListCtrlExt::CALLBACK_CompareProc, reinterpret_cast<DWORD_PTR>(this));
    m_IndexTri.clear();
    m_DatesTri.clear();
    // The current rows follow their records.
    for (int i = 0; i < n; ++i)
    {
        if (Ligne(i) == pCourante)
            m_nRow = i;
        if (Ligne(i) == pPrecedente)
            m_nPrevRow = i;
    }
    return r;
}

void CListCtrlExt::OnColumnClick(int nCol)
{
    ColumnInfo* c = Colonne(nCol);
    if (!c || !(c->m_nTri & 7))
        return;
    // A second click on the sort column turns the direction round; a sort bit stays set.
    if (m_nColonneTri == nCol)
        c->m_nTri = (c->m_nTri & TRI_CROISSANT) ? ((c->m_nTri & ~TRI_CROISSANT) | TRI_DECROISSANT) : (c->m_nTri | TRI_CROISSANT);
    SortColumn(nCol);
}
