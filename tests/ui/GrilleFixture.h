// A dialog with a grid list of bars (name, x, y, diameter) as an application builds it:
// a CWnd parent that answers the edit request, an edit box for every column and a
// derived list whose hooks record their calls and answer as the test tells them.
#pragma once

#include "support/TestSupport.h"
#include "ui/CEdit.h"
#include "ui/CListCtrlExt.h"

#include <QApplication>
#include <QTest>
#include <QTreeView>

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace prefa_test
{

class DialogueTest : public CWnd
{
public:
    bool bAutorise = true;
    std::vector<std::pair<int, int>> demandes;  // (row, column) asked
    std::vector<int> commandes;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == WM_AUTORISE_SAISIE)
        {
            demandes.emplace_back(LOWORD(wParam), HIWORD(wParam));
            return bAutorise ? 1 : 0;
        }
        if (message == WM_COMMAND)
            commandes.push_back(LOWORD(wParam));
        return CWnd::WindowProc(message, wParam, lParam);
    }
};

class ListeTest : public CListCtrlExt
{
public:
    std::vector<std::string> appels;
    std::function<BOOL(int, int, const CString&, BOOL)> validationCellule;
    std::function<BOOL(int)> validationLigne;
    bool bSupprime = true;
    bool bInsere = true;
    bool bInsereAvant = false;  // the new row comes before the insertion point

protected:
    BOOL ValidationCellule(int nRow, int nCol, const CString& texte, BOOL bFinal) override
    {
        appels.push_back("cellule " + std::to_string(nRow) + "," + std::to_string(nCol) + (bFinal ? " final" : ""));
        return validationCellule ? validationCellule(nRow, nCol, texte, bFinal) : TRUE;
    }
    BOOL ValidationLigne(int nRow) override
    {
        appels.push_back("ligne " + std::to_string(nRow));
        return validationLigne ? validationLigne(nRow) : TRUE;
    }
    BOOL SuppressionLigne(int nRow) override
    {
        appels.push_back("suppression " + std::to_string(nRow));
        return bSupprime && DeleteItem(nRow);
    }
    BOOL InsertionLigne(int* pnRow) override
    {
        appels.push_back("insertion " + std::to_string(*pnRow));
        if (!bInsere)
            return FALSE;
        *pnRow = InsertItem(bInsereAvant ? *pnRow : *pnRow + 1, L"");
        return TRUE;
    }
};

// The dialog's window, the list (4 columns, 3 rows) and one edit box per column.
class Grille : public ::testing::Test
{
protected:
    void SetUp() override
    {
        dialogue.Create(nullptr, L"test", WS_VISIBLE, CRect(0, 0, 520, 300), nullptr, 0);
        ASSERT_TRUE(liste.Create(WS_CHILD | WS_VISIBLE, CRect(10, 10, 510, 290), &dialogue, 100));
        const wchar_t* titres[] = {L"Nom", L"X", L"Y", L"Diamètre"};
        for (int c = 0; c < 4; ++c)
        {
            editeurs[c].Create(WS_CHILD, CRect(0, 0, 10, 10), &dialogue, 200 + c);
            liste.InsereUneColonne(c, titres[c], titres[c], LVCFMT_LEFT, 100, TRI_CROISSANT, COMPARE_TEXTE, &editeurs[c]);
        }
        for (int r = 0; r < 3; ++r)
        {
            std::wstring nom = L"B" + std::to_wstring(r);
            liste.AddItem({nom.c_str(), L"0", L"0", L"12"});
        }
        QWidget* fenetre = dialogue.GetWidget();
        fenetre->show();
        QApplication::setActiveWindow(fenetre);
        ASSERT_TRUE(QTest::qWaitForWindowExposed(fenetre));
        liste.SetFocus();
        QApplication::processEvents();
    }

    // A key to whatever has the focus, as the user types it.
    void Touche(Qt::Key k, Qt::KeyboardModifiers m = Qt::NoModifier)
    {
        QWidget* cible = QApplication::focusWidget() ? QApplication::focusWidget() : liste.GetWidget();
        QTest::keyClick(cible, k, m);
    }
    void Tape(const char* texte)
    {
        QTest::keyClicks(QApplication::focusWidget(), texte);
    }
    // The cell the open editor is on, as (row, column); (-1, -1) when none is open.
    std::pair<int, int> Edition() const
    {
        return liste.IsEditionEnCours() ? std::make_pair(liste.GetEditingRow(), liste.GetEditingCol()) : std::make_pair(-1, -1);
    }
    void Clic(int nRow, int nCol, Qt::MouseButton b = Qt::LeftButton)
    {
        CRect r;
        liste.GetSubItemRect(nRow, nCol, LVIR_BOUNDS, r);
        QTest::mouseClick(liste.GetView()->viewport(), b, Qt::NoModifier, QPoint(r.CenterPoint().x, r.CenterPoint().y));
    }

    DialogueTest dialogue;
    ListeTest liste;
    CEdit editeurs[4];
};

} // namespace prefa_test
