// The hosting inside a library that a host loads and unloads at run time (dlopen,
// dlclose); the host finds these functions by name.
#include "prefa_qthost.h"

namespace
{
// Left to the unload when the host does not stop Qt itself.
CIncrustation* g_pIncrustation = nullptr;
CEdit* g_pEdit = nullptr;
} // namespace

// Starts Qt and shows a field in the host's window.
extern "C" int prefa_module_demarre(unsigned long fenetre)
{
    int n = CQtHote::Demarre();
    if (n != QTHOTE_OK)
        return n;
    g_pEdit = new CEdit;
    g_pEdit->Create(WS_CHILD | WS_VISIBLE, CRect(0, 0, 100, 20), nullptr, 1);
    g_pEdit->SetWindowText(L"module");
    g_pIncrustation = new CIncrustation;
    return g_pIncrustation->Incruste(fenetre, g_pEdit);
}

extern "C" int prefa_module_traite(int nBudgetMs)
{
    return CQtHote::TraiteEvenements(nBudgetMs);
}

extern "C" int prefa_module_arrete()
{
    delete g_pIncrustation;
    delete g_pEdit;
    g_pIncrustation = nullptr;
    g_pEdit = nullptr;
    return CQtHote::Arrete();
}
