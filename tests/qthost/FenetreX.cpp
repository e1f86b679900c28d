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
    XSelectInput(m_pAffichage, m_id, ExposureMask | KeyPressMask | ButtonPressMask | FocusChangeMask | StructureNotifyMask);
    XMapWindow(m_pAffichage, m_id);
    // Shown once the server says so.
    for (XEvent ev;;)
    {
        XWindowEvent(m_pAffichage, m_id, StructureNotifyMask, &ev);
        if (ev.type == MapNotify)
            break;
    }
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

int FenetreX::Lit()
{
    int n = 0;
    while (XPending(m_pAffichage))
    {
        XEvent ev;
        XNextEvent(m_pAffichage, &ev);
        ++n;
        if (ev.type == ButtonPress)
            ++nClics;
        else if (ev.type == FocusIn)
            ++nFocusEntrant;
        else if (ev.type == KeyPress)
            ++nTouches;
    }
    return n;
}

void FenetreX::Redimensionne(int largeur, int hauteur)
{
    XResizeWindow(m_pAffichage, m_id, largeur, hauteur);
    XSync(m_pAffichage, False);
}

void FenetreX::Detruit()
{
    if (!m_id)
        return;
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
    if (!XGetWindowAttributes(m_pAffichage, fenetre, &a))
        return QRect();
    int x = 0, y = 0;
    Window enfant;
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
