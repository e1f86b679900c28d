// Message boxes and the application's string resources, as replaceable hooks: the
// library runs inside a host program that shows boxes its own way (a Qt dialog, a
// log). Without a handler a box's text goes to standard error and never blocks.
#pragma once

#include "CString.h"
#include "Types.h"

#include <functional>

#ifndef _WIN32
enum : UINT
{
    MB_OK = 0x00000000u,
    MB_OKCANCEL = 0x00000001u,
    MB_YESNO = 0x00000004u,
    MB_ICONHAND = 0x00000010u,
    MB_ICONERROR = 0x00000010u,
    MB_ICONSTOP = 0x00000010u,
    MB_ICONQUESTION = 0x00000020u,
    MB_ICONEXCLAMATION = 0x00000030u,
    MB_ICONWARNING = 0x00000030u,
    MB_ICONINFORMATION = 0x00000040u,
    MB_ICONASTERISK = 0x00000040u,
};
enum : int
{
    IDOK = 1,
    IDCANCEL = 2,
    IDYES = 6,
    IDNO = 7,
};
#endif

// Receives the box's text and style (MB_...); returns the button pressed (IDOK ...).
typedef std::function<int(const CString& text, UINT nType)> AfxMessageBoxHandler;

// Installs a handler and returns the previous one; an empty handler restores the default.
AfxMessageBoxHandler AfxSetMessageBoxHandler(AfxMessageBoxHandler handler);

int AfxMessageBox(LPCTSTR lpszText, UINT nType = MB_OK, UINT nIDHelp = 0);
int AfxMessageBox(UINT nIDPrompt, UINT nType = MB_OK, UINT nIDHelp = (UINT)-1);

// The application's string table: the host registers its texts by resource number.
// An unregistered number gives an empty text.
void AfxRegisterString(UINT nID, LPCTSTR lpszText);
void AfxUnregisterString(UINT nID);
std::wstring AfxLoadStringResource(UINT nID, bool* pFound);
