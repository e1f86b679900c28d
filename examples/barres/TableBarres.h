// The bars of a 0.30 x 0.60 m beam section in a grid list: name, x, y, diameter, each
// checked as it is typed, every row checked before it is left.
#pragma once

#include <prefa_ui.h>

class CTableBarres : public CListCtrlExt
{
public:
    enum
    {
        COL_NOM,
        COL_X,
        COL_Y,
        COL_DIAMETRE
    };
    // Makes the list, its columns and editors inside the parent, with a few bars.
    BOOL Cree(CWnd* pParent, const RECT& rect);

protected:
    BOOL ValidationCellule(int nRow, int nCol, const CString& strTexte, BOOL bFinal) override;
    BOOL ValidationLigne(int nRow) override;
    BOOL InsertionLigne(int* pnRow) override;
    BOOL SuppressionLigne(int nRow) override;
    BOOL EndEditor(CWnd** ppWnd, int nRow, int nCol, CString& strTexte, DWORD_PTR dwItemData, CListCtrlExt* pListe,
                   BOOL bCommit) override;

private:
    void Colore(int nRow);
    CEdit m_EditNom, m_EditCoord;
    CComboBox m_ComboDiametre;
};
