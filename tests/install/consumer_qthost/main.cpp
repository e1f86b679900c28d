// A program outside the tree, built against the installed hosting library: Qt started
// for a host (offscreen, where no native window can be hosted), its events run, stopped.
#include <prefa_qthost.h>

#include <QLineEdit>
#include <QTimer>

#include <cstdio>

int main()
{
    char a0[] = "consumer", a1[] = "-platform", a2[] = "offscreen";
    char* argv[] = {a0, a1, a2, nullptr};
    if (CQtHote::Demarre(3, argv) != QTHOTE_OK)
        return 1;
    bool bFait = false;
    QTimer::singleShot(0, [&] { bFait = true; });
    for (int i = 0; i < 100 && !bFait; ++i)
        CQtHote::TraiteEvenements(5);
    CIncrustation incrustation;
    if (!bFait || incrustation.Incruste(1, new QLineEdit) != QTHOTE_NON_GERE || CQtHote::Arrete() != QTHOTE_OK)
        return 1;
    std::printf("prefa %s ok\n", PREFA_VERSION_STRING);
    return 0;
}
