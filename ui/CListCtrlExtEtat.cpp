// Column widths of the grid list, and the column order and widths it keeps for the
// user between sessions.
#include "CListCtrlExt.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>
#include <QStringList>

namespace
{
// A state file is a few short lines; anything larger is not one.
constexpr qint64 kTailleMaxEtat = 64 * 1024;
constexpr int kLargeurMax = 100000;

QString Q(const CString& s)
{
    return QString::fromWCharArray(s.GetString(), s.GetLength());
}

bool LitEntiers(const QString& texte, int nAttendus, int nMax, std::vector<int>& valeurs)
{
    QStringList parties = texte.split(QLatin1Char(','));
    if (parties.size() != nAttendus)
        return false;
    valeurs.clear();
    for (const QString& p : parties)
    {
        bool bOk = false;
        int v = p.trimmed().toInt(&bOk);
        if (!bOk || v < 0 || v > nMax)
            return false;
        valeurs.push_back(v);
    }
    return true;
}
} // namespace

void CListCtrlExt::Autosize(int nLargeur)
{
    for (int c = 0; c < GetColumnCount(); ++c)
    {
        if (IsColumnHidden(c))
            SetColumnWidth(c, 0);
        else if (nLargeur == -2)
            AutosizeColonne(c);
        else
            SetColumnWidth(c, nLargeur);
    }
}

void CListCtrlExt::AutosizeColonne(int nCol)
{
    if (!Colonne(nCol) || IsColumnHidden(nCol))
        return;
    SetColumnWidth(nCol, LVSCW_AUTOSIZE);
    LVCOLUMN col;
    col.mask = LVCF_TEXT;
    GetColumn(nCol, &col);
    int nLarge = GetColumnWidth(nCol);
    // Each line of the heading, with two spaces of air.
    for (const QString& ligne : Q(col.strText).split(QLatin1Char('\n')))
        nLarge = std::max(nLarge, GetStringWidth(CString((ligne + QLatin1String("  ")).toStdWString())));
    if (nLarge > GetColumnWidth(nCol))
        SetColumnWidth(nCol, nLarge);
}

CString CListCtrlExt::CheminEtat(LPCTSTR lpszIdentifiant)
{
    // The identifier names a file: nothing in it may lead elsewhere.
    QString nom = QString::fromWCharArray(lpszIdentifiant ? lpszIdentifiant : L"");
    for (QChar& ch : nom)
        if (!(ch.isLetterOrNumber() || ch == QLatin1Char('_') || ch == QLatin1Char('-') || ch == QLatin1Char('.')))
            ch = QLatin1Char('_');
    if (nom.isEmpty() || nom.startsWith(QLatin1Char('.')))
        nom.prepend(QLatin1Char('_'));
    QString dossier = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return CString(QDir(dossier).filePath(QStringLiteral("prefa/listes/") + nom + QStringLiteral(".ini")).toStdWString());
}

BOOL CListCtrlExt::SaveState(LPCTSTR lpszIdentifiant)
{
    int n = GetColumnCount();
    if (n == 0)
        return FALSE;
    std::vector<int> ordre((std::size_t)n);
    GetColumnOrderArray(ordre.data(), n);
    QStringList textesOrdre, textesLargeurs;
    for (int c = 0; c < n; ++c)
    {
        textesOrdre << QString::number(ordre[(std::size_t)c]);
        const ColumnInfo* info = Colonne(c);
        // A hidden column keeps the width it will have when shown again.
        int l = info->m_bMasquee ? std::max(0, info->m_nLargeurAvantMasque) : GetColumnWidth(c);
        textesLargeurs << QString::number(l);
    }
    QString chemin = Q(CheminEtat(lpszIdentifiant));
    QDir().mkpath(QFileInfo(chemin).absolutePath());
    // Written aside and then put in place: a failed save leaves the previous file.
    QSaveFile fichier(chemin);
    if (!fichier.open(QIODevice::WriteOnly | QIODevice::Text))
        return FALSE;
    QString texte = QStringLiteral("colonnes=%1\nordre=%2\nlargeurs=%3\n")
                        .arg(n)
                        .arg(textesOrdre.join(QLatin1Char(',')), textesLargeurs.join(QLatin1Char(',')));
    fichier.write(texte.toUtf8());
    return fichier.commit() ? TRUE : FALSE;
}

BOOL CListCtrlExt::RestoreState(LPCTSTR lpszIdentifiant)
{
    int n = GetColumnCount();
    QFile fichier(Q(CheminEtat(lpszIdentifiant)));
    if (n == 0 || !fichier.open(QIODevice::ReadOnly) || fichier.size() > kTailleMaxEtat)
        return FALSE;
    QString nombre, texteOrdre, texteLargeurs;
    for (const QString& ligne : QString::fromUtf8(fichier.read(kTailleMaxEtat)).split(QLatin1Char('\n')))
    {
        int egal = ligne.indexOf(QLatin1Char('='));
        QString cle = ligne.left(egal).trimmed(), valeur = ligne.mid(egal + 1).trimmed();
        if (cle == QLatin1String("colonnes"))
            nombre = valeur;
        else if (cle == QLatin1String("ordre"))
            texteOrdre = valeur;
        else if (cle == QLatin1String("largeurs"))
            texteLargeurs = valeur;
    }
    // A file of another list, or a damaged one, changes nothing.
    std::vector<int> ordre, largeurs, vu((std::size_t)n, 0);
    if (nombre != QString::number(n) || !LitEntiers(texteOrdre, n, n - 1, ordre)
        || !LitEntiers(texteLargeurs, n, kLargeurMax, largeurs))
        return FALSE;
    for (int c : ordre)
        if (vu[(std::size_t)c]++)
            return FALSE;
    HideEditor(TRUE);
    SetColumnOrderArray(n, ordre.data());
    for (int c = 0; c < n; ++c)
    {
        ColumnInfo* info = Colonne(c);
        if (info->m_bMasquee)
            info->m_nLargeurAvantMasque = largeurs[(std::size_t)c];
        else
            SetColumnWidth(c, largeurs[(std::size_t)c]);
    }
    return TRUE;
}
