#include "DialogueHote.h"

#include "qthost/CQtHote.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

int DemandeNomBarre(unsigned long fenetreHote, int& nResultat, std::wstring& nom)
{
    QDialog dialogue;
    dialogue.setWindowTitle(QStringLiteral("Nouvelle barre"));
    auto* pDisposition = new QVBoxLayout(&dialogue);
    pDisposition->addWidget(new QLabel(QStringLiteral("Nom de la barre :")));
    auto* pNom = new QLineEdit;
    pDisposition->addWidget(pNom);
    auto* pBoutons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    QObject::connect(pBoutons, &QDialogButtonBox::accepted, &dialogue, &QDialog::accept);
    QObject::connect(pBoutons, &QDialogButtonBox::rejected, &dialogue, &QDialog::reject);
    pDisposition->addWidget(pBoutons);
    const int nCode = CQtHote::ExecModal(&dialogue, fenetreHote, &nResultat);
    nom = pNom->text().toStdWString();
    return nCode;
}
