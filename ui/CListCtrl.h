// The framework's report-style list control on a Qt item view: columns with headings,
// rows of texts, a value per item, selection and focus states, colours, sorting with
// a comparison callback, and the custom-draw stages through OnCustomDraw. Client
// coordinates are those of the item area (below the header), where editors live.
#pragma once

#include "CHeaderCtrl.h"
#include "CWnd.h"
#include "CommCtrl.h"

class QEvent;
class QTreeView;

namespace prefa_ui_detail
{
class VueListe;
class ModeleListe;
} // namespace prefa_ui_detail

class CListCtrl : public CWnd
{
    DECLARE_DYNAMIC(CListCtrl)
public:
    CListCtrl();
    ~CListCtrl() override;

    // dwStyle takes WS_VISIBLE, WS_DISABLED and LVS_SINGLESEL.
    virtual BOOL Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID);

    // Columns. nWidth -1 fits the heading.
    int InsertColumn(int nCol, LPCTSTR lpszColumnHeading, int nFormat = LVCFMT_LEFT, int nWidth = -1, int nSubItem = -1);
    BOOL DeleteColumn(int nCol);
    BOOL GetColumn(int nCol, LVCOLUMN* pColumn) const;
    BOOL SetColumn(int nCol, const LVCOLUMN* pColumn);
    int GetColumnWidth(int nCol) const;
    // cx 0 hides the column; LVSCW_AUTOSIZE fits the texts, LVSCW_AUTOSIZE_USEHEADER
    // the texts and the heading.
    BOOL SetColumnWidth(int nCol, int cx);
    BOOL GetColumnOrderArray(LPINT piArray, int iCount = -1) const;
    BOOL SetColumnOrderArray(int iCount, LPINT piArray);
    virtual CHeaderCtrl* GetHeaderCtrl();

    // Items and sub-items.
    int GetItemCount() const;
    int InsertItem(int nItem, LPCTSTR lpszItem);
    BOOL DeleteItem(int nItem);
    BOOL DeleteAllItems();
    CString GetItemText(int nItem, int nSubItem) const;
    BOOL SetItemText(int nItem, int nSubItem, LPCTSTR lpszText);
    DWORD_PTR GetItemData(int nItem) const;
    BOOL SetItemData(int nItem, DWORD_PTR dwData);
    int FindItem(LVFINDINFO* pFindInfo, int nStart = -1) const;

    // States: LVIS_SELECTED and LVIS_FOCUSED.
    UINT GetItemState(int nItem, UINT nMask) const;
    BOOL SetItemState(int nItem, UINT nState, UINT nMask);
    int GetNextItem(int nItem, int nFlags) const;
    UINT GetSelectedCount() const;
    POSITION GetFirstSelectedItemPosition() const;
    int GetNextSelectedItem(POSITION& pos) const;

    // Geometry, in client coordinates.
    BOOL GetItemRect(int nItem, LPRECT lpRect, UINT nCode) const;
    BOOL GetSubItemRect(int iItem, int iSubItem, int nArea, CRect& ref) const;
    BOOL EnsureVisible(int nItem, BOOL bPartialOK);
    // Scrolls horizontally so that the column shows.
    void EnsureColumnVisible(int nCol);
    int HitTest(CPoint pt, UINT* pFlags = nullptr) const;
    int SubItemHitTest(LVHITTESTINFO* pInfo) const;
    int GetTopIndex() const;
    int GetCountPerPage() const;
    BOOL RedrawItems(int nFirst, int nLast);
    BOOL Update(int nItem);

    DWORD GetExtendedStyle() const { return m_dwStyleEtendu; }
    DWORD SetExtendedStyle(DWORD dwNewStyle);

    // Sorts the items by the callback, which receives their item data. The sort is
    // stable and stays within bounds whatever the callback answers.
    BOOL SortItems(PFNLVCOMPARE pfnCompare, DWORD_PTR dwData);

    COLORREF GetBkColor() const { return m_clrFond; }
    BOOL SetBkColor(COLORREF cr);
    COLORREF GetTextColor() const { return m_clrTexte; }
    BOOL SetTextColor(COLORREF cr);
    COLORREF GetTextBkColor() const { return m_clrFondTexte; }
    BOOL SetTextBkColor(COLORREF cr);

    // Width of the text in the list's font.
    int GetStringWidth(LPCTSTR lpsz) const;

    QTreeView* GetView() const;

protected:
    // Custom draw: called at each stage the handler asked for (see CommCtrl.h). The
    // default answers CDRF_DODEFAULT.
    virtual void OnCustomDraw(NMLVCUSTOMDRAW* pNMCD, LRESULT* pResult);
    // Mouse and keys, as the window receives them; the defaults do what the list does
    // by itself (select, move the focus, search by typed text), which Default() runs.
    virtual void OnLButtonDown(UINT nFlags, CPoint point);
    virtual void OnLButtonDblClk(UINT nFlags, CPoint point);
    virtual void OnRButtonDown(UINT nFlags, CPoint point);
    virtual void OnKeyDown(UINT nChar, UINT nRepCnt, UINT nFlags);
    virtual void OnChar(UINT nChar, UINT nRepCnt, UINT nFlags);
    virtual void OnColumnClick(int nCol);
    // An item was inserted at nItem (the later ones moved down).
    virtual void OnInsertItem(int nItem);
    // An item is being deleted (by DeleteItem or DeleteAllItems), with its data.
    virtual void OnDeleteItem(int nItem, DWORD_PTR dwData);
    // Tooltips: the tool under the point (its id, or -1 for none) and its text.
    virtual INT_PTR OnToolHitTest(CPoint point, TOOLINFO* pTI) const;
    virtual BOOL OnToolNeedText(UINT_PTR uId, CString& strText);
    // The list's own handling of the message being dispatched.
    void Default();
    // From now on the header's events go to pHeader (which wraps the list's header).
    BOOL SubclassHeaderCtrl(CHeaderCtrl* pHeader);

    QWidget* GetZoneClient() const override;

private:
    friend class prefa_ui_detail::VueListe;
    prefa_ui_detail::VueListe* Vue() const;
    prefa_ui_detail::ModeleListe* m_pModele = nullptr;
    CHeaderCtrl m_HeaderDefaut;
    CHeaderCtrl* m_pHeader = nullptr;
    DWORD m_dwStyleEtendu = 0;
    COLORREF m_clrFond;
    COLORREF m_clrTexte;
    COLORREF m_clrFondTexte;
};
