// Qt inside a host program that owns its windows and its event loop: Qt's application
// started and stopped for the host, Qt's events run from the host's loop, and modal Qt
// dialogs over the host's windows. Widgets go into the host's windows through
// CIncrustation.
//
// Every call runs on the thread Qt started on (the host's user-interface thread); a
// call from another thread, before Qt starts, without a display or with a handle that
// is no window returns a failure code below and leaves a message for MessageErreur.
//
// Which loops run Qt by themselves: on Linux, Qt's event dispatcher sits on the GLib
// main loop's default context, so a host that runs GLib's loop (GTK, or
// g_main_context_iteration in its own loop) runs Qt's events with no call of ours; on
// Windows, Qt's events are messages to a window of Qt's on the host's thread, so the
// host's GetMessage/DispatchMessage loop runs them. BoucleNativeIntegree tells whether
// this is so (Qt started with QT_NO_GLIB runs its own poll loop, which nothing else
// runs). A host with a loop of its own (Xlib's XNextEvent, select or poll) calls
// TraiteEvenements from its loop or its idle handler, and best waits through
// AttendEvenements.
#pragma once

#include "framework/CString.h"
#include "framework/Types.h"

#include <qwindowdefs.h>

class QDialog;

// Results of the calls: 1 for success, 0 or a negative cause for failure.
enum : int
{
    QTHOTE_OK = 1,
    QTHOTE_ECHEC = 0,               // Qt could not do it (the message says why)
    QTHOTE_SANS_AFFICHAGE = -1,     // no display for Qt to open
    QTHOTE_AUTRE_FIL = -2,          // called from a thread other than Qt's
    QTHOTE_FENETRE_INVALIDE = -3,   // the native handle is no window
    QTHOTE_NON_DEMARRE = -4,        // Qt is not started
    QTHOTE_NON_GERE = -5,           // Qt's platform cannot host in native windows (offscreen ...)
    QTHOTE_OCCUPE = -6,             // called from inside Qt's event processing
    QTHOTE_ARGUMENT = -7,           // a null widget or dialog
};

// One turn of the host's own loop: handle its pending input (drain Xlib's queue), run
// its due timers, and return the milliseconds until it wants to run again (0: at once,
// -1: only when its descriptor has input).
typedef int (*PFNTOURHOTE)(void* pData);

class CQtHote
{
public:
    // Starts Qt for the host on the calling thread, with the host's arguments when
    // given (Qt reads -platform, -display ...), or joins the host's own QApplication
    // when the host is a Qt program. Counted: each success is paired with an Arrete,
    // and Qt stops at the last one. Nothing is created twice.
    static int Demarre(int argc = 0, char** argv = nullptr);
    // Drops one start. The last one closes the embeddings, deletes the widgets still
    // alive and Qt's application (not a host's own). Refused (QTHOTE_OCCUPE) from
    // inside Qt's event processing. A host that unloads the library without it gets the
    // same done at the unload; one that exits without it leaves Qt to the system, as
    // Qt's own globals are being destroyed then.
    static int Arrete();
    static BOOL EstDemarre();
    // TRUE when the host is a Qt program whose application was joined.
    static BOOL EstHoteQt();
    // TRUE when the platform's own loop runs Qt's events (see above).
    static BOOL BoucleNativeIntegree();

    // Runs Qt's pending events in passes until none is left or nBudgetMs milliseconds
    // have gone, and returns; *pbReste tells whether events may be left for the next
    // call. Qt hands out what is pending in batches (all posted events, all due timers)
    // which are never cut short: the budget bounds the passes, work that goes on by
    // events (a zero timer, repaints) is spread over calls. Never waits for events.
    static int TraiteEvenements(int nBudgetMs = 10, BOOL* pbReste = nullptr);
    // Lends the host's loop to Qt's nested loops (modal dialogs, menus, message boxes),
    // during which pfnTour runs when nDescripteur has input and when the delay it
    // returned has passed, so that the host keeps drawing and running its timers.
    // nDescripteur -1 and a null pfnTour take the loan back. Where the native loop runs
    // Qt, Qt's nested loops run the host's sources and messages by themselves.
    static int ConfieBoucleHote(int nDescripteur, PFNTOURHOTE pfnTour, void* pData);
    // Runs Qt's events until the lent descriptor has input or nDelaiMs milliseconds
    // have passed (-1: no limit); *pbEntree tells which. The host's loop blocks here
    // instead of polling. Xlib hosts drain XPending before, as before any wait.
    static int AttendEvenements(int nDelaiMs, BOOL* pbEntree = nullptr);

    // Shows the dialog modal over the host's native window (transient for its top-level
    // window, centred on it, its input blocked) in a nested loop until it closes, and
    // puts the dialog's result into *pnResultat.
    static int ExecModal(QDialog* pDialogue, WId fenetreHote, int* pnResultat = nullptr);

    // The message of the last failure on the calling thread (empty after a success).
    static CString MessageErreur();
};
