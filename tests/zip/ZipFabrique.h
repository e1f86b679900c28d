// Zip archives built and read byte by byte in the tests, independently of libzip:
// hostile archives with any name, flag, size or attribute, and the central
// directory of the archives the library writes, to check their layout.
#pragma once

#include "support/TestSupport.h"

#include <cstdint>
#include <filesystem>
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
    std::uint16_t heureDos = 0x6000;     // 12:00:00
    std::uint16_t dateDos = (44 << 9) | (3 << 5) | 15; // 15 March 2024
    std::optional<std::uint32_t> crc;             // the true CRC when not given
    std::optional<std::uint32_t> tailleDeclaree;  // the true size when not given
    std::optional<std::uint32_t> offsetLocal;     // central entry pointing elsewhere (no local header written)
};

// Local headers and data, central directory, end record: no extra fields.
std::vector<BYTE> FabriqueZip(const std::vector<MembreBrut>& membres);

// Raw deflate of the bytes (as a zip member holds them).
std::vector<BYTE> Deflate(const std::vector<BYTE>& donnees, int niveau = 6);
std::uint32_t Crc32(const std::vector<BYTE>& donnees);

struct EntreeCentrale
{
    std::uint16_t versionFaite, versionRequise, drapeaux, methode, heureDos, dateDos;
    std::uint32_t crc, tailleCompressee, taille, attributsExternes, offsetLocal;
    std::string nom;
    std::vector<BYTE> extra;
};

// The central directory of an archive, found through its end record; the test fails
// (an empty list) when it is not there.
std::vector<EntreeCentrale> LitCentral(const std::vector<BYTE>& zip);

// Bytes of a pseudo-random project-like file: runs of text and numbers.
std::vector<BYTE> Contenu(std::size_t n, unsigned graine);

// Every file (with its bytes) and folder (name ending in '/') below a folder, by
// relative name; empty when the folder does not exist.
std::map<std::string, std::vector<BYTE>> Arbre(const std::filesystem::path& racine);

} // namespace prefa_test
