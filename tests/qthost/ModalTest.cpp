// A modal Qt dialog over a host's window, seen from the X server while it is up: transient
// for the host, centred on it, the host's window under an input-only pane, the host's
// loop still turning; after: its result, the pane gone, the focus back in the host.
#include "Attente.h"

#include <QDialog>

#include <gtest/gtest.h>

#include <algorithm>

using prefa_test::FenetreX;
using prefa_test::Jusqua;

namespace
{
struct Observation
{
    Observation(FenetreX* h, unsigned long b, QDialog* d) : pHote(h), bloquee(b), pDialogue(d) {}
    FenetreX* pHote;
    unsigned long bloquee;  // the window the dialog is over
    QDialog* pDialogue;
    int nTours = 0;
    bool bVu = false;
    unsigned long transient = 0;
    QRect geometrie;
    unsigned long focus = 0;
    std::vector<FenetreX::Enfant> enfants;

    // The host's loop, lent while the dialog is up: it looks, and closes the dialog
    // after a few turns of its 10 ms timer.
    static int Tour(void* p)
    {
        Observation& o = *static_cast<Observation*>(p);
        o.pHote->Lit();
        ++o.nTours;
        if (!o.bVu && o.pDialogue->isVisible() && o.pHote->Focus() == o.pDialogue->winId())
        {
            o.bVu = true;
            o.transient = o.pHote->TransientPour(o.pDialogue->winId());
            o.geometrie = o.pHote->Geometrie(o.pDialogue->winId());
            o.focus = o.pHote->Focus();
            o.enfants = o.pHote->Enfants(o.bloquee);
        }
        if (o.bVu && o.nTours >= 6)
            o.pDialogue->done(7);
        return 10;
    }
};
} // namespace

TEST(Modal, TheDialogIsTransientForTheHostCentredOnItAndBlocksItUntilItCloses)
{
    ASSERT_EQ(QTHOTE_OK, CQtHote::Demarre());
    {
        FenetreX hote(100, 80, 400, 300);
        FenetreX autre(0, 0, 10, 10);
        hote.PrendFocus();
        QDialog* pDialogue = new QDialog;
        pDialogue->resize(200, 100);
        Observation o(&hote, hote.Id(), pDialogue);
        ASSERT_EQ(QTHOTE_OK, CQtHote::ConfieBoucleHote(hote.Descripteur(), &Observation::Tour, &o));
        int nResultat = 0;
        ASSERT_EQ(QTHOTE_OK, CQtHote::ExecModal(pDialogue, hote.Id(), &nResultat));
        EXPECT_EQ(7, nResultat);
        ASSERT_TRUE(o.bVu);
        EXPECT_GE(o.nTours, 6);
        EXPECT_EQ(hote.Id(), o.transient);
        // The host's window is 400 x 300 at (100, 80): its centre is (300, 230).
        EXPECT_EQ(QRect(200, 180, 200, 100), o.geometrie);
        // The topmost child of the host's window is the pane over all of it.
        ASSERT_FALSE(o.enfants.empty());
        EXPECT_TRUE(o.enfants.back().bEntreeSeule);
        EXPECT_TRUE(o.enfants.back().bVisible);
        EXPECT_EQ(QRect(0, 0, 400, 300), o.enfants.back().geometrie);

        EXPECT_TRUE(hote.Enfants(hote.Id()).empty());
        EXPECT_TRUE(Jusqua([&] { return hote.Focus() == hote.Id(); }, &hote));

        // Over an area of the host's window: centred on the area, which alone is
        // blocked, transient for the window the window manager knows.
        o = Observation(&hote, hote.CreeEnfant(50, 40, 200, 100), pDialogue);
        ASSERT_EQ(QTHOTE_OK, CQtHote::ExecModal(pDialogue, o.bloquee, &nResultat));
        ASSERT_TRUE(o.bVu);
        EXPECT_EQ(hote.Id(), o.transient);
        EXPECT_EQ(QRect(150, 120, 200, 100), o.geometrie);
        ASSERT_EQ(1u, o.enfants.size());
        EXPECT_EQ(QRect(0, 0, 200, 100), o.enfants.back().geometrie);
        CQtHote::ConfieBoucleHote(-1, nullptr, nullptr);

        // Over a window that is no longer there, nothing shows.
        const unsigned long perime = autre.IdPerime();
        EXPECT_EQ(QTHOTE_FENETRE_INVALIDE, CQtHote::ExecModal(pDialogue, perime, &nResultat));
        EXPECT_EQ(QTHOTE_ARGUMENT, CQtHote::ExecModal(nullptr, hote.Id()));
        EXPECT_FALSE(pDialogue->isVisible());
        delete pDialogue;
    }
    EXPECT_EQ(QTHOTE_OK, CQtHote::Arrete());
}
