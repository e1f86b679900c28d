// A data root of its own for each test of the project records: a scratch folder
// that is also the current directory (where "BRAXEL.CFG" is looked for), with the
// multi-user switch on and one project folder "AFF1".
#pragma once

#include "project/CConfigBRAXEL.h"
#include "project/Environnement.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <unistd.h>

class ProjetFixture : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_ancien = std::filesystem::current_path();
        std::filesystem::current_path(m_racine.Utf8());
        DefinitEnvironnement(m_racine.Path(), 1);
        std::filesystem::create_directories(std::filesystem::path(m_racine.Utf8()) / "AFF1");
        AfxRegisterString(45076, L"Erreur de fichier");
    }
    void TearDown() override
    {
        std::filesystem::current_path(m_ancien);
        AnnuleDefinitionEnvironnement();
    }

    // Makes this process the workstation (computer, user): writes "BRAXEL.CFG".
    static void Identite(const wchar_t* ordinateur, const wchar_t* utilisateur)
    {
        CConfigBRAXEL config;
        config.NomOrdinateur = ordinateur;
        config.NomUtilisateur = utilisateur;
        ASSERT_TRUE(config.GestionFichierCConfig(1));
    }

    // Path of a file of the project folder "AFF1".
    CString Affaire(const CString& nom) const { return m_racine / (CString(L"AFF1/") + nom); }

    prefa_test::ScratchDir m_racine;
    std::filesystem::path m_ancien;
};
