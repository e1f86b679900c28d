// The grid list's header: headings of several lines (a title and its unit), a tip per
// column, a right-click menu that shows and hides columns, and a divider double-click
// that fits the column to its texts and heading.
#pragma once

#include "CHeaderCtrl.h"

class CListCtrlExt;

class CHeaderCtrlExt : public CHeaderCtrl
{
    DECLARE_DYNAMIC(CHeaderCtrlExt)
public:
    explicit CHeaderCtrlExt(CListCtrlExt* pListe) : m_pListe(pListe) {}

    // The number of text lines the header shows; raising it makes the header taller.
    int GetNbLignes() const { return m_nNbLignes; }
    void SetNbLignes(int nLignes);

    void OnRButtonDown(int nItem, CPoint pt) override;
    void OnDividerDblClick(int nItem) override;
    CString GetItemToolTip(int nItem) override;

private:
    CListCtrlExt* m_pListe;
    int m_nNbLignes = 1;
};
