// Editing in the grid list: opening and closing the cell editor, the keys that walk the
// cells and insert and delete rows, validation, the mouse, and the focus cell.
#include "CListCtrlExt.h"

#include "CEdit.h"
#include "HookEditeur.h"

#include <QApplication>
#include <QKeyEvent>
#include <QTreeView>

#include <algorithm>

void CListCtrlExt::InstalleHook(CWnd* pWnd)
{
    RetireHook();
    m_pHook = std::make_unique<prefa_ui_detail::HookEditeur>(this, pWnd);
    m_pHook->Installe();
}

void CListCtrlExt::RetireHook()
{
    if (m_pHook)
        m_pHook->Retire();
    m_pHook.reset();
}

// ---- opening and closing

BOOL CListCtrlExt::SaisieCellule(int nRow, int nCol)
{
    if (nRow < 0 || nRow >= GetItemCount())
        return FALSE;
    EnsureVisible(nRow, FALSE);
    return DisplayEditor(nRow, nCol);
}

BOOL CListCtrlExt::DisplayEditor(int nRow, int nCol)
{
    // The parent may veto the edit.
    CWnd* pParent = GetParent();
    if (pParent && !pParent->SendMessage(WM_AUTORISE_SAISIE, MAKEWPARAM(nRow, nCol), (LPARAM)this))
        return FALSE;

    // The open editor's cell, and its row when leaving it, must pass first.
    if (m_bEdition && m_nRow >= 0 && m_nRow < GetItemCount())
        if (!ValideCelluleOuverte() || (nRow != m_nRow && !ValidationLigneEtCellules(m_nRow)))
        {
            RemetFocusEditeur();
            return FALSE;
        }
    HideEditor(TRUE);

    if (nRow < 0 || nRow >= GetItemCount() || !Colonne(nCol) || IsColumnReadOnly(nCol) || IsColumnHidden(nCol)
        || IsRowReadOnly(nRow) || IsCellReadOnly(nRow, nCol))
        return FALSE;

    EnsureVisible(nRow, FALSE);
    EnsureColumnVisible(nCol);
    CRect rect;
    GetSubItemRect(nRow, nCol, LVIR_BOUNDS, rect);

    const EditorInfo* pInfo = ChoisitEditeur(nRow, nCol);
    if (!pInfo)
        return FALSE;
    EditorInfo editeur = *pInfo;

    m_nPrevRow = m_nRow;
    m_nPrevCol = m_nCol;
    m_nRow = nRow;
    m_nCol = nCol;
    m_nFocusCol = nCol;
    m_strEdit = GetItemText(nRow, nCol);
    BOOL bRempli = FALSE;
    if (editeur.m_bInitEditorHook)
    {
        bRempli = InitEditor(&editeur.m_pWnd, nRow, nCol, m_strEdit, GetItemData(nRow), this, FALSE);
        if (!editeur.m_pWnd)
        {
            // The hook edited the value itself.
            SetItemState(-1, 0, LVIS_SELECTED);
            SetItemText(nRow, nCol, m_strEdit);
            SelectItem(nRow);
            return TRUE;
        }
    }

    CWnd* pWnd = editeur.m_pWnd;
    if (!bRempli)
        pWnd->SetWindowText(m_strEdit);
    pWnd->SetParent(this);
    pWnd->MoveWindow(&rect);
    pWnd->ShowWindow(SW_SHOW);
    m_Courant = editeur;
    m_bEdition = true;
    SelectItem(nRow);
    pWnd->SetFocus();
    if (CEdit* pEdit = dynamic_cast<CEdit*>(pWnd))
        pEdit->SetSel(0, -1);
    InstalleHook(pWnd);
    return TRUE;
}

void CListCtrlExt::HideEditor(BOOL bCommit)
{
    std::lock_guard<std::recursive_mutex> verrou(m_csEditeur);
    // The editor's loss of focus may ask again while this closing is under way.
    if (!m_bEdition || m_bFermeture)
        return;
    m_bFermeture = true;
    RetireHook();
    CWnd* pWnd = m_Courant.m_pWnd;
    bool bFocus = pWnd->HasFocusWithin();
    pWnd->ShowWindow(SW_HIDE);
    if (bCommit && m_nRow >= 0 && m_nRow < GetItemCount() && m_nCol < GetColumnCount())
    {
        pWnd->GetWindowText(m_strEdit);
        BOOL bRedessine = TRUE;
        if (m_Courant.m_bEndEditorHook)
            bRedessine = EndEditor(&pWnd, m_nRow, m_nCol, m_strEdit, GetItemData(m_nRow), this, TRUE);
        SetItemText(m_nRow, m_nCol, m_strEdit);
        if (bRedessine)
            Update(m_nRow);
    }
    m_Courant = EditorInfo();
    m_bEdition = false;
    m_bFermeture = false;
    // Keys keep working: the list takes back the focus its editor had.
    if (bFocus)
        SetFocus();
}

void CListCtrlExt::MetAJourCelluleAvecSaisie()
{
    if (!m_bEdition || m_nRow < 0 || m_nRow >= GetItemCount())
        return;
    m_Courant.m_pWnd->GetWindowText(m_strEdit);
    SetItemText(m_nRow, m_nCol, m_strEdit);
}

void CListCtrlExt::RemetFocusEditeur()
{
    if (m_bEdition && m_Courant.m_pWnd)
        m_Courant.m_pWnd->SetFocus();
}

void CListCtrlExt::TraiteKillFocus(QWidget* pNouveau)
{
    if (!m_bEdition || m_bFermeture || m_nValidations > 0 || !pNouveau)
        return;
    QWidget* pEditeur = m_Courant.m_pWnd->GetWidget();
    QWidget* pVue = GetWidget();
    // Inside the editor, or into the list, whose own commands validate and close it.
    if (pNouveau == pEditeur || pEditeur->isAncestorOf(pNouveau) || pNouveau == pVue || pVue->isAncestorOf(pNouveau))
        return;
    if (ValideCelluleOuverte())
        HideEditor(TRUE);
}

BOOL CListCtrlExt::ValidationLigneEtCellules(int nRow)
{
    if (nRow < 0 || nRow >= GetItemCount())
        return FALSE;
    for (int c = 0; c < GetColumnCount(); ++c)
    {
        ValidationEnCours v(m_nValidations);
        if (!ValidationCellule(nRow, c, GetItemText(nRow, c), TRUE))
        {
            SaisieCellule(nRow, c);
            return FALSE;
        }
    }
    ValidationEnCours v(m_nValidations);
    return ValidationLigne(nRow);
}

BOOL CListCtrlExt::ValideCelluleOuverte()
{
    CString texte;
    m_Courant.m_pWnd->GetWindowText(texte);
    BOOL bValide;
    {
        ValidationEnCours v(m_nValidations);
        bValide = ValidationCellule(m_nRow, m_nCol, texte, FALSE);
    }
    if (!bValide)
        RemetFocusEditeur();
    return bValide;
}

// ---- keys

BOOL CListCtrlExt::PreTranslateMessage(MSG* pMsg)
{
    if (pMsg->message != WM_KEYDOWN)
        return CListCtrlToolTip::PreTranslateMessage(pMsg);
    AfficheBonneCouleur();
    bool bCtrl = GetKeyState(VK_CONTROL) < 0, bShift = GetKeyState(VK_SHIFT) < 0, bAlt = GetKeyState(VK_MENU) < 0;
    if (!m_Accelerateurs.empty() && HasFocusWithin())
        for (const ACCEL& a : m_Accelerateurs)
            if (a.key == (WORD)pMsg->wParam && bCtrl == ((a.fVirt & FCONTROL) != 0) && bShift == ((a.fVirt & FSHIFT) != 0)
                && bAlt == ((a.fVirt & FALT) != 0))
            {
                if (CWnd* pParent = GetParent())
                    pParent->SendMessage(WM_COMMAND, MAKEWPARAM(a.cmd, 1), 0);
                return TRUE;
            }

    int nVk = (int)pMsg->wParam;
    if (nVk == VK_DELETE && bCtrl)
    {
        SupprimeLigneCourante();
        return TRUE;
    }
    if (nVk == VK_RETURN || (nVk == VK_INSERT && bCtrl))
    {
        AvanceSaisie(nVk == VK_INSERT);
        return TRUE;
    }
    if (nVk == VK_ESCAPE && m_bEdition)
    {
        HideEditor(FALSE);
        SetFocus();
        return TRUE;
    }
    return FALSE;
}

int CListCtrlExt::LigneSelectionnee() const
{
    int n = GetNextItem(-1, LVNI_SELECTED);
    return n >= 0 ? n : m_nRow;
}

void CListCtrlExt::SupprimeLigneCourante()
{
    int nRow = LigneSelectionnee();
    HideEditor(TRUE);
    if (nRow < 0 || nRow >= GetItemCount() || !SuppressionLigne(nRow))
        return;
    if (GetItemCount() > 0)
        SelectItem(std::min(nRow, GetItemCount() - 1));
}

bool CListCtrlExt::CelluleSaisissable(int nRow, int nCol) const
{
    return !IsColumnReadOnly(nCol) && !IsColumnHidden(nCol) && !IsCellReadOnly(nRow, nCol) && ChoisitEditeur(nRow, nCol);
}

void CListCtrlExt::AvanceSaisie(bool bInsertion)
{
    bool bEditeur = m_bEdition;
    if (bEditeur)
    {
        MetAJourCelluleAvecSaisie();
        if (!ValideCelluleOuverte())
            return;
    }
    int nRow, nCol;
    if (bInsertion)
    {
        if (bEditeur && !ValidationLigneEtCellules(m_nRow))
            return;
        nRow = LigneSelectionnee();
        if (!InsertionLigne(&nRow))
            return;
        HideEditor(TRUE);
        nCol = 0;
    }
    else if (bEditeur)
    {
        nRow = m_nRow;
        nCol = m_nCol + 1;
    }
    else
    {
        // From the list itself: the selected row, at its focus cell.
        nRow = LigneSelectionnee();
        nCol = std::max(0, m_nFocusCol);
    }
    int nLignes = GetItemCount(), nCols = GetColumnCount();
    if (nLignes == 0 || nCols == 0)
        return;
    if (nRow < 0 || nRow >= nLignes)
        nRow = 0;
    // One row more than there are, to come back round to the start of the first one.
    bool bLigneAValider = bEditeur && !bInsertion;
    for (int nPas = 0; nPas <= nLignes; ++nPas)
    {
        if (!IsRowReadOnly(nRow))
            for (; nCol < nCols; ++nCol)
                if (CelluleSaisissable(nRow, nCol))
                {
                    SaisieCellule(nRow, nCol);
                    return;
                }
        if (bLigneAValider)
        {
            bLigneAValider = false;
            if (m_bEdition && !ValidationLigneEtCellules(nRow))
            {
                RemetFocusEditeur();
                return;
            }
        }
        nRow = (nRow + 1) % nLignes;
        nCol = 0;
    }
}

void CListCtrlExt::OnKeyDown(UINT nChar, UINT nRepCnt, UINT nFlags)
{
    if (m_bGrid && (nChar == VK_LEFT || nChar == VK_RIGHT))
    {
        MoveFocusCell(nChar == VK_RIGHT);
        return;
    }
    if (nChar == VK_DELETE && GetKeyState(VK_CONTROL) >= 0 && HandleDeleteKey())
        return;
    if (nChar == VK_F2)  // edits the focus cell, as in a spreadsheet
    {
        SaisieCellule(LigneSelectionnee(), std::max(0, m_nFocusCol));
        return;
    }
    CListCtrlToolTip::OnKeyDown(nChar, nRepCnt, nFlags);
}

void CListCtrlExt::OnChar(UINT nChar, UINT nRepCnt, UINT nFlags)
{
    // Typing into a cell opens its editor and the character goes into it.
    int nRow = LigneSelectionnee();
    int nCol = m_nFocusCol;
    if (nCol < 0 || !CelluleSaisissable(nRow, nCol))
        for (nCol = 0; nCol < GetColumnCount() && !CelluleSaisissable(nRow, nCol); ++nCol)
        {
        }
    if (nRow < 0 || nCol >= GetColumnCount() || IsRowReadOnly(nRow) || !SaisieCellule(nRow, nCol) || !m_bEdition)
    {
        CListCtrlToolTip::OnChar(nChar, nRepCnt, nFlags);
        return;
    }
    QString texte(QChar((ushort)nChar));
    QKeyEvent touche(QEvent::KeyPress, 0, Qt::NoModifier, texte);
    QWidget* pCible = QApplication::focusWidget() ? QApplication::focusWidget() : m_Courant.m_pWnd->GetWidget();
    QApplication::sendEvent(pCible, &touche);
}

// ---- mouse

void CListCtrlExt::CliqueCellule(UINT nFlags, CPoint point)
{
    LVHITTESTINFO info;
    info.pt = point;
    SubItemHitTest(&info);
    if (info.iItem < 0 || info.iSubItem < 0 || (nFlags & (MK_CONTROL | MK_SHIFT)))
    {
        Default();
        return;
    }
    if (SaisieCellule(info.iItem, info.iSubItem))
        return;
    // Refused: a cell without editor still takes the focus, unless the open editor's
    // validation kept the user in it.
    if (!m_bEdition)
    {
        Default();
        SetFocusCell(info.iSubItem);
    }
}

void CListCtrlExt::OnLButtonDown(UINT nFlags, CPoint point)
{
    CliqueCellule(nFlags, point);
}

void CListCtrlExt::OnLButtonDblClk(UINT nFlags, CPoint point)
{
    CliqueCellule(nFlags, point);
}

void CListCtrlExt::OnRButtonDown(UINT, CPoint point)
{
    if (m_bEdition)
    {
        if (!ValideCelluleOuverte())
            return;
        HideEditor(TRUE);
    }
    Default();
    LVHITTESTINFO info;
    info.pt = point;
    if (SubItemHitTest(&info) >= 0)
        SetFocusCell(info.iSubItem);
}

// ---- focus cell

void CListCtrlExt::SetGridBehaviour(BOOL bGrid)
{
    m_bGrid = bGrid;
    Invalidate();
}

void CListCtrlExt::SetFocusCell(int nCol)
{
    m_nFocusCol = (Colonne(nCol) && !IsColumnHidden(nCol)) ? nCol : -1;
    Invalidate();
}

void CListCtrlExt::MoveFocusCell(BOOL bDroite)
{
    if (GetItemCount() == 0)
    {
        m_nFocusCol = -1;
        return;
    }
    CHeaderCtrl* h = GetHeaderCtrl();
    int n = h->GetItemCount();
    if (n == 0)
        return;
    std::vector<int> ordre((std::size_t)n);
    h->GetOrderArray(ordre.data(), n);
    int nPos;
    if (m_nFocusCol < 0)
        nPos = bDroite ? 0 : -1;
    else
        nPos = std::max(0, h->IndexToOrder(m_nFocusCol) + (bDroite ? 1 : -1));
    // The move lands on the next shown column in its direction; none, no move.
    for (; nPos >= 0 && nPos < n; nPos += bDroite ? 1 : -1)
    {
        int c = ordre[(std::size_t)nPos];
        if (c == m_nFocusCol)
            break;
        if (Colonne(c) && !IsColumnHidden(c))
        {
            m_nFocusCol = c;
            break;
        }
    }
    if (m_nFocusCol >= 0)
        EnsureColumnVisible(m_nFocusCol);
    int nFocus = GetNextItem(-1, LVNI_FOCUSED);
    if (nFocus >= 0)
        Update(nFocus);
}

void CListCtrlExt::SetAccelerateurs(const ACCEL* pAccel, int nCount)
{
    m_Accelerateurs.assign(pAccel, pAccel + std::max(0, nCount));
}
