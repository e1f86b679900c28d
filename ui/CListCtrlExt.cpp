#include "CListCtrlExt.h"

#include "HookEditeur.h"

#include "framework/MessageBox.h"

#include <QTreeView>

#include <algorithm>

IMPLEMENT_DYNAMIC(CListCtrlExt, CListCtrlToolTip)

CListCtrlExt::CListCtrlExt() : m_HeaderCtrl(this) {}

CListCtrlExt::~CListCtrlExt()
{
    RetireHook();
    m_bEdition = false;
    // Rows are deleted while the records they point at still exist.
    CListCtrl::DeleteAllItems();
}

BOOL CListCtrlExt::Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID)
{
    if (!CListCtrlToolTip::Create(dwStyle, rect, pParentWnd, nID))
        return FALSE;
    SubclassHeaderCtrl(&m_HeaderCtrl);
    SetExtendedStyle(GetExtendedStyle() | LVS_EX_FULLROWSELECT | LVS_EX_HEADERDRAGDROP);
    return TRUE;
}

// ---- records

CListCtrlExt::ColumnInfo* CListCtrlExt::Colonne(int nCol)
{
    return nCol >= 0 && nCol < (int)m_Colonnes.size() ? &m_Colonnes[(std::size_t)nCol] : nullptr;
}

const CListCtrlExt::ColumnInfo* CListCtrlExt::Colonne(int nCol) const
{
    return nCol >= 0 && nCol < (int)m_Colonnes.size() ? &m_Colonnes[(std::size_t)nCol] : nullptr;
}

const CListCtrlExt::ColumnInfo* CListCtrlExt::GetColumnInfo(int nCol) const
{
    return Colonne(nCol);
}

CListCtrlExt::ItemInfo* CListCtrlExt::Ligne(int nRow) const
{
    if (nRow < 0 || nRow >= GetItemCount())
        return nullptr;
    return reinterpret_cast<ItemInfo*>(CListCtrl::GetItemData(nRow));
}

CListCtrlExt::ItemInfo* CListCtrlExt::LigneCreee(int nRow)
{
    if (nRow < 0 || nRow >= GetItemCount())
        AfxThrowInvalidArgException();
    if (ItemInfo* p = Ligne(nRow))
        return p;
    auto info = std::make_unique<ItemInfo>();
    ItemInfo* p = info.get();
    m_Lignes.emplace(p, std::move(info));
    CListCtrl::SetItemData(nRow, reinterpret_cast<DWORD_PTR>(p));
    return p;
}

const CListCtrlExt::CellInfo* CListCtrlExt::Cellule(int nRow, int nCol) const
{
    if (const ItemInfo* l = Ligne(nRow))
        for (const CellInfo& c : l->m_Cellules)
            if (c.m_nColonne == nCol)
                return &c;
    return nullptr;
}

CListCtrlExt::CellInfo* CListCtrlExt::CelluleCreee(int nRow, int nCol)
{
    if (!Colonne(nCol))
        AfxThrowInvalidArgException();
    ItemInfo* l = LigneCreee(nRow);
    for (CellInfo& c : l->m_Cellules)
        if (c.m_nColonne == nCol)
            return &c;
    l->m_Cellules.push_back(CellInfo());
    l->m_Cellules.back().m_nColonne = nCol;
    return &l->m_Cellules.back();
}

// The current and previous rows follow their rows when others come or go, so that an
// open editor's text goes back into its own row.
void CListCtrlExt::OnInsertItem(int nItem)
{
    for (int* p : {&m_nRow, &m_nPrevRow})
        if (*p >= nItem)
            ++*p;
}

void CListCtrlExt::OnDeleteItem(int nItem, DWORD_PTR dwData)
{
    if (m_bEdition && nItem == m_nRow)
        HideEditor(FALSE);
    for (int* p : {&m_nRow, &m_nPrevRow})
        if (*p > nItem)
            --*p;
        else if (*p == nItem)
            *p = -1;
    m_Lignes.erase(reinterpret_cast<const ItemInfo*>(dwData));
}

// ---- columns

int CListCtrlExt::InsereUneColonne(int nCol, LPCTSTR lpszIdentifiant, LPCTSTR lpszTitre, int nFormat, int nLargeur,
                                   int nTri, int nTypeComparaison, CWnd* pEditeur, LPCTSTR lpszUnite, int nStyleUnite,
                                   BOOL bReadOnly, LPCTSTR lpszFormatSaisie)
{
    CString titre(lpszTitre), unite(lpszUnite), entete(titre);
    if (!unite.IsEmpty())
    {
        switch (nStyleUnite)
        {
        case 1: entete = titre + L"\n" + unite; break;
        case 2: entete = titre + L"\n(" + unite + L")"; break;
        case 3: entete = titre + L"\n (" + unite + L")"; break;
        case 4: entete.Format(titre, unite); break;
        default: break;
        }
    }
    HideEditor(TRUE);
    nCol = std::max(0, std::min(nCol, GetColumnCount()));
    // Columns after the new one move one place right, with everything that names them.
    for (ColumnInfo& c : m_Colonnes)
        if (c.m_nColonne >= nCol)
            ++c.m_nColonne;
    for (auto& l : m_Lignes)
        for (CellInfo& c : l.second->m_Cellules)
            if (c.m_nColonne >= nCol)
                ++c.m_nColonne;
    ColumnInfo info;
    info.m_nColonne = nCol;
    info.m_nTri = nTri;
    info.m_nTypeComparaison = nTypeComparaison;
    info.m_bReadOnly = bReadOnly;
    info.m_strIdentifiant = lpszIdentifiant;
    info.m_strFormatSaisie = lpszFormatSaisie;
    m_Colonnes.insert(m_Colonnes.begin() + nCol, info);
    if (m_nColonneTri >= nCol)
        ++m_nColonneTri;
    if (m_nFocusCol >= nCol)
        ++m_nFocusCol;
    InsertColumn(nCol, entete, nFormat, nLargeur);
    if (pEditeur)
        SetColumnEditor(nCol, pEditeur);

    int nLignes = 1;
    for (int i = 0; i < entete.GetLength(); ++i)
        if (entete[i] == L'\n')
            ++nLignes;
    if (nLignes > m_HeaderCtrl.GetNbLignes())
        m_HeaderCtrl.SetNbLignes(nLignes);
    return nCol;
}

void CListCtrlExt::DeleteAllColumns()
{
    HideEditor(FALSE);
    while (GetHeaderCtrl()->GetItemCount() > 0)
        DeleteColumn(0);
    m_Colonnes.clear();
    for (auto& l : m_Lignes)
        l.second->m_Cellules.clear();
    m_nColonneTri = -1;
    m_nFocusCol = -1;
    m_nCol = m_nPrevCol = -1;
}

void CListCtrlExt::SetColumnReadOnly(int nCol, BOOL bReadOnly)
{
    if (ColumnInfo* c = Colonne(nCol))
        c->m_bReadOnly = bReadOnly;
}

BOOL CListCtrlExt::IsColumnReadOnly(int nCol) const
{
    const ColumnInfo* c = Colonne(nCol);
    return c && c->m_bReadOnly;
}

BOOL CListCtrlExt::IsColumnHidden(int nCol) const
{
    const ColumnInfo* c = Colonne(nCol);
    return c && c->m_bMasquee;
}

void CListCtrlExt::SetAfficheColonne(int nCol, BOOL bAffiche)
{
    ColumnInfo* c = Colonne(nCol);
    if (!c || c->m_bMasquee == !bAffiche)
        return;
    if (!bAffiche)
    {
        if (m_bEdition && m_nCol == nCol)
            HideEditor(TRUE);
        c->m_nLargeurAvantMasque = GetColumnWidth(nCol);
        c->m_bMasquee = TRUE;
        SetColumnWidth(nCol, 0);
        if (m_nFocusCol == nCol)
            m_nFocusCol = -1;
    }
    else
    {
        c->m_bMasquee = FALSE;
        if (c->m_nLargeurAvantMasque > 0)
            SetColumnWidth(nCol, c->m_nLargeurAvantMasque);
        else
            AutosizeColonne(nCol);
    }
}

void CListCtrlExt::SetColumnColors(int nCol, COLORREF clrFond, COLORREF clrTexte)
{
    if (ColumnInfo* c = Colonne(nCol))
    {
        c->m_clrFond = clrFond;
        c->m_clrTexte = clrTexte;
        Invalidate();
    }
}

void CListCtrlExt::SetColumnToolTipText(int nCol, LPCTSTR lpszTexte)
{
    if (ColumnInfo* c = Colonne(nCol))
        c->m_strToolTip = lpszTexte;
}

CString CListCtrlExt::GetColumnToolTipText(int nCol) const
{
    const ColumnInfo* c = Colonne(nCol);
    return c ? c->m_strToolTip : CString();
}

void CListCtrlExt::SetIdentifiantColonne(int nCol, LPCTSTR lpszIdentifiant)
{
    if (ColumnInfo* c = Colonne(nCol))
        c->m_strIdentifiant = lpszIdentifiant;
}

CString CListCtrlExt::GetIdentifiantColonne(int nCol) const
{
    const ColumnInfo* c = Colonne(nCol);
    return c ? c->m_strIdentifiant : CString();
}

int CListCtrlExt::GetNoColonne(LPCTSTR lpszIdentifiant) const
{
    for (const ColumnInfo& c : m_Colonnes)
        if (c.m_strIdentifiant == lpszIdentifiant)
            return c.m_nColonne;
    return -1;
}

void CListCtrlExt::SetColumnSort(int nCol, int nTri, int nTypeComparaison)
{
    if (ColumnInfo* c = Colonne(nCol))
    {
        c->m_nTri = nTri;
        c->m_nTypeComparaison = nTypeComparaison;
    }
}

void CListCtrlExt::SetColumnCompareFunction(int nCol, PFNCOMPARECOLONNE pfn)
{
    if (ColumnInfo* c = Colonne(nCol))
        c->m_pfnCompare = pfn;
}

CString CListCtrlExt::GetFormatSaisie(int nCol) const
{
    const ColumnInfo* c = Colonne(nCol);
    return c ? c->m_strFormatSaisie : CString();
}

// ---- rows and cells

int CListCtrlExt::AddItem(LPCTSTR lpszTexte, DWORD_PTR dwData)
{
    int n = InsertItem(GetItemCount(), lpszTexte);
    if (n >= 0)
        SetItemData(n, dwData);
    return n;
}

int CListCtrlExt::AddItem(std::initializer_list<LPCTSTR> textes, DWORD_PTR dwData)
{
    int n = AddItem(textes.size() ? *textes.begin() : _T(""), dwData);
    int c = 0;
    for (LPCTSTR t : textes)
        SetItemText(n, c++, t);
    return n;
}

void CListCtrlExt::SelectItem(int nRow)
{
    if (nRow < 0 || nRow >= GetItemCount())
        return;
    SetItemState(-1, 0, LVIS_SELECTED);
    SetItemState(nRow, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    EnsureVisible(nRow, FALSE);
}

void CListCtrlExt::Reset()
{
    HideEditor(FALSE);
    DeleteAllItems();
    m_nRow = m_nCol = m_nPrevRow = m_nPrevCol = -1;
    m_nFocusCol = -1;
}

void CListCtrlExt::DeleteSelectedItems()
{
    for (int i = GetItemCount() - 1; i >= 0; --i)
        if (GetItemState(i, LVIS_SELECTED))
            DeleteItem(i);
}

BOOL CListCtrlExt::HandleDeleteKey()
{
    if (m_bEdition || GetSelectedCount() == 0)
        return FALSE;
    int nPremiere = GetNextItem(-1, LVNI_SELECTED);
    bool bSupprime = false;
    for (int i = GetItemCount() - 1; i >= 0; --i)
        if (GetItemState(i, LVIS_SELECTED) && SuppressionLigne(i))
            bSupprime = true;
    if (bSupprime && GetItemCount() > 0)
        SelectItem(std::min(nPremiere, GetItemCount() - 1));
    return TRUE;
}

BOOL CListCtrlExt::SetItemData(int nRow, DWORD_PTR dwData)
{
    if (nRow < 0 || nRow >= GetItemCount())
        return FALSE;
    LigneCreee(nRow)->m_dwData = dwData;
    return TRUE;
}

DWORD_PTR CListCtrlExt::GetItemData(int nRow) const
{
    const ItemInfo* l = Ligne(nRow);
    return l ? l->m_dwData : 0;
}

void CListCtrlExt::SetRowReadOnly(int nRow, BOOL bReadOnly)
{
    LigneCreee(nRow)->m_bReadOnly = bReadOnly;
}

BOOL CListCtrlExt::IsRowReadOnly(int nRow) const
{
    const ItemInfo* l = Ligne(nRow);
    return l && l->m_bReadOnly;
}

void CListCtrlExt::SetRowColors(int nRow, COLORREF clrFond, COLORREF clrTexte)
{
    ItemInfo* l = LigneCreee(nRow);
    l->m_clrFond = clrFond;
    l->m_clrTexte = clrTexte;
    Update(nRow);
}

void CListCtrlExt::SetCellReadOnly(int nRow, int nCol, BOOL bReadOnly)
{
    CelluleCreee(nRow, nCol)->m_bReadOnly = bReadOnly;
}

BOOL CListCtrlExt::IsCellReadOnly(int nRow, int nCol) const
{
    const CellInfo* c = Cellule(nRow, nCol);
    return c && c->m_bReadOnly;
}

void CListCtrlExt::SetCellColors(int nRow, int nCol, COLORREF clrFond, COLORREF clrTexte)
{
    CellInfo* c = CelluleCreee(nRow, nCol);
    c->m_clrFond = clrFond;
    c->m_clrTexte = clrTexte;
    Update(nRow);
}

void CListCtrlExt::SetCellData(int nRow, int nCol, DWORD_PTR dwData)
{
    CelluleCreee(nRow, nCol)->m_dwData = dwData;
}

DWORD_PTR CListCtrlExt::GetCellData(int nRow, int nCol) const
{
    const CellInfo* c = Cellule(nRow, nCol);
    return c ? c->m_dwData : 0;
}

void CListCtrlExt::SetDefaultColors(COLORREF clrFond, COLORREF clrTexte)
{
    m_clrFondDefaut = clrFond;
    m_clrTexteDefaut = clrTexte;
    Invalidate();
}

// ---- editor records

namespace
{
CListCtrlExt::EditorInfo Editeur(BOOL bReadOnly, BOOL bEnd, BOOL bInit, CWnd* pWnd)
{
    CListCtrlExt::EditorInfo e;
    e.m_pWnd = pWnd;
    e.m_bReadOnly = bReadOnly;
    e.m_bEndEditorHook = bEnd;
    e.m_bInitEditorHook = bInit;
    return e;
}
} // namespace

void CListCtrlExt::SetDefaultEditor(CWnd* pWnd)
{
    m_EditeurDefaut = Editeur(FALSE, FALSE, FALSE, pWnd);
}

void CListCtrlExt::SetDefaultEditor(BOOL bReadOnly, BOOL bEndEditorHook, BOOL bInitEditorHook, CWnd* pWnd)
{
    m_EditeurDefaut = Editeur(bReadOnly, bEndEditorHook, bInitEditorHook, pWnd);
}

void CListCtrlExt::SetColumnEditor(int nCol, CWnd* pWnd)
{
    SetColumnEditor(nCol, FALSE, FALSE, FALSE, pWnd);
}

void CListCtrlExt::SetColumnEditor(int nCol, BOOL bReadOnly, BOOL bEndEditorHook, BOOL bInitEditorHook, CWnd* pWnd)
{
    if (ColumnInfo* c = Colonne(nCol))
        c->m_Editeur = Editeur(bReadOnly, bEndEditorHook, bInitEditorHook, pWnd);
}

void CListCtrlExt::SetRowEditor(int nRow, CWnd* pWnd)
{
    SetRowEditor(nRow, FALSE, FALSE, FALSE, pWnd);
}

void CListCtrlExt::SetRowEditor(int nRow, BOOL bReadOnly, BOOL bEndEditorHook, BOOL bInitEditorHook, CWnd* pWnd)
{
    LigneCreee(nRow)->m_Editeur = Editeur(bReadOnly, bEndEditorHook, bInitEditorHook, pWnd);
}

void CListCtrlExt::SetCellEditor(int nRow, int nCol, CWnd* pWnd)
{
    SetCellEditor(nRow, nCol, FALSE, FALSE, FALSE, pWnd);
}

void CListCtrlExt::SetCellEditor(int nRow, int nCol, BOOL bReadOnly, BOOL bEndEditorHook, BOOL bInitEditorHook, CWnd* pWnd)
{
    CelluleCreee(nRow, nCol)->m_Editeur = Editeur(bReadOnly, bEndEditorHook, bInitEditorHook, pWnd);
}

const CListCtrlExt::EditorInfo* CListCtrlExt::ChoisitEditeur(int nRow, int nCol) const
{
    const ColumnInfo* c = Colonne(nCol);
    const ItemInfo* l = Ligne(nRow);
    const CellInfo* ce = Cellule(nRow, nCol);
    // A read-only column, row or cell has no editor, whatever its records say.
    if ((c && c->m_bReadOnly) || (l && l->m_bReadOnly) || (ce && ce->m_bReadOnly))
        return nullptr;
    const EditorInfo* e = &m_EditeurDefaut;
    if (c && c->m_Editeur.EstDefini())
        e = &c->m_Editeur;
    if (l && l->m_Editeur.EstDefini())
        e = &l->m_Editeur;
    if (ce && ce->m_Editeur.EstDefini())
        e = &ce->m_Editeur;
    if (e->m_bReadOnly || (!e->m_pWnd && !e->m_bInitEditorHook))
        return nullptr;
    return e;
}

// ---- the overridable hooks' defaults

BOOL CListCtrlExt::ValidationLigne(int)
{
    return TRUE;
}

BOOL CListCtrlExt::SuppressionLigne(int)
{
    return FALSE;
}

BOOL CListCtrlExt::InsertionLigne(int*)
{
    return FALSE;
}

BOOL CListCtrlExt::ValidationCellule(int, int, const CString&, BOOL)
{
    return TRUE;
}

BOOL CListCtrlExt::InitEditor(CWnd**, int, int, CString&, DWORD_PTR, CListCtrlExt*, BOOL)
{
    AfxMessageBox(_T("InitEditor à definir"));
    return FALSE;
}

BOOL CListCtrlExt::EndEditor(CWnd**, int, int, CString&, DWORD_PTR, CListCtrlExt*, BOOL)
{
    AfxMessageBox(_T("EndEditor à definir"));
    return FALSE;
}

// ---- tooltips

CString CListCtrlExt::GetToolTipTextInfo(int nRow, int nCol)
{
    CString texte = GetColumnToolTipText(nCol);
    return texte.IsEmpty() ? CListCtrlToolTip::GetToolTipTextInfo(nRow, nCol) : texte;
}
