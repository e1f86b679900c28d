// Zip archives built and read byte by byte in the tests, independently of libzip:
// hostile archives with any name, flag, size or attribute, and the central
// directory of the archives the library writes, to check their layout.
#pragma once

#include "support/TestSupport.h"
#include "zip/CExceptionZip.h"

#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace prefa_test
{

struct MembreBrut
{
    MembreBrut(std::string n, std::vector<BYTE> d) : nom(std::move(n)), donnees(std::move(d)) {}
    std::string nom;              // the name's bytes as stored
    std::vector<BYTE> donnees;    // the plain contents
    std::uint16_t methode = 8;    // 0 stored, 8 deflated
    std::uint16_t drapeaux = 0;   // general purpose flags (bit 11: UTF-8 name)
    std::uint16_t versionFaite = 0x031E; // made by Unix (3), zip 3.0
    std::uint32_t attributsExternes = 0100644u << 16;
    std::optional<std::uint32_t> crc;             // the true CRC when not given
    std::optional<std::uint32_t> tailleDeclaree;  // the true size when not given
    std::optional<std::uint32_t> offsetLocal;     // central entry pointing elsewhere (no local header written)
};

// Local headers and data, central directory, end record: no extra fields.
std::vector<BYTE> FabriqueZip(const std::vector<MembreBrut>& membres);

// Raw deflate of the bytes (as a zip member holds them).
std::vector<BYTE> Deflate(const std::vector<BYTE>& donnees);
std::uint32_t Crc32(const std::vector<BYTE>& donnees);

struct EntreeCentrale
{
    std::uint16_t drapeaux, methode, heureDos, dateDos;
    std::uint32_t crc, tailleCompressee, taille, offsetLocal;
    std::string nom;
};

// The central directory of an archive, found through its end record.
std::vector<EntreeCentrale> LitCentral(const std::vector<BYTE>& zip);

// Bytes of a pseudo-random project-like file: runs of text and numbers.
std::vector<BYTE> Contenu(std::size_t n, unsigned graine);

// Every file (with its bytes) and folder (name ending in '/') below a folder, by
// relative name; empty when the folder does not exist.
std::map<std::string, std::vector<BYTE>> Arbre(const std::filesystem::path& racine);

// Writes a file at a path made from UTF-8 (wide paths with accents do not convert in
// the C locale the tests run in).
void Ecrit(const std::filesystem::path& chemin, const std::vector<BYTE>& octets);

// How many entries of a folder are not among the names given (files left behind).
int Autres(const CString& dossier, std::initializer_list<const char*> attendus);

// The reason of the CExceptionZip that f throws (its member in *pMembre), -1 when none.
template <typename F>
int Raison(F&& f, CString* pMembre = nullptr)
{
    try
    {
        f();
    }
    catch (CExceptionZip* e)
    {
        int r = e->m_nRaison;
        if (pMembre)
            *pMembre = e->m_strMembre;
        e->Delete();
        return r;
    }
    return -1;
}

} // namespace prefa_test
