#include "CHeaderCtrlExt.h"

#include "CListCtrlExt.h"

#include <QFontMetrics>
#include <QHeaderView>
#include <QMenu>

IMPLEMENT_DYNAMIC(CHeaderCtrlExt, CHeaderCtrl)

void CHeaderCtrlExt::SetNbLignes(int nLignes)
{
    m_nNbLignes = std::max(1, nLignes);
    if (QHeaderView* h = GetHeaderView())
    {
        // The lines, and the frame and margins a one-line heading has around its text.
        QFontMetrics fm(h->font());
        int nMarges = std::max(0, h->sizeHint().height() - fm.height());
        SetMinHeight(m_nNbLignes * fm.lineSpacing() + nMarges);
    }
}

void CHeaderCtrlExt::OnRButtonDown(int, CPoint pt)
{
    QHeaderView* h = GetHeaderView();
    if (!h || m_pListe->GetColumnCount() == 0)
        return;
    // A menu of the columns, each checked when shown.
    QMenu menu(h);
    for (int c = 0; c < m_pListe->GetColumnCount(); ++c)
    {
        LVCOLUMN col;
        col.mask = LVCF_TEXT;
        m_pListe->GetColumn(c, &col);
        QAction* a = menu.addAction(QString::fromWCharArray(col.strText.GetString()).replace(QLatin1Char('\n'), QLatin1Char(' ')));
        a->setCheckable(true);
        a->setChecked(!m_pListe->IsColumnHidden(c));
        a->setData(c);
    }
    if (QAction* a = menu.exec(h->mapToGlobal(QPoint(pt.x, pt.y))))
        m_pListe->SetAfficheColonne(a->data().toInt(), a->isChecked());
}

void CHeaderCtrlExt::OnDividerDblClick(int nItem)
{
    m_pListe->AutosizeColonne(nItem);
}

CString CHeaderCtrlExt::GetItemToolTip(int nItem)
{
    return m_pListe->GetColumnToolTipText(nItem);
}
