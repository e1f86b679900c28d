// The X11 side, on a connection of our own to the X server: event masks are kept per
// client, so watching the host's window here leaves the host's own selection and
// Qt's untouched, and errors come back per request without touching the process-wide
// Xlib error handler the host may have installed. With it, the library's end in an ELF
// process: unloaded, or exiting.
#include "Plateforme.h"

#include <QGuiApplication>
#include <QSocketNotifier>
#include <QTimer>

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <vector>

namespace prefa_qthost_detail
{

namespace
{
// The value of a Qt option in the arguments ("-display :1" or "--display :1").
QString Option(const QStringList& arguments, const char* nom)
{
    const QString simple = QLatin1Char('-') + QLatin1String(nom);
    for (int i = 1; i + 1 < arguments.size(); ++i)
        if (arguments[i] == simple || arguments[i] == QLatin1Char('-') + simple)
            return arguments[i + 1];
    return QString();
}

QString AffichageDemande(const QStringList& arguments)
{
    QString affichage = Option(arguments, "display");
    return affichage.isEmpty() ? qEnvironmentVariable("DISPLAY") : affichage;
}

void (*g_pfnDechargement)() = nullptr;
void (*g_pfnSortie)() = nullptr;
bool g_bSortie = false;

void Sortie()
{
    g_bSortie = true;
    if (g_pfnSortie)
        g_pfnSortie();
}

// Runs before the library's static objects go, both when it is unloaded and at exit,
// where the exit handlers (Sortie among them) have run already.
__attribute__((destructor)) void Dechargement()
{
    if (!g_bSortie && g_pfnDechargement)
        g_pfnDechargement();
}

template <typename T>
struct Libere
{
    void operator()(T* p) const { std::free(p); }
};
template <typename T>
using Reponse = std::unique_ptr<T, Libere<T>>;
} // namespace

struct Plateforme::Impl
{
    struct Suivi
    {
        std::vector<Observateur*> observateurs;
        xcb_window_t vitre = 0;  // the input-only pane over a blocked window
        std::function<void()> surTentative;
    };

    xcb_connection_t* c = nullptr;
    xcb_window_t racine = 0;
    std::unique_ptr<QSocketNotifier> pNotification;
    std::map<xcb_window_t, Suivi> suivis;
    bool bLecturePrevue = false;

    ~Impl()
    {
        pNotification.reset();
        for (auto& s : suivis)
        {
            if (s.second.vitre)
                xcb_destroy_window(c, s.second.vitre);
            MetMasque(s.first, 0);
        }
        if (c)
            xcb_disconnect(c);
    }

    // Waits until the server has it: a change of the window made by another client
    // right after is then reported to us.
    void MetMasque(xcb_window_t w, uint32_t masque)
    {
        std::free(xcb_request_check(c, xcb_change_window_attributes_checked(c, w, XCB_CW_EVENT_MASK, &masque)));
        PrevoitLecture();
    }

    void MetAJourMasque(xcb_window_t w)
    {
        auto it = suivis.find(w);
        if (it == suivis.end())
        {
            MetMasque(w, 0);
        }
        else if (it->second.observateurs.empty() && !it->second.vitre)
        {
            suivis.erase(it);
            MetMasque(w, 0);
        }
        else
        {
            MetMasque(w, XCB_EVENT_MASK_STRUCTURE_NOTIFY | (it->second.vitre ? XCB_EVENT_MASK_FOCUS_CHANGE : 0));
        }
    }

    // Events can wait in the connection's queue after a reply was read, where the
    // socket shows nothing: read them from the loop soon after.
    void PrevoitLecture()
    {
        if (bLecturePrevue || !pNotification)
            return;
        bLecturePrevue = true;
        QTimer::singleShot(0, pNotification.get(), [this] { Lit(); });
    }

    void Lit()
    {
        bLecturePrevue = false;
        while (xcb_generic_event_t* ev = xcb_poll_for_event(c))
        {
            Traite(ev);
            std::free(ev);
        }
        if (xcb_connection_has_error(c) && pNotification)
            pNotification->setEnabled(false);  // the server is gone: nothing more will come
    }

    void Traite(const xcb_generic_event_t* ev)
    {
        switch (ev->response_type & 0x7f)
        {
        case XCB_CONFIGURE_NOTIFY:
        {
            auto* e = reinterpret_cast<const xcb_configure_notify_event_t*>(ev);
            auto it = suivis.find(e->window);
            if (it == suivis.end())
                break;
            if (it->second.vitre)
            {
                const uint32_t taille[] = {e->width, e->height};
                xcb_configure_window(c, it->second.vitre, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, taille);
                xcb_flush(c);
            }
            NotifieObservateurs(suivis, e->window, [&](Observateur* p) { p->TailleChangee(QSize(e->width, e->height)); });
            break;
        }
        case XCB_DESTROY_NOTIFY:
        {
            auto* e = reinterpret_cast<const xcb_destroy_notify_event_t*>(ev);
            if (suivis.count(e->window) == 0)
                break;
            NotifieObservateurs(suivis, e->window, [](Observateur* p) { p->FenetreDetruite(); });
            suivis.erase(e->window);  // its pane went with it
            break;
        }
        case XCB_BUTTON_PRESS:
        {
            auto* e = reinterpret_cast<const xcb_button_press_event_t*>(ev);
            for (auto& s : suivis)
                if (s.second.vitre == e->event && s.second.surTentative)
                {
                    auto f = s.second.surTentative;
                    f();
                    break;
                }
            break;
        }
        case XCB_FOCUS_IN:
        {
            auto* e = reinterpret_cast<const xcb_focus_in_event_t*>(ev);
            auto it = suivis.find(e->event);
            if (it != suivis.end() && it->second.vitre && it->second.surTentative && e->detail != XCB_NOTIFY_DETAIL_POINTER)
            {
                auto f = it->second.surTentative;
                f();
            }
            break;
        }
        default:
            break;  // errors of requests on windows already gone, other windows' events
        }
    }
};

Plateforme::Plateforme(std::unique_ptr<Impl> pImpl) : d(std::move(pImpl)) {}
Plateforme::~Plateforme() = default;

bool Plateforme::AffichageDisponible(const QStringList& arguments, QString& erreur)
{
    QString plateforme = Option(arguments, "platform");
    if (plateforme.isEmpty())
        plateforme = qEnvironmentVariable("QT_QPA_PLATFORM");
    // Only X11 can be checked here; for another platform (or a list that falls back to
    // one) Qt finds out for itself.
    for (const QString& choix : plateforme.split(QLatin1Char(';'), Qt::SkipEmptyParts))
        if (choix.section(QLatin1Char(':'), 0, 0) != QLatin1String("xcb"))
            return true;
    const QString affichage = AffichageDemande(arguments);
    if (affichage.isEmpty())
    {
        erreur = QStringLiteral("no display: DISPLAY is not set and no -display was given");
        return false;
    }
    xcb_connection_t* c = xcb_connect(affichage.toLocal8Bit().constData(), nullptr);
    const bool bOuvert = xcb_connection_has_error(c) == 0;
    xcb_disconnect(c);
    if (!bOuvert)
        erreur = QStringLiteral("cannot open the display \"%1\"").arg(affichage);
    return bOuvert;
}

void Plateforme::InscritFin(void (*surDechargement)(), void (*surSortie)())
{
    g_pfnDechargement = surDechargement;
    g_pfnSortie = surSortie;
    static const bool bInscrit = std::atexit(Sortie) == 0;
    (void)bInscrit;
}

std::unique_ptr<Plateforme> Plateforme::Ouvre(QString& erreur)
{
    if (QGuiApplication::platformName() != QLatin1String("xcb"))
    {
        erreur = QStringLiteral("Qt's platform \"%1\" shows no X11 windows").arg(QGuiApplication::platformName());
        return nullptr;
    }
    const QString affichage = AffichageDemande(QCoreApplication::arguments());
    auto d = std::make_unique<Impl>();
    int nEcran = 0;
    d->c = xcb_connect(affichage.isEmpty() ? nullptr : affichage.toLocal8Bit().constData(), &nEcran);
    if (xcb_connection_has_error(d->c))
    {
        erreur = QStringLiteral("cannot open the display \"%1\"").arg(affichage);
        return nullptr;
    }
    xcb_screen_iterator_t it = xcb_setup_roots_iterator(xcb_get_setup(d->c));
    for (int i = 0; i < nEcran && it.rem; ++i)
        xcb_screen_next(&it);
    d->racine = it.data ? it.data->root : 0;
    d->pNotification = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(d->c), QSocketNotifier::Read);
    Impl* p = d.get();
    QObject::connect(d->pNotification.get(), &QSocketNotifier::activated, d->pNotification.get(), [p] { p->Lit(); });
    return std::unique_ptr<Plateforme>(new Plateforme(std::move(d)));
}

bool Plateforme::FenetreValide(WId fenetre)
{
    if (fenetre == 0 || fenetre > 0xFFFFFFFFu)
        return false;
    xcb_generic_error_t* pErreur = nullptr;
    Reponse<xcb_get_window_attributes_reply_t> r(
        xcb_get_window_attributes_reply(d->c, xcb_get_window_attributes(d->c, (xcb_window_t)fenetre), &pErreur));
    std::free(pErreur);
    d->PrevoitLecture();
    return r != nullptr;
}

QRect Plateforme::ZoneClient(WId fenetre)
{
    const xcb_window_t w = (xcb_window_t)fenetre;
    auto cGeo = xcb_get_geometry(d->c, w);
    auto cPos = xcb_translate_coordinates(d->c, w, d->racine, 0, 0);
    Reponse<xcb_get_geometry_reply_t> geo(xcb_get_geometry_reply(d->c, cGeo, nullptr));
    Reponse<xcb_translate_coordinates_reply_t> pos(xcb_translate_coordinates_reply(d->c, cPos, nullptr));
    d->PrevoitLecture();
    if (!geo || !pos)
        return QRect();
    return QRect(pos->dst_x, pos->dst_y, geo->width, geo->height);
}

WId Plateforme::FenetreRacine(WId fenetre)
{
    xcb_window_t w = (xcb_window_t)fenetre;
    for (;;)
    {
        Reponse<xcb_query_tree_reply_t> arbre(xcb_query_tree_reply(d->c, xcb_query_tree(d->c, w), nullptr));
        if (!arbre || arbre->parent == arbre->root || arbre->parent == 0)
            break;
        w = arbre->parent;
    }
    d->PrevoitLecture();
    return w;
}

void Plateforme::Observe(WId fenetre, Observateur* pObservateur)
{
    d->suivis[(xcb_window_t)fenetre].observateurs.push_back(pObservateur);
    d->MetAJourMasque((xcb_window_t)fenetre);
}

void Plateforme::Oublie(WId fenetre, Observateur* pObservateur)
{
    auto it = d->suivis.find((xcb_window_t)fenetre);
    if (it == d->suivis.end())
        return;
    auto& v = it->second.observateurs;
    v.erase(std::remove(v.begin(), v.end(), pObservateur), v.end());
    d->MetAJourMasque((xcb_window_t)fenetre);
}

bool Plateforme::DonneFocus(WId fenetre)
{
    xcb_void_cookie_t cookie =
        xcb_set_input_focus_checked(d->c, XCB_INPUT_FOCUS_PARENT, (xcb_window_t)fenetre, XCB_CURRENT_TIME);
    xcb_generic_error_t* pErreur = xcb_request_check(d->c, cookie);
    std::free(pErreur);
    d->PrevoitLecture();
    return pErreur == nullptr;
}

WId Plateforme::Focus()
{
    Reponse<xcb_get_input_focus_reply_t> f(xcb_get_input_focus_reply(d->c, xcb_get_input_focus(d->c), nullptr));
    d->PrevoitLecture();
    // None (0) and PointerRoot (1) are no windows.
    return f && f->focus > 1 ? f->focus : 0;
}

bool Plateforme::AFocus(WId fenetre)
{
    xcb_window_t w = (xcb_window_t)Focus();
    // Up from the focus window to the root (a few levels at most).
    while (w != 0 && w != d->racine && w != (xcb_window_t)fenetre)
    {
        Reponse<xcb_query_tree_reply_t> arbre(xcb_query_tree_reply(d->c, xcb_query_tree(d->c, w), nullptr));
        w = arbre ? arbre->parent : 0;
    }
    d->PrevoitLecture();
    return w != 0 && w == (xcb_window_t)fenetre;
}

void Plateforme::Bloque(WId fenetre, std::function<void()> surTentative)
{
    const xcb_window_t w = (xcb_window_t)fenetre;
    Impl::Suivi& s = d->suivis[w];
    s.surTentative = std::move(surTentative);
    if (s.vitre)
        return;
    Reponse<xcb_get_geometry_reply_t> geo(xcb_get_geometry_reply(d->c, xcb_get_geometry(d->c, w), nullptr));
    // An input-only pane over the whole window, above its children: the pointer's
    // events stop there (we select them, so they do not go up to the window).
    s.vitre = xcb_generate_id(d->c);
    const uint32_t valeurs[] = {XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE |
                                XCB_EVENT_MASK_POINTER_MOTION | XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE};
    xcb_create_window(d->c, 0, s.vitre, w, 0, 0, geo ? geo->width : 1, geo ? geo->height : 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, valeurs);
    const uint32_t dessus[] = {XCB_STACK_MODE_ABOVE};
    xcb_configure_window(d->c, s.vitre, XCB_CONFIG_WINDOW_STACK_MODE, dessus);
    xcb_map_window(d->c, s.vitre);
    d->MetAJourMasque(w);
    d->PrevoitLecture();
}

void Plateforme::Debloque(WId fenetre)
{
    auto it = d->suivis.find((xcb_window_t)fenetre);
    if (it == d->suivis.end() || !it->second.vitre)
        return;
    xcb_destroy_window(d->c, it->second.vitre);
    it->second.vitre = 0;
    it->second.surTentative = nullptr;
    d->MetAJourMasque((xcb_window_t)fenetre);
}

} // namespace prefa_qthost_detail
