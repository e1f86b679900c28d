// Both ways with Info-ZIP (Debian's zip and unzip): what we write is tested and
// extracted by unzip, with and without a password; what zip writes, we unpack.
// Names with accents survive both ways.
#include "zip/PaquetAffaire.h"
#include "zip/ZipFabrique.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

using namespace prefa_test;
namespace fs = std::filesystem;

namespace
{
// Runs a shell command in a UTF-8 locale (Info-ZIP converts names to the locale's
// characters); its exit status.
int Shell(const std::string& commande)
{
    int r = std::system(("LC_ALL=C.UTF-8 " + commande + " >/dev/null 2>&1").c_str());
    return WIFEXITED(r) ? WEXITSTATUS(r) : -1;
}

bool InfoZipPresent()
{
    return Shell("zip -v") == 0 && Shell("unzip -v") == 0;
}

class InfoZip : public ::testing::Test
{
protected:
    void SetUp() override
    {
        if (!InfoZipPresent())
            GTEST_SKIP() << "zip and unzip are not installed (scripts/setup installs them)";
        m_aff = fs::u8path(m_dir.Utf8()) / "AFF1";
        fs::create_directories(m_aff / u8"\u00C9tudes/E1");
        fs::create_directories(m_aff / "E2");
        Ecrit(m_aff / "VORENAFF", Contenu(700, 1));
        Ecrit(m_aff / u8"\u00C9tudes/E1/TEMPER.01", Contenu(1400000, 2));
        Ecrit(m_aff / u8"Plan \u00E9t\u00E9 n\u00B03.dxf", Contenu(20000, 3));
        Ecrit(m_aff / "vide.dat", {});
    }
    static void Ecrit(const fs::path& p, const std::vector<BYTE>& b)
    {
        std::ofstream(p, std::ios::binary).write((const char*)b.data(), (std::streamsize)b.size());
    }
    CString Texte(const fs::path& p) const { return CString(AfxUtf8ToWide(p.u8string())); }
    std::string Dir() const { return m_dir.Utf8(); }

    ScratchDir m_dir;
    fs::path m_aff;
};
} // namespace

TEST_F(InfoZip, UnzipLitCeQueNousEcrivons)
{
    for (const char* motDePasse : {"", "s\xC3\xA9same"})
    {
        SCOPED_TRACE(motDePasse);
        const std::string archive = Dir() + "/nous.zip", sortie = Dir() + "/unzip";
        CString mdp(AfxUtf8ToWide(motDePasse));
        ASSERT_EQ(1, Compresse_Affaire(Texte(m_aff), Texte(archive), *motDePasse ? mdp.GetString() : nullptr));
        const std::string option = *motDePasse ? std::string(" -P '") + motDePasse + "'" : "";
        EXPECT_EQ(0, Shell("unzip -t" + option + " " + archive));
        ASSERT_EQ(0, Shell("unzip -q" + option + " " + archive + " -d " + sortie));
        EXPECT_EQ(Arbre(m_aff), Arbre(sortie));
        if (*motDePasse)
        {
            EXPECT_NE(0, Shell("unzip -t -P faux " + archive)); // it does check the password
        }
        fs::remove_all(sortie);
    }
}

TEST_F(InfoZip, NousLisonsCeQueZipEcrit)
{
    for (const char* option : {"", " -e -P 's\xC3\xA9same'"})
    {
        SCOPED_TRACE(option);
        const std::string archive = Dir() + "/infozip.zip";
        fs::remove(archive);
        ASSERT_EQ(0, Shell("cd " + m_aff.u8string() + " && zip -q -r -6" + option + " " + archive + " ."));
        const CString cible = Texte(fs::u8path(Dir()) / "COPIE");
        CString mdp(AfxUtf8ToWide("s\xC3\xA9same"));
        if (*option)
        {
            bool refuse = false;
            try
            {
                Decompresse_Affaire(Texte(archive), cible, L"faux");
            }
            catch (CExceptionZip* e)
            {
                refuse = e->m_nRaison == CExceptionZip::motDePasseIncorrect ||
                         e->m_nRaison == CExceptionZip::crcIncorrect ||
                         e->m_nRaison == CExceptionZip::donneesEndommagees;
                e->Delete();
            }
            EXPECT_TRUE(refuse);
            EXPECT_FALSE(fs::exists(fs::u8path(Dir()) / "COPIE"));
        }
        ASSERT_EQ(1, Decompresse_Affaire(Texte(archive), cible, mdp));
        EXPECT_EQ(Arbre(m_aff), Arbre(fs::u8path(Dir()) / "COPIE"));
        fs::remove_all(fs::u8path(Dir()) / "COPIE");
    }
}
