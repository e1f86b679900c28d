// The grid list's costs: sorting by comparison type, the Enter walk driven by key
// events, and drawing the visible rows through the custom-draw stages.
//     bench_ui [--quick]
#include "ui/CEdit.h"
#include "ui/CListCtrlExt.h"

#include <QApplication>
#include <QLocale>
#include <QKeyEvent>
#include <QTreeView>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <thread>

namespace
{
double Secondes(std::chrono::steady_clock::time_point debut)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - debut).count();
}

void Remplit(CListCtrlExt& l, int nLignes)
{
    std::mt19937 g(42);
    l.Reset();
    for (int i = 0; i < nLignes; ++i)
    {
        wchar_t date[32];
        std::swprintf(date, 32, L"%02d/%02d/%04d %02d:%02d:00", 1 + (int)(g() % 28), 1 + (int)(g() % 12),
                      1890 + (int)(g() % 140), (int)(g() % 24), (int)(g() % 60));
        std::wstring nom = L"HA" + std::to_wstring(g() % 1000) + (g() % 2 ? L"b" : L"");
        std::wstring x = std::to_wstring((g() % 30000) / 100000.0);
        std::wstring d = std::to_wstring(6 + g() % 27);
        l.AddItem({nom.c_str(), x.c_str(), d.c_str(), date});
    }
}
} // namespace

int main(int argc, char** argv)
{
    bool bRapide = argc > 1 && std::strcmp(argv[1], "--quick") == 0;
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QLocale::setDefault(QLocale(QLocale::French, QLocale::France));
    std::printf("bench_ui: %u cores%s\n", std::thread::hardware_concurrency(), bRapide ? " (quick)" : "");

    CListCtrlExt l;
    l.Create(WS_VISIBLE, CRect(0, 0, 600, 400), nullptr, 1);
    CEdit edit;
    edit.Create(0, CRect(0, 0, 10, 10), nullptr, 2);
    const wchar_t* titres[] = {L"Barre", L"x", L"Diamètre", L"Date"};
    const int types[] = {COMPARE_NOMBRE_TEXTE_SANS_CASSE, COMPARE_REEL, COMPARE_ENTIER, COMPARE_DATE};
    for (int c = 0; c < 4; ++c)
        l.InsereUneColonne(c, titres[c], titres[c], LVCFMT_LEFT, 120, TRI_CROISSANT, types[c], &edit);

    const int nLignes = bRapide ? 1000 : 10000;
    for (int c = 0; c < 4; ++c)
    {
        Remplit(l, nLignes);
        auto debut = std::chrono::steady_clock::now();
        l.SortColumn(c);
        double s = Secondes(debut);
        std::printf("sort %6d rows by %-9ls %8.1f ms  %10.0f rows/s\n", nLignes, titres[c], s * 1e3, nLignes / s);
    }

    // Enter walks 4 editable cells a row, opening and closing an editor each time.
    Remplit(l, 2000);
    l.GetWidget()->show();
    QApplication::setActiveWindow(l.GetWidget());
    l.SaisieCellule(0, 0);
    const int nPas = bRapide ? 50 : 2000;
    auto debut = std::chrono::steady_clock::now();
    for (int i = 0; i < nPas; ++i)
    {
        QKeyEvent touche(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
        QWidget* cible = QApplication::focusWidget();
        QApplication::sendEvent(cible ? cible : l.GetWidget(), &touche);
    }
    double s = Secondes(debut);
    std::printf("Enter walk %5d steps        %8.1f ms  %10.0f steps/s (now at row %d)\n", nPas, s * 1e3, nPas / s,
                l.GetEditingRow());

    const int nImages = bRapide ? 5 : 200;
    debut = std::chrono::steady_clock::now();
    for (int i = 0; i < nImages; ++i)
        l.GetView()->viewport()->grab();
    s = Secondes(debut);
    std::printf("draw %d visible rows x 4    %8.2f ms a frame  %6.0f frames/s\n", l.GetCountPerPage(), s * 1e3 / nImages,
                nImages / s);
    return 0;
}
