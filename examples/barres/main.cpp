// The bar table of a beam section, in a window: click a cell or type to edit it, Enter
// walks the cells, Ctrl+Insert adds a bar, Ctrl+Delete removes one, a header click sorts.
//     barres [--saisie] [--quitte-apres MS]
// --saisie opens an editor with a value being typed (for a screenshot); --quitte-apres
// closes the window after MS milliseconds.
#include "TableBarres.h"

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QTimer>
#include <QVBoxLayout>

#include <cstring>

namespace
{
// The dialog: it lets every cell be edited except the stirrup's coordinates.
class CDialogueBarres : public CWnd
{
protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == WM_AUTORISE_SAISIE)
            return 1;
        return CWnd::WindowProc(message, wParam, lParam);
    }
};
} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    bool bSaisie = false;
    int nQuitteApres = 0;
    for (int i = 1; i < argc; ++i)
    {
        if (std::strcmp(argv[i], "--saisie") == 0)
            bSaisie = true;
        else if (std::strcmp(argv[i], "--quitte-apres") == 0 && i + 1 < argc)
            nQuitteApres = std::atoi(argv[++i]);
    }
    AfxSetMessageBoxHandler([](const CString& texte, UINT) {
        QMessageBox::warning(QApplication::activeWindow(), QStringLiteral("Barres"),
                             QString::fromWCharArray(texte.GetString()));
        return IDOK;
    });

    CDialogueBarres dialogue;
    dialogue.Create(nullptr, L"Barres de la section", 0, CRect(0, 0, 480, 300), nullptr, 0);
    QWidget* fenetre = dialogue.GetWidget();
    fenetre->setWindowTitle(QStringLiteral("Barres de la section"));
    QVBoxLayout* disposition = new QVBoxLayout(fenetre);
    disposition->addWidget(new QLabel(QStringLiteral("Poutre 0,30 x 0,60 m : armatures longitudinales"), fenetre));
    CTableBarres table;
    table.Cree(&dialogue, CRect(0, 0, 400, 200));
    disposition->addWidget(table.GetWidget());
    disposition->addWidget(new QLabel(
        QStringLiteral("Entrée : cellule suivante   Ctrl+Inser : ajouter   Ctrl+Suppr : supprimer"), fenetre));
    fenetre->show();
    table.SelectItem(1);
    table.SetFocusCell(CTableBarres::COL_Y);
    if (bSaisie)
        QTimer::singleShot(200, [&] {
            table.SaisieCellule(2, CTableBarres::COL_X);
            table.GetEditeurCourant()->SetWindowText(L"0,06");
        });
    if (nQuitteApres > 0)
        QTimer::singleShot(nQuitteApres, &app, &QApplication::quit);
    return app.exec();
}
