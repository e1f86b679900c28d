// Headings with units, the focus cell in display order, tooltips, and the column state
// kept between sessions.
#include "GrilleFixture.h"

#include <QDir>
#include <QFile>
#include <QHeaderView>

using namespace prefa_test;

namespace
{
CString Entete(CListCtrlExt& l, int c)
{
    LVCOLUMN col;
    col.mask = LVCF_TEXT;
    l.GetColumn(c, &col);
    return col.strText;
}

void Ecrit(const CString& chemin, const QByteArray& octets)
{
    QString q = QString::fromWCharArray(chemin.GetString());
    QDir().mkpath(QFileInfo(q).absolutePath());
    QFile f(q);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(octets);
}

QByteArray Lit(const CString& chemin)
{
    QFile f(QString::fromWCharArray(chemin.GetString()));
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}
} // namespace

TEST(Entetes, UnitStylesAndTheHeadersLineCount)
{
    CListCtrlExt l;
    ASSERT_TRUE(l.Create(0, CRect(0, 0, 400, 200), nullptr, 1));
    int hauteurUneLigne = l.GetView()->header()->sizeHint().height();
    l.InsereUneColonne(0, L"a", L"L", LVCFMT_LEFT, 40, 0, 3, nullptr, L"m", 1);
    EXPECT_EQ(2, l.GetHeaderCtrlExt().GetNbLignes());
    l.InsereUneColonne(1, L"b", L"L", LVCFMT_LEFT, 40, 0, 3, nullptr, L"m", 2);
    l.InsereUneColonne(2, L"c", L"L", LVCFMT_LEFT, 40, 0, 3, nullptr, L"m", 3);
    l.InsereUneColonne(3, L"d", L"Portée [%s]", LVCFMT_LEFT, 40, 0, 3, nullptr, L"m", 4);
    l.InsereUneColonne(4, L"e", L"L", LVCFMT_LEFT, 40, 0, 3, nullptr, L"m", 7);
    l.InsereUneColonne(5, L"f", L"L", LVCFMT_LEFT, 40, 0, 3, nullptr, nullptr, 1);
    EXPECT_EQ(CString(L"L\nm"), Entete(l, 0));
    EXPECT_EQ(CString(L"L\n(m)"), Entete(l, 1));
    EXPECT_EQ(CString(L"L\n (m)"), Entete(l, 2));
    EXPECT_EQ(CString(L"Portée [m]"), Entete(l, 3));
    EXPECT_EQ(CString(L"L"), Entete(l, 4));
    EXPECT_EQ(CString(L"L"), Entete(l, 5));
    EXPECT_EQ(2, l.GetHeaderCtrlExt().GetNbLignes());
    l.InsereUneColonne(1, L"g", L"A\nB\nC", LVCFMT_LEFT, 40);
    EXPECT_EQ(3, l.GetHeaderCtrlExt().GetNbLignes());
    EXPECT_GE(l.GetView()->header()->minimumHeight(), hauteurUneLigne + 2 * QFontMetrics(l.GetView()->font()).lineSpacing());
    // Inserting in the middle moves the later columns' descriptors with them.
    EXPECT_EQ(2, l.GetNoColonne(L"b"));
    EXPECT_EQ(1, l.GetNoColonne(L"g"));
    EXPECT_EQ(CString(L"d"), l.GetIdentifiantColonne(4));
    EXPECT_EQ(-1, l.GetNoColonne(L"z"));
}

TEST_F(Grille, FocusCellMovesInDisplayOrderOverHiddenColumns)
{
    int ordre[] = {2, 0, 3, 1};
    ASSERT_TRUE(liste.SetColumnOrderArray(4, ordre));
    liste.SetAfficheColonne(3, FALSE);
    liste.SetGridBehaviour(TRUE);
    liste.SelectItem(0);
    liste.SetFocus();
    EXPECT_EQ(-1, liste.GetFocusCell());
    Touche(Qt::Key_Right);
    EXPECT_EQ(2, liste.GetFocusCell());
    Touche(Qt::Key_Left);  // not below the first
    EXPECT_EQ(2, liste.GetFocusCell());
    Touche(Qt::Key_Right);
    EXPECT_EQ(0, liste.GetFocusCell());
    Touche(Qt::Key_Right);
    EXPECT_EQ(1, liste.GetFocusCell());
    Touche(Qt::Key_Right);  // past the last
    EXPECT_EQ(1, liste.GetFocusCell());
    Touche(Qt::Key_Left);
    EXPECT_EQ(0, liste.GetFocusCell());
    // Enter from the list opens the focus cell; typing replaces its text.
    Touche(Qt::Key_Return);
    EXPECT_EQ(std::make_pair(0, 0), Edition());
    liste.Reset();
    liste.MoveFocusCell(TRUE);
    EXPECT_EQ(-1, liste.GetFocusCell());
}

TEST_F(Grille, TooltipsShowTheColumnsTextOrATruncatedCell)
{
    int r, c;
    CRect rect;
    liste.GetSubItemRect(1, 2, LVIR_BOUNDS, rect);
    ASSERT_TRUE(liste.CellHitTest(rect.CenterPoint(), r, c));
    EXPECT_EQ(1, r);
    EXPECT_EQ(2, c);
    EXPECT_FALSE(liste.CellHitTest(CPoint(5, 280), r, c));
    EXPECT_FALSE(liste.ShowToolTip(1, 2));
    liste.SetItemText(1, 2, L"un texte bien trop long pour sa colonne de cent points");
    EXPECT_TRUE(liste.ShowToolTip(1, 2));
    EXPECT_EQ(liste.GetItemText(1, 2), liste.GetToolTipTextInfo(1, 2));
    liste.SetColumnToolTipText(2, L"Ordonnée de la barre");
    EXPECT_EQ(CString(L"Ordonnée de la barre"), liste.GetToolTipTextInfo(1, 2));
    EXPECT_EQ(CString(L"Ordonnée de la barre"), liste.GetHeaderCtrlExt().GetItemToolTip(2));
}

TEST_F(Grille, StateKeepsColumnOrderAndWidthsAndSurvivesBadFiles)
{
    const wchar_t* id = L"barres.test";
    QFile::remove(QString::fromWCharArray(CListCtrlExt::CheminEtat(id).GetString()));
    int ordre[] = {2, 0, 3, 1};
    liste.SetColumnOrderArray(4, ordre);
    const int largeurs[] = {50, 60, 70, 80};
    for (int c = 0; c < 4; ++c)
        liste.SetColumnWidth(c, largeurs[c]);
    ASSERT_TRUE(liste.SaveState(id));
    EXPECT_EQ(QByteArray("colonnes=4\nordre=2,0,3,1\nlargeurs=50,60,70,80\n"), Lit(CListCtrlExt::CheminEtat(id)));

    // Another list of the same columns gets them back.
    ListeTest autre;
    autre.Create(0, CRect(0, 0, 400, 200), nullptr, 2);
    for (int c = 0; c < 4; ++c)
        autre.InsereUneColonne(c, L"", L"T", LVCFMT_LEFT, 33);
    ASSERT_TRUE(autre.RestoreState(id));
    int lu[4];
    autre.GetColumnOrderArray(lu, 4);
    EXPECT_EQ(std::vector<int>(ordre, ordre + 4), std::vector<int>(lu, lu + 4));
    for (int c = 0; c < 4; ++c)
        EXPECT_EQ(largeurs[c], autre.GetColumnWidth(c));

    // Missing, damaged or foreign files change nothing.
    ListeTest neuve;
    neuve.Create(0, CRect(0, 0, 400, 200), nullptr, 3);
    for (int c = 0; c < 4; ++c)
        neuve.InsereUneColonne(c, L"", L"T", LVCFMT_LEFT, 33);
    EXPECT_FALSE(neuve.RestoreState(L"absente"));
    const char* mauvais[] = {"colonnes=4\nordre=2,0,0,1\nlargeurs=50,60,70,80\n",
                             "colonnes=3\nordre=2,0,1\nlargeurs=50,60,70\n",
                             "colonnes=4\nordre=2,0,3,4\nlargeurs=50,60,70,80\n",
                             "colonnes=4\nordre=2,0,3,1\nlargeurs=50,-60,70,80\n",
                             "colonnes=4\nordre=2,0,3,1\nlargeurs=50,60,70\n",
                             "colonnes=4\nordre=2,0,3,1\nlargeurs=50,6x,70,80\n",
                             "\xff\xfe\x00\x01garbage"};
    for (const char* m : mauvais)
    {
        Ecrit(CListCtrlExt::CheminEtat(L"abimee"), QByteArray(m));
        EXPECT_FALSE(neuve.RestoreState(L"abimee")) << m;
    }
    Ecrit(CListCtrlExt::CheminEtat(L"abimee"), QByteArray(200000, 'x'));
    EXPECT_FALSE(neuve.RestoreState(L"abimee"));
    int ordreNeuf[4];
    neuve.GetColumnOrderArray(ordreNeuf, 4);
    EXPECT_EQ((std::vector<int>{0, 1, 2, 3}), std::vector<int>(ordreNeuf, ordreNeuf + 4));
    EXPECT_EQ(33, neuve.GetColumnWidth(2));

    // The identifier cannot lead out of the folder.
    QString chemin = QString::fromWCharArray(CListCtrlExt::CheminEtat(L"../../etc/x").GetString());
    EXPECT_TRUE(chemin.endsWith("/prefa/listes/_.._.._etc_x.ini")) << chemin.toStdString();
}
