#include "ZipFabrique.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <fstream>
#include <random>

namespace fs = std::filesystem;

namespace prefa_test
{

std::vector<BYTE> Deflate(const std::vector<BYTE>& donnees)
{
    z_stream z{};
    deflateInit2(&z, 6, Z_DEFLATED, -15, 8, Z_DEFAULT_STRATEGY);
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
    const std::uint16_t heure = 0x6000, date = (44 << 9) | (3 << 5) | 15; // 15 March 2024, 12:00
    for (const MembreBrut& m : membres)
    {
        std::vector<BYTE> stocke = m.methode == 8 ? Deflate(m.donnees) : m.donnees;
        std::uint32_t crc = m.crc.value_or(Crc32(m.donnees));
        std::uint32_t taille = m.tailleDeclaree.value_or((std::uint32_t)m.donnees.size());
        std::uint32_t offset = m.offsetLocal.value_or((std::uint32_t)zip.size());
        if (!m.offsetLocal)
        {
            zip.u32(0x04034b50).u16(20).u16(m.drapeaux).u16(m.methode).u16(heure).u16(date);
            zip.u32(crc).u32((std::uint32_t)stocke.size()).u32(taille).u16((std::uint16_t)m.nom.size()).u16(0);
            zip.raw(m.nom.data(), m.nom.size()).raw(stocke.data(), stocke.size());
        }
        central.u32(0x02014b50).u16(m.versionFaite).u16(20).u16(m.drapeaux).u16(m.methode).u16(heure).u16(date);
        central.u32(crc).u32((std::uint32_t)stocke.size()).u32(taille).u16((std::uint16_t)m.nom.size());
        central.u16(0).u16(0).u16(0).u16(0).u32(m.attributsExternes).u32(offset).raw(m.nom.data(), m.nom.size());
    }
    std::uint32_t debutCentral = (std::uint32_t)zip.size();
    zip.raw(central.b.data(), central.size());
    zip.u32(0x06054b50).u16(0).u16(0).u16((std::uint16_t)membres.size()).u16((std::uint16_t)membres.size());
    zip.u32((std::uint32_t)central.size()).u32(debutCentral).u16(0);
    return zip.b;
}

std::vector<EntreeCentrale> LitCentral(const std::vector<BYTE>& zip)
{
    auto u16 = [&](std::size_t p) { return (std::uint16_t)(zip.at(p) | (zip.at(p + 1) << 8)); };
    auto u32 = [&](std::size_t p) { return (std::uint32_t)u16(p) | ((std::uint32_t)u16(p + 2) << 16); };
    std::vector<EntreeCentrale> entrees;
    std::size_t fin = zip.size() - 22; // our archives carry no comment
    EXPECT_EQ(0x06054b50u, u32(fin)) << "no end of central directory";
    for (std::size_t k = 0, n = u16(fin + 10), p = u32(fin + 16); k < n; ++k)
    {
        EXPECT_EQ(0x02014b50u, u32(p));
        const std::size_t lnom = u16(p + 28);
        entrees.push_back({u16(p + 8), u16(p + 10), u16(p + 12), u16(p + 14), u32(p + 16), u32(p + 20), u32(p + 24),
                           u32(p + 42), std::string((const char*)zip.data() + p + 46, lnom)});
        p += 46 + lnom + u16(p + 30) + u16(p + 32);
    }
    return entrees;
}

std::vector<BYTE> Contenu(std::size_t n, unsigned graine)
{
    std::mt19937 g(graine);
    std::vector<BYTE> b;
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

std::map<std::string, std::vector<BYTE>> Arbre(const fs::path& racine)
{
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

void Ecrit(const fs::path& chemin, const std::vector<BYTE>& octets)
{
    std::ofstream(chemin, std::ios::binary).write((const char*)octets.data(), (std::streamsize)octets.size());
}

int Autres(const CString& dossier, std::initializer_list<const char*> attendus)
{
    int n = 0;
    for (const auto& e : fs::directory_iterator(fs::u8path(AfxWideToUtf8(dossier.Std()))))
        n += std::find(attendus.begin(), attendus.end(), e.path().filename().u8string()) == attendus.end();
    return n;
}

} // namespace prefa_test
