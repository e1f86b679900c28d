#include "CListCtrl.h"

#include "VueListe.h"

#include <QFontMetrics>
#include <QFontMetricsF>
#include <QScrollBar>

#include <algorithm>
#include <cmath>
#include <vector>

using namespace prefa_ui_detail;

IMPLEMENT_DYNAMIC(CListCtrl, CWnd)

namespace
{
// What the platform adds to a text's width when fitting a column to it.
constexpr int kMargesColonne = 12;
} // namespace

CListCtrl::CListCtrl()
    : m_clrFond(RGB(255, 255, 255)), m_clrTexte(RGB(0, 0, 0)), m_clrFondTexte(CLR_NONE)
{
}

CListCtrl::~CListCtrl()
{
    // The window goes with the header it holds; a derived list's own header object has
    // let go of it already, in the derived part's destruction.
    m_pHeader = nullptr;
    DestroyWindow();
    delete m_pModele;
}

BOOL CListCtrl::Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID)
{
    if (GetWidget())
        return FALSE;
    VueListe* pVue = new VueListe(this);
    EnTeteListe* pEnTete = new EnTeteListe(pVue);
    pVue->setHeader(pEnTete);
    pEnTete->setSectionsClickable(true);  // the view resets it when it takes the header
    m_pModele = new ModeleListe();
    pVue->setModel(m_pModele);
    if (dwStyle & LVS_SINGLESEL)
        pVue->setSelectionMode(QAbstractItemView::SingleSelection);
    m_pModele->nHauteurLigne = QFontMetrics(pVue->font()).height() + 6;
    m_HeaderDefaut.Attach(pEnTete);
    m_pHeader = &m_HeaderDefaut;
    QObject::connect(pEnTete, &QHeaderView::sectionClicked, pVue, [this](int n) { OnColumnClick(n); });
    QObject::disconnect(pEnTete, &QHeaderView::sectionHandleDoubleClicked, nullptr, nullptr);
    QObject::connect(pEnTete, &QHeaderView::sectionHandleDoubleClicked, pVue, [this](int n) {
        if (m_pHeader)
            m_pHeader->OnDividerDblClick(n);
    });
    return SetWindow(pVue, true, pParentWnd, rect, dwStyle, nID);
}

VueListe* CListCtrl::Vue() const
{
    return dynamic_cast<VueListe*>(GetWidget());
}

QTreeView* CListCtrl::GetView() const
{
    return Vue();
}

QWidget* CListCtrl::GetZoneClient() const
{
    VueListe* v = Vue();
    return v ? v->viewport() : nullptr;
}

CHeaderCtrl* CListCtrl::GetHeaderCtrl()
{
    return m_pHeader;
}

BOOL CListCtrl::SubclassHeaderCtrl(CHeaderCtrl* pHeader)
{
    if (!Vue() || !pHeader || pHeader->GetWidget())
        return FALSE;
    QWidget* w = m_pHeader->Detach();
    pHeader->Attach(w);
    m_pHeader = pHeader;
    return TRUE;
}

// ---- columns

int CListCtrl::InsertColumn(int nCol, LPCTSTR lpszColumnHeading, int nFormat, int nWidth, int)
{
    if (!m_pModele || nCol < 0)
        return -1;
    nCol = std::min(nCol, (int)m_pModele->colonnes.size());
    m_pModele->InsereColonne(nCol, Colonne{CString(lpszColumnHeading), nFormat});
    SetColumnWidth(nCol, nWidth < 0 ? LVSCW_AUTOSIZE_USEHEADER : nWidth);
    return nCol;
}

BOOL CListCtrl::DeleteColumn(int nCol)
{
    if (!m_pModele || nCol < 0 || nCol >= (int)m_pModele->colonnes.size())
        return FALSE;
    m_pModele->SupprimeColonne(nCol);
    return TRUE;
}

BOOL CListCtrl::GetColumn(int nCol, LVCOLUMN* pColumn) const
{
    if (!m_pModele || nCol < 0 || nCol >= (int)m_pModele->colonnes.size() || !pColumn)
        return FALSE;
    const Colonne& c = m_pModele->colonnes[(std::size_t)nCol];
    if (pColumn->mask & LVCF_FMT)
        pColumn->fmt = c.fmt;
    if (pColumn->mask & LVCF_WIDTH)
        pColumn->cx = GetColumnWidth(nCol);
    if (pColumn->mask & LVCF_TEXT)
        pColumn->strText = c.titre;
    if (pColumn->mask & LVCF_ORDER)
        pColumn->iOrder = Vue()->header()->visualIndex(nCol);
    return TRUE;
}

BOOL CListCtrl::SetColumn(int nCol, const LVCOLUMN* pColumn)
{
    if (!m_pModele || nCol < 0 || nCol >= (int)m_pModele->colonnes.size() || !pColumn)
        return FALSE;
    Colonne c = m_pModele->colonnes[(std::size_t)nCol];
    if (pColumn->mask & LVCF_FMT)
        c.fmt = pColumn->fmt;
    if (pColumn->mask & LVCF_TEXT)
        c.titre = pColumn->strText;
    m_pModele->ChangeColonne(nCol, c);
    if (pColumn->mask & LVCF_WIDTH)
        SetColumnWidth(nCol, pColumn->cx);
    if (pColumn->mask & LVCF_ORDER)
        Vue()->header()->moveSection(Vue()->header()->visualIndex(nCol), pColumn->iOrder);
    return TRUE;
}

int CListCtrl::GetColumnWidth(int nCol) const
{
    VueListe* v = Vue();
    if (!v || nCol < 0 || nCol >= v->header()->count())
        return 0;
    return v->header()->sectionSize(nCol);
}

BOOL CListCtrl::SetColumnWidth(int nCol, int cx)
{
    VueListe* v = Vue();
    if (!v || nCol < 0 || nCol >= v->header()->count())
        return FALSE;
    if (cx == LVSCW_AUTOSIZE || cx == LVSCW_AUTOSIZE_USEHEADER)
    {
        int nLarge = 0;
        for (int i = 0; i < (int)m_pModele->lignes.size(); ++i)
            nLarge = std::max(nLarge, GetStringWidth(m_pModele->Texte(i, nCol)));
        if (cx == LVSCW_AUTOSIZE_USEHEADER)
        {
            // Each line of a multi-line heading counts on its own.
            QStringList lignes = QStr(m_pModele->colonnes[(std::size_t)nCol].titre).split('\n');
            for (const QString& l : lignes)
                nLarge = std::max(nLarge, GetStringWidth(CStr(l)));
        }
        cx = nLarge + kMargesColonne;
    }
    v->header()->resizeSection(nCol, std::max(0, cx));
    return TRUE;
}

BOOL CListCtrl::GetColumnOrderArray(LPINT piArray, int iCount) const
{
    return m_pHeader && m_pHeader->GetOrderArray(piArray, iCount < 0 ? m_pHeader->GetItemCount() : iCount);
}

BOOL CListCtrl::SetColumnOrderArray(int iCount, LPINT piArray)
{
    return m_pHeader && m_pHeader->SetOrderArray(iCount, piArray);
}

// ---- items

int CListCtrl::GetItemCount() const
{
    return m_pModele ? (int)m_pModele->lignes.size() : 0;
}

int CListCtrl::InsertItem(int nItem, LPCTSTR lpszItem)
{
    if (!m_pModele || nItem < 0)
        return -1;
    nItem = std::min(nItem, GetItemCount());
    Ligne l;
    l.textes.assign(std::max<std::size_t>(1, m_pModele->colonnes.size()), CString());
    l.textes[0] = lpszItem;
    m_pModele->InsereLigne(nItem, std::move(l));
    OnInsertItem(nItem);
    return nItem;
}

BOOL CListCtrl::DeleteItem(int nItem)
{
    if (nItem < 0 || nItem >= GetItemCount())
        return FALSE;
    OnDeleteItem(nItem, m_pModele->lignes[(std::size_t)nItem].data);
    m_pModele->SupprimeLigne(nItem);
    return TRUE;
}

BOOL CListCtrl::DeleteAllItems()
{
    if (!m_pModele)
        return FALSE;
    for (int i = 0; i < GetItemCount(); ++i)
        OnDeleteItem(i, m_pModele->lignes[(std::size_t)i].data);
    m_pModele->Vide();
    return TRUE;
}

CString CListCtrl::GetItemText(int nItem, int nSubItem) const
{
    return m_pModele ? m_pModele->Texte(nItem, nSubItem) : CString();
}

BOOL CListCtrl::SetItemText(int nItem, int nSubItem, LPCTSTR lpszText)
{
    if (nItem < 0 || nItem >= GetItemCount() || nSubItem < 0 || nSubItem >= (int)m_pModele->colonnes.size())
        return FALSE;
    m_pModele->ChangeTexte(nItem, nSubItem, CString(lpszText));
    return TRUE;
}

DWORD_PTR CListCtrl::GetItemData(int nItem) const
{
    return nItem >= 0 && nItem < GetItemCount() ? m_pModele->lignes[(std::size_t)nItem].data : 0;
}

BOOL CListCtrl::SetItemData(int nItem, DWORD_PTR dwData)
{
    if (nItem < 0 || nItem >= GetItemCount())
        return FALSE;
    m_pModele->lignes[(std::size_t)nItem].data = dwData;
    return TRUE;
}

int CListCtrl::FindItem(LVFINDINFO* pFindInfo, int nStart) const
{
    if (!pFindInfo || !(pFindInfo->flags & LVFI_PARAM))
        return -1;
    for (int i = std::max(0, nStart + 1); i < GetItemCount(); ++i)
        if (m_pModele->lignes[(std::size_t)i].data == (DWORD_PTR)pFindInfo->lParam)
            return i;
    return -1;
}

// ---- states

UINT CListCtrl::GetItemState(int nItem, UINT nMask) const
{
    VueListe* v = Vue();
    if (!v || nItem < 0 || nItem >= GetItemCount())
        return 0;
    UINT etat = 0;
    if (v->selectionModel()->isRowSelected(nItem, QModelIndex()))
        etat |= LVIS_SELECTED;
    if (v->currentIndex().isValid() && v->currentIndex().row() == nItem)
        etat |= LVIS_FOCUSED;
    return etat & nMask;
}

BOOL CListCtrl::SetItemState(int nItem, UINT nState, UINT nMask)
{
    VueListe* v = Vue();
    if (!v || nItem < -1 || nItem >= GetItemCount())
        return FALSE;
    QItemSelectionModel* s = v->selectionModel();
    if (nItem < 0 && (nMask & LVIS_SELECTED) && GetItemCount() > 0)
    {
        // Every item at once: one change of the selection, not one per item.
        if (nState & LVIS_SELECTED)
            s->select(QItemSelection(m_pModele->index(0, 0), m_pModele->index(GetItemCount() - 1, 0)),
                      QItemSelectionModel::Select | QItemSelectionModel::Rows);
        else
            s->clearSelection();
        nMask &= ~LVIS_SELECTED;
        if (nMask == 0)
            return TRUE;
    }
    // Item -1 applies the states to every item, as the platform does.
    int debut = nItem < 0 ? 0 : nItem, fin = nItem < 0 ? GetItemCount() - 1 : nItem;
    for (int i = debut; i <= fin; ++i)
    {
        QModelIndex index = m_pModele->index(i, 0);
        if (nMask & LVIS_SELECTED)
            s->select(index, ((nState & LVIS_SELECTED) ? QItemSelectionModel::Select : QItemSelectionModel::Deselect)
                                 | QItemSelectionModel::Rows);
        if (nMask & LVIS_FOCUSED)
        {
            if (nState & LVIS_FOCUSED)
                s->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
            else if (v->currentIndex().row() == i)
                s->setCurrentIndex(QModelIndex(), QItemSelectionModel::NoUpdate);
        }
    }
    return TRUE;
}

int CListCtrl::GetNextItem(int nItem, int nFlags) const
{
    for (int i = std::max(0, nItem + 1); i < GetItemCount(); ++i)
    {
        UINT etat = GetItemState(i, LVIS_SELECTED | LVIS_FOCUSED);
        if (((nFlags & LVNI_SELECTED) && !(etat & LVIS_SELECTED)) || ((nFlags & LVNI_FOCUSED) && !(etat & LVIS_FOCUSED)))
            continue;
        return i;
    }
    return -1;
}

UINT CListCtrl::GetSelectedCount() const
{
    VueListe* v = Vue();
    return v ? (UINT)v->selectionModel()->selectedRows().size() : 0;
}

// A position is the selected item's index plus one, so that null ends the walk.
POSITION CListCtrl::GetFirstSelectedItemPosition() const
{
    int i = GetNextItem(-1, LVNI_SELECTED);
    return i < 0 ? nullptr : reinterpret_cast<POSITION>((UINT_PTR)i + 1);
}

int CListCtrl::GetNextSelectedItem(POSITION& pos) const
{
    int i = (int)(reinterpret_cast<UINT_PTR>(pos) - 1);
    int suivant = GetNextItem(i, LVNI_SELECTED);
    pos = suivant < 0 ? nullptr : reinterpret_cast<POSITION>((UINT_PTR)suivant + 1);
    return i;
}

// ---- geometry

BOOL CListCtrl::GetItemRect(int nItem, LPRECT lpRect, UINT nCode) const
{
    VueListe* v = Vue();
    if (!v || nItem < 0 || nItem >= GetItemCount())
        return FALSE;
    QRect r = v->visualRect(m_pModele->index(nItem, 0));
    QHeaderView* h = v->header();
    int gauche = -h->offset(), droite = h->length() - h->offset();
    if (nCode == LVIR_LABEL && h->count() > 0)
    {
        int c = h->logicalIndex(0);
        gauche = h->sectionViewportPosition(c);
        droite = gauche + h->sectionSize(c);
    }
    *lpRect = CRect(gauche, r.top(), droite, r.top() + r.height());
    return TRUE;
}

BOOL CListCtrl::GetSubItemRect(int iItem, int iSubItem, int nArea, CRect& ref) const
{
    VueListe* v = Vue();
    if (!v || iItem < 0 || iItem >= GetItemCount() || iSubItem < 0 || iSubItem >= v->header()->count())
        return FALSE;
    if (!GetItemRect(iItem, &ref, LVIR_BOUNDS))
        return FALSE;
    (void)nArea;
    ref.left = v->header()->sectionViewportPosition(iSubItem);
    ref.right = ref.left + v->header()->sectionSize(iSubItem);
    return TRUE;
}

BOOL CListCtrl::EnsureVisible(int nItem, BOOL bPartialOK)
{
    VueListe* v = Vue();
    if (!v || nItem < 0 || nItem >= GetItemCount())
        return FALSE;
    QRect r = v->visualRect(m_pModele->index(nItem, 0));
    bool bPartiel = r.bottom() >= 0 && r.top() < v->viewport()->height();
    if (!(bPartialOK && bPartiel))
        v->scrollTo(m_pModele->index(nItem, 0), QAbstractItemView::EnsureVisible);
    return TRUE;
}

void CListCtrl::EnsureColumnVisible(int nCol)
{
    VueListe* v = Vue();
    if (!v || nCol < 0 || nCol >= v->header()->count())
        return;
    QHeaderView* h = v->header();
    int x = h->sectionPosition(nCol), l = h->sectionSize(nCol), largeur = v->viewport()->width();
    QScrollBar* b = v->horizontalScrollBar();
    if (x < b->value())
        b->setValue(x);
    else if (x + l > b->value() + largeur)
        b->setValue(std::min(x, x + l - largeur));
}

int CListCtrl::HitTest(CPoint pt, UINT* pFlags) const
{
    LVHITTESTINFO info;
    info.pt = pt;
    int i = SubItemHitTest(&info);
    if (pFlags)
        *pFlags = info.flags;
    return i;
}

int CListCtrl::SubItemHitTest(LVHITTESTINFO* pInfo) const
{
    VueListe* v = Vue();
    pInfo->iItem = pInfo->iSubItem = -1;
    pInfo->flags = LVHT_NOWHERE;
    if (!v)
        return -1;
    QModelIndex i = v->indexAt(QPoint(pInfo->pt.x, pInfo->pt.y));
    if (!i.isValid())
        return -1;
    pInfo->iItem = i.row();
    pInfo->iSubItem = v->header()->logicalIndexAt(pInfo->pt.x);
    pInfo->flags = LVHT_ONITEMLABEL;
    return pInfo->iItem;
}

int CListCtrl::GetTopIndex() const
{
    VueListe* v = Vue();
    if (!v)
        return 0;
    QModelIndex i = v->indexAt(QPoint(0, 0));
    return i.isValid() ? i.row() : 0;
}

int CListCtrl::GetCountPerPage() const
{
    VueListe* v = Vue();
    if (!v)
        return 0;
    int h = v->sizeHintForRow(0);
    if (h <= 0)
        h = QFontMetrics(v->font()).height() + 6;
    return std::max(1, v->viewport()->height() / h);
}

BOOL CListCtrl::RedrawItems(int nFirst, int nLast)
{
    VueListe* v = Vue();
    if (!v)
        return FALSE;
    for (int i = std::max(0, nFirst); i <= nLast && i < GetItemCount(); ++i)
    {
        CRect r;
        GetItemRect(i, &r, LVIR_BOUNDS);
        v->viewport()->update(QRect(0, r.top, v->viewport()->width(), r.Height()));
    }
    return TRUE;
}

BOOL CListCtrl::Update(int nItem)
{
    return RedrawItems(nItem, nItem);
}

DWORD CListCtrl::SetExtendedStyle(DWORD dwNewStyle)
{
    DWORD avant = m_dwStyleEtendu;
    m_dwStyleEtendu = dwNewStyle;
    if (VueListe* v = Vue())
    {
        v->header()->setSectionsMovable(true);
        v->viewport()->update();
    }
    return avant;
}

// ---- sorting

BOOL CListCtrl::SortItems(PFNLVCOMPARE pfnCompare, DWORD_PTR dwData)
{
    if (!m_pModele || !pfnCompare)
        return FALSE;
    const std::vector<Ligne>& l = m_pModele->lignes;
    std::size_t n = l.size();
    std::vector<int> ordre(n), tampon(n);
    for (std::size_t i = 0; i < n; ++i)
        ordre[i] = (int)i;
    // Bottom-up merge sort: stable, and every index it touches is bounded by the runs,
    // so a callback that is not a consistent order cannot make it read out of range.
    for (std::size_t largeur = 1; largeur < n; largeur *= 2)
    {
        for (std::size_t debut = 0; debut < n; debut += 2 * largeur)
        {
            std::size_t milieu = std::min(debut + largeur, n), fin = std::min(debut + 2 * largeur, n);
            std::size_t a = debut, b = milieu, k = debut;
            while (a < milieu && b < fin)
            {
                bool bDroiteAvant = pfnCompare((LPARAM)l[(std::size_t)ordre[b]].data, (LPARAM)l[(std::size_t)ordre[a]].data,
                                               (LPARAM)dwData) < 0;
                tampon[k++] = bDroiteAvant ? ordre[b++] : ordre[a++];
            }
            while (a < milieu)
                tampon[k++] = ordre[a++];
            while (b < fin)
                tampon[k++] = ordre[b++];
        }
        ordre.swap(tampon);
    }
    m_pModele->Reordonne(ordre);
    return TRUE;
}

// ---- colours and text

BOOL CListCtrl::SetBkColor(COLORREF cr)
{
    m_clrFond = cr;
    Invalidate();
    return TRUE;
}

BOOL CListCtrl::SetTextColor(COLORREF cr)
{
    m_clrTexte = cr;
    Invalidate();
    return TRUE;
}

BOOL CListCtrl::SetTextBkColor(COLORREF cr)
{
    m_clrFondTexte = cr;
    Invalidate();
    return TRUE;
}

int CListCtrl::GetStringWidth(LPCTSTR lpsz) const
{
    VueListe* v = Vue();
    if (!v || !lpsz)
        return 0;
    // Rounded up, so that a column of this width shows the whole text.
    return (int)std::ceil(QFontMetricsF(v->font()).horizontalAdvance(QString::fromWCharArray(lpsz)));
}

// ---- default handlers

void CListCtrl::Default()
{
    if (VueListe* v = Vue())
        v->Defaut();
}

void CListCtrl::OnCustomDraw(NMLVCUSTOMDRAW*, LRESULT* pResult)
{
    *pResult = CDRF_DODEFAULT;
}

void CListCtrl::OnLButtonDown(UINT, CPoint)
{
    Default();
}

void CListCtrl::OnLButtonDblClk(UINT, CPoint)
{
    Default();
}

void CListCtrl::OnRButtonDown(UINT, CPoint)
{
    Default();
}

void CListCtrl::OnKeyDown(UINT, UINT, UINT)
{
    Default();
}

void CListCtrl::OnChar(UINT, UINT, UINT)
{
    Default();
}

void CListCtrl::OnColumnClick(int) {}

void CListCtrl::OnInsertItem(int) {}

void CListCtrl::OnDeleteItem(int, DWORD_PTR) {}

INT_PTR CListCtrl::OnToolHitTest(CPoint, TOOLINFO*) const
{
    return -1;
}

BOOL CListCtrl::OnToolNeedText(UINT_PTR, CString&)
{
    return FALSE;
}
