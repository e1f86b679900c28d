#include "CWnd.h"

#include <QApplication>
#include <QEvent>
#include <QKeyEvent>
#include <QVariant>

IMPLEMENT_DYNAMIC(CWnd, CObject)

namespace
{
// The property that ties a widget to its CWnd object.
const char* const kObjet = "prefa.CWnd";
// The property of a widget that offers its keys to the windows above it (see SetRelaisTouches).
const char* const kRelais = "prefa.relais";

// Modifiers of the key message being dispatched, for GetKeyState.
Qt::KeyboardModifiers g_modifiersMessage;
int g_nMessagesEnCours = 0;

QRect VersQRect(const RECT& r)
{
    return QRect(r.left, r.top, r.right - r.left, r.bottom - r.top);
}
} // namespace

// Hands the events of the window to its object before the window sees them.
class CWnd::Filtre : public QObject
{
public:
    explicit Filtre(CWnd* pWnd) : m_pWnd(pWnd) {}
    bool eventFilter(QObject* pObjet, QEvent* pEvent) override
    {
        QWidget* pWidget = qobject_cast<QWidget*>(pObjet);
        return pWidget && m_pWnd->FiltreEvenement(pWidget, pEvent);
    }

private:
    CWnd* m_pWnd;
};

CWnd::CWnd() = default;

CWnd::~CWnd()
{
    DestroyWindow();
}

BOOL CWnd::Create(LPCTSTR, LPCTSTR lpszWindowName, DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID)
{
    QWidget* pWidget = new QWidget();
    if (lpszWindowName)
        pWidget->setWindowTitle(QString::fromWCharArray(lpszWindowName));
    return SetWindow(pWidget, true, pParentWnd, rect, dwStyle, nID);
}

BOOL CWnd::SetWindow(QWidget* pWidget, bool bOwned, CWnd* pParentWnd, const RECT& rect, DWORD dwStyle, UINT nID)
{
    if (m_pWidget)
    {
        if (bOwned)
            delete pWidget;
        return FALSE;
    }
    if (pParentWnd && pParentWnd->GetZoneClient())
        pWidget->setParent(pParentWnd->GetZoneClient());
    pWidget->setGeometry(VersQRect(rect));
    m_dwStyle = dwStyle;
    m_nID = (int)nID;
    Bind(pWidget, bOwned);
    pWidget->setEnabled(!(dwStyle & WS_DISABLED));
    // A child made without WS_VISIBLE stays hidden when its parent shows.
    pWidget->setVisible((dwStyle & WS_VISIBLE) != 0);
    return TRUE;
}

BOOL CWnd::Attach(QWidget* pWidget)
{
    if (!pWidget || m_pWidget || FromWidget(pWidget))
        return FALSE;
    Bind(pWidget, false);
    return TRUE;
}

QWidget* CWnd::Detach()
{
    QWidget* pWidget = m_pWidget.data();
    Unbind();
    return pWidget;
}

BOOL CWnd::DestroyWindow()
{
    if (!m_pWidget)
    {
        Unbind();
        return FALSE;
    }
    bool bOwned = m_bOwned;
    QWidget* pWidget = Detach();
    if (bOwned)
        delete pWidget;
    return TRUE;
}

void CWnd::Bind(QWidget* pWidget, bool bOwned)
{
    m_pWidget = pWidget;
    m_bOwned = bOwned;
    pWidget->setProperty(kObjet, QVariant::fromValue((quintptr)this));
    m_pFiltre = new Filtre(this);
    pWidget->installEventFilter(m_pFiltre);
}

void CWnd::Unbind()
{
    if (m_pWidget)
    {
        m_pWidget->removeEventFilter(m_pFiltre);
        m_pWidget->setProperty(kObjet, QVariant());
    }
    delete m_pFiltre;
    m_pFiltre = nullptr;
    m_pWidget = nullptr;
    m_bOwned = false;
}

HWND CWnd::GetSafeHwnd() const
{
    return reinterpret_cast<HWND>(m_pWidget.data());
}

CWnd* CWnd::FromHandle(HWND hWnd)
{
    return FromWidget(reinterpret_cast<QWidget*>(hWnd));
}

CWnd* CWnd::FromWidget(const QWidget* pWidget)
{
    if (!pWidget)
        return nullptr;
    QVariant v = pWidget->property(kObjet);
    return v.isValid() ? reinterpret_cast<CWnd*>(v.value<quintptr>()) : nullptr;
}

CWnd* CWnd::GetParent() const
{
    if (!m_pWidget)
        return nullptr;
    for (QWidget* w = m_pWidget->parentWidget(); w; w = w->parentWidget())
        if (CWnd* p = FromWidget(w))
            return p;
    return nullptr;
}

CWnd* CWnd::SetParent(CWnd* pWndNewParent)
{
    CWnd* pAncien = GetParent();
    if (m_pWidget)
    {
        bool bVisible = m_pWidget->isVisible();
        m_pWidget->setParent(pWndNewParent ? pWndNewParent->GetZoneClient() : nullptr);
        m_pWidget->setVisible(bVisible);
    }
    return pAncien;
}

int CWnd::SetDlgCtrlID(int nID)
{
    int nAncien = m_nID;
    m_nID = nID;
    return nAncien;
}

BOOL CWnd::ModifyStyle(DWORD dwRemove, DWORD dwAdd)
{
    DWORD dwNouveau = (m_dwStyle & ~dwRemove) | dwAdd;
    if (dwNouveau == m_dwStyle)
        return FALSE;
    m_dwStyle = dwNouveau;
    return TRUE;
}

BOOL CWnd::ShowWindow(int nCmdShow)
{
    BOOL bAvant = IsWindowVisible();
    if (m_pWidget)
        m_pWidget->setVisible(nCmdShow != SW_HIDE);
    return bAvant;
}

BOOL CWnd::IsWindowVisible() const
{
    return m_pWidget && m_pWidget->isVisible();
}

BOOL CWnd::EnableWindow(BOOL bEnable)
{
    BOOL bEtaitInactif = !IsWindowEnabled();
    if (m_pWidget)
        m_pWidget->setEnabled(bEnable != FALSE);
    return bEtaitInactif;
}

BOOL CWnd::IsWindowEnabled() const
{
    return m_pWidget && m_pWidget->isEnabled();
}

void CWnd::MoveWindow(int x, int y, int nWidth, int nHeight, BOOL bRepaint)
{
    if (!m_pWidget)
        return;
    m_pWidget->setGeometry(x, y, nWidth, nHeight);
    if (bRepaint)
        m_pWidget->update();
}

void CWnd::MoveWindow(LPCRECT lpRect, BOOL bRepaint)
{
    MoveWindow(lpRect->left, lpRect->top, lpRect->right - lpRect->left, lpRect->bottom - lpRect->top, bRepaint);
}

void CWnd::GetClientRect(LPRECT lpRect) const
{
    QWidget* z = GetZoneClient();
    *lpRect = CRect(0, 0, z ? z->width() : 0, z ? z->height() : 0);
}

void CWnd::GetWindowRect(LPRECT lpRect) const
{
    if (!m_pWidget)
    {
        *lpRect = CRect();
        return;
    }
    QPoint p = m_pWidget->mapToGlobal(QPoint(0, 0));
    *lpRect = CRect(p.x(), p.y(), p.x() + m_pWidget->width(), p.y() + m_pWidget->height());
}

void CWnd::ClientToScreen(LPPOINT lpPoint) const
{
    QWidget* z = GetZoneClient();
    if (!z)
        return;
    QPoint p = z->mapToGlobal(QPoint(lpPoint->x, lpPoint->y));
    lpPoint->x = p.x();
    lpPoint->y = p.y();
}

void CWnd::ScreenToClient(LPPOINT lpPoint) const
{
    QWidget* z = GetZoneClient();
    if (!z)
        return;
    QPoint p = z->mapFromGlobal(QPoint(lpPoint->x, lpPoint->y));
    lpPoint->x = p.x();
    lpPoint->y = p.y();
}

void CWnd::Invalidate(BOOL)
{
    if (m_pWidget)
        m_pWidget->update();
}

void CWnd::UpdateWindow()
{
    if (m_pWidget)
        m_pWidget->repaint();
}

CWnd* CWnd::SetFocus()
{
    CWnd* pAvant = GetFocus();
    if (m_pWidget)
        m_pWidget->setFocus(Qt::OtherFocusReason);
    return pAvant;
}

CWnd* CWnd::GetFocus()
{
    for (QWidget* w = QApplication::focusWidget(); w; w = w->parentWidget())
        if (CWnd* p = FromWidget(w))
            return p;
    return nullptr;
}

BOOL CWnd::HasFocusWithin() const
{
    QWidget* f = QApplication::focusWidget();
    return m_pWidget && f && (f == m_pWidget || m_pWidget->isAncestorOf(f));
}

void CWnd::SetWindowText(LPCTSTR lpszString)
{
    if (m_pWidget)
        m_pWidget->setWindowTitle(QString::fromWCharArray(lpszString ? lpszString : L""));
}

void CWnd::GetWindowText(CString& rString) const
{
    rString = m_pWidget ? CString(m_pWidget->windowTitle().toStdWString()) : CString();
}

int CWnd::GetWindowTextLength() const
{
    CString s;
    GetWindowText(s);
    return s.GetLength();
}

LRESULT CWnd::SendMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    return WindowProc(message, wParam, lParam);
}

LRESULT CWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    return DefWindowProc(message, wParam, lParam);
}

LRESULT CWnd::DefWindowProc(UINT, WPARAM, LPARAM)
{
    return 0;
}

BOOL CWnd::PreTranslateMessage(MSG*)
{
    return FALSE;
}

short CWnd::GetKeyState(int nVirtKey)
{
    Qt::KeyboardModifiers m = g_nMessagesEnCours > 0 ? g_modifiersMessage : QGuiApplication::queryKeyboardModifiers();
    Qt::KeyboardModifier k = nVirtKey == VK_CONTROL ? Qt::ControlModifier
                             : nVirtKey == VK_SHIFT ? Qt::ShiftModifier
                             : nVirtKey == VK_MENU  ? Qt::AltModifier
                                                    : Qt::NoModifier;
    return (k != Qt::NoModifier && (m & k)) ? (short)0x8000 : (short)0;
}

BOOL CWnd::WalkPreTranslateTree(QWidget* pTarget, MSG* pMsg)
{
    for (QWidget* w = pTarget; w; w = w->parentWidget())
    {
        if (CWnd* p = FromWidget(w))
            if (p->PreTranslateMessage(pMsg))
                return TRUE;
        if (w->isWindow())
            break;
    }
    return FALSE;
}

int CWnd::VirtualKey(int nQtKey)
{
    switch (nQtKey)
    {
    case Qt::Key_Backspace: return VK_BACK;
    case Qt::Key_Tab: case Qt::Key_Backtab: return VK_TAB;
    case Qt::Key_Return: case Qt::Key_Enter: return VK_RETURN;
    case Qt::Key_Shift: return VK_SHIFT;
    case Qt::Key_Control: return VK_CONTROL;
    case Qt::Key_Alt: return VK_MENU;
    case Qt::Key_Escape: return VK_ESCAPE;
    case Qt::Key_Space: return VK_SPACE;
    case Qt::Key_PageUp: return VK_PRIOR;
    case Qt::Key_PageDown: return VK_NEXT;
    case Qt::Key_End: return VK_END;
    case Qt::Key_Home: return VK_HOME;
    case Qt::Key_Left: return VK_LEFT;
    case Qt::Key_Up: return VK_UP;
    case Qt::Key_Right: return VK_RIGHT;
    case Qt::Key_Down: return VK_DOWN;
    case Qt::Key_Insert: return VK_INSERT;
    case Qt::Key_Delete: return VK_DELETE;
    default: break;
    }
    if ((nQtKey >= Qt::Key_0 && nQtKey <= Qt::Key_9) || (nQtKey >= Qt::Key_A && nQtKey <= Qt::Key_Z))
        return nQtKey;  // digits and letters share their codes
    if (nQtKey >= Qt::Key_F1 && nQtKey <= Qt::Key_F24)
        return VK_F1 + (nQtKey - Qt::Key_F1);
    return 0;
}

bool CWnd::FiltreEvenement(QWidget* pCible, QEvent* pEvent)
{
    return pEvent->type() == QEvent::KeyPress && PreTraduitTouche(pCible, static_cast<QKeyEvent*>(pEvent));
}

void CWnd::SetRelaisTouches(QWidget* pWidget, bool bRelais)
{
    pWidget->setProperty(kRelais, bRelais ? QVariant(true) : QVariant());
}

bool CWnd::PreTraduitTouche(QWidget* pCible, QKeyEvent* pTouche)
{
    int nVk = VirtualKey(pTouche->key());
    if (nVk == 0)
        return false;
    // A key the focused widget did not use comes up to its parents: it was offered at
    // the first window or relay on its way, which walked the whole tree already.
    QWidget* pFocus = QApplication::focusWidget();
    if (pFocus && pFocus != pCible && pCible->isAncestorOf(pFocus))
        for (QWidget* w = pFocus; w != pCible; w = w->parentWidget())
            if (FromWidget(w) || w->property(kRelais).isValid())
                return false;
    MSG msg{};
    msg.hwnd = reinterpret_cast<HWND>(pCible);
    msg.message = WM_KEYDOWN;
    msg.wParam = (WPARAM)nVk;
    msg.lParam = pTouche->isAutoRepeat() ? (LPARAM)0x40000001 : 1;
    // The message's own modifiers answer GetKeyState while it is dispatched.
    Qt::KeyboardModifiers avant = g_modifiersMessage;
    g_modifiersMessage = pTouche->modifiers();
    ++g_nMessagesEnCours;
    BOOL bConsomme = WalkPreTranslateTree(pCible, &msg);
    --g_nMessagesEnCours;
    g_modifiersMessage = avant;
    return bConsomme != FALSE;
}
