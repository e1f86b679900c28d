// The editable grid list: a report list turned into a small spreadsheet. Each cell can
// carry its own colours, read-only state and editor window; a focus cell moves inside
// the selected row; Enter walks from editable cell to editable cell and from row to
// row; Ctrl+Insert and Ctrl+Delete insert and delete rows through overridable hooks;
// columns sort by a comparison type; headings hold several lines with units; every cell
// and row is validated before the user may leave it. Dialogs derive from it and
// override the hooks.
#pragma once

#include "CHeaderCtrlExt.h"
#include "CListCtrlToolTip.h"

#include <QObject>

#include <memory>
#include <mutex>
#include <unordered_map>
#include <vector>

// What the list asks its parent before opening an editor: wParam is
// MAKEWPARAM(row, column), lParam the list; a zero answer refuses the edit. A parent
// that is not a CWnd (a plain Qt widget) is not asked.
constexpr UINT WM_AUTORISE_SAISIE = WM_USER + 2;

// Comparison types of a column.
enum : int
{
    COMPARE_AUCUNE = 0,
    COMPARE_ENTIER = 1,
    COMPARE_REEL = 2,
    COMPARE_TEXTE = 3,
    COMPARE_NOMBRE_TEXTE = 4,
    COMPARE_TEXTE_SANS_CASSE = 5,
    COMPARE_NOMBRE_TEXTE_SANS_CASSE = 6,
    COMPARE_DATE = 7,
};

// Sort flags of a column: bit 0 ascending (descending when clear); a column with none
// of bits 0 to 2 set does not sort.
enum : int
{
    TRI_AUCUN = 0,
    TRI_CROISSANT = 0x1,
    TRI_DECROISSANT = 0x2,
};

// A column's own comparison of two cell texts (negative, zero, positive).
typedef int (*PFNCOMPARECOLONNE)(const CString& texte1, const CString& texte2);

namespace prefa_ui_detail
{
class HookEditeur;
}

class CListCtrlExt : public CListCtrlToolTip
{
    DECLARE_DYNAMIC(CListCtrlExt)
public:
    // An editor record: the window (may be none), read-only, and the hooks wanted.
    struct EditorInfo
    {
        CWnd* m_pWnd = nullptr;
        BOOL m_bReadOnly = FALSE;
        BOOL m_bEndEditorHook = FALSE;
        BOOL m_bInitEditorHook = FALSE;
        bool EstDefini() const { return m_pWnd || m_bReadOnly || m_bEndEditorHook || m_bInitEditorHook; }
    };

    struct CellInfo
    {
        int m_nColonne = 0;
        COLORREF m_clrFond = CLR_NONE;
        COLORREF m_clrTexte = CLR_NONE;
        EditorInfo m_Editeur;
        BOOL m_bReadOnly = FALSE;
        DWORD_PTR m_dwData = 0;
    };

    // The record behind each item's data; the caller's own value is kept inside.
    struct ItemInfo
    {
        DWORD_PTR m_dwData = 0;
        EditorInfo m_Editeur;
        BOOL m_bReadOnly = FALSE;
        COLORREF m_clrFond = CLR_NONE;
        COLORREF m_clrTexte = CLR_NONE;
        std::vector<CellInfo> m_Cellules;
    };

    struct ColumnInfo
    {
        int m_nColonne = 0;
        int m_nTri = TRI_AUCUN;
        COLORREF m_clrFond = CLR_NONE;
        COLORREF m_clrTexte = CLR_NONE;
        int m_nTypeComparaison = COMPARE_TEXTE;
        EditorInfo m_Editeur;
        BOOL m_bReadOnly = FALSE;
        BOOL m_bMasquee = FALSE;
        CString m_strIdentifiant;
        CString m_strToolTip;
        CString m_strFormatSaisie;
        PFNCOMPARECOLONNE m_pfnCompare = nullptr;
        int m_nLargeurAvantMasque = -1;  // width to give back when shown again
    };

    CListCtrlExt();
    ~CListCtrlExt() override;

    // Full-row selection and the header's drag and drop are on from the start.
    BOOL Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID) override;
    CHeaderCtrl* GetHeaderCtrl() override { return &m_HeaderCtrl; }
    CHeaderCtrlExt& GetHeaderCtrlExt() { return m_HeaderCtrl; }

    // ---- columns
    // Inserts a column and its descriptor. With a unit, the heading is built by the unit
    // style: 1 title, line break, unit; 2 title + "\n(" + unit + ")"; 3 title +
    // "\n (" + unit + ")"; 4 the title as a format of the unit; other values the title.
    int InsereUneColonne(int nCol, LPCTSTR lpszIdentifiant, LPCTSTR lpszTitre, int nFormat = LVCFMT_LEFT,
                         int nLargeur = -1, int nTri = TRI_AUCUN, int nTypeComparaison = COMPARE_TEXTE,
                         CWnd* pEditeur = nullptr, LPCTSTR lpszUnite = nullptr, int nStyleUnite = 1,
                         BOOL bReadOnly = FALSE, LPCTSTR lpszFormatSaisie = nullptr);
    void DeleteAllColumns();
    int GetColumnCount() const { return (int)m_Colonnes.size(); }
    void SetColumnReadOnly(int nCol, BOOL bReadOnly = TRUE);
    BOOL IsColumnReadOnly(int nCol) const;
    BOOL IsColumnHidden(int nCol) const;
    void SetAfficheColonne(int nCol, BOOL bAffiche);
    void SetColumnColors(int nCol, COLORREF clrFond, COLORREF clrTexte);
    void SetColumnToolTipText(int nCol, LPCTSTR lpszTexte);
    CString GetColumnToolTipText(int nCol) const;
    void SetIdentifiantColonne(int nCol, LPCTSTR lpszIdentifiant);
    CString GetIdentifiantColonne(int nCol) const;
    int GetNoColonne(LPCTSTR lpszIdentifiant) const;
    void SetColumnSort(int nCol, int nTri, int nTypeComparaison);
    void SetColumnCompareFunction(int nCol, PFNCOMPARECOLONNE pfn);
    CString GetFormatSaisie(int nCol) const;
    const ColumnInfo* GetColumnInfo(int nCol) const;
    // Hidden columns get width 0; -2 fits each shown column to its texts and to each
    // line of its heading (with two spaces); another value sets every shown column.
    void Autosize(int nLargeur = -2);
    void AutosizeColonne(int nCol);

    // ---- rows and cells
    int AddItem(LPCTSTR lpszTexte = _T(""), DWORD_PTR dwData = 0);
    int AddItem(std::initializer_list<LPCTSTR> textes, DWORD_PTR dwData = 0);
    // Deselects every row, then selects and focuses the row and scrolls to it.
    void SelectItem(int nRow);
    // Closes any editor without keeping its text and removes every row.
    void Reset();
    void DeleteSelectedItems();
    // The Delete key on the list: the selected rows go through SuppressionLigne.
    BOOL HandleDeleteKey();
    BOOL SetItemData(int nRow, DWORD_PTR dwData);
    DWORD_PTR GetItemData(int nRow) const;
    void SetRowReadOnly(int nRow, BOOL bReadOnly = TRUE);
    BOOL IsRowReadOnly(int nRow) const;
    void SetRowColors(int nRow, COLORREF clrFond, COLORREF clrTexte);
    void SetCellReadOnly(int nRow, int nCol, BOOL bReadOnly = TRUE);
    BOOL IsCellReadOnly(int nRow, int nCol) const;
    void SetCellColors(int nRow, int nCol, COLORREF clrFond, COLORREF clrTexte);
    void SetCellData(int nRow, int nCol, DWORD_PTR dwData);
    DWORD_PTR GetCellData(int nRow, int nCol) const;
    // The list's own default colours (CLR_NONE: the platform's).
    void SetDefaultColors(COLORREF clrFond, COLORREF clrTexte);

    // ---- editors
    void SetDefaultEditor(CWnd* pWnd);
    void SetDefaultEditor(BOOL bReadOnly, BOOL bEndEditorHook, BOOL bInitEditorHook, CWnd* pWnd = nullptr);
    void SetColumnEditor(int nCol, CWnd* pWnd);
    void SetColumnEditor(int nCol, BOOL bReadOnly, BOOL bEndEditorHook, BOOL bInitEditorHook, CWnd* pWnd = nullptr);
    void SetRowEditor(int nRow, CWnd* pWnd);
    void SetRowEditor(int nRow, BOOL bReadOnly, BOOL bEndEditorHook, BOOL bInitEditorHook, CWnd* pWnd = nullptr);
    void SetCellEditor(int nRow, int nCol, CWnd* pWnd);
    void SetCellEditor(int nRow, int nCol, BOOL bReadOnly, BOOL bEndEditorHook, BOOL bInitEditorHook, CWnd* pWnd = nullptr);
    // Opens the editor on a cell (scrolling to it); FALSE when refused.
    BOOL SaisieCellule(int nRow, int nCol);
    BOOL DisplayEditor(int nRow, int nCol);
    // Closes the open editor; with bCommit its text goes into the cell.
    void HideEditor(BOOL bCommit = TRUE);
    // Copies the open editor's text into its cell.
    void MetAJourCelluleAvecSaisie();
    CString GetEditingText() const { return m_strEdit; }
    int GetEditingRow() const { return m_nRow; }
    int GetEditingCol() const { return m_nCol; }
    BOOL IsEditionEnCours() const { return m_bEdition; }
    CWnd* GetEditeurCourant() const { return m_bEdition ? m_Courant.m_pWnd : nullptr; }
    // The open editor lost the focus to pNouveau (null: to another application).
    void TraiteKillFocus(QWidget* pNouveau);

    // ---- validation
    // Validates every cell of the row (final) and then the row; at the first refused
    // cell its editor opens and the answer is FALSE.
    BOOL ValidationLigneEtCellules(int nRow);

    // ---- focus cell, grid behaviour, keys
    void SetGridBehaviour(BOOL bGrid = TRUE);
    BOOL GetGridBehaviour() const { return m_bGrid; }
    int GetFocusCell() const { return m_nFocusCol; }
    void SetFocusCell(int nCol);
    // Moves the focus column one displayed column right or left, over hidden columns.
    void MoveFocusCell(BOOL bDroite);
    // Keys the parent's accelerators translate into WM_COMMAND while the list has the focus.
    void SetAccelerateurs(const ACCEL* pAccel, int nCount);
    BOOL PreTranslateMessage(MSG* pMsg) override;
    // Refreshes the list when its enabled state changed since it was last drawn.
    void AfficheBonneCouleur();

    // ---- state and sorting
    // Column order and widths, kept in "<configuration folder>/prefa/listes/<id>.ini".
    BOOL SaveState(LPCTSTR lpszIdentifiant);
    BOOL RestoreState(LPCTSTR lpszIdentifiant);
    static CString CheminEtat(LPCTSTR lpszIdentifiant);
    // Sorts by the caller's function, which receives the rows' indexes.
    BOOL SortItems(PFNLVCOMPARE pfnCompare, DWORD_PTR dwData);
    // Sorts by a column's comparison type in its current direction.
    BOOL SortColumn(int nCol);
    int GetColumnSort() const { return m_nColonneTri; }

    // The built-in comparisons of two cell texts.
    static int CompareInteger(const CString& a, const CString& b);
    static int CompareDouble(const CString& a, const CString& b);
    static int CompareText(const CString& a, const CString& b);
    static int CompareStringNoCase(const CString& a, const CString& b);
    static int CompareNumberString(const CString& a, const CString& b);
    static int CompareNumberStringNoCase(const CString& a, const CString& b);
    static int CompareDate(const CString& a, const CString& b);
    // Two day numbers of the date scale: equal within half a second.
    static int CompareDateValues(double d1, double d2);
    static int CompareByType(int nType, const CString& a, const CString& b);
    // A text read as a date and time in the user's locale, as a day number of the
    // platform's date scale (days since 1899-12-30; before it, the whole day is negative
    // and the time of day is added as a positive fraction). FALSE when unreadable.
    static BOOL LitDate(const CString& texte, double& dDate);

protected:
    // ---- overridable hooks, in their slot order
    virtual BOOL ValidationLigne(int nRow);
    virtual BOOL SuppressionLigne(int nRow);
    virtual BOOL InsertionLigne(int* pnRow);
    virtual BOOL ValidationCellule(int nRow, int nCol, const CString& strTexte, BOOL bFinal);
    // Asked when an editor that wants it opens: may replace *ppWnd (null: the hook edits
    // the value itself and strTexte goes into the cell); TRUE when it put the text into
    // the editor itself.
    virtual BOOL InitEditor(CWnd** ppWnd, int nRow, int nCol, CString& strTexte, DWORD_PTR dwItemData,
                            CListCtrlExt* pListe, BOOL bUpdate);
    // Asked when an editor that wants it closes with commit; strTexte is what goes into
    // the cell; TRUE redraws the row.
    virtual BOOL EndEditor(CWnd** ppWnd, int nRow, int nCol, CString& strTexte, DWORD_PTR dwItemData,
                           CListCtrlExt* pListe, BOOL bCommit);

    void OnCustomDraw(NMLVCUSTOMDRAW* pNMCD, LRESULT* pResult) override;
    void OnLButtonDown(UINT nFlags, CPoint point) override;
    void OnLButtonDblClk(UINT nFlags, CPoint point) override;
    void OnRButtonDown(UINT nFlags, CPoint point) override;
    void OnKeyDown(UINT nChar, UINT nRepCnt, UINT nFlags) override;
    void OnChar(UINT nChar, UINT nRepCnt, UINT nFlags) override;
    void OnColumnClick(int nCol) override;
    void OnInsertItem(int nItem) override;
    void OnDeleteItem(int nItem, DWORD_PTR dwData) override;

public:
    // The column's tip when it has one, else the cell's own text.
    CString GetToolTipTextInfo(int nRow, int nCol) override;

private:
    ColumnInfo* Colonne(int nCol);
    const ColumnInfo* Colonne(int nCol) const;
    ItemInfo* Ligne(int nRow) const;
    ItemInfo* LigneCreee(int nRow);
    const CellInfo* Cellule(int nRow, int nCol) const;
    CellInfo* CelluleCreee(int nRow, int nCol);
    // The editor record that applies to a cell, or null when the cell has none.
    const EditorInfo* ChoisitEditeur(int nRow, int nCol) const;
    bool CelluleSaisissable(int nRow, int nCol) const;
    // Enter (or Ctrl+Insert): commit, validate, and open the next editable cell.
    void AvanceSaisie(bool bInsertion);
    void SupprimeLigneCourante();
    void CliqueCellule(UINT nFlags, CPoint point);
    int LigneSelectionnee() const;
    void RemetFocusEditeur();
    // Validates the open editor's cell with the text it holds (not final); a refusal
    // puts the focus back into the editor.
    BOOL ValideCelluleOuverte();
    // Counts a validation under way for as long as it lives (a message box may be up).
    struct ValidationEnCours
    {
        explicit ValidationEnCours(int& n) : m_n(n) { ++m_n; }
        ~ValidationEnCours() { --m_n; }
        int& m_n;
    };
    void InstalleHook(CWnd* pWnd);
    void RetireHook();
    void CouleursCellule(int nRow, int nCol, COLORREF& clrFond, COLORREF& clrTexte) const;
    void DessineFocus(NMLVCUSTOMDRAW* pCD);
    static int CALLBACK_CompareProc(LPARAM lParam1, LPARAM lParam2, LPARAM lParamSort);
    int CompareLignes(LPARAM lParam1, LPARAM lParam2) const;
    void ChangeLargeurColonne(int nCol, int nLargeur);

    std::unique_ptr<prefa_ui_detail::HookEditeur> m_pHook;
    std::recursive_mutex m_csEditeur;  // the critical section around closing the editor
    CHeaderCtrlExt m_HeaderCtrl;
    COLORREF m_clrFondDefaut = CLR_NONE;
    COLORREF m_clrTexteDefaut = CLR_NONE;
    int m_nRow = -1, m_nCol = -1;
    int m_nPrevRow = -1, m_nPrevCol = -1;
    int m_nColonneTri = -1;
    CString m_strEdit;
    std::vector<ColumnInfo> m_Colonnes;
    std::unordered_map<const ItemInfo*, std::unique_ptr<ItemInfo>> m_Lignes;  // owned row records
    EditorInfo m_EditeurDefaut;
    BOOL m_bGrid = FALSE;
    int m_nFocusCol = -1;
    EditorInfo m_Courant;
    bool m_bEdition = false;
    PFNLVCOMPARE m_pfnCompareUtilisateur = nullptr;
    DWORD_PTR m_dwDataTri = 0;
    std::vector<ACCEL> m_Accelerateurs;

    bool m_bFermeture = false;   // an editor is being closed
    int m_nValidations = 0;      // validations under way (a message box may be up)
    bool m_bActifDessine = true; // enabled state of the last drawing
    std::unordered_map<DWORD_PTR, int> m_IndexTri;  // row of each item's data while sorting
    std::vector<double> m_DatesTri;                 // each row's date while sorting by date (NaN: unreadable)
};
