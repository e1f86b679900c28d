#include "ZipFabrique.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <fstream>
#include <random>

namespace prefa_test
{

std::vector<BYTE> Deflate(const std::vector<BYTE>& donnees, int niveau)
{
    z_stream z{};
    deflateInit2(&z, niveau, Z_DEFLATED, -15, 8, Z_DEFAULT_STRATEGY);
    std::vector<BYTE> sortie(deflateBound(&z, donnees.size()) + 16);
    z.next_in = const_cast<BYTE*>(donnees.data());
    z.avail_in = (uInt)donnees.size();
    z.next_out = sortie.data();
    z.avail_out = (uInt)sortie.size();
    deflate(&z, Z_FINISH);
    sortie.resize(z.total_out);
    deflateEnd(&z);
    return sortie;
}

std::uint32_t Crc32(const std::vector<BYTE>& donnees)
{
    return (std::uint32_t)crc32(0L, donnees.data(), (uInt)donnees.size());
}

std::vector<BYTE> FabriqueZip(const std::vector<MembreBrut>& membres)
{
    Bytes zip, central;
    for (const MembreBrut& m : membres)
    {
        std::vector<BYTE> stocke = m.methode == 8 ? Deflate(m.donnees) : m.donnees;
        std::uint32_t crc = m.crc ? *m.crc : Crc32(m.donnees);
        std::uint32_t taille = m.tailleDeclaree ? *m.tailleDeclaree : (std::uint32_t)m.donnees.size();
        std::uint32_t offset = (std::uint32_t)zip.size();
        if (m.offsetLocal)
            offset = *m.offsetLocal;
        else
        {
            zip.u32(0x04034b50).u16(20).u16(m.drapeaux).u16(m.methode).u16(m.heureDos).u16(m.dateDos);
            zip.u32(crc).u32((std::uint32_t)stocke.size()).u32(taille).u16((std::uint16_t)m.nom.size()).u16(0);
            zip.raw(m.nom.data(), m.nom.size()).raw(stocke.data(), stocke.size());
        }
        central.u32(0x02014b50).u16(m.versionFaite).u16(20).u16(m.drapeaux).u16(m.methode);
        central.u16(m.heureDos).u16(m.dateDos).u32(crc).u32((std::uint32_t)stocke.size()).u32(taille);
        central.u16((std::uint16_t)m.nom.size()).u16(0).u16(0).u16(0).u16(0).u32(m.attributsExternes).u32(offset);
        central.raw(m.nom.data(), m.nom.size());
    }
    std::uint32_t debutCentral = (std::uint32_t)zip.size();
    zip.raw(central.b.data(), central.size());
    zip.u32(0x06054b50).u16(0).u16(0).u16((std::uint16_t)membres.size()).u16((std::uint16_t)membres.size());
    zip.u32((std::uint32_t)central.size()).u32(debutCentral).u16(0);
    return zip.b;
}

namespace
{
std::uint16_t U16(const std::vector<BYTE>& b, std::size_t p)
{
    return (std::uint16_t)(b[p] | (b[p + 1] << 8));
}
std::uint32_t U32(const std::vector<BYTE>& b, std::size_t p)
{
    return (std::uint32_t)U16(b, p) | ((std::uint32_t)U16(b, p + 2) << 16);
}
} // namespace

std::vector<EntreeCentrale> LitCentral(const std::vector<BYTE>& zip)
{
    std::vector<EntreeCentrale> entrees;
    std::size_t fin = std::string::npos;
    for (std::size_t p = zip.size() >= 22 ? zip.size() - 22 + 1 : 0; p-- > 0;)
        if (U32(zip, p) == 0x06054b50)
        {
            fin = p;
            break;
        }
    EXPECT_NE(std::string::npos, fin) << "no end of central directory";
    if (fin == std::string::npos)
        return entrees;
    std::size_t n = U16(zip, fin + 10), p = U32(zip, fin + 16);
    for (std::size_t k = 0; k < n; ++k)
    {
        EXPECT_EQ(0x02014b50u, U32(zip, p));
        EntreeCentrale e;
        e.versionFaite = U16(zip, p + 4);
        e.versionRequise = U16(zip, p + 6);
        e.drapeaux = U16(zip, p + 8);
        e.methode = U16(zip, p + 10);
        e.heureDos = U16(zip, p + 12);
        e.dateDos = U16(zip, p + 14);
        e.crc = U32(zip, p + 16);
        e.tailleCompressee = U32(zip, p + 20);
        e.taille = U32(zip, p + 24);
        std::size_t lnom = U16(zip, p + 28), lextra = U16(zip, p + 30), lcomm = U16(zip, p + 32);
        e.attributsExternes = U32(zip, p + 38);
        e.offsetLocal = U32(zip, p + 42);
        e.nom.assign((const char*)zip.data() + p + 46, lnom);
        e.extra.assign(zip.begin() + (std::ptrdiff_t)(p + 46 + lnom), zip.begin() + (std::ptrdiff_t)(p + 46 + lnom + lextra));
        entrees.push_back(e);
        p += 46 + lnom + lextra + lcomm;
    }
    return entrees;
}

std::vector<BYTE> Contenu(std::size_t n, unsigned graine)
{
    std::mt19937 g(graine);
    std::vector<BYTE> b;
    b.reserve(n + 64);
    static const char* mots[] = {"POUTRE", "DALLE", "PREDALLE", "ARMATURE", "BETON", "C30/37", "HA12", "ETRIER"};
    while (b.size() < n)
    {
        char ligne[64];
        int k = std::snprintf(ligne, sizeof ligne, "%s %u %.3f\n", mots[g() % 8], (unsigned)(g() % 1000),
                              std::uniform_real_distribution<double>(0, 12)(g));
        b.insert(b.end(), ligne, ligne + k);
    }
    b.resize(n);
    return b;
}

std::map<std::string, std::vector<BYTE>> Arbre(const std::filesystem::path& racine)
{
    namespace fs = std::filesystem;
    std::map<std::string, std::vector<BYTE>> arbre;
    if (!fs::exists(racine))
        return arbre;
    for (const auto& e : fs::recursive_directory_iterator(racine))
    {
        std::string nom = e.path().lexically_relative(racine).generic_u8string();
        if (e.is_directory())
            arbre[nom + "/"];
        else
        {
            std::ifstream in(e.path(), std::ios::binary);
            arbre[nom].assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
        }
    }
    return arbre;
}

} // namespace prefa_test
