// What a killed save must leave, for the POSIX and the Windows tests that kill a
// process saving the project record again and again.
#pragma once

#include "project/CAffaire.h"
#include "support/PannesFichier.h"

#include <gtest/gtest.h>

namespace prefa_test
{

// After the kill: the record of "AFF1" loads whole, and the next save takes the
// killed save's litter with it. Whether there was litter (the kill landed mid-save).
inline bool ApresSauvegardeTuee(const std::string& dossier, int tour)
{
    CAffaire lu;
    EXPECT_EQ(lu.GestionFichier(0, L"AFF1"), 1) << "round " << tour;
    EXPECT_EQ(lu.Texte1.Left(8), L"version ");
    const bool bDechets = !Temporaires(dossier).empty();
    EXPECT_EQ(lu.GestionFichier(1, L"AFF1"), 1);
    EXPECT_TRUE(Temporaires(dossier).empty()) << "round " << tour;
    return bDechets;
}

} // namespace prefa_test
