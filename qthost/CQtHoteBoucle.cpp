// Qt's events run from the host's loop: a budgeted pass, a wait on the host's input,
// and the host's loop lent to Qt's nested loops.
#include "BoucleHote.h"
#include "EtatQt.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>

using namespace prefa_qthost_detail;

namespace
{
// Called at the host's own level: a nested loop the loan served is over.
void RetourAuNiveauHote()
{
    if (QThread::currentThread()->loopLevel() == 0 && Etat().pBoucle)
        Etat().pBoucle->NiveauHote();
}

// Objects whose deletion was asked for outside any event (by the host's code) go at
// the end of the host's outermost call; Qt would keep them until a loop it runs ends.
void SupprimeDemandes()
{
    if (Etat().nTraitements == 1 && QThread::currentThread()->loopLevel() == 0)
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}
} // namespace

BOOL CQtHote::BoucleNativeIntegree()
{
    if (VerifieAppel() != QTHOTE_OK)
        return FALSE;
    // Qt's dispatchers on GLib's default context (Linux) and on the thread's message
    // queue (Windows) are the ones a native loop runs.
    QAbstractEventDispatcher* pDistributeur = QAbstractEventDispatcher::instance();
    return pDistributeur &&
           (pDistributeur->inherits("QEventDispatcherGlib") || pDistributeur->inherits("QEventDispatcherWin32"));
}

int CQtHote::TraiteEvenements(int nBudgetMs, BOOL* pbReste)
{
    if (pbReste)
        *pbReste = FALSE;
    int n = VerifieAppel();
    if (n != QTHOTE_OK)
        return n;
    RetourAuNiveauHote();
    TraitementEnCours traitement;
    QAbstractEventDispatcher* pDistributeur = QAbstractEventDispatcher::instance();
    QElapsedTimer chrono;
    chrono.start();
    bool bReste = false;
    while (pDistributeur->processEvents(QEventLoop::AllEvents))
        if (chrono.elapsed() >= nBudgetMs)
        {
            bReste = true;
            break;
        }
    SupprimeDemandes();
    if (pbReste)
        *pbReste = bReste;
    return Reussite();
}

int CQtHote::ConfieBoucleHote(int nDescripteur, PFNTOURHOTE pfnTour, void* pData)
{
    int n = VerifieAppel();
    if (n != QTHOTE_OK)
        return n;
    EtatQt& e = Etat();
    if (e.pBoucle)
    {
        // The old loan may be the one running this call (a turn taking it back).
        e.pBoucle->Retire();
        e.pBoucle->deleteLater();
        e.pBoucle = nullptr;
    }
    if (pfnTour)
        e.pBoucle = new BoucleHote(nDescripteur, pfnTour, pData);
    return Reussite();
}

int CQtHote::AttendEvenements(int nDelaiMs, BOOL* pbEntree)
{
    if (pbEntree)
        *pbEntree = FALSE;
    int n = VerifieAppel();
    if (n != QTHOTE_OK)
        return n;
    EtatQt& e = Etat();
    RetourAuNiveauHote();
    TraitementEnCours traitement;
    bool bEntree = false, bEchu = false;
    QTimer limite;
    limite.setSingleShot(true);
    limite.setTimerType(Qt::PreciseTimer);  // a coarse timer may end the wait early
    QObject::connect(&limite, &QTimer::timeout, [&bEchu] { bEchu = true; });
    if (nDelaiMs >= 0)
        limite.start(nDelaiMs);
    QPointer<BoucleHote> pBoucle = e.pBoucle;
    if (pBoucle)
        pBoucle->DebutAttente(&bEntree);
    QAbstractEventDispatcher* pDistributeur = QAbstractEventDispatcher::instance();
    // Without a lent descriptor, the first events Qt handles end the wait.
    do
        pDistributeur->processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    while (!bEntree && !bEchu && pBoucle);
    if (pBoucle)
        pBoucle->FinAttente();
    SupprimeDemandes();
    if (pbEntree)
        *pbEntree = bEntree;
    return Reussite();
}
