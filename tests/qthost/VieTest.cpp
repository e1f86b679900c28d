// Qt's application for a host: started once and counted, stopped and started again,
// the host's arguments, a host that is a Qt program, and the failures that must not
// crash: no display, another thread, a stop from inside Qt's events.
#include "Attente.h"
#include "qthost/CIncrustation.h"
#include "ui/CEdit.h"

#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QTimer>

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

using prefa_test::FenetreX;
using prefa_test::Jusqua;

namespace
{
bool EstEnfant(FenetreX& hote, unsigned long parent, unsigned long fenetre)
{
    auto enfants = hote.Enfants(parent);
    return std::any_of(enfants.begin(), enfants.end(),
                       [&](const FenetreX::Enfant& e) { return e.id == fenetre && e.bVisible; });
}

bool Contient(const CString& texte, const wchar_t* morceau)
{
    return texte.Find(morceau) >= 0;
}
} // namespace

TEST(Vie, StartsOnceCountsTheStartsAndStartsAgainAfterTheLastStop)
{
    ASSERT_FALSE(CQtHote::EstDemarre());
    ASSERT_EQ(QTHOTE_OK, CQtHote::Demarre());
    QCoreApplication* pPremiere = QCoreApplication::instance();
    ASSERT_NE(nullptr, qobject_cast<QApplication*>(pPremiere));
    EXPECT_EQ(QTHOTE_OK, CQtHote::Demarre());
    EXPECT_EQ(pPremiere, QCoreApplication::instance());
    EXPECT_FALSE(CQtHote::EstHoteQt());

    EXPECT_EQ(QTHOTE_OK, CQtHote::Arrete());
    EXPECT_TRUE(CQtHote::EstDemarre());
    EXPECT_EQ(pPremiere, QCoreApplication::instance());
    EXPECT_EQ(QTHOTE_OK, CQtHote::Arrete());
    EXPECT_FALSE(CQtHote::EstDemarre());
    EXPECT_EQ(nullptr, QCoreApplication::instance());
    EXPECT_EQ(QTHOTE_NON_DEMARRE, CQtHote::Arrete());
    EXPECT_TRUE(Contient(CQtHote::MessageErreur(), L"not started"));
    EXPECT_EQ(QTHOTE_NON_DEMARRE, CQtHote::TraiteEvenements());

    // Started again, it shows a widget in a host's window as the first time.
    ASSERT_EQ(QTHOTE_OK, CQtHote::Demarre());
    EXPECT_TRUE(CQtHote::MessageErreur().IsEmpty());
    {
        FenetreX hote(10, 10, 200, 80);
        CIncrustation incrustation;
        ASSERT_EQ(QTHOTE_OK, incrustation.Incruste(hote.Id(), new QLineEdit(QStringLiteral("encore"))));
        const unsigned long conteneur = incrustation.GetFenetreConteneur();
        EXPECT_TRUE(Jusqua([&] { return EstEnfant(hote, hote.Id(), conteneur); }, &hote));
    }
    EXPECT_EQ(QTHOTE_OK, CQtHote::Arrete());
}

TEST(Vie, TakesTheHostsArgumentsAndSaysWhenItsPlatformCannotHost)
{
    char a0[] = "hote-essai", a1[] = "-platform", a2[] = "offscreen";
    char* argv[] = {a0, a1, a2, nullptr};
    ASSERT_EQ(QTHOTE_OK, CQtHote::Demarre(3, argv));
    EXPECT_EQ(QStringLiteral("hote-essai"), QCoreApplication::applicationName());
    EXPECT_EQ(QStringLiteral("offscreen"), QGuiApplication::platformName());
    EXPECT_STREQ("-platform", argv[1]);  // the host's own arguments are left as they were

    // Qt's events still run there; native windows do not exist.
    bool bFait = false;
    QTimer::singleShot(0, [&] { bFait = true; });
    EXPECT_TRUE(Jusqua([&] { return bFait; }));
    QLineEdit* pEdit = new QLineEdit;
    CIncrustation incrustation;
    EXPECT_EQ(QTHOTE_NON_GERE, incrustation.Incruste(4242, pEdit));
    EXPECT_TRUE(Contient(CQtHote::MessageErreur(), L"offscreen"));
    QDialog* pDialogue = new QDialog;
    EXPECT_EQ(QTHOTE_NON_GERE, CQtHote::ExecModal(pDialogue, 4242));
    EXPECT_FALSE(pDialogue->isVisible());
    delete pEdit;
    EXPECT_EQ(QTHOTE_OK, CQtHote::Arrete());
}

TEST(Vie, WithoutADisplayFailsWithAMessageInsteadOfAborting)
{
    const QByteArray affichage = qgetenv("DISPLAY");
    qunsetenv("DISPLAY");
    EXPECT_EQ(QTHOTE_SANS_AFFICHAGE, CQtHote::Demarre());
    EXPECT_TRUE(Contient(CQtHote::MessageErreur(), L"DISPLAY"));
    EXPECT_EQ(nullptr, QCoreApplication::instance());
    qputenv("DISPLAY", affichage);

    char a0[] = "hote", a1[] = "-display", a2[] = ":9876";
    char* argv[] = {a0, a1, a2, nullptr};
    EXPECT_EQ(QTHOTE_SANS_AFFICHAGE, CQtHote::Demarre(3, argv));
    EXPECT_TRUE(Contient(CQtHote::MessageErreur(), L":9876"));
    char b1[] = "--display", b2[] = ":9877";
    char* argvLong[] = {a0, b1, b2, nullptr};
    EXPECT_EQ(QTHOTE_SANS_AFFICHAGE, CQtHote::Demarre(3, argvLong));
    EXPECT_TRUE(Contient(CQtHote::MessageErreur(), L":9877"));
    EXPECT_FALSE(CQtHote::EstDemarre());

    EXPECT_EQ(QTHOTE_OK, CQtHote::Demarre());
    EXPECT_EQ(QTHOTE_OK, CQtHote::Arrete());
}

TEST(Vie, AHostThatIsAQtProgramKeepsItsOwnApplication)
{
    int argc = 1;
    char a0[] = "hote-qt";
    char* argv[] = {a0, nullptr};
    auto* pApplication = new QApplication(argc, argv);
    EXPECT_EQ(QTHOTE_OK, CQtHote::Demarre());
    EXPECT_TRUE(CQtHote::EstHoteQt());
    EXPECT_EQ(pApplication, QCoreApplication::instance());
    {
        // Its own loop runs inside a Qt loop: stopping from there is no danger.
        int nCode = 0;
        QTimer::singleShot(0, [&] {
            nCode = CQtHote::Arrete();
            QCoreApplication::quit();
        });
        pApplication->exec();
        EXPECT_EQ(QTHOTE_OK, nCode);
    }
    EXPECT_FALSE(CQtHote::EstDemarre());
    EXPECT_EQ(pApplication, QCoreApplication::instance());
    delete pApplication;

    // Widgets need a QApplication: a host's QCoreApplication will not do.
    auto* pNoyau = new QCoreApplication(argc, argv);
    EXPECT_EQ(QTHOTE_ECHEC, CQtHote::Demarre());
    EXPECT_FALSE(CQtHote::EstDemarre());
    delete pNoyau;
}

TEST(Vie, CallsFromAnotherThreadAreRefusedWithAMessageOfTheirOwn)
{
    ASSERT_EQ(QTHOTE_OK, CQtHote::Demarre());
    FenetreX hote(10, 10, 200, 80);
    QLineEdit* pEdit = new QLineEdit;
    QDialog* pDialogue = new QDialog;
    CIncrustation incrustation;
    std::vector<int> codes;
    CString message;
    std::thread autre([&] {
        codes = {CQtHote::Demarre(),
                 CQtHote::TraiteEvenements(5),
                 CQtHote::AttendEvenements(5),
                 CQtHote::ConfieBoucleHote(-1, nullptr, nullptr),
                 incrustation.Incruste(hote.Id(), pEdit),
                 incrustation.DonneFocus(),
                 CQtHote::ExecModal(pDialogue, hote.Id()),
                 CQtHote::Arrete()};
        message = CQtHote::MessageErreur();
    });
    autre.join();
    for (int n : codes)
        EXPECT_EQ(QTHOTE_AUTRE_FIL, n);
    EXPECT_TRUE(Contient(message, L"thread"));
    EXPECT_TRUE(CQtHote::MessageErreur().IsEmpty());
    EXPECT_TRUE(CQtHote::EstDemarre());
    EXPECT_FALSE(incrustation.EstIncruste());
    EXPECT_FALSE(pDialogue->isVisible());
    delete pEdit;
    delete pDialogue;
    EXPECT_EQ(QTHOTE_OK, CQtHote::Arrete());

    // The thread Qt first started on stays Qt's for the process.
    int nCode = 0;
    std::thread([&] { nCode = CQtHote::Demarre(); }).join();
    EXPECT_EQ(QTHOTE_AUTRE_FIL, nCode);
    EXPECT_EQ(nullptr, QCoreApplication::instance());
}

TEST(Vie, TheLastStopWaitsForTheHostsLoopAndTakesTheWidgetsAlong)
{
    ASSERT_EQ(QTHOTE_OK, CQtHote::Demarre());
    int nCode = 0;
    QTimer::singleShot(0, [&] { nCode = CQtHote::Arrete(); });
    EXPECT_TRUE(Jusqua([&] { return nCode != 0; }));
    EXPECT_EQ(QTHOTE_OCCUPE, nCode);
    EXPECT_TRUE(CQtHote::EstDemarre());

    // Stopped with a widget still in a host's window: the window is left empty and
    // the widget goes with Qt, its object seeing it gone.
    FenetreX hote(10, 10, 200, 80);
    CEdit edit;
    ASSERT_TRUE(edit.Create(WS_CHILD | WS_VISIBLE, CRect(0, 0, 80, 20), nullptr, 1));
    CIncrustation incrustation;
    ASSERT_EQ(QTHOTE_OK, incrustation.Incruste(hote.Id(), &edit));
    const unsigned long conteneur = incrustation.GetFenetreConteneur();
    ASSERT_TRUE(Jusqua([&] { return EstEnfant(hote, hote.Id(), conteneur); }, &hote));
    EXPECT_EQ(QTHOTE_OK, CQtHote::Arrete());
    EXPECT_FALSE(incrustation.EstIncruste());
    EXPECT_EQ(nullptr, edit.GetSafeHwnd());
    EXPECT_TRUE(Jusqua([&] { return hote.Enfants(hote.Id()).empty(); }, &hote));
}
