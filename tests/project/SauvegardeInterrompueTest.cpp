// Saves that fail half-way: every record keeps its previous file whole, and no
// temporary file outlives the next save.
#include "project/CAffaire.h"
#include "project/CInfoPlan.h"
#include "project/FichiersEtudes.h"
#include "ProjetFixture.h"
#include "support/PannesFichier.h"

using namespace prefa_test;

class SauvegardeInterrompue : public ProjetFixture
{
};

TEST_F(SauvegardeInterrompue, EveryStepOfEveryRecordSaveCanFail)
{
    MessageBoxCapture boites;

    CAffaire affaire;
    affaire.Texte1 = L"ancien";
    ASSERT_EQ(affaire.GestionFichier(1, L"AFF1"), 1);
    affaire.Texte1 = L"nouveau";
    affaire.Texte12 = L"ajouté";
    // The exchange file is replaced second, and its failure does not fail the save.
    EprouveLesPannes({Affaire(L"VORENAFF"), Affaire(L"LUMACAFF")},
                     [&] { return affaire.GestionFichier(1, L"AFF1") == 1; }, {true, false});

    CInfoPlan plan;
    plan.Texte1 = L"ancien";
    ASSERT_EQ(plan.GestionFichier(1, L"AFF1", 3), 1);
    plan.Texte1 = L"nouveau";
    plan.Textes.AddTail(CString(L"texte"));
    EprouveLesPannes({Compose_Fichier_Etudes(L"AFF1", L"VORENPLA.", 3)},
                     [&] { return plan.GestionFichier(1, L"AFF1", 3) == 1; });

    Identite(L"PC-A", L"alice");
    CConfigBRAXEL config;
    config.NomUtilisateur = L"bob";
    EprouveLesPannes({m_racine / CString(L"BRAXEL.CFG")}, [&] { return config.GestionFichierCConfig(1); });

    ASSERT_EQ(config.GestionFichierLock(1, Affaire(L"LOCK_AFF")), 0);
    config.NomUtilisateur = L"carole";
    EprouveLesPannes({Affaire(L"LOCK_AFF")}, [&] { return config.GestionFichierLock(1, Affaire(L"LOCK_AFF")) == 0; });

    // A lock created exclusively appears whole or not at all.
    const CString lock = Affaire(L"LOCK_PLA.07");
    std::size_t nEtapes;
    {
        PannesFichier compte;
        ASSERT_EQ(config.CreeFichierLock(lock), 0);
        nEtapes = compte.etapes.size();
        ASSERT_EQ(compte.etapes, (std::vector<AFX_FILE_STEP>{afxFileWrite, afxFileFlush, afxFileRename}));
    }
    ASSERT_EQ(_wunlink(lock), 0);
    for (std::size_t n = 1; n <= nEtapes; ++n)
    {
        PannesFichier panne(n, EIO); // a system error code: the run-time's errno value comes back
        EXPECT_EQ(config.CreeFichierLock(lock), AfxOsErrorToErrno(EIO));
        EXPECT_FALSE(Exists(lock));
        EXPECT_TRUE(Temporaires(m_racine.Utf8() + "/AFF1").empty());
    }
    // Failed saves of the records were reported; the exchange file's were not.
    EXPECT_FALSE(boites.boxes.empty());
}
