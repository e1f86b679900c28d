#include "FenetreX.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <stdexcept>

namespace prefa_test
{

namespace
{
// Requests on windows that are gone are part of the tests: their errors are expected.
int IgnoreErreur(Display*, XErrorEvent*)
{
    return 0;
}
} // namespace

FenetreX::FenetreX(int x, int y, int largeur, int hauteur)
{
    m_pAffichage = XOpenDisplay(nullptr);
    if (!m_pAffichage)
        throw std::runtime_error("no X display");
    XSetErrorHandler(IgnoreErreur);
    m_id = XCreateSimpleWindow(m_pAffichage, DefaultRootWindow(m_pAffichage), x, y, largeur, hauteur, 0, 0, 0xd8d8e8);
    XSelectInput(m_pAffichage, m_id, FocusChangeMask | StructureNotifyMask);
    XMapWindow(m_pAffichage, m_id);
    for (XEvent ev{}; ev.type != MapNotify;) // shown once the server says so
        XWindowEvent(m_pAffichage, m_id, StructureNotifyMask, &ev);
}

FenetreX::~FenetreX()
{
    Detruit();
    XCloseDisplay(m_pAffichage);
}

int FenetreX::Descripteur() const
{
    return ConnectionNumber(m_pAffichage);
}

void FenetreX::Lit()
{
    for (XEvent ev; XPending(m_pAffichage);)
    {
        XNextEvent(m_pAffichage, &ev);
        nFocusEntrant += ev.type == FocusIn;
    }
}

void FenetreX::Redimensionne(int largeur, int hauteur)
{
    XResizeWindow(m_pAffichage, m_id, largeur, hauteur);
    XSync(m_pAffichage, False);
}

void FenetreX::Detruit()
{
    if (m_id)
        XDestroyWindow(m_pAffichage, m_id);
    XSync(m_pAffichage, False);
    m_id = 0;
}

void FenetreX::PrendFocus()
{
    XSetInputFocus(m_pAffichage, m_id, RevertToParent, CurrentTime);
    XSync(m_pAffichage, False);
}

unsigned long FenetreX::CreeEnfant(int x, int y, int largeur, int hauteur)
{
    Window w = XCreateSimpleWindow(m_pAffichage, m_id, x, y, largeur, hauteur, 0, 0, 0xffffff);
    XMapWindow(m_pAffichage, w);
    XSync(m_pAffichage, False);
    return w;
}

unsigned long FenetreX::Focus()
{
    Window w = 0;
    int nRetour = 0;
    XGetInputFocus(m_pAffichage, &w, &nRetour);
    return w > PointerRoot ? w : 0;
}

QRect FenetreX::Geometrie(unsigned long fenetre)
{
    XWindowAttributes a;
    int x = 0, y = 0;
    Window enfant;
    if (!XGetWindowAttributes(m_pAffichage, fenetre, &a))
        return QRect();
    XTranslateCoordinates(m_pAffichage, fenetre, DefaultRootWindow(m_pAffichage), 0, 0, &x, &y, &enfant);
    return QRect(x, y, a.width, a.height);
}

unsigned long FenetreX::TransientPour(unsigned long fenetre)
{
    Window w = 0;
    return XGetTransientForHint(m_pAffichage, fenetre, &w) ? w : 0;
}

std::vector<FenetreX::Enfant> FenetreX::Enfants(unsigned long fenetre)
{
    std::vector<Enfant> enfants;
    Window racine, parent, *liste = nullptr;
    unsigned int n = 0;
    if (!XQueryTree(m_pAffichage, fenetre, &racine, &parent, &liste, &n))
        return enfants;
    for (unsigned int i = 0; i < n; ++i)
    {
        XWindowAttributes a;
        if (XGetWindowAttributes(m_pAffichage, liste[i], &a))
            enfants.push_back({liste[i], QRect(a.x, a.y, a.width, a.height), a.c_class == InputOnly, a.map_state == IsViewable});
    }
    XFree(liste);
    return enfants;
}

unsigned long FenetreX::IdPerime()
{
    Window w = XCreateSimpleWindow(m_pAffichage, DefaultRootWindow(m_pAffichage), 0, 0, 1, 1, 0, 0, 0);
    XDestroyWindow(m_pAffichage, w);
    XSync(m_pAffichage, False);
    return w;
}

} // namespace prefa_test
