// Both ways with Info-ZIP (Debian's zip and unzip), encrypted: what we write is tested
// and extracted by unzip; what zip writes, we unpack. Names with accents survive both ways.
#include "zip/PaquetAffaire.h"
#include "zip/ZipFabrique.h"

#include <gtest/gtest.h>

#include <cstdlib>

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

CString Texte(const fs::path& p)
{
    return CString(AfxUtf8ToWide(p.u8string()));
}
} // namespace

TEST(InfoZip, UnzipReadsWhatWeWriteAndWeUnpackWhatZipWrites)
{
    if (Shell("zip -v") != 0 || Shell("unzip -v") != 0)
        GTEST_SKIP() << "zip and unzip are not installed (scripts/setup installs them)";
    ScratchDir dir;
    const fs::path racine = fs::u8path(dir.Utf8()), aff = racine / "AFF1";
    fs::create_directories(aff / u8"\u00C9tudes/E1");
    fs::create_directories(aff / "E2");
    Ecrit(aff / "VORENAFF", Contenu(700, 1));
    Ecrit(aff / u8"\u00C9tudes/E1/TEMPER.01", Contenu(1400000, 2));
    Ecrit(aff / u8"Plan \u00E9t\u00E9 n\u00B03.dxf", Contenu(20000, 3));
    Ecrit(aff / "vide.dat", {});
    const std::string motDePasse = "s\xC3\xA9same", nous = dir.Utf8() + "/nous.zip", eux = dir.Utf8() + "/eux.zip";
    const CString mdp(AfxUtf8ToWide(motDePasse));

    ASSERT_EQ(1, Compresse_Affaire(Texte(aff), Texte(nous), mdp));
    EXPECT_EQ(0, Shell("unzip -t -P '" + motDePasse + "' " + nous));
    ASSERT_EQ(0, Shell("unzip -q -P '" + motDePasse + "' " + nous + " -d " + dir.Utf8() + "/unzip"));
    EXPECT_EQ(Arbre(aff), Arbre(racine / "unzip"));

    ASSERT_EQ(0, Shell("cd " + aff.u8string() + " && zip -q -r -6 -e -P '" + motDePasse + "' " + eux + " ."));
    ASSERT_EQ(1, Decompresse_Affaire(Texte(eux), Texte(racine / "COPIE"), mdp));
    EXPECT_EQ(Arbre(aff), Arbre(racine / "COPIE"));
}
