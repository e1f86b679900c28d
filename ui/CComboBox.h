// The framework's combo box, on a QComboBox: CBS_DROPDOWNLIST picks from the list only,
// CBS_DROPDOWN also takes typed text. Its window text is the chosen or typed text.
#pragma once

#include "CWnd.h"

class QComboBox;

class CComboBox : public CWnd
{
    DECLARE_DYNAMIC(CComboBox)
public:
    BOOL Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID);

    int AddString(LPCTSTR lpszString);
    int InsertString(int nIndex, LPCTSTR lpszString);
    int DeleteString(UINT nIndex);
    void ResetContent();
    int GetCount() const;
    int GetCurSel() const;
    int SetCurSel(int nSelect);
    void GetLBText(int nIndex, CString& rString) const;
    // Index of the item whose text equals the string (ignoring case) from nIndexStart + 1
    // on, wrapping; CB_ERR when none.
    int FindStringExact(int nIndexStart, LPCTSTR lpszFind) const;
    int SelectString(int nStartAfter, LPCTSTR lpszString);

    void SetWindowText(LPCTSTR lpszString) override;
    void GetWindowText(CString& rString) const override;

    QComboBox* GetComboBox() const;
};
