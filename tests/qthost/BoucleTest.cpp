// Qt's events from the host's loop: the budgeted pass, deletions asked for, the wait on
// the host's descriptor, the host's loop lent to Qt's nested loops, and the native loop
// that runs Qt by itself.
#include "Attente.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QPointer>
#include <QTimer>

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

#include <chrono>
#include <thread>

using prefa_test::Jusqua;

namespace
{
class Boucle : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(QTHOTE_OK, CQtHote::Demarre());
        ASSERT_EQ(0, pipe(m_tube));
        fcntl(m_tube[0], F_SETFL, O_NONBLOCK);
    }
    void TearDown() override
    {
        CQtHote::ConfieBoucleHote(-1, nullptr, nullptr);
        close(m_tube[0]);
        close(m_tube[1]);
        EXPECT_EQ(QTHOTE_OK, CQtHote::Arrete());
    }
    void Ecrit(const char* texte) { ASSERT_GT(write(m_tube[1], texte, strlen(texte)), 0); }

    int m_tube[2] = {-1, -1};
};

// A host whose loop reads a descriptor and runs one timer.
struct Hote
{
    int nDescripteur = -1;
    int nDelai = -1;  // its timer's period, -1 for none
    int nTours = 0;
    int nLus = 0;
    std::function<void(Hote&)> apres;

    static int Tour(void* p)
    {
        Hote& h = *static_cast<Hote*>(p);
        ++h.nTours;
        char c;
        while (read(h.nDescripteur, &c, 1) == 1)
            ++h.nLus;
        if (h.apres)
            h.apres(h);
        return h.nDelai;
    }
};
} // namespace

TEST_F(Boucle, APassStopsOnceItsBudgetIsSpentAndTheNextOneGoesOn)
{
    // Work cut into slices by a zero timer, 5 ms a slice: Qt hands out one slice a pass.
    int nTranches = 0;
    QTimer tranche;
    tranche.setInterval(0);
    QObject::connect(&tranche, &QTimer::timeout, [&] {
        ++nTranches;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    });
    tranche.start();
    BOOL bReste = FALSE;
    ASSERT_EQ(QTHOTE_OK, CQtHote::TraiteEvenements(20, &bReste));
    EXPECT_TRUE(bReste);
    EXPECT_GE(nTranches, 1);
    EXPECT_LE(nTranches, 5);  // the slice that spends the budget is the last
    const int nAvant = nTranches;
    CQtHote::TraiteEvenements(20, &bReste);
    EXPECT_GT(nTranches, nAvant);
    EXPECT_LE(nTranches, nAvant + 5);
    EXPECT_TRUE(bReste);

    // With nothing left the pass returns before its budget, saying so.
    QObject::connect(&tranche, &QTimer::timeout, [&] { tranche.stop(); });
    ASSERT_TRUE(Jusqua([&] { return !tranche.isActive(); }));
    CQtHote::TraiteEvenements(10000, &bReste);
    EXPECT_FALSE(bReste);
}

TEST_F(Boucle, DeletionsAskedForByTheHostOrFromAnEventHappenInThePass)
{
    QPointer<QObject> pDuHote = new QObject;
    pDuHote->deleteLater();
    QPointer<QObject> pDUnEvenement = new QObject;
    QTimer::singleShot(0, [&] { pDUnEvenement->deleteLater(); });
    EXPECT_TRUE(Jusqua([&] { return pDuHote.isNull() && pDUnEvenement.isNull(); }, nullptr, 2000));
}

TEST_F(Boucle, AWaitRunsQtUntilTheHostsDescriptorHasInputOrItsDelayEnds)
{
    Hote hote;
    hote.nDescripteur = m_tube[0];
    ASSERT_EQ(QTHOTE_OK, CQtHote::ConfieBoucleHote(m_tube[0], &Hote::Tour, &hote));
    int nMinuterie = 0;
    QTimer minuterie;
    minuterie.setInterval(5);
    QObject::connect(&minuterie, &QTimer::timeout, [&] {
        if (++nMinuterie == 3)
            Ecrit("x");
    });
    minuterie.start();
    BOOL bEntree = FALSE;
    ASSERT_EQ(QTHOTE_OK, CQtHote::AttendEvenements(10000, &bEntree));
    EXPECT_TRUE(bEntree);
    // Qt's timer ran meanwhile, and the input ended the wait long before its delay.
    EXPECT_GE(nMinuterie, 3);
    EXPECT_LT(nMinuterie, 100);
    // At the host's own level its loop reads the input, not a turn of ours.
    EXPECT_EQ(0, hote.nTours);
    minuterie.stop();

    // Input left unread at the host's level neither runs a turn nor keeps a pass busy.
    BOOL bReste = TRUE;
    CQtHote::TraiteEvenements(1000, &bReste);
    EXPECT_FALSE(bReste);
    EXPECT_EQ(0, hote.nTours);

    Hote::Tour(&hote);
    QElapsedTimer chrono;
    chrono.start();
    CQtHote::AttendEvenements(40, &bEntree);
    EXPECT_FALSE(bEntree);
    EXPECT_GE(chrono.elapsed(), 40);
}

TEST_F(Boucle, InsideQtsNestedLoopsTheHostsTurnRunsOnInputAndWhenItsTimerIsDue)
{
    QEventLoop imbriquee;
    Hote hote;
    hote.nDescripteur = m_tube[0];
    hote.nDelai = 10;
    hote.apres = [&](Hote& h) {
        if (h.nLus == 2 && h.nTours >= 6)
            imbriquee.quit();
    };
    ASSERT_EQ(QTHOTE_OK, CQtHote::ConfieBoucleHote(m_tube[0], &Hote::Tour, &hote));
    bool bExpire = false;
    QTimer::singleShot(30, &imbriquee, [&] { Ecrit("ab"); });
    QTimer::singleShot(10000, &imbriquee, [&] {
        bExpire = true;
        imbriquee.quit();
    });
    imbriquee.exec();
    EXPECT_FALSE(bExpire);
    EXPECT_EQ(2, hote.nLus);

    // Back at the host's level, its loop runs itself again.
    const int nTours = hote.nTours;
    Ecrit("c");
    BOOL bReste = TRUE;
    CQtHote::TraiteEvenements(200, &bReste);
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    CQtHote::TraiteEvenements(200, &bReste);
    EXPECT_FALSE(bReste);
    EXPECT_EQ(nTours, hote.nTours);

    // Taking the loan back from inside a turn ends it there.
    hote.apres = [&](Hote&) {
        CQtHote::ConfieBoucleHote(-1, nullptr, nullptr);
        QTimer::singleShot(50, &imbriquee, &QEventLoop::quit);
    };
    imbriquee.exec();
    EXPECT_EQ(nTours + 1, hote.nTours);
}

TEST_F(Boucle, TheGlibLoopOfAHostRunsQtsEventsByItself)
{
    if (qEnvironmentVariableIsSet("QT_NO_GLIB"))
    {
        // Qt's own poll loop, which no native loop runs.
        EXPECT_FALSE(CQtHote::BoucleNativeIntegree());
        return;
    }
    EXPECT_TRUE(CQtHote::BoucleNativeIntegree());
    // A GTK host iterates GLib's default context: GLib is in the process with Qt.
    using Iteration = int (*)(void* pContexte, int bBloque);
    auto iteration = reinterpret_cast<Iteration>(dlsym(RTLD_DEFAULT, "g_main_context_iteration"));
    ASSERT_NE(nullptr, iteration);
    bool bFait = false;
    QTimer::singleShot(0, [&] { bFait = true; });
    for (int i = 0; i < 100 && !bFait; ++i)
        iteration(nullptr, 0);
    EXPECT_TRUE(bFait);
}
