// A widget inside a host's native window: filling it and following its size, given back
// as it was, the focus coming in from the host and Tab leaving back to it, and the
// handles that are no windows.
#include "Attente.h"
#include "qthost/CIncrustation.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <QVBoxLayout>
#include <QWindow>

#include <gtest/gtest.h>

using prefa_test::FenetreX;
using prefa_test::Jusqua;

namespace
{
class Incrustation : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_EQ(QTHOTE_OK, CQtHote::Demarre()); }
    void TearDown() override { EXPECT_EQ(QTHOTE_OK, CQtHote::Arrete()); }
};

QRect DansLeParent(FenetreX& hote, unsigned long fenetre)
{
    for (const FenetreX::Enfant& e : hote.Enfants(hote.Id()))
        if (e.id == fenetre && e.bVisible)
            return e.geometrie;
    return QRect();
}
} // namespace

TEST_F(Incrustation, TheWidgetFillsTheHostsWindowFollowsItsSizeAndGoesBackAsItWas)
{
    FenetreX hote(40, 30, 300, 200);
    QWidget* pAvant = new QWidget;
    QLineEdit* pEdit = new QLineEdit(pAvant);
    pEdit->setGeometry(5, 6, 70, 20);
    CIncrustation incrustation;
    ASSERT_EQ(QTHOTE_OK, incrustation.Incruste(hote.Id(), pEdit));
    EXPECT_EQ(hote.Id(), incrustation.GetFenetreHote());
    EXPECT_EQ(pEdit, incrustation.GetWidget());
    const unsigned long conteneur = incrustation.GetFenetreConteneur();
    EXPECT_TRUE(Jusqua([&] { return DansLeParent(hote, conteneur) == QRect(0, 0, 300, 200); }, &hote));
    // Qt places the widget's popups (completers, menus) on the screen where it is.
    const QPoint ecran = QPoint(40, 30) + pEdit->mapTo(pEdit->window(), QPoint(10, 10));
    EXPECT_TRUE(Jusqua([&] { return pEdit->mapToGlobal(QPoint(10, 10)) == ecran; }, &hote));

    hote.Redimensionne(420, 260);
    EXPECT_TRUE(Jusqua([&] { return DansLeParent(hote, conteneur) == QRect(0, 0, 420, 260); }, &hote));
    EXPECT_TRUE(Jusqua([&] { return pEdit->width() == 420; }, &hote));

    incrustation.Retire();
    EXPECT_FALSE(incrustation.EstIncruste());
    EXPECT_EQ(pAvant, pEdit->parentWidget());
    EXPECT_EQ(QRect(5, 6, 70, 20), pEdit->geometry());
    EXPECT_TRUE(Jusqua([&] { return hote.Enfants(hote.Id()).empty(); }, &hote));

    // The host's window goes first: the widget comes back all the same.
    {
        FenetreX courte(40, 30, 100, 50);
        ASSERT_EQ(QTHOTE_OK, incrustation.Incruste(courte.Id(), pEdit));
        ASSERT_TRUE(Jusqua([&] { return DansLeParent(courte, incrustation.GetFenetreConteneur()).isValid(); }, &courte));
        courte.Detruit();
        EXPECT_TRUE(Jusqua([&] { return !incrustation.EstIncruste(); }));
        EXPECT_EQ(pAvant, pEdit->parentWidget());
    }
    delete pAvant;
}

TEST_F(Incrustation, HandlesThatAreNoWindowsAndNoWidgetAreRefused)
{
    FenetreX hote(0, 0, 50, 50);
    QLineEdit* pEdit = new QLineEdit;
    CIncrustation incrustation;
    const unsigned long perime = hote.IdPerime();
    EXPECT_EQ(QTHOTE_FENETRE_INVALIDE, incrustation.Incruste(perime, pEdit));
    EXPECT_GE(CQtHote::MessageErreur().Find(CString(QString::number(perime, 16).toStdWString())), 0);
    EXPECT_EQ(QTHOTE_FENETRE_INVALIDE, incrustation.Incruste(0, pEdit));
    EXPECT_EQ(QTHOTE_FENETRE_INVALIDE, incrustation.Incruste((WId)0x1'0000'0001ull, pEdit));
    EXPECT_EQ(QTHOTE_ARGUMENT, incrustation.Incruste(hote.Id(), static_cast<QWidget*>(nullptr)));
    EXPECT_EQ(QTHOTE_ARGUMENT, incrustation.DonneFocus());
    EXPECT_FALSE(incrustation.EstIncruste());
    EXPECT_EQ(nullptr, pEdit->parentWidget());
    delete pEdit;
}

TEST_F(Incrustation, FocusComesInFromTheHostAndTabLeavesBackToIt)
{
    FenetreX hote(0, 0, 300, 200);
    hote.PrendFocus();
    // A panel with three fields Tab goes through and two it passes by.
    QWidget* pPanneau = new QWidget;
    auto* pDisposition = new QVBoxLayout(pPanneau);
    QLineEdit *a = new QLineEdit, *cache = new QLineEdit, *b = new QLineEdit, *inactif = new QLineEdit,
              *c = new QLineEdit;
    for (QLineEdit* e : {a, cache, b, inactif, c})
        pDisposition->addWidget(e);
    cache->hide();
    inactif->setEnabled(false);
    std::vector<BOOL> sorties;
    CIncrustation incrustation;
    ASSERT_EQ(QTHOTE_OK, incrustation.Incruste(hote.Id(), pPanneau));
    const unsigned long conteneur = incrustation.GetFenetreConteneur();
    incrustation.SetSortieFocus([&](BOOL bSuivant) { sorties.push_back(bSuivant); });
    auto focus = [&](QWidget* w) {
        return Jusqua([&] { return hote.Focus() == conteneur && QApplication::focusWidget() == w; }, &hote);
    };

    ASSERT_EQ(QTHOTE_OK, incrustation.DonneFocus(CIncrustation::FOCUS_PREMIER));
    ASSERT_TRUE(focus(a));
    EXPECT_TRUE(incrustation.AFocus());
    QTest::keyClick(a, Qt::Key_Tab);
    EXPECT_EQ(b, QApplication::focusWidget());
    QTest::keyClick(b, Qt::Key_Tab);
    EXPECT_EQ(c, QApplication::focusWidget());
    const int nFocusAvant = hote.nFocusEntrant;
    QTest::keyClick(c, Qt::Key_Tab);
    EXPECT_EQ(std::vector<BOOL>{TRUE}, sorties);
    // The host's window has the keyboard again and was told so by the server.
    EXPECT_TRUE(Jusqua([&] { return hote.Focus() == hote.Id() && hote.nFocusEntrant > nFocusAvant; }, &hote));
    EXPECT_FALSE(incrustation.AFocus());

    ASSERT_EQ(QTHOTE_OK, incrustation.DonneFocus(CIncrustation::FOCUS_DERNIER));
    ASSERT_TRUE(focus(c));
    // A focus widget that goes away (an editor closing) hands the focus on inside.
    c->hide();
    EXPECT_EQ(a, QApplication::focusWidget());
    c->show();
    c->setFocus();
    EXPECT_EQ(std::vector<BOOL>{TRUE}, sorties);
    QTest::keyClick(c, Qt::Key_Backtab);
    QTest::keyClick(b, Qt::Key_Tab, Qt::ShiftModifier);
    EXPECT_EQ(a, QApplication::focusWidget());
    QTest::keyClick(a, Qt::Key_Backtab);
    EXPECT_EQ((std::vector<BOOL>{TRUE, FALSE}), sorties);
    EXPECT_TRUE(Jusqua([&] { return hote.Focus() == hote.Id(); }, &hote));

    // The host gives it back where it was; a click inside takes it too.
    ASSERT_EQ(QTHOTE_OK, incrustation.DonneFocus(CIncrustation::FOCUS_COURANT));
    EXPECT_TRUE(focus(a));
    hote.PrendFocus();
    ASSERT_TRUE(Jusqua([&] { return hote.Focus() == hote.Id(); }, &hote));
    QTest::mouseClick(c->window()->windowHandle(), Qt::LeftButton, Qt::NoModifier, c->mapTo(c->window(), QPoint(5, 5)));
    EXPECT_TRUE(focus(c));
}
