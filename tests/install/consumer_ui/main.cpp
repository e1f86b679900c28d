// A program outside the tree, built against the installed window layer and grid list.
#include <prefa_ui.h>

#include <QApplication>

#include <cstdio>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    CListCtrlExt liste;
    if (!liste.Create(0, CRect(0, 0, 200, 100), nullptr, 1))
        return 1;
    liste.InsereUneColonne(0, L"x", L"X", LVCFMT_RIGHT, 60, TRI_CROISSANT, COMPARE_REEL, nullptr, L"m", 2);
    liste.AddItem(L"2.5");
    liste.AddItem(L"10");
    liste.AddItem(L"-1");
    liste.SortColumn(0);
    if (liste.GetItemText(0, 0) != L"-1" || liste.GetItemText(2, 0) != L"10")
        return 1;
    std::printf("prefa %s ok\n", PREFA_VERSION_STRING);
    return 0;
}
