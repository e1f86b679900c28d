// The Windows side: the host's windows are HWNDs of Qt's own thread, so their messages
// are watched by subclassing them, and a blocked window is a disabled one, as the
// platform's own modal dialogs leave their owner.
#include "Plateforme.h"

#include <QGuiApplication>

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#include <commctrl.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <vector>

namespace prefa_qthost_detail
{

struct Plateforme::Impl
{
    struct Suivi
    {
        std::vector<Observateur*> observateurs;
        bool bBloque = false;
        bool bActifAvant = true;  // enabled before it was blocked
    };
    std::map<HWND, Suivi> suivis;

    ~Impl()
    {
        for (auto& s : suivis)
        {
            if (s.second.bBloque && s.second.bActifAvant)
                EnableWindow(s.first, TRUE);
            RemoveWindowSubclass(s.first, &Impl::Procedure, reinterpret_cast<UINT_PTR>(this));
        }
    }

    void Range(HWND h)
    {
        auto it = suivis.find(h);
        if (it != suivis.end() && it->second.observateurs.empty() && !it->second.bBloque)
        {
            RemoveWindowSubclass(h, &Impl::Procedure, reinterpret_cast<UINT_PTR>(this));
            suivis.erase(it);
        }
    }


    static LRESULT CALLBACK Procedure(HWND h, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR dwData)
    {
        Impl* d = reinterpret_cast<Impl*>(dwData);
        switch (message)
        {
        case WM_SIZE:
            NotifieObservateurs(d->suivis, h, [&](Observateur* p) { p->TailleChangee(QSize(LOWORD(lParam), HIWORD(lParam))); });
            break;
        case WM_DESTROY:
            NotifieObservateurs(d->suivis, h, [](Observateur* p) { p->FenetreDetruite(); });
            break;
        case WM_NCDESTROY:
            RemoveWindowSubclass(h, &Impl::Procedure, reinterpret_cast<UINT_PTR>(d));
            d->suivis.erase(h);
            break;
        default:
            break;
        }
        return DefSubclassProc(h, message, wParam, lParam);
    }
};

Plateforme::Plateforme(std::unique_ptr<Impl> pImpl) : d(std::move(pImpl)) {}
Plateforme::~Plateforme() = default;

bool Plateforme::AffichageDisponible(const QStringList&, QString&)
{
    return true;  // a desktop session always has one
}

void Plateforme::InscritFin(void (*)(), void (*surSortie)())
{
    // A library's exit handlers run at exit and at FreeLibrary alike: both leave Qt to
    // the system (DllMain, which tells them apart, belongs to the library's user).
    static const bool bInscrit = std::atexit(surSortie) == 0;
    (void)bInscrit;
}

std::unique_ptr<Plateforme> Plateforme::Ouvre(QString& erreur)
{
    if (QGuiApplication::platformName() != QLatin1String("windows"))
    {
        erreur = QStringLiteral("Qt's platform \"%1\" shows no Windows windows").arg(QGuiApplication::platformName());
        return nullptr;
    }
    return std::unique_ptr<Plateforme>(new Plateforme(std::make_unique<Impl>()));
}

bool Plateforme::FenetreValide(WId fenetre)
{
    return fenetre != 0 && IsWindow(reinterpret_cast<HWND>(fenetre));
}

QRect Plateforme::ZoneClient(WId fenetre)
{
    HWND h = reinterpret_cast<HWND>(fenetre);
    RECT r;
    POINT origine = {0, 0};
    if (!GetClientRect(h, &r) || !ClientToScreen(h, &origine))
        return QRect();
    return QRect(origine.x, origine.y, r.right - r.left, r.bottom - r.top);
}

WId Plateforme::FenetreRacine(WId fenetre)
{
    return reinterpret_cast<WId>(GetAncestor(reinterpret_cast<HWND>(fenetre), GA_ROOT));
}

void Plateforme::Observe(WId fenetre, Observateur* pObservateur)
{
    HWND h = reinterpret_cast<HWND>(fenetre);
    if (d->suivis.count(h) == 0)
        SetWindowSubclass(h, &Impl::Procedure, reinterpret_cast<UINT_PTR>(d.get()), reinterpret_cast<DWORD_PTR>(d.get()));
    d->suivis[h].observateurs.push_back(pObservateur);
}

void Plateforme::Oublie(WId fenetre, Observateur* pObservateur)
{
    HWND h = reinterpret_cast<HWND>(fenetre);
    auto it = d->suivis.find(h);
    if (it == d->suivis.end())
        return;
    auto& v = it->second.observateurs;
    v.erase(std::remove(v.begin(), v.end(), pObservateur), v.end());
    d->Range(h);
}

bool Plateforme::DonneFocus(WId fenetre)
{
    HWND h = reinterpret_cast<HWND>(fenetre);
    SetFocus(h);
    return GetFocus() == h;
}

WId Plateforme::Focus()
{
    return reinterpret_cast<WId>(GetFocus());
}

bool Plateforme::AFocus(WId fenetre)
{
    HWND h = reinterpret_cast<HWND>(fenetre);
    HWND f = GetFocus();
    return f && (f == h || IsChild(h, f));
}

void Plateforme::Bloque(WId fenetre, std::function<void()>)
{
    // A click on a disabled owner brings its enabled owned window forward by itself.
    HWND h = reinterpret_cast<HWND>(fenetre);
    if (d->suivis.count(h) == 0)
        SetWindowSubclass(h, &Impl::Procedure, reinterpret_cast<UINT_PTR>(d.get()), reinterpret_cast<DWORD_PTR>(d.get()));
    Impl::Suivi& s = d->suivis[h];
    if (s.bBloque)
        return;
    s.bBloque = true;
    s.bActifAvant = EnableWindow(h, FALSE) == 0;
}

void Plateforme::Debloque(WId fenetre)
{
    HWND h = reinterpret_cast<HWND>(fenetre);
    auto it = d->suivis.find(h);
    if (it == d->suivis.end() || !it->second.bBloque)
        return;
    it->second.bBloque = false;
    if (it->second.bActifAvant)
        EnableWindow(h, TRUE);
    d->Range(h);
}

} // namespace prefa_qthost_detail
