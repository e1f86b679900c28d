#include "ChaineFocus.h"

#include <QGuiApplication>
#include <QStyleHints>
#include <QWidget>

namespace prefa_qthost_detail
{

namespace
{
QWidget* ProxyFinal(QWidget* w)
{
    QWidget* p = w->focusProxy();
    while (p && p->focusProxy())
        p = p->focusProxy();
    return p;
}
} // namespace

QWidget* ProchainFocus(QWidget* pFenetre, QWidget* pDepuis, bool bSuivant, bool* pbTour)
{
    const Qt::FocusPolicy drapeau =
        QGuiApplication::styleHints()->tabFocusBehavior() == Qt::TabFocusAllControls ? Qt::TabFocus : Qt::StrongFocus;
    // The chain is a ring through every widget of the window and the window itself:
    // going forward from pDepuis, Tab takes the first candidate, Shift+Tab the last one
    // before coming back. Passing the window on the way is going round the end.
    QWidget* pChoisi = nullptr;
    bool bFenetrePassee = false, bChoisiApres = false;
    for (QWidget* w = pDepuis->nextInFocusChain(); w && w != pDepuis; w = w->nextInFocusChain())
    {
        if (w->isWindow())
            bFenetrePassee = true;
        QWidget* pProxy = ProxyFinal(w);
        const bool bPrend = ((pProxy ? pProxy->focusPolicy() : w->focusPolicy()) & drapeau) == drapeau;
        // A compound widget hands the focus to a child: enter it from the right side only.
        const bool bCompose = pProxy && (bSuivant ? pProxy->isAncestorOf(w) : w->isAncestorOf(pProxy));
        if (bPrend && !bCompose && w->isVisibleTo(pFenetre) && w->isEnabled() && pProxy != pDepuis)
        {
            pChoisi = w;
            bChoisiApres = bFenetrePassee;
            if (bSuivant)
                break;
        }
    }
    if (pbTour)
        *pbTour = bSuivant ? bChoisiApres : !bChoisiApres;
    return pChoisi;
}

} // namespace prefa_qthost_detail
