// Colours as drawn: the widget rendered to an image, the pixel read at a cell's centre.
#include "GrilleFixture.h"

#include <QImage>

using namespace prefa_test;

namespace
{
QRgb Rgb(COLORREF c)
{
    return qRgb(GetRValue(c), GetGValue(c), GetBValue(c));
}
} // namespace

class Dessin : public Grille
{
protected:
    QRgb Pixel(int nRow, int nCol, int dx = -1)
    {
        CRect r;
        liste.GetSubItemRect(nRow, nCol, LVIR_BOUNDS, r);
        QImage image = liste.GetView()->viewport()->grab().toImage();
        int x = dx < 0 ? r.CenterPoint().x : r.left + dx;
        return image.pixel(x, r.CenterPoint().y) | 0xFF000000u;
    }
};

TEST_F(Dessin, ColoursComeFromTheFirstLevelThatHasAny)
{
    const COLORREF defaut = RGB(240, 240, 200), colonne = RGB(1, 2, 3), ligne = RGB(10, 20, 30), cellule = RGB(100, 110, 120);
    for (int r = 0; r < 3; ++r)
        for (int c = 0; c < 4; ++c)
            liste.SetItemText(r, c, L"");
    liste.SetItemState(-1, 0, LVIS_SELECTED | LVIS_FOCUSED);
    liste.SetDefaultColors(defaut, CLR_NONE);
    liste.SetColumnColors(3, colonne, RGB(255, 255, 255));
    liste.SetRowColors(1, ligne, RGB(255, 255, 255));
    liste.SetRowColors(2, RGB(50, 60, 70), CLR_NONE);
    liste.SetCellColors(2, 3, cellule, CLR_NONE);
    liste.SetCellColors(2, 0, CLR_NONE, RGB(200, 0, 0));  // text only
    EXPECT_EQ(Rgb(defaut), Pixel(0, 0));
    EXPECT_EQ(Rgb(colonne), Pixel(0, 3));
    EXPECT_EQ(Rgb(ligne), Pixel(1, 3));
    EXPECT_EQ(Rgb(cellule), Pixel(2, 3));
    EXPECT_EQ(Rgb(RGB(50, 60, 70)), Pixel(2, 1));
    // A cell with only a text colour takes the list's default background, not its row's.
    EXPECT_EQ(Rgb(defaut), Pixel(2, 0));

    // Without a list default, the platform's window colour.
    liste.SetDefaultColors(CLR_NONE, CLR_NONE);
    EXPECT_EQ(Rgb(liste.GetBkColor()), Pixel(0, 0));
}

TEST_F(Dessin, TextColourOfACell)
{
    liste.SetItemState(-1, 0, LVIS_SELECTED | LVIS_FOCUSED);
    liste.SetItemText(0, 1, L"\u2588\u2588\u2588\u2588\u2588\u2588");
    liste.SetCellColors(0, 1, CLR_NONE, RGB(0, 0, 255));
    EXPECT_EQ(Rgb(RGB(0, 0, 255)), Pixel(0, 1, 14));
    liste.SetCellColors(0, 1, CLR_NONE, CLR_NONE);
    liste.SetDefaultColors(CLR_NONE, RGB(0, 128, 0));
    EXPECT_EQ(Rgb(RGB(0, 128, 0)), Pixel(0, 1, 14));
}

TEST_F(Dessin, ADisabledListPaintsItsOwnBackgroundOverEveryCell)
{
    liste.SetItemState(-1, 0, LVIS_SELECTED | LVIS_FOCUSED);
    liste.SetItemText(1, 2, L"");
    liste.SetItemText(0, 0, L"");
    liste.SetCellColors(1, 2, RGB(9, 9, 9), CLR_NONE);
    liste.EnableWindow(FALSE);
    EXPECT_EQ(Rgb(RGB(215, 210, 186)), Pixel(1, 2));
    EXPECT_EQ(Rgb(RGB(215, 210, 186)), Pixel(0, 0));
    liste.EnableWindow(TRUE);
    EXPECT_EQ(Rgb(RGB(9, 9, 9)), Pixel(1, 2));
}

TEST_F(Dessin, TheFocusCellOfTheSelectedRowIsDrawnUnselected)
{
    for (int c = 0; c < 4; ++c)
        liste.SetItemText(1, c, L"");
    liste.SetRowColors(1, RGB(10, 20, 30), CLR_NONE);
    liste.SetGridBehaviour(TRUE);
    liste.SelectItem(1);
    liste.SetFocusCell(2);
    liste.SetFocus();
    QRgb surligne = Pixel(1, 0);
    EXPECT_NE(Rgb(RGB(10, 20, 30)), surligne);
    EXPECT_EQ(Rgb(RGB(10, 20, 30)), Pixel(1, 2));
    // The focus rectangle runs along the focus cell's top edge, inside the cell.
    CRect r;
    liste.GetSubItemRect(1, 2, LVIR_BOUNDS, r);
    QImage image = liste.GetView()->viewport()->grab().toImage();
    int nPoints = 0;
    for (int x = r.left + 1; x < r.right - 1; ++x)
        nPoints += (image.pixel(x, r.top) & 0xFFFFFF) == 0;
    EXPECT_GT(nPoints, r.Width() / 4);
    int nAilleurs = 0;
    for (int x = r.right + 2; x < r.right + 60; ++x)
        nAilleurs += (image.pixel(x, r.top) & 0xFFFFFF) == 0;
    EXPECT_EQ(0, nAilleurs);
}
