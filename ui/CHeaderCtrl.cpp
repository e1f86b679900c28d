#include "CHeaderCtrl.h"

#include <QHeaderView>

#include <vector>

IMPLEMENT_DYNAMIC(CHeaderCtrl, CWnd)

QHeaderView* CHeaderCtrl::GetHeaderView() const
{
    return dynamic_cast<QHeaderView*>(GetWidget());
}

int CHeaderCtrl::GetItemCount() const
{
    QHeaderView* h = GetHeaderView();
    return h ? h->count() : 0;
}

BOOL CHeaderCtrl::GetItemRect(int nIndex, LPRECT lpRect) const
{
    QHeaderView* h = GetHeaderView();
    if (!h || nIndex < 0 || nIndex >= h->count())
        return FALSE;
    int x = h->sectionViewportPosition(nIndex);
    *lpRect = CRect(x, 0, x + h->sectionSize(nIndex), h->height());
    return TRUE;
}

BOOL CHeaderCtrl::GetOrderArray(LPINT piArray, int iCount) const
{
    QHeaderView* h = GetHeaderView();
    if (!h || !piArray || iCount < h->count())
        return FALSE;
    for (int v = 0; v < h->count(); ++v)
        piArray[v] = h->logicalIndex(v);
    return TRUE;
}

BOOL CHeaderCtrl::SetOrderArray(int iCount, LPINT piArray)
{
    QHeaderView* h = GetHeaderView();
    if (!h || !piArray || iCount != h->count())
        return FALSE;
    std::vector<bool> vu((std::size_t)iCount, false);
    for (int v = 0; v < iCount; ++v)
    {
        if (piArray[v] < 0 || piArray[v] >= iCount || vu[(std::size_t)piArray[v]])
            return FALSE;
        vu[(std::size_t)piArray[v]] = true;
    }
    for (int v = 0; v < iCount; ++v)
        h->moveSection(h->visualIndex(piArray[v]), v);
    return TRUE;
}

int CHeaderCtrl::OrderToIndex(int nOrder) const
{
    QHeaderView* h = GetHeaderView();
    return h ? h->logicalIndex(nOrder) : -1;
}

int CHeaderCtrl::IndexToOrder(int nIndex) const
{
    QHeaderView* h = GetHeaderView();
    return h ? h->visualIndex(nIndex) : -1;
}

void CHeaderCtrl::SetMinHeight(int nPixels)
{
    if (QHeaderView* h = GetHeaderView())
        h->setMinimumHeight(nPixels);
}

void CHeaderCtrl::OnRButtonDown(int, CPoint) {}

void CHeaderCtrl::OnDividerDblClick(int) {}

CString CHeaderCtrl::GetItemToolTip(int)
{
    return CString();
}
