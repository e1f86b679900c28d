// The native window system under Qt, as the hosting needs it: checking a display and a
// window handle, a window's client area, watching its size, moving the keyboard focus,
// blocking a window's input under a modal dialog. One source per system, chosen by the
// build (PlateformeX11.cpp, PlateformeWindows.cpp). Internal to the hosting library.
#pragma once

#include <QRect>
#include <QSize>
#include <QString>
#include <QStringList>
#include <qwindowdefs.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <vector>

namespace prefa_qthost_detail
{

class Plateforme
{
public:
    // What happens to a watched window.
    struct Observateur
    {
        virtual ~Observateur() = default;
        virtual void TailleChangee(QSize taille) = 0;
        virtual void FenetreDetruite() = 0;
    };

    // Before Qt starts: whether the platform Qt will choose (from the arguments and the
    // environment) has a display to open; false with the reason.
    static bool AffichageDisponible(const QStringList& arguments, QString& erreur);
    // Once Qt runs: null, with the reason, when Qt's platform is not the native one.
    static std::unique_ptr<Plateforme> Ouvre(QString& erreur);
    // The host's end with Qt still running. surDechargement runs when the library is
    // unloaded from a process that goes on: Qt's own globals are still there and Qt
    // can stop. surSortie runs when the process exits: Qt's globals are being
    // destroyed in an order nobody controls, and Qt is left to the system.
    static void InscritFin(void (*surDechargement)(), void (*surSortie)());
    ~Plateforme();

    bool FenetreValide(WId fenetre);
    // The client area, in screen coordinates (empty when the window is gone).
    QRect ZoneClient(WId fenetre);
    // The top-level window the window is in (itself when it is one), which the window
    // manager knows.
    WId FenetreRacine(WId fenetre);
    void Observe(WId fenetre, Observateur* pObservateur);
    void Oublie(WId fenetre, Observateur* pObservateur);
    // Gives the window the keyboard focus; false when it cannot take it yet (not
    // shown on screen yet).
    bool DonneFocus(WId fenetre);
    // The window that has the keyboard focus (0 when none).
    WId Focus();
    // True when the focus is in the window or one of its children.
    bool AFocus(WId fenetre);
    // Blocks the user's input to the window and its children until Debloque; the
    // function runs when the user tries to reach it (to bring the dialog forward).
    void Bloque(WId fenetre, std::function<void()> surTentative);
    void Debloque(WId fenetre);

    struct Impl;

private:
    explicit Plateforme(std::unique_ptr<Impl> pImpl);
    std::unique_ptr<Impl> d;
};

// Tells each observer of a window in turn, each still registered when its turn comes
// (an observer may leave, or make another leave, while it is told). suivis maps the
// window to a record with its observers.
template <typename Carte, typename Cle, typename F>
void NotifieObservateurs(Carte& suivis, const Cle& fenetre, F&& f)
{
    auto it = suivis.find(fenetre);
    if (it == suivis.end())
        return;
    const std::vector<Plateforme::Observateur*> copie = it->second.observateurs;
    for (Plateforme::Observateur* p : copie)
    {
        it = suivis.find(fenetre);
        if (it == suivis.end())
            return;
        const auto& v = it->second.observateurs;
        if (std::find(v.begin(), v.end(), p) != v.end())
            f(p);
    }
}

} // namespace prefa_qthost_detail
