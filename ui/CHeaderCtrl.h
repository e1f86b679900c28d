// The framework's header control of a report list, on the list's QHeaderView. Items
// are columns by index; the order array gives, for each display position, the index
// of the column shown there.
#pragma once

#include "CWnd.h"

class QHeaderView;

class CHeaderCtrl : public CWnd
{
    DECLARE_DYNAMIC(CHeaderCtrl)
public:
    int GetItemCount() const;
    // The item's rectangle in the header's client coordinates (empty when hidden).
    BOOL GetItemRect(int nIndex, LPRECT lpRect) const;
    BOOL GetOrderArray(LPINT piArray, int iCount) const;
    // Refused (FALSE, nothing moved) unless the array is a permutation of the items.
    BOOL SetOrderArray(int iCount, LPINT piArray);
    int OrderToIndex(int nOrder) const;
    int IndexToOrder(int nIndex) const;
    // Height in pixels the header keeps at least (0 lets the header choose).
    void SetMinHeight(int nPixels);

    // What the header does with its own mouse actions; the defaults do nothing. pt is
    // in header coordinates, nItem the column under it (-1 when none).
    virtual void OnRButtonDown(int nItem, CPoint pt);
    virtual void OnDividerDblClick(int nItem);
    // The tip shown over an item; empty for none.
    virtual CString GetItemToolTip(int nItem);

    QHeaderView* GetHeaderView() const;
};
