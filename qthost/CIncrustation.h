// A Qt widget shown inside a native window of the host (an X11 window id on Linux, an
// HWND on Windows, as a WId). The widget fills the window and follows its size; Tab
// walks the widget's own children and, past the last one (Shift+Tab: the first), gives
// the keyboard focus back to the host window and tells the host, which moves it on.
// The host gives the focus in with DonneFocus. The host keeps owning the widget:
// Retire, or the end of this object, hands it back to its former parent as it was
// there (hidden, when it had none). When Qt stops, the widgets still alive go with it.
#pragma once

#include "qthost/CQtHote.h"

#include <functional>
#include <memory>

class CWnd;
class QWidget;

class CIncrustation
{
public:
    // Where the focus lands when the host gives it.
    enum Focus : int
    {
        FOCUS_COURANT = 0,  // the widget that had it last (the first when none)
        FOCUS_PREMIER = 1,  // the first of the tab chain (the host's Tab)
        FOCUS_DERNIER = 2,  // the last of the tab chain (the host's Shift+Tab)
    };

    CIncrustation();
    ~CIncrustation();
    CIncrustation(const CIncrustation&) = delete;
    CIncrustation& operator=(const CIncrustation&) = delete;

    // Shows the widget (a CWnd's window) inside the native window. One widget at a
    // time: a second call retires the first.
    int Incruste(WId fenetreHote, QWidget* pWidget);
    int Incruste(WId fenetreHote, CWnd* pWnd);
    void Retire();
    BOOL EstIncruste() const;
    WId GetFenetreHote() const;
    QWidget* GetWidget() const;
    // The native window Qt made inside the host's window for the widget (0 when none).
    WId GetFenetreConteneur() const;

    int DonneFocus(int nOu = FOCUS_COURANT);
    // TRUE when the keyboard focus is in the widget.
    BOOL AFocus() const;
    // Called when Tab (bSuivant TRUE) or Shift+Tab leaves the widget, once the focus
    // is back in the host window.
    void SetSortieFocus(std::function<void(BOOL bSuivant)> fnSortie);

    struct Impl;

private:
    std::unique_ptr<Impl> d;
};
