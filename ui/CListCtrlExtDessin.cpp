// Drawing of the grid list: colours by level, the disabled colour, and the focus cell.
#include "CListCtrlExt.h"

#include "CDC.h"

namespace
{
// The background of a disabled list, whatever the cells' own colours.
constexpr COLORREF kFondInactif = RGB(215, 210, 186);
} // namespace

void CListCtrlExt::CouleursCellule(int nRow, int nCol, COLORREF& clrFond, COLORREF& clrTexte) const
{
    const CellInfo* ce = Cellule(nRow, nCol);
    const ItemInfo* l = Ligne(nRow);
    const ColumnInfo* c = Colonne(nCol);
    // The first level with any colour set gives both, its unset one replaced by the
    // list's default.
    COLORREF fond = CLR_NONE, texte = CLR_NONE;
    if (ce && (ce->m_clrFond != CLR_NONE || ce->m_clrTexte != CLR_NONE))
        fond = ce->m_clrFond, texte = ce->m_clrTexte;
    else if (l && (l->m_clrFond != CLR_NONE || l->m_clrTexte != CLR_NONE))
        fond = l->m_clrFond, texte = l->m_clrTexte;
    else if (c && (c->m_clrFond != CLR_NONE || c->m_clrTexte != CLR_NONE))
        fond = c->m_clrFond, texte = c->m_clrTexte;
    clrFond = fond != CLR_NONE ? fond : m_clrFondDefaut != CLR_NONE ? m_clrFondDefaut : CLR_DEFAULT;
    clrTexte = texte != CLR_NONE ? texte : m_clrTexteDefaut != CLR_NONE ? m_clrTexteDefaut : CLR_DEFAULT;
}

void CListCtrlExt::OnCustomDraw(NMLVCUSTOMDRAW* pCD, LRESULT* pResult)
{
    int nItem = (int)pCD->nmcd.dwItemSpec;
    switch (pCD->nmcd.dwDrawStage)
    {
    case CDDS_PREPAINT:
        m_bActifDessine = IsWindowEnabled() != FALSE;
        *pResult = CDRF_NOTIFYITEMDRAW;
        break;
    case CDDS_ITEMPREPAINT:
        *pResult = CDRF_NOTIFYSUBITEMDRAW;
        if (GetItemState(nItem, LVIS_FOCUSED))
        {
            // The focus is drawn at post-paint, around the focus cell.
            pCD->nmcd.uItemState &= ~CDIS_FOCUS;
            *pResult |= CDRF_NOTIFYPOSTPAINT;
        }
        break;
    case CDDS_ITEMPREPAINT | CDDS_SUBITEM:
    {
        CouleursCellule(nItem, pCD->iSubItem, pCD->clrTextBk, pCD->clrText);
        if (!IsWindowEnabled())
            pCD->clrTextBk = kFondInactif;
        if (pCD->iSubItem == m_nFocusCol && GetItemState(nItem, LVIS_FOCUSED | LVIS_SELECTED) == (LVIS_FOCUSED | LVIS_SELECTED))
            pCD->nmcd.uItemState &= ~CDIS_SELECTED;
        *pResult = CDRF_DODEFAULT;
        break;
    }
    case CDDS_ITEMPOSTPAINT:
        DessineFocus(pCD);
        *pResult = CDRF_DODEFAULT;
        break;
    default:
        *pResult = CDRF_DODEFAULT;
        break;
    }
}

void CListCtrlExt::DessineFocus(NMLVCUSTOMDRAW* pCD)
{
    int nItem = (int)pCD->nmcd.dwItemSpec;
    if (!m_bGrid || !(GetExtendedStyle() & LVS_EX_FULLROWSELECT) || !GetItemState(nItem, LVIS_FOCUSED))
        return;
    CRect r;
    bool bCellule = m_nFocusCol >= 0 && GetSubItemRect(nItem, m_nFocusCol, LVIR_BOUNDS, r);
    if (!bCellule)
        GetItemRect(nItem, &r, LVIR_BOUNDS);
    // One border width off the bottom, and off the left unless the column comes first.
    const int nBord = 1;
    r.bottom -= nBord;
    if (bCellule && GetHeaderCtrl()->IndexToOrder(m_nFocusCol) != 0)
        r.left += nBord;
    pCD->nmcd.pDC->DrawFocusRect(&r);
}

void CListCtrlExt::AfficheBonneCouleur()
{
    if ((IsWindowEnabled() != FALSE) != m_bActifDessine)
        Invalidate();
}
