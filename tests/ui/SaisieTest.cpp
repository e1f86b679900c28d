// Editing driven by real keys and mouse clicks: the walk over editable cells, read-only
// levels, validation, row insertion and deletion, the parent's veto, and the hooks.
#include "GrilleFixture.h"

#include "ui/CComboBox.h"

#include <QComboBox>
#include <QLineEdit>
#include <QTimer>

using namespace prefa_test;

namespace
{
std::vector<std::pair<int, int>> Marche(std::function<void()> touche, std::function<std::pair<int, int>()> cellule, int n)
{
    std::vector<std::pair<int, int>> cellules;
    for (int i = 0; i < n; ++i)
    {
        touche();
        cellules.push_back(cellule());
    }
    return cellules;
}
} // namespace

TEST_F(Grille, EnterWalksEditableCellsAndWrapsFromTheLastToTheFirst)
{
    ASSERT_TRUE(liste.SaisieCellule(2, 2));
    auto cellules = Marche([&] { Touche(Qt::Key_Return); }, [&] { return Edition(); }, 3);
    std::vector<std::pair<int, int>> attendu{{2, 3}, {0, 0}, {0, 1}};
    EXPECT_EQ(attendu, cellules);
    // Every cell left was validated (not final), and the row at its end (final).
    EXPECT_NE(std::find(liste.appels.begin(), liste.appels.end(), "cellule 2,3 final"), liste.appels.end());
    EXPECT_NE(std::find(liste.appels.begin(), liste.appels.end(), "ligne 2"), liste.appels.end());
    // The editor sits over its cell, in the list.
    CRect r, e;
    liste.GetSubItemRect(0, 1, LVIR_BOUNDS, r);
    QRect g = editeurs[1].GetWidget()->geometry();
    EXPECT_EQ(QRect(r.left, r.top, r.Width(), r.Height()), g);
    EXPECT_EQ(editeurs[1].GetWidget(), QApplication::focusWidget());
    EXPECT_EQ(liste.GetView()->viewport(), editeurs[1].GetWidget()->parentWidget());
}

TEST_F(Grille, EnterSkipsReadOnlyRowsColumnsCellsAndHiddenColumns)
{
    liste.SetRowReadOnly(1);
    liste.SetColumnReadOnly(2);
    liste.SetCellReadOnly(2, 1);
    liste.SetAfficheColonne(3, FALSE);
    ASSERT_TRUE(liste.SaisieCellule(0, 0));
    auto cellules = Marche([&] { Touche(Qt::Key_Return); }, [&] { return Edition(); }, 4);
    std::vector<std::pair<int, int>> attendu{{0, 1}, {2, 0}, {0, 0}, {0, 1}};
    EXPECT_EQ(attendu, cellules);
    // None of them opens by hand either.
    EXPECT_FALSE(liste.SaisieCellule(1, 0));
    EXPECT_FALSE(liste.SaisieCellule(0, 2));
    EXPECT_FALSE(liste.SaisieCellule(2, 1));
    EXPECT_FALSE(liste.SaisieCellule(0, 3));
}

TEST_F(Grille, RefusedCellKeepsTheFocusInTheEditorWithTheTextIntact)
{
    liste.validationCellule = [](int, int c, const CString& t, BOOL) { return c != 1 || t != L"abc"; };
    ASSERT_TRUE(liste.SaisieCellule(0, 1));
    Tape("abc");
    Touche(Qt::Key_Return);
    EXPECT_EQ(std::make_pair(0, 1), Edition());
    EXPECT_EQ(editeurs[1].GetWidget(), QApplication::focusWidget());
    EXPECT_EQ(QString("abc"), editeurs[1].GetLineEdit()->text());
    // A click elsewhere is refused as well: the user stays in the cell.
    Clic(2, 0);
    EXPECT_EQ(std::make_pair(0, 1), Edition());
    EXPECT_EQ(QString("abc"), editeurs[1].GetLineEdit()->text());
    // Corrected, Enter goes on.
    editeurs[1].GetLineEdit()->clear();
    Tape("7.5");
    Touche(Qt::Key_Return);
    EXPECT_EQ(std::make_pair(0, 2), Edition());
    EXPECT_EQ(CString(L"7.5"), liste.GetItemText(0, 1));
}

TEST_F(Grille, RefusedRowAtTheEndOfTheWalkOpensTheRefusedCell)
{
    liste.validationCellule = [](int r, int c, const CString& t, BOOL bFinal) { return !(bFinal && r == 0 && c == 1 && t == L"0"); };
    ASSERT_TRUE(liste.SaisieCellule(0, 3));
    Touche(Qt::Key_Return);
    EXPECT_EQ(std::make_pair(0, 1), Edition());
}

TEST_F(Grille, EscapeClosesWithoutKeepingTheText)
{
    ASSERT_TRUE(liste.SaisieCellule(1, 0));
    Tape("xyz");
    Touche(Qt::Key_Escape);
    EXPECT_FALSE(liste.IsEditionEnCours());
    EXPECT_EQ(CString(L"B1"), liste.GetItemText(1, 0));
    EXPECT_EQ(liste.GetWidget(), QApplication::focusWidget());
}

TEST_F(Grille, CtrlInsertAndCtrlDeleteCallTheHooksAndSelectTheRightRow)
{
    ASSERT_TRUE(liste.SaisieCellule(1, 2));
    Tape("4");
    Touche(Qt::Key_Insert, Qt::ControlModifier);
    EXPECT_EQ(4, liste.GetItemCount());
    EXPECT_EQ(CString(L"4"), liste.GetItemText(1, 2));
    EXPECT_EQ(std::make_pair(2, 0), Edition());
    EXPECT_EQ("insertion 1", liste.appels.back());
    EXPECT_EQ(2, liste.GetNextItem(-1, LVNI_SELECTED));

    // Deleting the last row selects the new last one; another keeps its index.
    liste.HideEditor(TRUE);
    liste.SelectItem(3);
    Touche(Qt::Key_Delete, Qt::ControlModifier);
    EXPECT_EQ("suppression 3", liste.appels.back());
    EXPECT_EQ(3, liste.GetItemCount());
    EXPECT_EQ(2, liste.GetNextItem(-1, LVNI_SELECTED));
    EXPECT_EQ(2, liste.GetNextItem(-1, LVNI_FOCUSED));
    liste.SelectItem(0);
    Touche(Qt::Key_Delete, Qt::ControlModifier);
    EXPECT_EQ(CString(L"B1"), liste.GetItemText(0, 0));
    EXPECT_EQ(0, liste.GetNextItem(-1, LVNI_SELECTED));

    // A row inserted before the edited one: what was typed stays in its own row.
    liste.bInsereAvant = true;
    ASSERT_TRUE(liste.SaisieCellule(1, 1));
    Tape("8");
    Touche(Qt::Key_Insert, Qt::ControlModifier);
    EXPECT_EQ(CString(L""), liste.GetItemText(1, 1));
    EXPECT_EQ(CString(L"8"), liste.GetItemText(2, 1));
    EXPECT_EQ(std::make_pair(1, 0), Edition());
    liste.HideEditor(FALSE);
    liste.DeleteItem(1);
    liste.bInsereAvant = false;

    // A hook that refuses changes nothing.
    liste.bSupprime = false;
    liste.bInsere = false;
    Touche(Qt::Key_Delete, Qt::ControlModifier);
    Touche(Qt::Key_Insert, Qt::ControlModifier);
    EXPECT_EQ(2, liste.GetItemCount());
    EXPECT_FALSE(liste.IsEditionEnCours());
}

TEST_F(Grille, TheParentVetoesEditsWithTheRowAndColumn)
{
    dialogue.bAutorise = false;
    EXPECT_FALSE(liste.SaisieCellule(2, 3));
    EXPECT_FALSE(liste.IsEditionEnCours());
    ASSERT_EQ(1u, dialogue.demandes.size());
    EXPECT_EQ(std::make_pair(2, 3), dialogue.demandes[0]);
    dialogue.bAutorise = true;
    Clic(2, 3);
    EXPECT_EQ(std::make_pair(2, 3), Edition());
    EXPECT_EQ(std::make_pair(2, 3), dialogue.demandes.back());
}

TEST_F(Grille, ClickAndTypingOpenTheEditor)
{
    Clic(1, 2);
    EXPECT_EQ(std::make_pair(1, 2), Edition());
    EXPECT_EQ(2, liste.GetFocusCell());
    Tape("35");
    Clic(2, 0);  // leaving by the mouse keeps what was typed
    EXPECT_EQ(CString(L"35"), liste.GetItemText(1, 2));
    Touche(Qt::Key_Escape);
    // A character typed on the list replaces the focus cell's text.
    Touche(Qt::Key_9);
    EXPECT_EQ(std::make_pair(2, 0), Edition());
    Touche(Qt::Key_Return);
    EXPECT_EQ(CString(L"9"), liste.GetItemText(2, 0));
}

TEST_F(Grille, FocusLeavingForAnotherControlValidatesAndCommits)
{
    CEdit autre;
    autre.Create(WS_CHILD | WS_VISIBLE, CRect(0, 0, 50, 20), &dialogue, 300);
    liste.validationCellule = [](int, int, const CString& t, BOOL) { return t != L"non"; };
    ASSERT_TRUE(liste.SaisieCellule(0, 0));
    Tape("non");
    autre.SetFocus();
    EXPECT_TRUE(liste.IsEditionEnCours());
    EXPECT_EQ(editeurs[0].GetWidget(), QApplication::focusWidget());
    editeurs[0].SetWindowText(L"oui");
    autre.SetFocus();
    EXPECT_FALSE(liste.IsEditionEnCours());
    EXPECT_EQ(CString(L"oui"), liste.GetItemText(0, 0));
}

TEST_F(Grille, EditorLevelsAndComboBox)
{
    CComboBox combo;
    combo.Create(CBS_DROPDOWNLIST, CRect(0, 0, 10, 10), &dialogue, 400);
    combo.AddString(L"10");
    combo.AddString(L"12");
    combo.AddString(L"14");
    // The cell's editor beats the row's, the row's the column's.
    liste.SetRowEditor(1, &editeurs[0]);
    liste.SetCellEditor(1, 3, &combo);
    ASSERT_TRUE(liste.SaisieCellule(1, 3));
    EXPECT_EQ(&combo, liste.GetEditeurCourant());
    EXPECT_EQ(QString("12"), combo.GetComboBox()->currentText());
    Touche(Qt::Key_Down);
    Touche(Qt::Key_Return);
    EXPECT_EQ(CString(L"14"), liste.GetItemText(1, 3));
    ASSERT_TRUE(liste.SaisieCellule(1, 2));
    EXPECT_EQ(&editeurs[0], liste.GetEditeurCourant());
    // A read-only editor record, and a record with neither window nor hook, give none.
    liste.SetCellEditor(0, 1, TRUE, FALSE, FALSE, &editeurs[1]);
    EXPECT_FALSE(liste.SaisieCellule(0, 1));
    liste.SetColumnEditor(2, FALSE, TRUE, FALSE, nullptr);
    EXPECT_FALSE(liste.SaisieCellule(0, 2));
}

namespace
{
// An application's hooks: a toggle cell edited without window, and an end hook that
// normalises what was typed.
class ListeAvecHooks : public ListeTest
{
public:
    int nInit = 0, nFin = 0;

protected:
    BOOL InitEditor(CWnd** ppWnd, int, int nCol, CString& texte, DWORD_PTR, CListCtrlExt*, BOOL) override
    {
        ++nInit;
        if (nCol == 0)
        {
            *ppWnd = nullptr;
            texte = texte == L"oui" ? L"non" : L"oui";
        }
        return FALSE;
    }
    BOOL EndEditor(CWnd**, int, int, CString& texte, DWORD_PTR, CListCtrlExt*, BOOL bCommit) override
    {
        ++nFin;
        if (bCommit)
            texte.Trim();
        return TRUE;
    }
};
} // namespace

TEST(GrilleHooks, OverriddenHooksEditAndNormaliseMissingOnesWarnTheDeveloper)
{
    ListeAvecHooks liste;
    ASSERT_TRUE(liste.Create(WS_VISIBLE, CRect(0, 0, 300, 200), nullptr, 1));
    CEdit edit;
    edit.Create(0, CRect(0, 0, 10, 10), nullptr, 2);
    liste.InsereUneColonne(0, L"a", L"A");
    liste.InsereUneColonne(1, L"b", L"B");
    liste.AddItem({L"oui", L"x"});
    liste.SetColumnEditor(0, FALSE, FALSE, TRUE, nullptr);
    liste.SetColumnEditor(1, FALSE, TRUE, FALSE, &edit);
    EXPECT_TRUE(liste.SaisieCellule(0, 0));
    EXPECT_FALSE(liste.IsEditionEnCours());
    EXPECT_EQ(CString(L"non"), liste.GetItemText(0, 0));
    EXPECT_TRUE(liste.SaisieCellule(0, 1));
    edit.SetWindowText(L"  5 ");
    liste.HideEditor(TRUE);
    EXPECT_EQ(CString(L"5"), liste.GetItemText(0, 1));
    EXPECT_EQ(1, liste.nInit);
    EXPECT_EQ(1, liste.nFin);

    // A list that asks for hooks it does not define tells the developer, and goes on.
    ListeTest brute;
    brute.Create(WS_VISIBLE, CRect(0, 0, 300, 200), nullptr, 3);
    brute.InsereUneColonne(0, L"a", L"A");
    brute.AddItem(L"t");
    brute.SetColumnEditor(0, FALSE, TRUE, TRUE, &edit);
    MessageBoxCapture boites;
    EXPECT_TRUE(brute.SaisieCellule(0, 0));
    EXPECT_EQ(QString("t"), edit.GetLineEdit()->text());
    edit.SetWindowText(L"u");
    brute.HideEditor(TRUE);
    ASSERT_EQ(2u, boites.boxes.size());
    EXPECT_EQ(CString(L"InitEditor à definir"), boites.boxes[0].text);
    EXPECT_EQ(CString(L"EndEditor à definir"), boites.boxes[1].text);
    EXPECT_EQ(CString(L"u"), brute.GetItemText(0, 0));
}

TEST_F(Grille, ClosingTwiceOrDuringAValidationBoxKeepsTheTextAndDoesNotCrash)
{
    // The validation shows a box (a nested event loop); meanwhile the focus moves away
    // and the application closes the editor twice.
    int nBoites = 0;
    AfxMessageBoxHandler avant = AfxSetMessageBoxHandler([&](const CString&, UINT) {
        ++nBoites;
        QEventLoop boucle;
        QTimer::singleShot(0, [&] {
            dialogue.GetWidget()->setFocus();
            liste.HideEditor(TRUE);
            liste.HideEditor(TRUE);
            boucle.quit();
        });
        boucle.exec();
        return IDOK;
    });
    liste.validationCellule = [](int, int, const CString& t, BOOL) {
        if (t == L"mauvais")
            AfxMessageBox(L"valeur refusée");
        return t != L"mauvais";
    };
    ASSERT_TRUE(liste.SaisieCellule(0, 1));
    Tape("mauvais");
    Touche(Qt::Key_Return);
    AfxSetMessageBoxHandler(avant);
    EXPECT_EQ(1, nBoites);
    EXPECT_FALSE(liste.IsEditionEnCours());
    EXPECT_EQ(CString(L"mauvais"), liste.GetItemText(0, 1));
    // Closing again, or with no editor, does nothing.
    liste.HideEditor(TRUE);
    liste.HideEditor(FALSE);
    EXPECT_EQ(CString(L"mauvais"), liste.GetItemText(0, 1));
    // A row deleted under the open editor closes it without writing anywhere.
    ASSERT_TRUE(liste.SaisieCellule(2, 0));
    Tape("zz");
    liste.DeleteItem(2);
    EXPECT_FALSE(liste.IsEditionEnCours());
    EXPECT_EQ(2, liste.GetItemCount());
}

TEST_F(Grille, AcceleratorsGoToTheParentAsCommands)
{
    ACCEL a{FVIRTKEY | FCONTROL, 'S', 4321};
    liste.SetAccelerateurs(&a, 1);
    Touche(Qt::Key_S, Qt::ControlModifier);
    ASSERT_EQ(1u, dialogue.commandes.size());
    EXPECT_EQ(4321, dialogue.commandes[0]);
    Touche(Qt::Key_S);  // without Ctrl it is a character again
    EXPECT_EQ(1u, dialogue.commandes.size());
}
