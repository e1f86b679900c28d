#include "HookEditeur.h"

#include "CListCtrlExt.h"

#include <QApplication>
#include <QFocusEvent>
#include <QKeyEvent>

namespace prefa_ui_detail
{

void HookEditeur::Installe()
{
    QWidget* w = m_pEditeur->GetWidget();
    m_Widgets.append(w);
    for (QWidget* enfant : w->findChildren<QWidget*>())
        m_Widgets.append(enfant);
    for (const QPointer<QWidget>& p : m_Widgets)
    {
        p->installEventFilter(this);
        if (!CWnd::FromWidget(p))
            CWnd::SetRelaisTouches(p, true);
    }
}

void HookEditeur::Retire()
{
    for (const QPointer<QWidget>& p : m_Widgets)
        if (p)
        {
            p->removeEventFilter(this);
            CWnd::SetRelaisTouches(p, false);
        }
    m_Widgets.clear();
}

bool HookEditeur::eventFilter(QObject* pObjet, QEvent* pEvent)
{
    QWidget* w = static_cast<QWidget*>(pObjet);
    if (pEvent->type() == QEvent::FocusOut)
    {
        Qt::FocusReason raison = static_cast<QFocusEvent*>(pEvent)->reason();
        // A window switch, a message box or a popup leaves the edit as it is.
        if (raison != Qt::ActiveWindowFocusReason && raison != Qt::PopupFocusReason)
            m_pListe->TraiteKillFocus(QApplication::focusWidget());
    }
    else if (pEvent->type() == QEvent::KeyPress && !CWnd::FromWidget(w))
        return CWnd::PreTraduitTouche(m_pEditeur->GetWidget(), static_cast<QKeyEvent*>(pEvent));
    return false;
}

} // namespace prefa_ui_detail
