// The host's loop lent to Qt: inside Qt's nested loops (loop level above 0) the host's
// turn runs when its descriptor has input and when the delay it asked for has passed;
// at the host's own level the host runs its loop itself, and only AttendEvenements
// listens to the descriptor, to return when input comes. Internal to the hosting library.
#pragma once

#include "qthost/CQtHote.h"

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <memory>

namespace prefa_qthost_detail
{

class BoucleHote : public QObject
{
public:
    BoucleHote(int nDescripteur, PFNTOURHOTE pfnTour, void* pData);

    // The host's own level: the host called us from its loop, any nested loop is over.
    void NiveauHote();
    // During AttendEvenements: *pbEntree becomes true when the descriptor has input.
    void DebutAttente(bool* pbEntree);
    void FinAttente();
    // Ends the loan from inside a turn as well: nothing more runs, deletion follows.
    void Retire();

private:
    void SurBlocage();
    void SurEntree();
    void SurMinuterie();
    void Tour();

    PFNTOURHOTE m_pfnTour;
    void* m_pData;
    std::unique_ptr<QSocketNotifier> m_pEntree;
    QTimer m_Minuterie;
    int m_nNiveauPlanifie = 0;  // deepest nested loop whose first turn was asked for
    int m_nNiveauTour = 0;      // loop level of the innermost turn running
    bool* m_pbEntree = nullptr;
};

} // namespace prefa_qthost_detail
