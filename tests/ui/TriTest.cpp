// Sorting: every comparison type, the sort flags, the caller's function, and widths.
#include "GrilleFixture.h"

#include <QFontMetricsF>
#include <QHeaderView>
#include <QLocale>

#include <cmath>

using namespace prefa_test;

namespace
{
struct LocaleFrancaise
{
    LocaleFrancaise() : avant(QLocale()) { QLocale::setDefault(QLocale(QLocale::French, QLocale::France)); }
    ~LocaleFrancaise() { QLocale::setDefault(avant); }
    QLocale avant;
};

std::vector<std::wstring> Colonne(const CListCtrlExt& l, int c)
{
    std::vector<std::wstring> v;
    for (int r = 0; r < l.GetItemCount(); ++r)
        v.push_back(l.GetItemText(r, c).GetString());
    return v;
}
} // namespace

TEST(Comparaisons, NumbersTextsAndCase)
{
    LocaleFrancaise fr;
    EXPECT_GT(CListCtrlExt::CompareInteger(L"12abc", L"9"), 0);
    EXPECT_LT(CListCtrlExt::CompareInteger(L"-3", L" 2"), 0);
    EXPECT_EQ(0, CListCtrlExt::CompareInteger(L"x", L"0"));
    EXPECT_GT(CListCtrlExt::CompareInteger(L"99999999999", L"2147483646"), 0);  // saturates, still ordered
    EXPECT_LT(CListCtrlExt::CompareDouble(L"2.5", L"10"), 0);
    EXPECT_GT(CListCtrlExt::CompareDouble(L"1e3", L"999.9"), 0);
    EXPECT_EQ(0, CListCtrlExt::CompareDouble(L"1.50m", L"+1.5"));
    // Numbers that are the whole text compare as numbers, anything else as text.
    EXPECT_GT(CListCtrlExt::CompareNumberString(L"10", L"9"), 0);
    EXPECT_LT(CListCtrlExt::CompareNumberString(L"10a", L"9"), 0);
    EXPECT_LT(CListCtrlExt::CompareNumberString(L"05", L"5"), 0);
    EXPECT_LT(CListCtrlExt::CompareNumberString(L"0", L"10"), 0);
    EXPECT_NE(0, CListCtrlExt::CompareNumberString(L"10A", L"10a"));
    EXPECT_EQ(0, CListCtrlExt::CompareNumberStringNoCase(L"10A", L"10a"));
    EXPECT_NE(0, CListCtrlExt::CompareText(L"poutre", L"Poutre"));
    EXPECT_EQ(0, CListCtrlExt::CompareStringNoCase(L"poutre", L"POUTRE"));
    EXPECT_LT(CListCtrlExt::CompareStringNoCase(L"appui", L"Béton"), 0);
    EXPECT_LT(CListCtrlExt::CompareText(L"béton", L"bois"), 0);  // the locale's order, not the code points
    EXPECT_EQ(0, CListCtrlExt::CompareByType(COMPARE_AUCUNE, L"a", L"b"));
    EXPECT_LT(CListCtrlExt::CompareByType(42, L"a", L"b"), 0);
}

TEST(Comparaisons, DatesInTheUsersLocaleAcrossTheEpoch)
{
    LocaleFrancaise fr;
    double d = 0;
    ASSERT_TRUE(CListCtrlExt::LitDate(L"29/12/1899 06:00:00", d));
    EXPECT_DOUBLE_EQ(-1.25, d);
    ASSERT_TRUE(CListCtrlExt::LitDate(L"31/12/1899 18:00", d));
    EXPECT_DOUBLE_EQ(1.75, d);
    ASSERT_TRUE(CListCtrlExt::LitDate(L" 01/01/1970 ", d));
    EXPECT_DOUBLE_EQ(25569.0, d);
    EXPECT_FALSE(CListCtrlExt::LitDate(L"31/02/2020", d));
    EXPECT_FALSE(CListCtrlExt::LitDate(L"", d));
    // Before the epoch the time of day still runs forward.
    EXPECT_LT(CListCtrlExt::CompareDate(L"29/12/1899 06:00:00", L"29/12/1899 18:00:00"), 0);
    EXPECT_GT(CListCtrlExt::CompareDate(L"30/12/1899 00:00:00", L"29/12/1899 18:00:00"), 0);
    EXPECT_LT(CListCtrlExt::CompareDate(L"28/12/1899 23:00:00", L"29/12/1899 01:00:00"), 0);
    EXPECT_LT(CListCtrlExt::CompareDate(L"15/03/2024 12:00:00", L"15/03/2024 12:00:01"), 0);
    EXPECT_EQ(0, CListCtrlExt::CompareDate(L"15/03/2024 12:00", L"15/03/2024 12:00:00"));
    EXPECT_EQ(0, CListCtrlExt::CompareDateValues(100.0, 100.0 + 0.4 / 86400));
    EXPECT_EQ(-1, CListCtrlExt::CompareDateValues(100.0, 100.0 + 0.6 / 86400));
    EXPECT_EQ(-1, CListCtrlExt::CompareDateValues(-1.25, -1.75));
    // An unreadable text on either side answers 1: deliberately not symmetric.
    EXPECT_EQ(1, CListCtrlExt::CompareDate(L"demain", L"01/01/2000"));
    EXPECT_EQ(1, CListCtrlExt::CompareDate(L"01/01/2000", L"demain"));
}

TEST_F(Grille, ColumnsSortByTheirTypeAndDirection)
{
    const wchar_t* valeurs[] = {L"10", L"9", L"100"};
    for (int r = 0; r < 3; ++r)
        liste.SetItemText(r, 1, valeurs[r]);
    liste.SetItemData(0, 1000);
    liste.SetColumnSort(1, TRI_CROISSANT, COMPARE_NOMBRE_TEXTE);
    liste.SortColumn(1);
    EXPECT_EQ((std::vector<std::wstring>{L"9", L"10", L"100"}), Colonne(liste, 1));
    EXPECT_EQ(1, liste.GetColumnSort());
    EXPECT_EQ(1000u, liste.GetItemData(1));  // the caller's value follows its row
    // A click on the sorted column's header turns the direction round.
    QHeaderView* h = liste.GetView()->header();
    QTest::mouseClick(h->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(h->sectionViewportPosition(1) + 20, 5));
    EXPECT_EQ((std::vector<std::wstring>{L"100", L"10", L"9"}), Colonne(liste, 1));
    liste.SetColumnSort(1, TRI_CROISSANT, COMPARE_TEXTE);
    liste.SortColumn(1);
    EXPECT_EQ((std::vector<std::wstring>{L"10", L"100", L"9"}), Colonne(liste, 1));

    // No sort flags, or comparison type 0: the order stays.
    liste.SetItemText(0, 2, L"c");
    liste.SetItemText(1, 2, L"a");
    liste.SetItemText(2, 2, L"b");
    liste.SetColumnSort(2, TRI_AUCUN, COMPARE_TEXTE);
    QTest::mouseClick(h->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(h->sectionViewportPosition(2) + 20, 5));
    liste.SortColumn(2);
    EXPECT_EQ((std::vector<std::wstring>{L"c", L"a", L"b"}), Colonne(liste, 2));
    liste.SetColumnSort(2, TRI_CROISSANT, COMPARE_AUCUNE);
    liste.SortColumn(2);
    EXPECT_EQ((std::vector<std::wstring>{L"c", L"a", L"b"}), Colonne(liste, 2));
    liste.SetColumnSort(2, TRI_DECROISSANT, COMPARE_TEXTE);
    liste.SortColumn(2);
    EXPECT_EQ((std::vector<std::wstring>{L"c", L"b", L"a"}), Colonne(liste, 2));
}

TEST_F(Grille, DatesSortAcrossTheEpochAndAColumnFunctionReplacesTheType)
{
    LocaleFrancaise fr;
    const wchar_t* dates[] = {L"30/12/1899 00:00:00", L"29/12/1899 18:00:00", L"29/12/1899 06:00:00"};
    for (int r = 0; r < 3; ++r)
        liste.SetItemText(r, 3, dates[r]);
    liste.SetColumnSort(3, TRI_CROISSANT, COMPARE_DATE);
    liste.SortColumn(3);
    EXPECT_EQ((std::vector<std::wstring>{dates[2], dates[1], dates[0]}), Colonne(liste, 3));
    // By length, then reversed by the direction.
    liste.SetColumnCompareFunction(0, [](const CString& a, const CString& b) { return a.GetLength() - b.GetLength(); });
    liste.SetItemText(0, 0, L"ccc");
    liste.SetItemText(1, 0, L"a");
    liste.SetItemText(2, 0, L"bb");
    liste.SetColumnSort(0, TRI_DECROISSANT, COMPARE_TEXTE);
    liste.SortColumn(0);
    EXPECT_EQ((std::vector<std::wstring>{L"ccc", L"bb", L"a"}), Colonne(liste, 0));
}

namespace
{
std::vector<int>* g_cles = nullptr;
std::vector<std::pair<LPARAM, LPARAM>>* g_recus = nullptr;
int ParCle(LPARAM i1, LPARAM i2, LPARAM)
{
    g_recus->emplace_back(i1, i2);
    return (*g_cles)[(std::size_t)i1] - (*g_cles)[(std::size_t)i2];
}
} // namespace

TEST_F(Grille, TheCallersFunctionReceivesRowIndexes)
{
    std::vector<int> cles{5, 1, 5};  // rows 0 and 2 tie: their order stays
    std::vector<std::pair<LPARAM, LPARAM>> recus;
    g_cles = &cles;
    g_recus = &recus;
    liste.SetItemText(0, 1, L"a");
    liste.SetItemText(2, 1, L"c");
    liste.SortItems(&ParCle, 0);
    EXPECT_EQ((std::vector<std::wstring>{L"B1", L"B0", L"B2"}), Colonne(liste, 0));
    ASSERT_FALSE(recus.empty());
    for (auto& p : recus)
    {
        EXPECT_TRUE(p.first >= 0 && p.first < 3);
        EXPECT_TRUE(p.second >= 0 && p.second < 3);
    }
}

TEST(Largeurs, AutosizeFitsTheWidestHeadingLineWithTwoSpaces)
{
    CListCtrlExt liste;
    ASSERT_TRUE(liste.Create(0, CRect(0, 0, 400, 200), nullptr, 1));
    liste.InsereUneColonne(0, L"l", L"Longueur", LVCFMT_LEFT, 10, TRI_AUCUN, COMPARE_TEXTE, nullptr, L"m", 2);
    liste.InsereUneColonne(1, L"n", L"N", LVCFMT_LEFT, 10);
    liste.InsereUneColonne(2, L"c", L"Caché", LVCFMT_LEFT, 50);
    liste.SetAfficheColonne(2, FALSE);
    liste.AddItem({L"1", L"un texte bien plus long que son titre"});
    QFontMetricsF fm(liste.GetView()->font());
    liste.Autosize(-2);
    EXPECT_EQ((int)std::ceil(fm.horizontalAdvance("Longueur  ")), liste.GetColumnWidth(0));
    EXPECT_GE(liste.GetColumnWidth(1), fm.horizontalAdvance("un texte bien plus long que son titre"));
    EXPECT_EQ(0, liste.GetColumnWidth(2));
    liste.Autosize(77);
    EXPECT_EQ(77, liste.GetColumnWidth(0));
    EXPECT_EQ(77, liste.GetColumnWidth(1));
    EXPECT_EQ(0, liste.GetColumnWidth(2));
    liste.SetAfficheColonne(2, TRUE);
    EXPECT_EQ(50, liste.GetColumnWidth(2));
}
