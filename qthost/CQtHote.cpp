// Qt's application for the host: started once, counted, stopped cleanly at the last
// Arrete or when the host unloads the library, left to the system at the host's exit.
#include "BoucleHote.h"
#include "EtatQt.h"

#include <QApplication>
#include <QThread>
#include <QWidget>

using namespace prefa_qthost_detail;

namespace
{
void Ferme()
{
    EtatQt& e = Etat();
    // The embeddings give their widgets back, the loan ends, our X connection closes.
    std::vector<CIncrustation::Impl*> incrustations = e.incrustations;
    for (CIncrustation::Impl* p : incrustations)
        RetireIncrustation(p);
    delete e.pBoucle.data();
    e.pPlateforme.reset();
    if (e.pApplication)
    {
        // Widgets outlive no application: those still alive go now (a CWnd sees its
        // window gone), then the deletions Qt was asked for, then Qt itself.
        QList<QPointer<QWidget>> fenetres;
        for (QWidget* w : QApplication::topLevelWidgets())
            fenetres.append(w);
        for (const QPointer<QWidget>& w : fenetres)
            delete w.data();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        e.pApplication.reset();
        e.argv.clear();
        e.arguments.clear();
        e.argc = 0;
    }
    std::lock_guard<std::mutex> garde(e.verrou);
    e.nDemarrages = 0;
    e.bHoteQt = false;
}

bool SurLeFilDeQt()
{
    EtatQt& e = Etat();
    std::lock_guard<std::mutex> garde(e.verrou);
    // Qt's objects can only go on Qt's thread; from another one they are left.
    return e.nDemarrages > 0 && std::this_thread::get_id() == e.fil;
}

// The host unloads the library with Qt running: Qt stops as at the last Arrete.
void AuDechargement()
{
    if (SurLeFilDeQt())
        Ferme();
}

// The host exits with Qt running: what Qt made is left to the system, and nothing of
// ours touches it any more (a host's static object ending after us included).
void ALaSortie()
{
    EtatQt& e = Etat();
    for (CIncrustation::Impl* p : e.incrustations)
        AbandonneIncrustation(p);
    e.incrustations.clear();
    // Left, not lost: held where a leak checker sees them.
    [[maybe_unused]] static Plateforme* volatile pPlateformeLaissee = nullptr;
    [[maybe_unused]] static QApplication* volatile pApplicationLaissee = nullptr;
    pPlateformeLaissee = e.pPlateforme.release();
    pApplicationLaissee = e.pApplication.release();
    std::lock_guard<std::mutex> garde(e.verrou);
    e.nDemarrages = 0;
}
} // namespace

int CQtHote::Demarre(int argc, char** argv)
{
    int n = VerifieAppel(false);
    if (n != QTHOTE_OK)
        return n;
    EtatQt& e = Etat();
    if (e.nDemarrages > 0)
    {
        std::lock_guard<std::mutex> garde(e.verrou);
        ++e.nDemarrages;
        return Reussite();
    }
    bool bHoteQt = false;
    if (QCoreApplication* pApplication = QCoreApplication::instance())
    {
        if (!qobject_cast<QApplication*>(pApplication))
            return Echec(QTHOTE_ECHEC, QStringLiteral("the host's Qt application is no QApplication: it cannot show widgets"));
        if (pApplication->thread() != QThread::currentThread())
            return Echec(QTHOTE_AUTRE_FIL, QStringLiteral("called from a thread other than the host's Qt thread"));
        bHoteQt = true;
    }
    else
    {
        QStringList liste;
        e.arguments.clear();
        for (int i = 0; i < argc && argv && argv[i]; ++i)
            e.arguments.emplace_back(argv[i]);
        if (e.arguments.empty())
            e.arguments.emplace_back("prefa");
        for (const QByteArray& a : e.arguments)
            liste.append(QString::fromLocal8Bit(a));
        QString erreur;
        if (!Plateforme::AffichageDisponible(liste, erreur))
            return Echec(QTHOTE_SANS_AFFICHAGE, erreur);
        e.argv.clear();
        for (QByteArray& a : e.arguments)
            e.argv.push_back(a.data());
        e.argv.push_back(nullptr);
        e.argc = (int)e.arguments.size();
        e.pApplication = std::make_unique<QApplication>(e.argc, e.argv.data());
        Plateforme::InscritFin(AuDechargement, ALaSortie);
    }
    std::lock_guard<std::mutex> garde(e.verrou);
    e.bFilFixe = true;
    e.fil = std::this_thread::get_id();
    e.nDemarrages = 1;
    e.bHoteQt = bHoteQt;
    return Reussite();
}

int CQtHote::Arrete()
{
    int n = VerifieAppel();
    if (n != QTHOTE_OK)
        return n;
    EtatQt& e = Etat();
    if (e.nDemarrages == 1 && e.pApplication && (e.nTraitements > 0 || QThread::currentThread()->loopLevel() > 0))
        return Echec(QTHOTE_OCCUPE, QStringLiteral("Qt cannot stop from inside its own event processing: "
                                                   "stop it from the host's loop"));
    if (e.nDemarrages > 1)
    {
        std::lock_guard<std::mutex> garde(e.verrou);
        --e.nDemarrages;
        return Reussite();
    }
    Ferme();
    return Reussite();
}

BOOL CQtHote::EstDemarre()
{
    EtatQt& e = Etat();
    std::lock_guard<std::mutex> garde(e.verrou);
    return e.nDemarrages > 0;
}

BOOL CQtHote::EstHoteQt()
{
    EtatQt& e = Etat();
    std::lock_guard<std::mutex> garde(e.verrou);
    return e.nDemarrages > 0 && e.bHoteQt;
}
