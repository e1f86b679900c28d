// What the hosting keeps while Qt runs for the host, and the checks every call makes
// first. Internal to the hosting library.
#pragma once

#include "qthost/CIncrustation.h"
#include "qthost/CQtHote.h"
#include "qthost/Plateforme.h"

#include <QByteArray>
#include <QPointer>
#include <QString>

#include <memory>
#include <mutex>
#include <thread>
#include <vector>

class QApplication;

namespace prefa_qthost_detail
{

class BoucleHote;

struct EtatQt
{
    // Under the lock: read by any thread (the checks), written on Qt's thread.
    std::mutex verrou;
    bool bFilFixe = false;  // Qt started once on a thread, which stays Qt's for the process
    std::thread::id fil;
    int nDemarrages = 0;
    bool bHoteQt = false;

    // Qt's thread only.
    std::unique_ptr<QApplication> pApplication;  // ours; null when the host's
    std::vector<QByteArray> arguments;           // the copy QApplication keeps pointers into
    std::vector<char*> argv;
    int argc = 0;
    std::unique_ptr<Plateforme> pPlateforme;
    QPointer<BoucleHote> pBoucle;
    std::vector<CIncrustation::Impl*> incrustations;
    int nTraitements = 0;  // our calls running Qt's events, nested
};

EtatQt& Etat();

// The checks of a call: Qt started (when required) and the caller on Qt's thread.
// QTHOTE_OK, or the failure with its message recorded.
int VerifieAppel(bool bDemarrageRequis = true);
// Records the failure's message for MessageErreur on the calling thread, writes it to
// the "prefa.qthost" log, and returns nCode.
int Echec(int nCode, const QString& message);
// Clears the calling thread's message and returns QTHOTE_OK.
int Reussite();
// The native window system, opened on first use; null with the failure recorded (its
// code in *pnCode) when Qt's platform has none.
Plateforme* PlateformeOuverte(int* pnCode);
// The checks of a call that shows a Qt object (named by pszQuoi) in or over a host's
// window: VerifieAppel, the object, the platform, the window. The platform, or null
// with the failure recorded and its code in *pnCode.
Plateforme* VerifieAppelSurFenetre(WId fenetre, const void* pObjet, const char* pszQuoi, int* pnCode);

// Takes a widget out of the host's window and gives it back (when Qt stops).
void RetireIncrustation(CIncrustation::Impl* p);
// Forgets the embedding without touching Qt (at exit, Qt is left to the system).
void AbandonneIncrustation(CIncrustation::Impl* p);

// Counts one of our calls running Qt's events for as long as it lives.
struct TraitementEnCours
{
    TraitementEnCours() { ++Etat().nTraitements; }
    ~TraitementEnCours() { --Etat().nTraitements; }
    TraitementEnCours(const TraitementEnCours&) = delete;
    TraitementEnCours& operator=(const TraitementEnCours&) = delete;
};

} // namespace prefa_qthost_detail
