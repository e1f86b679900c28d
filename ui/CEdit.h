// The framework's edit box, on a QLineEdit.
#pragma once

#include "CWnd.h"

class QLineEdit;

enum : DWORD
{
    ES_LEFT = 0x0000,
    ES_CENTER = 0x0001,
    ES_RIGHT = 0x0002,
    ES_AUTOHSCROLL = 0x0080,
    ES_READONLY = 0x0800,
};

class CEdit : public CWnd
{
    DECLARE_DYNAMIC(CEdit)
public:
    BOOL Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID);

    void SetWindowText(LPCTSTR lpszString) override;
    void GetWindowText(CString& rString) const override;
    // Selects characters nStart to nEnd (exclusive); nStart 0 and nEnd -1 select all,
    // nStart -1 removes the selection.
    void SetSel(int nStartChar, int nEndChar, BOOL bNoScroll = FALSE);
    void GetSel(int& nStartChar, int& nEndChar) const;
    void ReplaceSel(LPCTSTR lpszNewText, BOOL bCanUndo = FALSE);
    void LimitText(int nChars = 0);
    BOOL SetReadOnly(BOOL bReadOnly = TRUE);

    QLineEdit* GetLineEdit() const;
};
