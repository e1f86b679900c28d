// The cross-platform checks' helper program (prefa_echange): one build writes, the
// build of the other platform reads and compares.
#pragma once

#include <filesystem>
#include <string>

// Reports one failed comparison on standard error; the program then fails.
void Echec(const std::string& quoi);

// Saves the fixed set of files under the data root racine.
void EcritFichiers(const std::filesystem::path& racine);
// Loads the set found under source, checks its values, saves it again under travail
// and compares the bytes.
void VerifieFichiers(const std::filesystem::path& source, const std::filesystem::path& travail);
// Compares two JSON documents: the same structure, keys and texts, and numbers equal
// to the relative tolerance.
void CompareJson(const std::filesystem::path& a, const std::filesystem::path& b, double tolerance);
