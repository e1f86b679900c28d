// A modal Qt dialog over a native window of the host, as the platform's own modal
// dialogs behave: transient for the window (the window manager keeps it above and
// centred), the window's input blocked, the focus given back to the window after.
#include "EtatQt.h"

#include <QDialog>
#include <QTimer>
#include <QWindow>

using namespace prefa_qthost_detail;

int CQtHote::ExecModal(QDialog* pDialogue, WId fenetreHote, int* pnResultat)
{
    int n = QTHOTE_OK;
    Plateforme* pPlateforme = VerifieAppelSurFenetre(fenetreHote, pDialogue, "dialog", &n);
    if (!pPlateforme)
        return n;
    TraitementEnCours traitement;
    const QRect zone = pPlateforme->ZoneClient(fenetreHote);

    QPointer<QDialog> pDlg(pDialogue);
    // Transient for the host's top-level window: the window manager knows no other.
    std::unique_ptr<QWindow> pHote(QWindow::fromWinId(pPlateforme->FenetreRacine(fenetreHote)));
    pDialogue->setWindowModality(Qt::ApplicationModal);
    pDialogue->winId();  // its native window, to make it transient for the host's
    pDialogue->windowHandle()->setTransientParent(pHote.get());
    if (!pDialogue->testAttribute(Qt::WA_Resized))
        pDialogue->adjustSize();
    pDialogue->move(zone.x() + (zone.width() - pDialogue->width()) / 2,
                    zone.y() + (zone.height() - pDialogue->height()) / 2);

    // Without a window manager nobody gives the dialog the focus: it asks for it once
    // shown, and again whenever the user reaches for the blocked window.
    auto auPremierPlan = [pDlg] {
        if (pDlg && pDlg->isVisible())
        {
            pDlg->raise();
            pDlg->activateWindow();
        }
    };
    // The focus goes back where it was in the host's window after (an embedded widget's window too).
    const WId focusAvant = pPlateforme->AFocus(fenetreHote) ? pPlateforme->Focus() : 0;
    pPlateforme->Bloque(fenetreHote, auPremierPlan);
    QTimer::singleShot(0, pDialogue, auPremierPlan);
    const int nResultat = pDialogue->exec();
    pPlateforme->Debloque(fenetreHote);
    if (focusAvant && !pPlateforme->DonneFocus(focusAvant))
        pPlateforme->DonneFocus(fenetreHote);
    if (pDlg && pDlg->windowHandle())
        pDlg->windowHandle()->setTransientParent(nullptr);
    if (pnResultat)
        *pnResultat = nResultat;
    return Reussite();
}
