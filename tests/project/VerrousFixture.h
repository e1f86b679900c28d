// The locks' fixture: two workstations, their users, and the messages locks report.
#pragma once

#include "project/FichiersEtudes.h"
#include "project/Verrous.h"
#include "ProjetFixture.h"

namespace prefa_test
{
const wchar_t* const PC_A = L"PC-A";
const wchar_t* const ALICE = L"alice";
const wchar_t* const PC_B = L"PC-B";
const wchar_t* const BOB = L"bob";

inline std::vector<BYTE> RecordLock(const std::string& user, const std::string& computer)
{
    Bytes b;
    b.ansi(user, 256).ansi(computer, 256);
    return b.b;
}

class Verrous : public ProjetFixture
{
protected:
    void SetUp() override
    {
        ProjetFixture::SetUp();
        AfxRegisterString(45773, L"Verrouillé par %s sur %s");
        AfxRegisterString(45830, L"Plan %d de %s : verrou de %s sur %s");
        AfxRegisterString(45831, L"Plan %d de %s pris par %s sur %s");
        AfxRegisterString(45832, L"Affaire %s prise par %s sur %s");
        AfxRegisterString(45833, L"Affaire %s : verrou de %s sur %s");
        Identite(PC_A, ALICE);
    }
    CString LockAff() const { return Affaire(L"LOCK_AFF"); }
    CString LockPla(int n) const { return Compose_Fichier_Etudes(L"AFF1", L"LOCK_PLA.", n); }
    // The holder written in a lock file, as "user@computer".
    static CString Detenteur(const CString& chemin)
    {
        CConfigBRAXEL c;
        if (c.GestionFichierLock(2, chemin) != 0)
            return L"?";
        return c.NomUtilisateur + L"@" + c.NomOrdinateur;
    }
};

} // namespace prefa_test
