#include "CComboBox.h"

#include <QComboBox>
#include <QLineEdit>

IMPLEMENT_DYNAMIC(CComboBox, CWnd)

namespace
{
QString Q(LPCTSTR s)
{
    return QString::fromWCharArray(s ? s : L"");
}
} // namespace

BOOL CComboBox::Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID)
{
    QComboBox* pCombo = new QComboBox();
    pCombo->setEditable((dwStyle & CBS_DROPDOWNLIST) == CBS_DROPDOWN);
    pCombo->setInsertPolicy(QComboBox::NoInsert);
    return SetWindow(pCombo, true, pParentWnd, rect, dwStyle, nID);
}

QComboBox* CComboBox::GetComboBox() const
{
    return dynamic_cast<QComboBox*>(GetWidget());
}

int CComboBox::AddString(LPCTSTR lpszString)
{
    QComboBox* c = GetComboBox();
    if (!c)
        return CB_ERR;
    c->addItem(Q(lpszString));
    return c->count() - 1;
}

int CComboBox::InsertString(int nIndex, LPCTSTR lpszString)
{
    QComboBox* c = GetComboBox();
    if (!c || nIndex > c->count())
        return CB_ERR;
    int i = nIndex < 0 ? c->count() : nIndex;
    c->insertItem(i, Q(lpszString));
    return i;
}

int CComboBox::DeleteString(UINT nIndex)
{
    QComboBox* c = GetComboBox();
    if (!c || (int)nIndex >= c->count())
        return CB_ERR;
    c->removeItem((int)nIndex);
    return c->count();
}

void CComboBox::ResetContent()
{
    if (QComboBox* c = GetComboBox())
        c->clear();
}

int CComboBox::GetCount() const
{
    QComboBox* c = GetComboBox();
    return c ? c->count() : 0;
}

int CComboBox::GetCurSel() const
{
    QComboBox* c = GetComboBox();
    return c && c->currentIndex() >= 0 ? c->currentIndex() : CB_ERR;
}

int CComboBox::SetCurSel(int nSelect)
{
    QComboBox* c = GetComboBox();
    if (!c)
        return CB_ERR;
    if (nSelect < 0 || nSelect >= c->count())
    {
        c->setCurrentIndex(-1);
        return CB_ERR;
    }
    c->setCurrentIndex(nSelect);
    return nSelect;
}

void CComboBox::GetLBText(int nIndex, CString& rString) const
{
    QComboBox* c = GetComboBox();
    rString = c && nIndex >= 0 && nIndex < c->count() ? CString(c->itemText(nIndex).toStdWString()) : CString();
}

int CComboBox::FindStringExact(int nIndexStart, LPCTSTR lpszFind) const
{
    QComboBox* c = GetComboBox();
    if (!c || c->count() == 0)
        return CB_ERR;
    QString cherche = Q(lpszFind);
    int n = c->count();
    int debut = (nIndexStart < 0 || nIndexStart >= n) ? 0 : nIndexStart + 1;
    for (int k = 0; k < n; ++k)
    {
        int i = (debut + k) % n;
        if (c->itemText(i).compare(cherche, Qt::CaseInsensitive) == 0)
            return i;
    }
    return CB_ERR;
}

int CComboBox::SelectString(int nStartAfter, LPCTSTR lpszString)
{
    int i = FindStringExact(nStartAfter, lpszString);
    return i == CB_ERR ? CB_ERR : SetCurSel(i);
}

void CComboBox::SetWindowText(LPCTSTR lpszString)
{
    QComboBox* c = GetComboBox();
    if (!c)
        return;
    if (c->isEditable())
        c->setEditText(Q(lpszString));
    else
        c->setCurrentIndex(c->findText(Q(lpszString), Qt::MatchFixedString));
}

void CComboBox::GetWindowText(CString& rString) const
{
    QComboBox* c = GetComboBox();
    rString = c ? CString(c->currentText().toStdWString()) : CString();
}
