// The window layer on its own: objects behind widgets, key messages walking up the
// parents, the list's items, states, order array, geometry, custom-draw stages and sort.
#include "support/TestSupport.h"
#include "ui/CComboBox.h"
#include "ui/CEdit.h"
#include "ui/CListCtrl.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <QTreeView>

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace
{
class Parent : public CWnd
{
public:
    std::vector<WPARAM> touches;
    bool bConsomme = false;
    BOOL PreTranslateMessage(MSG* pMsg) override
    {
        if (pMsg->message == WM_KEYDOWN && pMsg->wParam != VK_CONTROL)
            touches.push_back(pMsg->wParam + (GetKeyState(VK_CONTROL) < 0 ? 0x10000 : 0));
        return bConsomme;
    }
};

// Records the custom-draw stages in order, and asks for all of them.
class ListeEtapes : public CListCtrl
{
public:
    std::vector<std::string> etapes;

protected:
    void OnCustomDraw(NMLVCUSTOMDRAW* pCD, LRESULT* pResult) override
    {
        switch (pCD->nmcd.dwDrawStage)
        {
        case CDDS_PREPAINT:
            etapes.push_back("pre");
            *pResult = CDRF_NOTIFYITEMDRAW | CDRF_NOTIFYPOSTPAINT;
            break;
        case CDDS_ITEMPREPAINT:
            etapes.push_back("item " + std::to_string(pCD->nmcd.dwItemSpec));
            *pResult = CDRF_NOTIFYSUBITEMDRAW | CDRF_NOTIFYPOSTPAINT;
            break;
        case CDDS_ITEMPREPAINT | CDDS_SUBITEM:
            etapes.push_back("sub " + std::to_string(pCD->iSubItem));
            *pResult = CDRF_DODEFAULT;
            break;
        case CDDS_ITEMPOSTPAINT:
            etapes.push_back("itempost " + std::to_string(pCD->nmcd.dwItemSpec));
            break;
        case CDDS_POSTPAINT:
            etapes.push_back("post");
            break;
        }
    }
};

int ParTexte(LPARAM a, LPARAM b, LPARAM)
{
    return (int)a - (int)b;
}

int Hasard(LPARAM, LPARAM, LPARAM)
{
    static std::mt19937 g(7);
    return (int)(g() % 3) - 1;
}
} // namespace

TEST(Fenetres, ObjectsBehindWidgetsAndKeysWalkingUpToTheParents)
{
    Parent parent;
    ASSERT_TRUE(parent.Create(nullptr, L"p", WS_VISIBLE, CRect(0, 0, 200, 100), nullptr, 1));
    CEdit edit;
    ASSERT_TRUE(edit.Create(WS_CHILD | WS_VISIBLE, CRect(5, 5, 105, 25), &parent, 2));
    EXPECT_EQ(&edit, CWnd::FromWidget(edit.GetWidget()));
    EXPECT_EQ(&edit, CWnd::FromHandle(edit.GetSafeHwnd()));
    EXPECT_EQ(&parent, edit.GetParent());
    EXPECT_TRUE(edit.IsKindOf(RUNTIME_CLASS(CWnd)));
    EXPECT_EQ(2, edit.GetDlgCtrlID());
    CRect r;
    edit.GetClientRect(&r);
    EXPECT_EQ(CRect(0, 0, 100, 20), r);

    parent.GetWidget()->show();
    QApplication::setActiveWindow(parent.GetWidget());
    edit.SetFocus();
    QTest::keyClick(edit.GetWidget(), Qt::Key_Return, Qt::ControlModifier);
    QTest::keyClicks(edit.GetWidget(), "ab");
    ASSERT_EQ(3u, parent.touches.size());
    EXPECT_EQ((WPARAM)VK_RETURN + 0x10000, parent.touches[0]);
    EXPECT_EQ((WPARAM)'A', parent.touches[1]);
    EXPECT_EQ(QString("ab"), edit.GetLineEdit()->text());
    // A parent that consumes the key keeps it from the edit box.
    parent.bConsomme = true;
    QTest::keyClicks(edit.GetWidget(), "c");
    EXPECT_EQ(QString("ab"), edit.GetLineEdit()->text());

    edit.SetWindowText(L"béton");
    edit.SetSel(1, 3);
    int d, f;
    edit.GetSel(d, f);
    EXPECT_EQ(1, d);
    EXPECT_EQ(3, f);
    CString t;
    edit.GetWindowText(t);
    EXPECT_EQ(CString(L"béton"), t);

    // The object lets its window go with it; a wrapped window outlives its object.
    QPointer<QWidget> w = edit.GetWidget();
    edit.DestroyWindow();
    EXPECT_TRUE(w.isNull());
    QLineEdit autre;
    {
        CWnd enveloppe;
        ASSERT_TRUE(enveloppe.Attach(&autre));
        EXPECT_FALSE(CWnd().Attach(&autre));  // one object per window
    }
    EXPECT_EQ(nullptr, CWnd::FromWidget(&autre));
}

TEST(Fenetres, ComboBoxListAndText)
{
    CComboBox liste, saisie;
    liste.Create(CBS_DROPDOWNLIST, CRect(0, 0, 80, 20), nullptr, 1);
    saisie.Create(CBS_DROPDOWN, CRect(0, 0, 80, 20), nullptr, 2);
    for (const wchar_t* s : {L"HA 10", L"HA 12", L"ha 12", L"HA 14"})
        liste.AddString(s);
    EXPECT_EQ(1, liste.FindStringExact(-1, L"ha 12"));
    EXPECT_EQ(2, liste.FindStringExact(1, L"HA 12"));
    EXPECT_EQ(1, liste.FindStringExact(2, L"HA 12"));  // wraps round
    EXPECT_EQ(CB_ERR, liste.FindStringExact(-1, L"HA 16"));
    liste.SetWindowText(L"HA 14");
    EXPECT_EQ(3, liste.GetCurSel());
    liste.SetWindowText(L"HA 16");  // not in the list: no choice
    EXPECT_EQ(CB_ERR, liste.GetCurSel());
    saisie.SetWindowText(L"libre");
    CString t;
    saisie.GetWindowText(t);
    EXPECT_EQ(CString(L"libre"), t);
}

TEST(ListeFenetre, ItemsStatesOrderAndGeometry)
{
    CListCtrl l;
    ASSERT_TRUE(l.Create(WS_VISIBLE, CRect(0, 0, 400, 200), nullptr, 1));
    l.InsertColumn(0, L"A", LVCFMT_LEFT, 50);
    l.InsertColumn(1, L"B", LVCFMT_RIGHT, 60);
    l.InsertColumn(2, L"C", LVCFMT_LEFT, 70);
    for (int i = 0; i < 5; ++i)
    {
        l.InsertItem(i, std::to_wstring(i).c_str());
        l.SetItemText(i, 2, L"c");
        l.SetItemData(i, (DWORD_PTR)(100 + i));
    }
    l.InsertItem(0, L"first");
    EXPECT_EQ(6, l.GetItemCount());
    EXPECT_EQ(CString(L"first"), l.GetItemText(0, 0));
    EXPECT_EQ(CString(L""), l.GetItemText(0, 2));
    EXPECT_EQ(CString(L"c"), l.GetItemText(1, 2));
    EXPECT_EQ(CString(L""), l.GetItemText(1, 7));
    EXPECT_FALSE(l.SetItemText(1, 3, L"x"));
    EXPECT_EQ(102u, l.GetItemData(3));
    LVFINDINFO fi;
    fi.lParam = 103;
    EXPECT_EQ(4, l.FindItem(&fi));

    l.SetItemState(2, LVIS_SELECTED, LVIS_SELECTED);
    l.SetItemState(4, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    EXPECT_EQ((UINT)LVIS_SELECTED, l.GetItemState(2, LVIS_SELECTED | LVIS_FOCUSED));
    EXPECT_EQ(2u, l.GetSelectedCount());
    EXPECT_EQ(4, l.GetNextItem(-1, LVNI_FOCUSED));
    std::vector<int> choisis;
    for (POSITION p = l.GetFirstSelectedItemPosition(); p;)
        choisis.push_back(l.GetNextSelectedItem(p));
    EXPECT_EQ((std::vector<int>{2, 4}), choisis);
    l.SetItemState(-1, 0, LVIS_SELECTED);
    EXPECT_EQ(0u, l.GetSelectedCount());

    // Sub-item rectangles follow the display order.
    int ordre[] = {2, 0, 1};
    ASSERT_TRUE(l.SetColumnOrderArray(3, ordre));
    int faux[] = {2, 2, 1};
    EXPECT_FALSE(l.SetColumnOrderArray(3, faux));
    int lu[3];
    l.GetColumnOrderArray(lu, 3);
    EXPECT_EQ(std::vector<int>(ordre, ordre + 3), std::vector<int>(lu, lu + 3));
    CRect r0, r1, r2;
    l.GetSubItemRect(3, 0, LVIR_BOUNDS, r0);
    l.GetSubItemRect(3, 1, LVIR_BOUNDS, r1);
    l.GetSubItemRect(3, 2, LVIR_BOUNDS, r2);
    EXPECT_EQ(0, r2.left);
    EXPECT_EQ(70, r0.left);
    EXPECT_EQ(120, r1.left);
    EXPECT_EQ(60, r1.Width());
    EXPECT_EQ(r0.top, r1.top);
    CRect rPrecedente;
    l.GetSubItemRect(2, 0, LVIR_BOUNDS, rPrecedente);
    EXPECT_EQ(rPrecedente.bottom, r0.top);
    LVHITTESTINFO hit;
    hit.pt = CPoint(125, r0.top + 2);
    EXPECT_EQ(3, l.SubItemHitTest(&hit));
    EXPECT_EQ(1, hit.iSubItem);
    l.SetColumnWidth(1, 0);
    EXPECT_EQ(0, l.GetColumnWidth(1));

    EXPECT_TRUE(l.DeleteItem(0));
    EXPECT_FALSE(l.DeleteItem(5));
    EXPECT_EQ(CString(L"0"), l.GetItemText(0, 0));
}

TEST(ListeFenetre, CustomDrawStagesComeInOrder)
{
    ListeEtapes l;
    ASSERT_TRUE(l.Create(WS_VISIBLE, CRect(0, 0, 300, 150), nullptr, 1));
    l.InsertColumn(0, L"A", LVCFMT_LEFT, 50);
    l.InsertColumn(1, L"B", LVCFMT_LEFT, 50);
    l.InsertItem(0, L"x");
    l.InsertItem(1, L"y");
    l.GetView()->viewport()->grab();
    std::vector<std::string> attendu{"pre", "item 0", "sub 0", "sub 1", "itempost 0",
                                     "item 1", "sub 0", "sub 1", "itempost 1", "post"};
    EXPECT_EQ(attendu, l.etapes);
}

TEST(ListeFenetre, SortIsStableAndStaysInBoundsWithAnyCallback)
{
    CListCtrl l;
    ASSERT_TRUE(l.Create(0, CRect(0, 0, 300, 150), nullptr, 1));
    l.InsertColumn(0, L"A");
    const int cles[] = {3, 1, 3, 2, 1, 3};
    for (int i = 0; i < 6; ++i)
    {
        l.InsertItem(i, std::to_wstring(i).c_str());
        l.SetItemData(i, (DWORD_PTR)cles[i]);
    }
    l.SetItemState(2, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    ASSERT_TRUE(l.SortItems(&ParTexte, 0));
    std::wstring ordre;
    for (int i = 0; i < 6; ++i)
        ordre += l.GetItemText(i, 0).GetString();
    EXPECT_EQ(L"143025", ordre);
    // The selection and the focus stay on their item ("2", now fifth).
    EXPECT_EQ(4, l.GetNextItem(-1, LVNI_SELECTED));
    EXPECT_EQ(4, l.GetNextItem(-1, LVNI_FOCUSED));

    for (int i = 6; i < 300; ++i)
        l.InsertItem(i, std::to_wstring(i).c_str());
    ASSERT_TRUE(l.SortItems(&Hasard, 0));
    std::vector<bool> vu(300, false);
    for (int i = 0; i < 300; ++i)
        vu[(std::size_t)std::stoi(l.GetItemText(i, 0).GetString())] = true;
    EXPECT_EQ(std::vector<bool>(300, true), vu);
}
