#include "CEdit.h"

#include <QLineEdit>

#include <algorithm>

IMPLEMENT_DYNAMIC(CEdit, CWnd)

BOOL CEdit::Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID)
{
    QLineEdit* pEdit = new QLineEdit();
    pEdit->setAlignment((dwStyle & ES_RIGHT) ? Qt::AlignRight : (dwStyle & ES_CENTER) ? Qt::AlignHCenter : Qt::AlignLeft);
    pEdit->setReadOnly(dwStyle & ES_READONLY);
    return SetWindow(pEdit, true, pParentWnd, rect, dwStyle, nID);
}

QLineEdit* CEdit::GetLineEdit() const
{
    return dynamic_cast<QLineEdit*>(GetWidget());
}

void CEdit::SetWindowText(LPCTSTR lpszString)
{
    if (QLineEdit* e = GetLineEdit())
        e->setText(QString::fromWCharArray(lpszString ? lpszString : L""));
}

void CEdit::GetWindowText(CString& rString) const
{
    QLineEdit* e = GetLineEdit();
    rString = e ? CString(e->text().toStdWString()) : CString();
}

void CEdit::SetSel(int nStartChar, int nEndChar, BOOL)
{
    QLineEdit* e = GetLineEdit();
    if (!e)
        return;
    int n = e->text().length();
    if (nStartChar < 0)
    {
        e->deselect();
        return;
    }
    int fin = (nEndChar < 0 || nEndChar > n) ? n : nEndChar;
    int debut = std::min(nStartChar, n);
    e->setSelection(debut, fin - debut);
}

void CEdit::GetSel(int& nStartChar, int& nEndChar) const
{
    QLineEdit* e = GetLineEdit();
    nStartChar = nEndChar = 0;
    if (!e)
        return;
    if (e->hasSelectedText())
    {
        nStartChar = e->selectionStart();
        nEndChar = nStartChar + e->selectedText().length();
    }
    else
        nStartChar = nEndChar = e->cursorPosition();
}

void CEdit::ReplaceSel(LPCTSTR lpszNewText, BOOL)
{
    if (QLineEdit* e = GetLineEdit())
        e->insert(QString::fromWCharArray(lpszNewText ? lpszNewText : L""));
}

void CEdit::LimitText(int nChars)
{
    if (QLineEdit* e = GetLineEdit())
        e->setMaxLength(nChars > 0 ? nChars : 32767);
}

BOOL CEdit::SetReadOnly(BOOL bReadOnly)
{
    QLineEdit* e = GetLineEdit();
    if (!e)
        return FALSE;
    e->setReadOnly(bReadOnly != FALSE);
    return TRUE;
}
