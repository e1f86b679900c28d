#include "VueListe.h"

#include "CDC.h"

#include <QApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>

#include <algorithm>

namespace prefa_ui_detail
{

namespace
{
const CString& TexteVide()
{
    static const CString vide;
    return vide;
}

Qt::Alignment Alignement(int fmt)
{
    return ((fmt & 3) == LVCFMT_RIGHT ? Qt::AlignRight : (fmt & 3) == LVCFMT_CENTER ? Qt::AlignHCenter : Qt::AlignLeft)
           | Qt::AlignVCenter;
}

UINT DrapeauxSouris(const QInputEvent* e, UINT bouton)
{
    return bouton | ((e->modifiers() & Qt::ControlModifier) ? MK_CONTROL : 0u)
           | ((e->modifiers() & Qt::ShiftModifier) ? MK_SHIFT : 0u);
}

bool EstCaractere(const QKeyEvent* e)
{
    if (e->modifiers() & (Qt::ControlModifier | Qt::AltModifier))
        return false;
    return !e->text().isEmpty() && e->text().at(0).isPrint();
}

// Text padding inside a cell, as the platform's report view leaves it.
constexpr int kMarge = 6;
} // namespace

// ---- model

int ModeleListe::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : (int)lignes.size();
}

int ModeleListe::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : (int)colonnes.size();
}

QVariant ModeleListe::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return QVariant();
    if (role == Qt::DisplayRole)
        return QStr(Texte(index.row(), index.column()));
    if (role == Qt::TextAlignmentRole)
        return (int)Alignement(colonnes[(std::size_t)index.column()].fmt);
    if (role == Qt::SizeHintRole)
        return QSize(-1, nHauteurLigne);
    return QVariant();
}

QVariant ModeleListe::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= (int)colonnes.size())
        return QVariant();
    if (role == Qt::DisplayRole)
        return QStr(colonnes[(std::size_t)section].titre);
    if (role == Qt::TextAlignmentRole)
        return (int)Alignement(colonnes[(std::size_t)section].fmt);
    return QVariant();
}

const CString& ModeleListe::Texte(int nLigne, int nColonne) const
{
    if (nLigne < 0 || nLigne >= (int)lignes.size() || nColonne < 0)
        return TexteVide();
    const auto& t = lignes[(std::size_t)nLigne].textes;
    return nColonne < (int)t.size() ? t[(std::size_t)nColonne] : TexteVide();
}

void ModeleListe::ChangeTexte(int nLigne, int nColonne, const CString& texte)
{
    auto& t = lignes[(std::size_t)nLigne].textes;
    if ((int)t.size() <= nColonne)
        t.resize((std::size_t)nColonne + 1);
    t[(std::size_t)nColonne] = texte;
    QModelIndex i = index(nLigne, nColonne);
    emit dataChanged(i, i);
}

void ModeleListe::InsereColonne(int nColonne, const Colonne& colonne)
{
    beginInsertColumns(QModelIndex(), nColonne, nColonne);
    colonnes.insert(colonnes.begin() + nColonne, colonne);
    for (auto& l : lignes)
        if ((int)l.textes.size() > nColonne)
            l.textes.insert(l.textes.begin() + nColonne, CString());
    endInsertColumns();
}

void ModeleListe::SupprimeColonne(int nColonne)
{
    beginRemoveColumns(QModelIndex(), nColonne, nColonne);
    colonnes.erase(colonnes.begin() + nColonne);
    for (auto& l : lignes)
        if ((int)l.textes.size() > nColonne)
            l.textes.erase(l.textes.begin() + nColonne);
    endRemoveColumns();
}

void ModeleListe::ChangeColonne(int nColonne, const Colonne& colonne)
{
    colonnes[(std::size_t)nColonne] = colonne;
    emit headerDataChanged(Qt::Horizontal, nColonne, nColonne);
}

void ModeleListe::InsereLigne(int nLigne, Ligne ligne)
{
    beginInsertRows(QModelIndex(), nLigne, nLigne);
    lignes.insert(lignes.begin() + nLigne, std::move(ligne));
    endInsertRows();
}

void ModeleListe::SupprimeLigne(int nLigne)
{
    beginRemoveRows(QModelIndex(), nLigne, nLigne);
    lignes.erase(lignes.begin() + nLigne);
    endRemoveRows();
}

void ModeleListe::Vide()
{
    beginResetModel();
    lignes.clear();
    endResetModel();
}

void ModeleListe::Reordonne(const std::vector<int>& ordre)
{
    emit layoutAboutToBeChanged();
    std::vector<int> nouvelle(ordre.size());
    std::vector<Ligne> triees;
    triees.reserve(ordre.size());
    for (std::size_t k = 0; k < ordre.size(); ++k)
    {
        triees.push_back(std::move(lignes[(std::size_t)ordre[k]]));
        nouvelle[(std::size_t)ordre[k]] = (int)k;
    }
    lignes.swap(triees);
    QModelIndexList avant = persistentIndexList();
    QModelIndexList apres;
    for (const QModelIndex& i : avant)
        apres.append(index(nouvelle[(std::size_t)i.row()], i.column()));
    changePersistentIndexList(avant, apres);
    emit layoutChanged();
}

// ---- view

VueListe::VueListe(CListCtrl* pListe) : m_pListe(pListe)
{
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setIndentation(0);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setMouseTracking(true);
}

void VueListe::Dispatche(QEvent* e, void (*appel)(CListCtrl*, QEvent*))
{
    QEvent* pAvant = m_pEvenement;
    bool bFaitAvant = m_bDefautFait;
    m_pEvenement = e;
    m_bDefautFait = false;
    appel(m_pListe, e);
    m_pEvenement = pAvant;
    m_bDefautFait = bFaitAvant;
}

void VueListe::Defaut()
{
    if (!m_pEvenement || m_bDefautFait)
        return;
    m_bDefautFait = true;
    switch (m_pEvenement->type())
    {
    case QEvent::MouseButtonPress:
        QTreeView::mousePressEvent(static_cast<QMouseEvent*>(m_pEvenement));
        break;
    case QEvent::MouseButtonDblClick:
        QTreeView::mouseDoubleClickEvent(static_cast<QMouseEvent*>(m_pEvenement));
        break;
    case QEvent::KeyPress:
    {
        QKeyEvent* k = static_cast<QKeyEvent*>(m_pEvenement);
        // A character searches the items by their text; other keys move.
        if (EstCaractere(k))
            keyboardSearch(k->text());
        else
            QTreeView::keyPressEvent(k);
        break;
    }
    default:
        break;
    }
}

void VueListe::mousePressEvent(QMouseEvent* e)
{
    if (e->button() == Qt::LeftButton)
        Dispatche(e, [](CListCtrl* l, QEvent* ev) {
            QMouseEvent* m = static_cast<QMouseEvent*>(ev);
            l->OnLButtonDown(DrapeauxSouris(m, MK_LBUTTON), CPoint(m->pos().x(), m->pos().y()));
        });
    else if (e->button() == Qt::RightButton)
        Dispatche(e, [](CListCtrl* l, QEvent* ev) {
            QMouseEvent* m = static_cast<QMouseEvent*>(ev);
            l->OnRButtonDown(DrapeauxSouris(m, MK_RBUTTON), CPoint(m->pos().x(), m->pos().y()));
        });
    else
        QTreeView::mousePressEvent(e);
}

void VueListe::mouseDoubleClickEvent(QMouseEvent* e)
{
    if (e->button() != Qt::LeftButton)
        return QTreeView::mouseDoubleClickEvent(e);
    Dispatche(e, [](CListCtrl* l, QEvent* ev) {
        QMouseEvent* m = static_cast<QMouseEvent*>(ev);
        l->OnLButtonDblClk(DrapeauxSouris(m, MK_LBUTTON), CPoint(m->pos().x(), m->pos().y()));
    });
}

void VueListe::keyPressEvent(QKeyEvent* e)
{
    Dispatche(e, [](CListCtrl* l, QEvent* ev) {
        QKeyEvent* k = static_cast<QKeyEvent*>(ev);
        l->OnKeyDown((UINT)CWnd::VirtualKey(k->key()), 1, 0);
    });
    if (EstCaractere(e))
        Dispatche(e, [](CListCtrl* l, QEvent* ev) {
            QKeyEvent* k = static_cast<QKeyEvent*>(ev);
            l->OnChar((UINT)k->text().at(0).unicode(), 1, 0);
        });
}

bool VueListe::viewportEvent(QEvent* e)
{
    if (e->type() != QEvent::ToolTip)
        return QTreeView::viewportEvent(e);
    QHelpEvent* h = static_cast<QHelpEvent*>(e);
    TOOLINFO ti;
    CString texte;
    if (m_pListe->OnToolHitTest(CPoint(h->pos().x(), h->pos().y()), &ti) != -1 && m_pListe->OnToolNeedText(ti.uId, texte)
        && !texte.IsEmpty())
    {
        CRect r(ti.rect);
        QToolTip::showText(h->globalPos(), QStr(texte), viewport(), QRect(r.left, r.top, r.Width(), r.Height()));
    }
    else
        QToolTip::hideText();
    return true;
}

void VueListe::paintEvent(QPaintEvent*)
{
    QPainter p(viewport());
    CDC dc(&p);
    QRect zone = viewport()->rect();
    const QPalette& pal = palette();
    bool bActif = isEnabled();
    COLORREF clrFond = bActif ? m_pListe->GetBkColor() : ColorRefDe(pal.color(QPalette::Disabled, QPalette::Window));
    p.fillRect(zone, QColorDe(clrFond));

    NMLVCUSTOMDRAW cd;
    cd.nmcd.dwDrawStage = CDDS_PREPAINT;
    cd.nmcd.pDC = &dc;
    cd.nmcd.rc = CRect(zone.left(), zone.top(), zone.right() + 1, zone.bottom() + 1);
    LRESULT r = CDRF_DODEFAULT;
    m_pListe->OnCustomDraw(&cd, &r);
    if (r & CDRF_SKIPDEFAULT)
        return;
    bool bItems = (r & CDRF_NOTIFYITEMDRAW) != 0;
    bool bPost = (r & CDRF_NOTIFYPOSTPAINT) != 0;

    ModeleListe* m = static_cast<ModeleListe*>(model());
    int nHaut = indexAt(QPoint(0, 0)).row();
    if (nHaut < 0)
        nHaut = 0;
    for (int i = nHaut; i < (int)m->lignes.size(); ++i)
    {
        QRect rLigne = visualRect(m->index(i, 0));
        if (!rLigne.isValid() || rLigne.top() > zone.bottom())
            break;
        rLigne.setLeft(0);
        rLigne.setRight(std::max(zone.right(), header()->length() - header()->offset()));
        PeintLigne(dc, i, rLigne, bItems, p);
    }
    if (bPost)
    {
        cd.nmcd.dwDrawStage = CDDS_POSTPAINT;
        m_pListe->OnCustomDraw(&cd, &r);
    }
}

void VueListe::PeintLigne(CDC& dc, int nLigne, const QRect& rLigne, bool bNotifierItems, QPainter& p)
{
    const QPalette& pal = palette();
    ModeleListe* m = static_cast<ModeleListe*>(model());
    bool bFocusListe = hasFocus() || isAncestorOf(QApplication::focusWidget());
    bool bActif = isEnabled();
    QPalette::ColorGroup groupe = !bActif ? QPalette::Disabled : bFocusListe ? QPalette::Active : QPalette::Inactive;

    NMLVCUSTOMDRAW cd;
    cd.nmcd.pDC = &dc;
    cd.nmcd.dwItemSpec = (UINT_PTR)nLigne;
    cd.nmcd.lItemlParam = (LPARAM)m->lignes[(std::size_t)nLigne].data;
    cd.nmcd.uItemState = (selectionModel()->isRowSelected(nLigne, QModelIndex()) ? CDIS_SELECTED : 0u)
                         | (currentIndex().row() == nLigne && bFocusListe ? CDIS_FOCUS : 0u)
                         | (bActif ? 0u : CDIS_DISABLED);
    cd.nmcd.rc = CRect(rLigne.left(), rLigne.top(), rLigne.right() + 1, rLigne.bottom() + 1);
    LRESULT r = CDRF_DODEFAULT;
    if (bNotifierItems)
    {
        cd.nmcd.dwDrawStage = CDDS_ITEMPREPAINT;
        m_pListe->OnCustomDraw(&cd, &r);
        if (r & CDRF_SKIPDEFAULT)
            return;
    }
    const UINT etatLigne = cd.nmcd.uItemState;
    const COLORREF texteLigne = cd.clrText, fondLigne = cd.clrTextBk;
    bool bSousItems = bNotifierItems && (r & CDRF_NOTIFYSUBITEMDRAW);
    bool bPostItem = bNotifierItems && (r & CDRF_NOTIFYPOSTPAINT);
    bool bLigneEntiere = (m_pListe->GetExtendedStyle() & LVS_EX_FULLROWSELECT) != 0;
    COLORREF clrFondListe = m_pListe->GetTextBkColor();
    if (clrFondListe == CLR_NONE || clrFondListe == CLR_DEFAULT || !bActif)
        clrFondListe = bActif ? m_pListe->GetBkColor() : ColorRefDe(pal.color(QPalette::Disabled, QPalette::Window));
    COLORREF clrTexteListe = bActif ? m_pListe->GetTextColor() : ColorRefDe(pal.color(QPalette::Disabled, QPalette::Text));

    QHeaderView* h = header();
    for (int v = 0; v < h->count(); ++v)
    {
        int c = h->logicalIndex(v);
        if (h->isSectionHidden(c) || h->sectionSize(c) <= 0)
            continue;
        QRect rc(h->sectionViewportPosition(c), rLigne.top(), h->sectionSize(c), rLigne.height());
        cd.nmcd.uItemState = etatLigne;
        cd.clrText = texteLigne;
        cd.clrTextBk = fondLigne;
        cd.iSubItem = c;
        cd.nmcd.rc = CRect(rc.left(), rc.top(), rc.right() + 1, rc.bottom() + 1);
        if (bSousItems)
        {
            cd.nmcd.dwDrawStage = CDDS_ITEMPREPAINT | CDDS_SUBITEM;
            LRESULT rs = CDRF_DODEFAULT;
            m_pListe->OnCustomDraw(&cd, &rs);
            if (rs & CDRF_SKIPDEFAULT)
                continue;
        }
        bool bSelection = (cd.nmcd.uItemState & CDIS_SELECTED) && (bLigneEntiere || v == 0);
        COLORREF fond = bSelection ? ColorRefDe(pal.color(groupe, QPalette::Highlight))
                        : cd.clrTextBk != CLR_DEFAULT ? cd.clrTextBk
                                                      : clrFondListe;
        COLORREF texte = bSelection ? ColorRefDe(pal.color(groupe, QPalette::HighlightedText))
                         : cd.clrText != CLR_DEFAULT ? cd.clrText
                                                     : clrTexteListe;
        dc.FillSolidRect(&cd.nmcd.rc, fond);
        CRect rTexte(cd.nmcd.rc);
        rTexte.DeflateRect(kMarge, 0);
        int fmt = m->colonnes[(std::size_t)c].fmt & 3;
        dc.SetTextColor(texte);
        dc.DrawText(m->Texte(nLigne, c), &rTexte,
                    (fmt == LVCFMT_RIGHT ? DT_RIGHT : fmt == LVCFMT_CENTER ? DT_CENTER : DT_LEFT) | DT_END_ELLIPSIS);
        if (m_pListe->GetExtendedStyle() & LVS_EX_GRIDLINES)
        {
            p.setPen(QColor(0xD0, 0xD0, 0xD0));
            p.drawLine(rc.right(), rc.top(), rc.right(), rc.bottom());
            p.drawLine(rc.left(), rc.bottom(), rc.right(), rc.bottom());
        }
    }
    if (etatLigne & CDIS_FOCUS)
    {
        CRect rFocus(rLigne.left(), rLigne.top(), rLigne.right() + 1, rLigne.bottom() + 1);
        if (!bLigneEntiere && h->count() > 0)
        {
            int c0 = h->logicalIndex(0);
            rFocus.left = h->sectionViewportPosition(c0);
            rFocus.right = rFocus.left + h->sectionSize(c0);
        }
        dc.DrawFocusRect(&rFocus);
    }
    if (bPostItem)
    {
        cd.nmcd.dwDrawStage = CDDS_ITEMPOSTPAINT;
        cd.nmcd.uItemState = etatLigne;
        cd.iSubItem = 0;
        cd.nmcd.rc = CRect(rLigne.left(), rLigne.top(), rLigne.right() + 1, rLigne.bottom() + 1);
        m_pListe->OnCustomDraw(&cd, &r);
    }
}

// ---- header

EnTeteListe::EnTeteListe(QWidget* pParent) : QHeaderView(Qt::Horizontal, pParent)
{
    setSectionsMovable(true);
    setSectionsClickable(true);
    setStretchLastSection(false);
    setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    setMinimumSectionSize(0);
}

CHeaderCtrl* EnTeteListe::Controle() const
{
    return dynamic_cast<CHeaderCtrl*>(CWnd::FromWidget(this));
}

void EnTeteListe::mousePressEvent(QMouseEvent* e)
{
    CHeaderCtrl* c = Controle();
    if (e->button() == Qt::RightButton && c)
    {
        c->OnRButtonDown(logicalIndexAt(e->pos()), CPoint(e->pos().x(), e->pos().y()));
        return;
    }
    QHeaderView::mousePressEvent(e);
}

bool EnTeteListe::viewportEvent(QEvent* e)
{
    CHeaderCtrl* c = Controle();
    if (e->type() != QEvent::ToolTip || !c)
        return QHeaderView::viewportEvent(e);
    QHelpEvent* h = static_cast<QHelpEvent*>(e);
    int n = logicalIndexAt(h->pos());
    CString texte = n >= 0 ? c->GetItemToolTip(n) : CString();
    if (texte.IsEmpty())
        QToolTip::hideText();
    else
        QToolTip::showText(h->globalPos(), QStr(texte), this);
    return true;
}

} // namespace prefa_ui_detail
