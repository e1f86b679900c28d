#include "BoucleHote.h"

#include <QAbstractEventDispatcher>
#include <QThread>

namespace prefa_qthost_detail
{

namespace
{
int NiveauBoucle()
{
    return QThread::currentThread()->loopLevel();
}
} // namespace

BoucleHote::BoucleHote(int nDescripteur, PFNTOURHOTE pfnTour, void* pData) : m_pfnTour(pfnTour), m_pData(pData)
{
    if (nDescripteur >= 0)
    {
        m_pEntree = std::make_unique<QSocketNotifier>(nDescripteur, QSocketNotifier::Read);
        m_pEntree->setEnabled(false);
        connect(m_pEntree.get(), &QSocketNotifier::activated, this, &BoucleHote::SurEntree);
    }
    m_Minuterie.setSingleShot(true);
    m_Minuterie.setTimerType(Qt::PreciseTimer);  // the host's timers are not due early
    connect(&m_Minuterie, &QTimer::timeout, this, &BoucleHote::SurMinuterie);
    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this,
            &BoucleHote::SurBlocage);
}

void BoucleHote::NiveauHote()
{
    m_nNiveauPlanifie = 0;
    if (m_pEntree && !m_pbEntree)
        m_pEntree->setEnabled(false);
}

void BoucleHote::DebutAttente(bool* pbEntree)
{
    m_pbEntree = pbEntree;
    if (m_pEntree)
        m_pEntree->setEnabled(true);
}

void BoucleHote::FinAttente()
{
    m_pbEntree = nullptr;
    if (m_pEntree)
        m_pEntree->setEnabled(false);
}

void BoucleHote::Retire()
{
    m_pfnTour = nullptr;
    m_pbEntree = nullptr;
    if (m_pEntree)
        m_pEntree->setEnabled(false);
    m_Minuterie.stop();
    disconnect(QAbstractEventDispatcher::instance(), nullptr, this, nullptr);
}

void BoucleHote::SurBlocage()
{
    const int nNiveau = NiveauBoucle();
    if (nNiveau == 0 || !m_pfnTour)
        return;
    // A nested loop waits: the host's input wakes it, and its first wait runs a turn
    // to learn when the host's timers are due.
    if (m_pEntree)
        m_pEntree->setEnabled(true);
    if (nNiveau > m_nNiveauPlanifie)
    {
        m_nNiveauPlanifie = nNiveau;
        m_Minuterie.start(0);
    }
}

void BoucleHote::SurEntree()
{
    const int nNiveau = NiveauBoucle();
    if (nNiveau > 0 && nNiveau > m_nNiveauTour && m_pfnTour)
    {
        Tour();
        return;
    }
    // The host's own level (or its turn running already): the host reads the input
    // once we return; the next wait arms the descriptor again.
    if (nNiveau == 0 && m_pbEntree)
        *m_pbEntree = true;
    m_pEntree->setEnabled(false);
}

void BoucleHote::SurMinuterie()
{
    if (NiveauBoucle() > 0)
        Tour();
}

void BoucleHote::Tour()
{
    // A turn opening a nested loop of its own (a dialog of the host's) gets turns again
    // from that deeper loop, as the platform's message loops do.
    const int nNiveau = NiveauBoucle();
    if (!m_pfnTour || nNiveau <= m_nNiveauTour)
        return;
    const int nAvant = m_nNiveauTour;
    m_nNiveauTour = nNiveau;
    m_Minuterie.stop();
    const int nDelai = m_pfnTour(m_pData);
    m_nNiveauTour = nAvant;
    if (m_pfnTour && nDelai >= 0)
        m_Minuterie.start(nDelai);
}

} // namespace prefa_qthost_detail
