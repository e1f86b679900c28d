// A host program as the suite's are: its own X window and its own XNextEvent loop, no Qt
// in it. Its window shows a title band it draws itself, the bar grid and a note field,
// each of these two in an area (a child window) of its own. Tab goes host -> grid ->
// note -> host, Shift+Tab back; F2 asks a bar's name in a Qt dialog over the window;
// Escape ends. A timer counts tenths of seconds in the window's name. It says what
// happens on standard output, a line each:
//     pret <window> <grid's container> <note's container>
//     cellule <row> <column> <text>       a cell of the grid was changed
//     rendu <grille|note> <suivant|precedent>   Tab left a widget
//     focus <zone grille|zone note|hote>  the keyboard focus came to the host's window
//     clic                                a click reached the host's window
//     modal <result> <name>               the dialog closed
//     ligne <row> <texts...>, note <text>, fin     at the end
//     hote-xlib [--sans-arret]    (ends without stopping Qt, leaving it to the exit)
#include "DialogueHote.h"
#include "prefa_qthost.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/keysym.h>

namespace
{
using Horloge = std::chrono::steady_clock;

// The grid of the host's bars: name and abscissa, each cell edited in place.
class GrilleHote : public CListCtrlExt
{
public:
    BOOL Cree()
    {
        if (!Create(WS_CHILD | WS_VISIBLE | LVS_SINGLESEL, CRect(0, 0, 300, 120), nullptr, 100))
            return FALSE;
        SetGridBehaviour(TRUE);
        m_Edit.Create(WS_CHILD, CRect(0, 0, 10, 10), this, 101);
        InsereUneColonne(0, L"nom", L"Barre", LVCFMT_LEFT, 100, TRI_AUCUN, COMPARE_TEXTE, &m_Edit);
        InsereUneColonne(1, L"x", L"x", LVCFMT_RIGHT, 100, TRI_AUCUN, COMPARE_REEL, &m_Edit, L"m", 2);
        SetColumnEditor(0, FALSE, TRUE, FALSE, &m_Edit);
        SetColumnEditor(1, FALSE, TRUE, FALSE, &m_Edit);
        AddItem({L"HA1", L"0.050"});
        AddItem({L"HA2", L"0.250"});
        SelectItem(0);
        SetFocusCell(1);
        return TRUE;
    }

protected:
    BOOL EndEditor(CWnd**, int nRow, int nCol, CString& strTexte, DWORD_PTR, CListCtrlExt*, BOOL bCommit) override
    {
        if (bCommit)
        {
            SetItemText(nRow, nCol, strTexte);
            std::printf("cellule %d %d %ls\n", nRow, nCol, strTexte.GetString());
        }
        return TRUE;
    }

private:
    CEdit m_Edit;
};

struct Hote
{
    enum Controle
    {
        HOTE,
        GRILLE,
        NOTE
    };

    Display* pAffichage = nullptr;
    Window fenetre = 0, zoneGrille = 0, zoneNote = 0;
    GC gc = nullptr;
    Atom fermeture = 0;
    Controle controle = GRILLE;
    CIncrustation grille, note;
    int nDixiemes = 0;
    Horloge::time_point prochain = Horloge::now();
    bool bFin = false;

    void Cree()
    {
        pAffichage = XOpenDisplay(nullptr);
        if (!pAffichage)
        {
            std::fprintf(stderr, "hote-xlib: no X display\n");
            std::exit(1);
        }
        const int nEcran = DefaultScreen(pAffichage);
        fenetre = XCreateSimpleWindow(pAffichage, RootWindow(pAffichage, nEcran), 40, 40, 480, 320, 0, 0, 0xd8d8e8);
        zoneGrille = XCreateSimpleWindow(pAffichage, fenetre, 8, 36, 464, 232, 0, 0, 0x808080);
        zoneNote = XCreateSimpleWindow(pAffichage, fenetre, 8, 280, 464, 32, 0, 0, 0x808080);
        const long masque = ExposureMask | KeyPressMask | ButtonPressMask | FocusChangeMask;
        XSelectInput(pAffichage, fenetre, masque | StructureNotifyMask);
        XSelectInput(pAffichage, zoneGrille, masque);
        XSelectInput(pAffichage, zoneNote, masque);
        fermeture = XInternAtom(pAffichage, "WM_DELETE_WINDOW", False);
        XSetWMProtocols(pAffichage, fenetre, &fermeture, 1);
        gc = XCreateGC(pAffichage, fenetre, 0, nullptr);
        XStoreName(pAffichage, fenetre, "hote-xlib 0");
        XMapSubwindows(pAffichage, fenetre);
        XMapWindow(pAffichage, fenetre);
        XSync(pAffichage, False);
    }

    void Dessine()
    {
        XClearArea(pAffichage, fenetre, 0, 0, 0, 34, False);
        char texte[96];
        std::snprintf(texte, sizeof texte, "Hote Xlib - %d - %s", nDixiemes,
                      controle == HOTE ? "[hote]" : controle == GRILLE ? "grille" : "note");
        XDrawString(pAffichage, fenetre, gc, 10, 22, texte, (int)std::strlen(texte));
    }

    // Its areas follow its size: the grid above, the note below.
    void Dispose(int nLargeur, int nHauteur)
    {
        XMoveResizeWindow(pAffichage, zoneGrille, 8, 36, nLargeur - 16, nHauteur - 88);
        XMoveResizeWindow(pAffichage, zoneNote, 8, nHauteur - 40, nLargeur - 16, 32);
    }

    void DonneFocusA(Controle c, int nOu)
    {
        controle = c;
        if (c == GRILLE)
            grille.DonneFocus(nOu);
        else if (c == NOTE)
            note.DonneFocus(nOu);
        else
            XSetInputFocus(pAffichage, fenetre, RevertToParent, CurrentTime);
        Dessine();
    }

    void Touche(XKeyEvent& e)
    {
        const KeySym touche = XLookupKeysym(&e, 0);
        const bool bMaj = (e.state & ShiftMask) != 0;
        if (touche == XK_Tab && !bMaj)
            DonneFocusA(GRILLE, CIncrustation::FOCUS_PREMIER);
        else if (touche == XK_ISO_Left_Tab || (touche == XK_Tab && bMaj))
            DonneFocusA(NOTE, CIncrustation::FOCUS_DERNIER);
        else if (touche == XK_F2)
        {
            int nResultat = 0;
            std::wstring nom;
            if (DemandeNomBarre(fenetre, nResultat, nom) == QTHOTE_OK)
                std::printf("modal %d %ls\n", nResultat, nom.c_str());
            else
                std::printf("modal erreur %ls\n", CQtHote::MessageErreur().GetString());
        }
        else if (touche == XK_Escape)
            bFin = true;
    }

    void Traite(XEvent& ev)
    {
        switch (ev.type)
        {
        case Expose:
            if (ev.xexpose.window == fenetre && ev.xexpose.count == 0)
                Dessine();
            break;
        case ConfigureNotify:
            if (ev.xconfigure.window == fenetre)
                Dispose(ev.xconfigure.width, ev.xconfigure.height);
            break;
        case KeyPress:
            Touche(ev.xkey);
            break;
        case ButtonPress:
            std::printf("clic\n");
            break;
        case FocusIn:
            // Virtual details: the focus went to a window inside this one, not to it.
            if (ev.xfocus.detail == NotifyPointer || ev.xfocus.detail == NotifyVirtual ||
                ev.xfocus.detail == NotifyNonlinearVirtual)
                break;
            if (ev.xfocus.window != fenetre)
                std::printf("focus zone %s\n", ev.xfocus.window == zoneGrille ? "grille" : "note");
            else if (controle == HOTE)
                std::printf("focus hote\n");
            else if (ev.xfocus.detail != NotifyInferior)
                DonneFocusA(controle, CIncrustation::FOCUS_COURANT);  // the window comes to the front
            break;
        case ClientMessage:
            if ((Atom)ev.xclient.data.l[0] == fermeture)
                bFin = true;
            break;
        default:
            break;
        }
    }

    // One turn of its loop: its events, then its timer; the milliseconds until the
    // timer is due again. Qt's nested loops run it too, while a dialog is up.
    int Tour()
    {
        while (XPending(pAffichage))
        {
            XEvent ev;
            XNextEvent(pAffichage, &ev);
            Traite(ev);
        }
        const Horloge::time_point maintenant = Horloge::now();
        if (maintenant >= prochain)
        {
            ++nDixiemes;
            prochain = maintenant + std::chrono::milliseconds(100);
            char nom[32];
            std::snprintf(nom, sizeof nom, "hote-xlib %d", nDixiemes);
            XStoreName(pAffichage, fenetre, nom);
            Dessine();
        }
        XFlush(pAffichage);
        std::fflush(stdout);
        return (int)std::chrono::duration_cast<std::chrono::milliseconds>(prochain - maintenant).count();
    }

    static int TourHote(void* p) { return static_cast<Hote*>(p)->Tour(); }
};
} // namespace

int main(int argc, char** argv)
{
    const bool bSansArret = argc > 1 && std::strcmp(argv[1], "--sans-arret") == 0;
    if (CQtHote::Demarre(argc, argv) != QTHOTE_OK)
    {
        std::fprintf(stderr, "hote-xlib: %ls\n", CQtHote::MessageErreur().GetString());
        return 1;
    }
    Hote hote;
    hote.Cree();
    GrilleHote liste;
    CEdit noteEdit;
    liste.Cree();
    noteEdit.Create(WS_CHILD | WS_VISIBLE, CRect(0, 0, 200, 24), nullptr, 200);
    hote.grille.Incruste(hote.zoneGrille, &liste);
    hote.note.Incruste(hote.zoneNote, &noteEdit);
    hote.grille.SetSortieFocus([&](BOOL bSuivant) {
        std::printf("rendu grille %s\n", bSuivant ? "suivant" : "precedent");
        hote.DonneFocusA(bSuivant ? Hote::NOTE : Hote::HOTE, CIncrustation::FOCUS_PREMIER);
    });
    hote.note.SetSortieFocus([&](BOOL bSuivant) {
        std::printf("rendu note %s\n", bSuivant ? "suivant" : "precedent");
        hote.DonneFocusA(bSuivant ? Hote::HOTE : Hote::GRILLE, CIncrustation::FOCUS_DERNIER);
    });
    CQtHote::ConfieBoucleHote(ConnectionNumber(hote.pAffichage), &Hote::TourHote, &hote);
    std::printf("pret 0x%lx 0x%lx 0x%lx\n", hote.fenetre, (unsigned long)hote.grille.GetFenetreConteneur(),
                (unsigned long)hote.note.GetFenetreConteneur());

    while (!hote.bFin)
        CQtHote::AttendEvenements(hote.Tour());

    for (int r = 0; r < liste.GetItemCount(); ++r)
        std::printf("ligne %d %ls %ls\n", r, liste.GetItemText(r, 0).GetString(), liste.GetItemText(r, 1).GetString());
    CString texte;
    noteEdit.GetWindowText(texte);
    std::printf("note %ls\n", texte.GetString());
    if (bSansArret)
    {
        // Its widgets, Qt and its window are all still there: the exit takes them.
        std::printf("fin sans arret\n");
        std::fflush(stdout);
        std::exit(0);
    }
    hote.grille.Retire();
    hote.note.Retire();
    CQtHote::Arrete();
    XFreeGC(hote.pAffichage, hote.gc);
    XCloseDisplay(hote.pAffichage);
    std::printf("fin\n");
    return 0;
}
