// A host's native window for the tests, on a plain Xlib connection of its own, as a
// host program makes it, with what the tests look at from the X server's side: the
// focus, geometry, stacking and properties of any window, and the events the host got.
#pragma once

#include <QRect>

#include <string>
#include <vector>

struct _XDisplay;

namespace prefa_test
{

class FenetreX
{
public:
    struct Enfant
    {
        unsigned long id;
        QRect geometrie;  // in the parent
        bool bEntreeSeule;  // an input-only window
        bool bVisible;      // mapped
    };

    // A top-level window at (x, y) of the screen, mapped and drawn.
    FenetreX(int x, int y, int largeur, int hauteur);
    ~FenetreX();
    FenetreX(const FenetreX&) = delete;
    FenetreX& operator=(const FenetreX&) = delete;

    unsigned long Id() const { return m_id; }
    int Descripteur() const;
    // Reads the events that came, as the host's loop does; returns how many.
    int Lit();
    void Redimensionne(int largeur, int hauteur);
    void Detruit();
    void PrendFocus();
    // A child window at (x, y) in this one, mapped.
    unsigned long CreeEnfant(int x, int y, int largeur, int hauteur);

    // The window with the keyboard focus (0 for none or PointerRoot).
    unsigned long Focus();
    // A window's geometry on the screen, or an empty rectangle when it is gone.
    QRect Geometrie(unsigned long fenetre);
    // A window's WM_TRANSIENT_FOR (0 when none).
    unsigned long TransientPour(unsigned long fenetre);
    // The children of a window, bottom to top.
    std::vector<Enfant> Enfants(unsigned long fenetre);
    // A window id that names no window.
    unsigned long IdPerime();

    int nClics = 0;
    int nFocusEntrant = 0;
    int nTouches = 0;

private:
    _XDisplay* m_pAffichage = nullptr;
    unsigned long m_id = 0;
};

} // namespace prefa_test
