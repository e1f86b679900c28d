// The Qt side of CListCtrl: the model that holds the rows, the view that paints them
// through the custom-draw stages and hands mouse and keys to the control, and the
// header that hands its own mouse actions to CHeaderCtrl. Internal to the window layer.
#pragma once

#include "CListCtrl.h"

#include <QAbstractTableModel>
#include <QHeaderView>
#include <QTreeView>

#include <vector>

namespace prefa_ui_detail
{

struct Ligne
{
    std::vector<CString> textes;
    DWORD_PTR data = 0;
};

struct Colonne
{
    CString titre;
    int fmt = LVCFMT_LEFT;
};

class ModeleListe : public QAbstractTableModel
{
public:
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    const CString& Texte(int nLigne, int nColonne) const;
    void ChangeTexte(int nLigne, int nColonne, const CString& texte);
    void InsereColonne(int nColonne, const Colonne& colonne);
    void SupprimeColonne(int nColonne);
    void ChangeColonne(int nColonne, const Colonne& colonne);
    void InsereLigne(int nLigne, Ligne ligne);
    void SupprimeLigne(int nLigne);
    void Vide();
    // Puts the rows in the order given (new row k is old row ordre[k]), keeping the
    // selection and the focus on the same rows.
    void Reordonne(const std::vector<int>& ordre);

    std::vector<Ligne> lignes;
    std::vector<Colonne> colonnes;
    int nHauteurLigne = 20;
};

class VueListe : public QTreeView
{
public:
    explicit VueListe(CListCtrl* pListe);
    // Runs the view's own handling of the event the control is dispatching.
    void Defaut();
    CListCtrl* Liste() const { return m_pListe; }

protected:
    void paintEvent(QPaintEvent* e) override;
    void mousePressEvent(QMouseEvent* e) override;
    void mouseDoubleClickEvent(QMouseEvent* e) override;
    void keyPressEvent(QKeyEvent* e) override;
    bool viewportEvent(QEvent* e) override;

private:
    void PeintLigne(CDC& dc, int nLigne, const QRect& rLigne, bool bNotifierItems, QPainter& p);
    void Dispatche(QEvent* e, void (*appel)(CListCtrl*, QEvent*));

    CListCtrl* m_pListe;
    QEvent* m_pEvenement = nullptr;
    bool m_bDefautFait = false;
};

class EnTeteListe : public QHeaderView
{
public:
    explicit EnTeteListe(QWidget* pParent);

protected:
    void mousePressEvent(QMouseEvent* e) override;
    bool viewportEvent(QEvent* e) override;

private:
    CHeaderCtrl* Controle() const;
};

// CString <-> QString.
inline QString QStr(const CString& s)
{
    return QString::fromWCharArray(s.GetString(), s.GetLength());
}
inline CString CStr(const QString& s)
{
    return CString(s.toStdWString());
}

} // namespace prefa_ui_detail
