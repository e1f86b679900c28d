#include "EtatQt.h"

#include <QApplication>
#include <QLoggingCategory>

#include <cwchar>

namespace prefa_qthost_detail
{

namespace
{
Q_LOGGING_CATEGORY(journal, "prefa.qthost")

// The last failure's message of each thread. A plain buffer: a thread-local object
// with a destructor would keep the library from being unloaded while threads live.
constexpr std::size_t kLongueurMessage = 256;
thread_local wchar_t t_szMessage[kLongueurMessage];
} // namespace

EtatQt& Etat()
{
    static EtatQt etat;
    return etat;
}

int Echec(int nCode, const QString& message)
{
    const std::wstring texte = message.toStdWString();
    std::wcsncpy(t_szMessage, texte.c_str(), kLongueurMessage - 1);
    t_szMessage[kLongueurMessage - 1] = 0;
    qCWarning(journal).noquote() << message;
    return nCode;
}

int Reussite()
{
    t_szMessage[0] = 0;
    return QTHOTE_OK;
}

int VerifieAppel(bool bDemarrageRequis)
{
    EtatQt& e = Etat();
    std::lock_guard<std::mutex> garde(e.verrou);
    if (e.bFilFixe && std::this_thread::get_id() != e.fil)
        return Echec(QTHOTE_AUTRE_FIL, QStringLiteral("called from a thread other than the one Qt started on"));
    if (bDemarrageRequis && e.nDemarrages == 0)
        return Echec(QTHOTE_NON_DEMARRE, QStringLiteral("Qt is not started: call CQtHote::Demarre first"));
    return QTHOTE_OK;
}

Plateforme* PlateformeOuverte(int* pnCode)
{
    EtatQt& e = Etat();
    if (!e.pPlateforme)
    {
        QString erreur;
        e.pPlateforme = Plateforme::Ouvre(erreur);
        if (!e.pPlateforme)
        {
            *pnCode = Echec(QTHOTE_NON_GERE, erreur);
            return nullptr;
        }
    }
    *pnCode = QTHOTE_OK;
    return e.pPlateforme.get();
}

Plateforme* VerifieAppelSurFenetre(WId fenetre, const void* pObjet, const char* pszQuoi, int* pnCode)
{
    *pnCode = VerifieAppel();
    if (*pnCode != QTHOTE_OK)
        return nullptr;
    if (!pObjet)
    {
        *pnCode = Echec(QTHOTE_ARGUMENT, QStringLiteral("no %1 to show").arg(QLatin1String(pszQuoi)));
        return nullptr;
    }
    Plateforme* pPlateforme = PlateformeOuverte(pnCode);
    if (pPlateforme && !pPlateforme->FenetreValide(fenetre))
    {
        *pnCode = Echec(QTHOTE_FENETRE_INVALIDE, QStringLiteral("0x%1 is no window of the display").arg(fenetre, 0, 16));
        return nullptr;
    }
    return pPlateforme;
}

} // namespace prefa_qthost_detail

CString CQtHote::MessageErreur()
{
    return CString(prefa_qthost_detail::t_szMessage);
}
