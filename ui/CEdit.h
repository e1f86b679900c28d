// The framework's edit box, on a QLineEdit.
#pragma once

#include "CWnd.h"

class QLineEdit;

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
