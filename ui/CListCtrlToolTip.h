// A list that shows a tip per cell: the tip's area is the cell under the mouse, and the
// text comes from GetToolTipTextInfo. By default a cell shows its own text when the
// text is too wide for the column.
#pragma once

#include "CListCtrl.h"

class CListCtrlToolTip : public CListCtrl
{
    DECLARE_DYNAMIC(CListCtrlToolTip)
public:
    // The cell under a point of the client area; FALSE (and -1, -1) when none.
    BOOL CellHitTest(CPoint point, int& nRow, int& nCol) const;
    // Whether the cell shows a tip at all.
    virtual BOOL ShowToolTip(int nRow, int nCol) const;
    // The tip's text for the cell; empty shows none.
    virtual CString GetToolTipTextInfo(int nRow, int nCol);

    // A tool id names its cell: row and column packed as ((row + 1) << 16) | column.
    static UINT_PTR IdOutil(int nRow, int nCol) { return ((UINT_PTR)(nRow + 1) << 16) | (UINT_PTR)(nCol & 0xFFFF); }

protected:
    INT_PTR OnToolHitTest(CPoint point, TOOLINFO* pTI) const override;
    BOOL OnToolNeedText(UINT_PTR uId, CString& strText) override;
};
