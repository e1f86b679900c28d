// The window-message vocabulary of the platform (messages, virtual keys, rectangles,
// accelerators), so that window code reads the same on Windows, where it comes from
// the system headers, and elsewhere.
#pragma once

#include "CPoint.h"
#include "Types.h"

#ifndef _WIN32
typedef UINT_PTR WPARAM;
typedef INT_PTR LPARAM;
typedef INT_PTR LRESULT;
typedef struct HWND__* HWND;
typedef int* LPINT;
typedef POINT* LPPOINT;
typedef UINT_PTR DWORD_PTR;

struct tagRECT
{
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
};
typedef tagRECT RECT;
typedef RECT* LPRECT;
typedef const RECT* LPCRECT;

struct tagSIZE
{
    LONG cx;
    LONG cy;
};
typedef tagSIZE SIZE;

struct tagMSG
{
    HWND hwnd;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    DWORD time;
    POINT pt;
};
typedef tagMSG MSG;

// Keyboard accelerator: fVirt holds FVIRTKEY and the modifier flags, cmd goes to the
// window as WM_COMMAND.
struct tagACCEL
{
    BYTE fVirt;
    WORD key;
    WORD cmd;
};
typedef tagACCEL ACCEL;
typedef ACCEL* LPACCEL;
enum : BYTE
{
    FVIRTKEY = 0x01,
    FSHIFT = 0x04,
    FCONTROL = 0x08,
    FALT = 0x10,
};

enum : UINT
{
    WM_SETFOCUS = 0x0007,
    WM_KILLFOCUS = 0x0008,
    WM_SETTEXT = 0x000C,
    WM_GETTEXT = 0x000D,
    WM_NOTIFY = 0x004E,
    WM_CONTEXTMENU = 0x007B,
    WM_KEYDOWN = 0x0100,
    WM_KEYUP = 0x0101,
    WM_CHAR = 0x0102,
    WM_COMMAND = 0x0111,
    WM_LBUTTONDOWN = 0x0201,
    WM_LBUTTONDBLCLK = 0x0203,
    WM_RBUTTONDOWN = 0x0204,
    WM_USER = 0x0400,
};

enum : int
{
    VK_BACK = 0x08,
    VK_TAB = 0x09,
    VK_RETURN = 0x0D,
    VK_SHIFT = 0x10,
    VK_CONTROL = 0x11,
    VK_MENU = 0x12,
    VK_ESCAPE = 0x1B,
    VK_SPACE = 0x20,
    VK_PRIOR = 0x21,
    VK_NEXT = 0x22,
    VK_END = 0x23,
    VK_HOME = 0x24,
    VK_LEFT = 0x25,
    VK_UP = 0x26,
    VK_RIGHT = 0x27,
    VK_DOWN = 0x28,
    VK_INSERT = 0x2D,
    VK_DELETE = 0x2E,
    VK_F1 = 0x70,
    VK_F2 = 0x71,
};

enum : DWORD
{
    WS_CHILD = 0x40000000,
    WS_VISIBLE = 0x10000000,
    WS_DISABLED = 0x08000000,
    WS_BORDER = 0x00800000,
    WS_TABSTOP = 0x00010000,
};

// Edit box and combo box styles, and the combo box's error answer.
enum : DWORD
{
    ES_LEFT = 0x0000,
    ES_CENTER = 0x0001,
    ES_RIGHT = 0x0002,
    ES_AUTOHSCROLL = 0x0080,
    ES_READONLY = 0x0800,
    CBS_DROPDOWN = 0x0002,
    CBS_DROPDOWNLIST = 0x0003,
};
enum : int
{
    CB_ERR = -1,
};

// DrawText formats.
enum : UINT
{
    DT_LEFT = 0x0000,
    DT_CENTER = 0x0001,
    DT_RIGHT = 0x0002,
    DT_VCENTER = 0x0004,
    DT_SINGLELINE = 0x0020,
    DT_END_ELLIPSIS = 0x8000,
};

enum : int
{
    SW_HIDE = 0,
    SW_SHOW = 5,
};

enum : UINT
{
    MK_LBUTTON = 0x0001,
    MK_RBUTTON = 0x0002,
    MK_SHIFT = 0x0004,
    MK_CONTROL = 0x0008,
};

#define LOWORD(l) ((WORD)(((UINT_PTR)(l)) & 0xFFFF))
#define HIWORD(l) ((WORD)((((UINT_PTR)(l)) >> 16) & 0xFFFF))
#define MAKELONG(a, b) ((LONG)(((WORD)(((UINT_PTR)(a)) & 0xFFFF)) | ((DWORD)((WORD)(((UINT_PTR)(b)) & 0xFFFF))) << 16))
#define MAKEWPARAM(l, h) ((WPARAM)(DWORD)MAKELONG(l, h))
#define MAKELPARAM(l, h) ((LPARAM)(DWORD)MAKELONG(l, h))
#endif // _WIN32
