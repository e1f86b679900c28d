// The framework's window on a Qt widget. A CWnd is the C++ object, its window is a
// QWidget (the "handle"), exactly as the framework pairs a CWnd with an HWND: Create
// makes a window the object owns, Attach wraps one that lives elsewhere, FromHandle and
// FromWidget find the object behind a window. Messages keep their meaning: SendMessage
// calls WindowProc at once, and keys reach PreTranslateMessage of the window that has
// them and then of each parent window, before the window itself handles them.
#pragma once

#include "framework/CObject.h"
#include "framework/CRect.h"
#include "framework/CString.h"
#include "framework/WinUser.h"

#include <QPointer>
#include <QWidget>

class QEvent;
class QKeyEvent;

class CWnd : public CObject
{
    DECLARE_DYNAMIC(CWnd)
public:
    CWnd();
    ~CWnd() override;
    CWnd(const CWnd&) = delete;
    CWnd& operator=(const CWnd&) = delete;

    // A plain child window (a container for other widgets), owned by this object.
    BOOL Create(LPCTSTR lpszClassName, LPCTSTR lpszWindowName, DWORD dwStyle, const RECT& rect,
                CWnd* pParentWnd, UINT nID);
    // Wraps a window this object does not own (a host's widget, a Qt editor).
    BOOL Attach(QWidget* pWidget);
    QWidget* Detach();
    BOOL DestroyWindow();

    // The window: as the platform's handle, or as the widget for Qt code (layouts, hosts).
    HWND GetSafeHwnd() const;
    QWidget* GetWidget() const { return m_pWidget.data(); }
    // The object behind a window, or null when the window has none.
    static CWnd* FromHandle(HWND hWnd);
    static CWnd* FromWidget(const QWidget* pWidget);

    CWnd* GetParent() const;
    CWnd* SetParent(CWnd* pWndNewParent);
    int GetDlgCtrlID() const { return m_nID; }
    int SetDlgCtrlID(int nID);
    DWORD GetStyle() const { return m_dwStyle; }
    BOOL ModifyStyle(DWORD dwRemove, DWORD dwAdd);

    BOOL ShowWindow(int nCmdShow);
    BOOL IsWindowVisible() const;
    // Returns TRUE when the window was disabled before the call.
    BOOL EnableWindow(BOOL bEnable = TRUE);
    BOOL IsWindowEnabled() const;
    void MoveWindow(int x, int y, int nWidth, int nHeight, BOOL bRepaint = TRUE);
    void MoveWindow(LPCRECT lpRect, BOOL bRepaint = TRUE);
    void GetClientRect(LPRECT lpRect) const;
    void GetWindowRect(LPRECT lpRect) const;  // in screen coordinates
    void ClientToScreen(LPPOINT lpPoint) const;
    void ScreenToClient(LPPOINT lpPoint) const;
    void Invalidate(BOOL bErase = TRUE);
    void UpdateWindow();

    CWnd* SetFocus();
    static CWnd* GetFocus();
    // TRUE when this window or one of its children has the keyboard focus.
    BOOL HasFocusWithin() const;

    // The window's text (an edit's text, a combo box's text, a plain window's caption).
    virtual void SetWindowText(LPCTSTR lpszString);
    virtual void GetWindowText(CString& rString) const;
    int GetWindowTextLength() const;

    LRESULT SendMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
    virtual BOOL PreTranslateMessage(MSG* pMsg);
    // Up when < 0 (high bit), as the platform answers, for VK_SHIFT, VK_CONTROL, VK_MENU:
    // during a key message, the state that came with it.
    static short GetKeyState(int nVirtKey);

    // Offers a key message to the window that received it and then to each parent window
    // up to the top-level one; TRUE when one of them consumed it.
    static BOOL WalkPreTranslateTree(QWidget* pTarget, MSG* pMsg);
    // A Qt key press as WM_KEYDOWN through WalkPreTranslateTree, once per key: not
    // again when the key comes up from a focused child that offered it already.
    static bool PreTraduitTouche(QWidget* pTarget, QKeyEvent* pKey);
    // Marks a widget that is no window but offers its keys (an editor's inner widget).
    static void SetRelaisTouches(QWidget* pWidget, bool bRelais);
    // The platform's virtual key for a Qt key (0 when none).
    static int VirtualKey(int nQtKey);

protected:
    // The widget that holds the client area (children, client coordinates).
    virtual QWidget* GetZoneClient() const { return GetWidget(); }
    virtual LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    // What a window does with a message nobody handles: 0.
    LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    // Adopts a freshly made widget as this object's window.
    BOOL SetWindow(QWidget* pWidget, bool bOwned, CWnd* pParentWnd, const RECT& rect, DWORD dwStyle, UINT nID);
    // Called when the window receives a Qt event, before the window's own handling;
    // true consumes it. The default offers key presses to WalkPreTranslateTree.
    virtual bool FiltreEvenement(QWidget* pCible, QEvent* pEvent);

private:
    class Filtre;
    void Bind(QWidget* pWidget, bool bOwned);
    void Unbind();

    QPointer<QWidget> m_pWidget;
    Filtre* m_pFiltre = nullptr;
    bool m_bOwned = false;
    DWORD m_dwStyle = 0;
    int m_nID = 0;
};
