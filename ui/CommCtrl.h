// The list-view and header vocabulary of the platform's common controls (item states,
// styles, custom-draw stages and answers, column formats), for the window layer. The
// layer draws with Qt on every platform, so these are its own definitions: a source
// that also includes the system's commctrl.h must not include this header.
#pragma once

#include "framework/CRect.h"
#include "framework/CString.h"

class CDC;

// Colour reference that means "the control's default".
constexpr COLORREF CLR_DEFAULT = 0xFF000000u;
constexpr COLORREF CLR_NONE = 0xFFFFFFFFu;

// Item states (GetItemState, SetItemState).
enum : UINT
{
    LVIS_FOCUSED = 0x0001,
    LVIS_SELECTED = 0x0002,
};

// GetNextItem's search flags.
enum : UINT
{
    LVNI_ALL = 0x0000,
    LVNI_FOCUSED = 0x0001,
    LVNI_SELECTED = 0x0002,
};

// Column formats.
enum : int
{
    LVCFMT_LEFT = 0x0000,
    LVCFMT_RIGHT = 0x0001,
    LVCFMT_CENTER = 0x0002,
};

// Column description (GetColumn, SetColumn).
enum : UINT
{
    LVCF_FMT = 0x0001,
    LVCF_WIDTH = 0x0002,
    LVCF_TEXT = 0x0004,
    LVCF_ORDER = 0x0020,
};
struct LVCOLUMN
{
    UINT mask = 0;
    int fmt = LVCFMT_LEFT;
    int cx = 0;
    CString strText;  // the heading (the platform's pszText)
    int iOrder = 0;
};

// Widths that SetColumnWidth computes: fit the content, or content and heading.
enum : int
{
    LVSCW_AUTOSIZE = -1,
    LVSCW_AUTOSIZE_USEHEADER = -2,
};

// Styles: the window style LVS_SINGLESEL (one selected item at most), extended styles.
enum : DWORD
{
    LVS_SINGLESEL = 0x0004,
};
enum : DWORD
{
    LVS_EX_GRIDLINES = 0x0001,
    LVS_EX_HEADERDRAGDROP = 0x0010,
    LVS_EX_FULLROWSELECT = 0x0020,
};

// GetSubItemRect / GetItemRect portions.
enum : int
{
    LVIR_BOUNDS = 0,
    LVIR_LABEL = 2,
};

// Hit testing.
enum : UINT
{
    LVHT_NOWHERE = 0x0001,
    LVHT_ONITEMLABEL = 0x0004,
    LVHT_ONITEM = 0x000E,
};
struct LVHITTESTINFO
{
    POINT pt{0, 0};
    UINT flags = 0;
    int iItem = -1;
    int iSubItem = -1;
};

// Custom draw: stages, the item states the painter honours, and the handler's answers.
enum : DWORD
{
    CDDS_PREPAINT = 0x00000001,
    CDDS_POSTPAINT = 0x00000002,
    CDDS_ITEM = 0x00010000,
    CDDS_ITEMPREPAINT = CDDS_ITEM | CDDS_PREPAINT,
    CDDS_ITEMPOSTPAINT = CDDS_ITEM | CDDS_POSTPAINT,
    CDDS_SUBITEM = 0x00020000,
};
enum : UINT
{
    CDIS_SELECTED = 0x0001,
    CDIS_DISABLED = 0x0004,
    CDIS_FOCUS = 0x0010,
};
enum : LRESULT
{
    CDRF_DODEFAULT = 0x00000000,
    CDRF_NEWFONT = 0x00000002,
    CDRF_SKIPDEFAULT = 0x00000004,
    CDRF_NOTIFYPOSTPAINT = 0x00000010,
    CDRF_NOTIFYITEMDRAW = 0x00000020,
    CDRF_NOTIFYSUBITEMDRAW = 0x00000020,
};

// What a custom-draw handler is told and may change. The device context draws into the
// list (valid during the call only); rc is the item's or sub-item's rectangle.
struct NMCUSTOMDRAW
{
    DWORD dwDrawStage = 0;
    CDC* pDC = nullptr;
    RECT rc{0, 0, 0, 0};
    UINT_PTR dwItemSpec = 0;
    UINT uItemState = 0;
    LPARAM lItemlParam = 0;
};
struct NMLVCUSTOMDRAW
{
    NMCUSTOMDRAW nmcd;
    COLORREF clrText = CLR_DEFAULT;
    COLORREF clrTextBk = CLR_DEFAULT;
    int iSubItem = 0;
};

// FindItem by item data.
enum : UINT
{
    LVFI_PARAM = 0x0001,
};
struct LVFINDINFO
{
    UINT flags = LVFI_PARAM;
    LPARAM lParam = 0;
};

// A tool (tooltip) area found by OnToolHitTest.
struct TOOLINFO
{
    UINT_PTR uId = 0;
    RECT rect{0, 0, 0, 0};
};

// Item comparison for SortItems: the two items' data and the caller's value; negative,
// zero or positive as the first sorts before, with or after the second.
typedef int (*PFNLVCOMPARE)(LPARAM lParam1, LPARAM lParam2, LPARAM lParamSort);
