#include "CListCtrlToolTip.h"

IMPLEMENT_DYNAMIC(CListCtrlToolTip, CListCtrl)

BOOL CListCtrlToolTip::CellHitTest(CPoint point, int& nRow, int& nCol) const
{
    LVHITTESTINFO info;
    info.pt = point;
    SubItemHitTest(&info);
    nRow = info.iItem;
    nCol = info.iSubItem;
    if (nRow < 0 || nCol < 0)
    {
        nRow = nCol = -1;
        return FALSE;
    }
    return TRUE;
}

BOOL CListCtrlToolTip::ShowToolTip(int nRow, int nCol) const
{
    CString texte = GetItemText(nRow, nCol);
    // The cell's padding on both sides, as the list draws it.
    return !texte.IsEmpty() && GetStringWidth(texte) + 12 > GetColumnWidth(nCol);
}

CString CListCtrlToolTip::GetToolTipTextInfo(int nRow, int nCol)
{
    return GetItemText(nRow, nCol);
}

INT_PTR CListCtrlToolTip::OnToolHitTest(CPoint point, TOOLINFO* pTI) const
{
    int nRow, nCol;
    if (!CellHitTest(point, nRow, nCol) || !ShowToolTip(nRow, nCol))
        return -1;
    CRect r;
    GetSubItemRect(nRow, nCol, LVIR_BOUNDS, r);
    pTI->uId = IdOutil(nRow, nCol);
    pTI->rect = r;
    return (INT_PTR)pTI->uId;
}

BOOL CListCtrlToolTip::OnToolNeedText(UINT_PTR uId, CString& strText)
{
    int nRow = (int)(uId >> 16) - 1, nCol = (int)(uId & 0xFFFF);
    if (nRow < 0 || nRow >= GetItemCount())
        return FALSE;
    strText = GetToolTipTextInfo(nRow, nCol);
    return TRUE;
}
