// The hosting inside a library that a host loads and unloads at run time (dlopen,
// dlclose); the host finds these functions by name.
#include "prefa_qthost.h"

#include <memory>

namespace
{
// The library's own objects, which go when it is unloaded; the Qt they stand on is
// stopped by then when the host did not stop it.
std::unique_ptr<CIncrustation> g_pIncrustation;
std::unique_ptr<CEdit> g_pEdit;
} // namespace

// Starts Qt and shows a field in the host's window.
extern "C" int prefa_module_demarre(unsigned long fenetre)
{
    int n = CQtHote::Demarre();
    if (n != QTHOTE_OK)
        return n;
    g_pEdit = std::make_unique<CEdit>();
    g_pEdit->Create(WS_CHILD | WS_VISIBLE, CRect(0, 0, 100, 20), nullptr, 1);
    g_pEdit->SetWindowText(L"module");
    g_pIncrustation = std::make_unique<CIncrustation>();
    return g_pIncrustation->Incruste(fenetre, g_pEdit.get());
}

extern "C" int prefa_module_traite(int nBudgetMs)
{
    return CQtHote::TraiteEvenements(nBudgetMs);
}

extern "C" int prefa_module_arrete()
{
    g_pIncrustation.reset();
    g_pEdit.reset();
    return CQtHote::Arrete();
}
