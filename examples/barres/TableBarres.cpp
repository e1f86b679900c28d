#include "TableBarres.h"

#include <cwchar>

namespace
{
// The section the bars must lie in, in metres, and the cover they keep from its faces.
constexpr double kLargeur = 0.30, kHauteur = 0.60, kEnrobage = 0.03;
const int kDiametres[] = {6, 8, 10, 12, 14, 16, 20, 25, 32};

bool LitReel(const CString& texte, double& v)
{
    CString t(texte);
    t.Trim();
    t.Replace(L',', L'.');
    wchar_t* fin = nullptr;
    v = std::wcstod(t.GetString(), &fin);
    return !t.IsEmpty() && fin && *fin == 0;
}
} // namespace

BOOL CTableBarres::Cree(CWnd* pParent, const RECT& rect)
{
    if (!Create(WS_CHILD | WS_VISIBLE | LVS_SINGLESEL, rect, pParent, 1000))
        return FALSE;
    SetExtendedStyle(GetExtendedStyle() | LVS_EX_GRIDLINES);
    SetGridBehaviour(TRUE);
    m_EditNom.Create(WS_CHILD, CRect(0, 0, 10, 10), this, 1001);
    m_EditCoord.Create(WS_CHILD | ES_RIGHT, CRect(0, 0, 10, 10), this, 1002);
    m_ComboDiametre.Create(WS_CHILD | CBS_DROPDOWNLIST, CRect(0, 0, 10, 10), this, 1003);
    for (int d : kDiametres)
        m_ComboDiametre.AddString(std::to_wstring(d).c_str());

    InsereUneColonne(COL_NOM, L"nom", L"Barre", LVCFMT_LEFT, 90, TRI_CROISSANT, COMPARE_NOMBRE_TEXTE_SANS_CASSE, &m_EditNom);
    InsereUneColonne(COL_X, L"x", L"x", LVCFMT_RIGHT, 80, TRI_CROISSANT, COMPARE_REEL, &m_EditCoord, L"m", 2, FALSE, L"%.3f");
    InsereUneColonne(COL_Y, L"y", L"y", LVCFMT_RIGHT, 80, TRI_CROISSANT, COMPARE_REEL, &m_EditCoord, L"m", 2, FALSE, L"%.3f");
    InsereUneColonne(COL_DIAMETRE, L"d", L"Diamètre", LVCFMT_RIGHT, 90, TRI_CROISSANT, COMPARE_ENTIER, &m_ComboDiametre,
                     L"mm", 2);
    SetColumnEditor(COL_X, FALSE, TRUE, FALSE, &m_EditCoord);
    SetColumnEditor(COL_Y, FALSE, TRUE, FALSE, &m_EditCoord);
    SetColumnToolTipText(COL_X, L"Abscisse du centre de la barre, depuis la face gauche");
    SetColumnToolTipText(COL_Y, L"Ordonnée du centre de la barre, depuis la face inférieure");
    SetColumnColors(COL_DIAMETRE, RGB(236, 243, 250), CLR_NONE);

    const wchar_t* barres[][4] = {{L"HA1", L"0.050", L"0.050", L"20"},
                                  {L"HA2", L"0.250", L"0.050", L"20"},
                                  {L"HA3", L"0.050", L"0.550", L"12"},
                                  {L"HA4", L"0.250", L"0.550", L"12"},
                                  {L"Cadre", L"", L"", L"8"}};
    for (auto& b : barres)
        AddItem({b[0], b[1], b[2], b[3]});
    // The stirrup follows the section: only its diameter is chosen here.
    SetRowReadOnly(4);
    SetRowColors(4, RGB(232, 232, 232), RGB(90, 90, 90));
    SetCellReadOnly(4, COL_DIAMETRE, FALSE);
    SetCellEditor(4, COL_DIAMETRE, &m_ComboDiametre);
    Autosize(-2);
    return TRUE;
}

void CTableBarres::Colore(int nRow)
{
    for (int c = COL_X; c <= COL_Y; ++c)
    {
        double v = 0;
        bool bBon = LitReel(GetItemText(nRow, c), v);
        SetCellColors(nRow, c, CLR_NONE, bBon ? CLR_NONE : RGB(200, 0, 0));
    }
}

BOOL CTableBarres::ValidationCellule(int nRow, int nCol, const CString& strTexte, BOOL bFinal)
{
    if (IsRowReadOnly(nRow))
        return TRUE;
    double v = 0;
    switch (nCol)
    {
    case COL_NOM:
        if (bFinal && strTexte.IsEmpty())
        {
            AfxMessageBox(L"Une barre doit avoir un nom.", MB_ICONWARNING);
            return FALSE;
        }
        return TRUE;
    case COL_X:
    case COL_Y:
    {
        if (strTexte.IsEmpty() && !bFinal)
            return TRUE;
        double limite = nCol == COL_X ? kLargeur : kHauteur;
        if (!LitReel(strTexte, v) || v < kEnrobage || v > limite - kEnrobage)
        {
            CString m;
            m.Format(L"%s doit être un nombre entre %.3f et %.3f m.", nCol == COL_X ? L"x" : L"y", kEnrobage,
                     limite - kEnrobage);
            AfxMessageBox(m, MB_ICONWARNING);
            return FALSE;
        }
        return TRUE;
    }
    default:
        return TRUE;
    }
}

BOOL CTableBarres::ValidationLigne(int nRow)
{
    // Two bars cannot share a name.
    for (int r = 0; r < GetItemCount(); ++r)
        if (r != nRow && GetItemText(r, COL_NOM).CompareNoCase(GetItemText(nRow, COL_NOM)) == 0)
        {
            AfxMessageBox(L"Ce nom de barre existe déjà.", MB_ICONWARNING);
            return FALSE;
        }
    return TRUE;
}

BOOL CTableBarres::InsertionLigne(int* pnRow)
{
    int n = InsertItem(*pnRow + 1, L"");
    CString nom;
    nom.Format(L"HA%d", GetItemCount());
    SetItemText(n, COL_NOM, nom);
    SetItemText(n, COL_DIAMETRE, L"12");
    *pnRow = n;
    return TRUE;
}

BOOL CTableBarres::SuppressionLigne(int nRow)
{
    return !IsRowReadOnly(nRow) && DeleteItem(nRow);
}

BOOL CTableBarres::EndEditor(CWnd**, int nRow, int nCol, CString& strTexte, DWORD_PTR, CListCtrlExt*, BOOL bCommit)
{
    // Coordinates are written with the column's format (a comma typed becomes a dot).
    double v = 0;
    if (bCommit && LitReel(strTexte, v))
        strTexte.Format(GetFormatSaisie(nCol), v);
    SetItemText(nRow, nCol, strTexte);
    Colore(nRow);
    return TRUE;
}
