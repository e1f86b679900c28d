// The hook the grid list installs on its open editor: the editor's loss of focus, and
// the keys of its inner widgets (a combo box's line edit) that no CWnd would hand on
// to the list. Internal to the grid list.
#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QWidget>

class CListCtrlExt;
class CWnd;

namespace prefa_ui_detail
{

class HookEditeur : public QObject
{
public:
    HookEditeur(CListCtrlExt* pListe, CWnd* pEditeur) : m_pListe(pListe), m_pEditeur(pEditeur) {}
    void Installe();
    void Retire();
    bool eventFilter(QObject* pObjet, QEvent* pEvent) override;

private:
    CListCtrlExt* m_pListe;
    CWnd* m_pEditeur;
    QList<QPointer<QWidget>> m_Widgets;
};

} // namespace prefa_ui_detail
