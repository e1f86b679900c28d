// The widget goes into a frameless Qt window of ours (the container) whose native window
// Qt makes a child of the host's, through Qt's view of that foreign window.
#include "ChaineFocus.h"
#include "EtatQt.h"

#include "ui/CWnd.h"

#include <QEvent>
#include <QVBoxLayout>
#include <QWindow>

#include <algorithm>

using namespace prefa_qthost_detail;

namespace
{
class Conteneur;
}

struct CIncrustation::Impl : public Plateforme::Observateur
{
    WId hote = 0;
    std::unique_ptr<QWindow> pFenetreHote;  // Qt's view of the host's window, the container's parent
    QPointer<Conteneur> pConteneur;
    QPointer<QWidget> pWidget;
    // Where the widget was before, to give it back as it was.
    QPointer<QWidget> pParentAvant;
    QRect geometrieAvant;
    bool bVisibleAvant = false;
    std::function<void(BOOL)> fnSortie;
    bool bFocusAttendu = false;  // the focus goes in once the container is on screen
    bool bRetrait = false;

    ~Impl() override { Retire(); }
    void TailleChangee(QSize taille) override;
    void FenetreDetruite() override { Retire(); }
    void Retire();
    void DonneFocusNatif();
    void SortieFocus(bool bSuivant);
};

namespace
{
class Conteneur : public QWidget
{
public:
    explicit Conteneur(CIncrustation::Impl* pImpl) : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint), m_pImpl(pImpl)
    {
        auto* pDisposition = new QVBoxLayout(this);
        pDisposition->setContentsMargins(0, 0, 0, 0);
        pDisposition->setSpacing(0);
    }

    // Watches the native window: on screen at last, and clicked.
    void Surveille() { windowHandle()->installEventFilter(this); }

protected:
    // The whole Tab walk is ours: Qt's own sends an embedded window's wrap round to
    // the host as an XEmbed message, which hosts of plain X windows do not read.
    bool focusNextPrevChild(bool bSuivant) override
    {
        QWidget* pDepuis = focusWidget() ? focusWidget() : this;
        bool bTour = false;
        QWidget* pProchain = ProchainFocus(this, pDepuis, bSuivant, &bTour);
        // Qt moves the focus on by itself when the focus widget is hidden or disabled
        // (a cell editor closing, the widget going back): only Tab leaves.
        const bool bTab = pDepuis->isVisible() && pDepuis->isEnabled() && !m_pImpl->bRetrait;
        if (bTab && (!pProchain || bTour))
        {
            m_pImpl->SortieFocus(bSuivant);
            return true;
        }
        if (!pProchain)
            return false;
        pProchain->setFocus(bSuivant ? Qt::TabFocusReason : Qt::BacktabFocusReason);
        return true;
    }

    bool eventFilter(QObject* pObjet, QEvent* pEvent) override
    {
        switch (pEvent->type())
        {
        case QEvent::Expose:
            if (m_pImpl->bFocusAttendu && windowHandle()->isExposed())
                m_pImpl->DonneFocusNatif();
            break;
        case QEvent::MouseButtonPress:
            // The host's window has the keyboard: a click inside takes it.
            m_pImpl->DonneFocusNatif();
            break;
        default:
            break;
        }
        return QWidget::eventFilter(pObjet, pEvent);
    }

private:
    CIncrustation::Impl* m_pImpl;
};
} // namespace

void CIncrustation::Impl::TailleChangee(QSize taille)
{
    if (pConteneur)
        pConteneur->setGeometry(0, 0, taille.width(), taille.height());
}

void CIncrustation::Impl::Retire()
{
    if (!hote || bRetrait)
        return;
    bRetrait = true;
    EtatQt& e = Etat();
    e.incrustations.erase(std::remove(e.incrustations.begin(), e.incrustations.end(), this), e.incrustations.end());
    if (e.pPlateforme)
        e.pPlateforme->Oublie(hote, this);
    if (pWidget)
    {
        // Back in its former parent as it was there; without one it stays hidden
        // rather than coming up as a window of its own.
        pWidget->hide();
        pWidget->setParent(pParentAvant);
        pWidget->setGeometry(geometrieAvant);
        if (pParentAvant && bVisibleAvant)
            pWidget->show();
    }
    // The container's window before Qt's view of the host's window, its parent, which
    // would take it along.
    delete pConteneur.data();
    pFenetreHote.reset();
    pWidget = nullptr;
    pParentAvant = nullptr;
    hote = 0;
    bFocusAttendu = false;
    bRetrait = false;
}

void CIncrustation::Impl::DonneFocusNatif()
{
    bFocusAttendu = false;
    if (!pConteneur || !Etat().pPlateforme)
        return;
    // Until the server shows the container, its window cannot take the focus.
    if (!pConteneur->windowHandle()->isExposed() || !Etat().pPlateforme->DonneFocus(pConteneur->winId()))
        bFocusAttendu = true;
}

void CIncrustation::Impl::SortieFocus(bool bSuivant)
{
    if (Etat().pPlateforme)
        Etat().pPlateforme->DonneFocus(hote);
    if (fnSortie)
        fnSortie(bSuivant ? TRUE : FALSE);
}

void prefa_qthost_detail::RetireIncrustation(CIncrustation::Impl* p)
{
    p->Retire();
}

void prefa_qthost_detail::AbandonneIncrustation(CIncrustation::Impl* p)
{
    p->pConteneur = nullptr;
    (void)p->pFenetreHote.release();
    p->pWidget = nullptr;
    p->pParentAvant = nullptr;
    p->hote = 0;
}

CIncrustation::CIncrustation() : d(std::make_unique<Impl>()) {}

// The implementation retires the widget; after Qt stopped, or at exit, there is nothing
// left to do.
CIncrustation::~CIncrustation() = default;

int CIncrustation::Incruste(WId fenetreHote, CWnd* pWnd)
{
    return Incruste(fenetreHote, pWnd ? pWnd->GetWidget() : nullptr);
}

int CIncrustation::Incruste(WId fenetreHote, QWidget* pWidget)
{
    int n = QTHOTE_OK;
    Plateforme* pPlateforme = VerifieAppelSurFenetre(fenetreHote, pWidget, "widget", &n);
    if (!pPlateforme)
        return n;
    d->Retire();

    d->hote = fenetreHote;
    d->pWidget = pWidget;
    d->pParentAvant = pWidget->parentWidget();
    d->geometrieAvant = pWidget->geometry();
    d->bVisibleAvant = !pWidget->isHidden();
    d->pFenetreHote.reset(QWindow::fromWinId(fenetreHote));
    Conteneur* pConteneur = new Conteneur(d.get());
    d->pConteneur = pConteneur;
    pConteneur->layout()->addWidget(pWidget);
    pWidget->show();
    pConteneur->winId();
    pConteneur->windowHandle()->setParent(d->pFenetreHote.get());
    pConteneur->Surveille();
    // Watched before its size is read: a change in between is not missed.
    pPlateforme->Observe(fenetreHote, d.get());
    pConteneur->setGeometry(QRect(QPoint(0, 0), pPlateforme->ZoneClient(fenetreHote).size()));
    pConteneur->show();
    Etat().incrustations.push_back(d.get());
    return Reussite();
}

void CIncrustation::Retire()
{
    if (VerifieAppel() == QTHOTE_OK)
        d->Retire();
}

BOOL CIncrustation::EstIncruste() const
{
    return d->hote != 0;
}

WId CIncrustation::GetFenetreHote() const
{
    return d->hote;
}

QWidget* CIncrustation::GetWidget() const
{
    return d->pWidget.data();
}

WId CIncrustation::GetFenetreConteneur() const
{
    return d->pConteneur ? d->pConteneur->winId() : 0;
}

int CIncrustation::DonneFocus(int nOu)
{
    int n = VerifieAppel();
    if (n != QTHOTE_OK)
        return n;
    if (!d->pConteneur)
        return Echec(QTHOTE_ARGUMENT, QStringLiteral("no widget is embedded"));
    Conteneur* pConteneur = d->pConteneur;
    QWidget* pCible = nOu == FOCUS_COURANT ? pConteneur->focusWidget() : nullptr;
    if (!pCible)
        pCible = ProchainFocus(pConteneur, pConteneur, nOu != FOCUS_DERNIER, nullptr);
    if (pCible)
        pCible->setFocus(nOu == FOCUS_DERNIER ? Qt::BacktabFocusReason : Qt::TabFocusReason);
    d->DonneFocusNatif();
    return Reussite();
}

BOOL CIncrustation::AFocus() const
{
    if (VerifieAppel() != QTHOTE_OK || !d->pConteneur || !Etat().pPlateforme)
        return FALSE;
    return Etat().pPlateforme->AFocus(d->pConteneur->winId());
}

void CIncrustation::SetSortieFocus(std::function<void(BOOL bSuivant)> fnSortie)
{
    d->fnSortie = std::move(fnSortie);
}
