// A host's native window for the tests, on a plain Xlib connection of its own as a host
// program makes it, and what the tests look at from the X server's side: the focus,
// geometry, transient hint and children of any window, and the focus events the host got.
#pragma once

#include <QRect>

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
        QRect geometrie;   // in the parent
        bool bEntreeSeule; // an input-only window
        bool bVisible;     // mapped
    };

    // A top-level window at (x, y) of the screen, mapped.
    FenetreX(int x, int y, int largeur, int hauteur);
    ~FenetreX();
    FenetreX(const FenetreX&) = delete;
    FenetreX& operator=(const FenetreX&) = delete;

    unsigned long Id() const { return m_id; }
    int Descripteur() const;
    void Lit(); // reads the events that came, as the host's loop does
    void Redimensionne(int largeur, int hauteur);
    void Detruit();
    void PrendFocus();
    unsigned long CreeEnfant(int x, int y, int largeur, int hauteur); // mapped, at (x, y) in this one

    unsigned long Focus(); // 0 for none or PointerRoot
    QRect Geometrie(unsigned long fenetre); // on the screen
    unsigned long TransientPour(unsigned long fenetre);
    std::vector<Enfant> Enfants(unsigned long fenetre); // bottom to top
    unsigned long IdPerime(); // an id that names no window

    int nFocusEntrant = 0;

private:
    _XDisplay* m_pAffichage = nullptr;
    unsigned long m_id = 0;
};

} // namespace prefa_test
