// The pack and unpack commands: operands and options, a round trip with the
// password from the environment, and one clear line for each kind of failure.
#include "Programme.h"
#include "support/TestSupport.h"

#include <prefa.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

using namespace prefa_test;
namespace fs = std::filesystem;

namespace
{
int Lignes(const std::string& s)
{
    return (int)std::count(s.begin(), s.end(), '\n');
}
} // namespace

TEST(PaquetCommande, OperandesEtOptions)
{
    ScratchDir dir;
    std::string out, err;
    EXPECT_EQ(2, RunProgram("pack " + dir.Utf8(), &out, &err, dir));
    EXPECT_NE(std::string::npos, err.find("two operands are expected: PROJECT_DIR OUT.zip")) << err;
    EXPECT_EQ(2, RunProgram("unpack a.zip b --password", &out, &err, dir));
    EXPECT_NE(std::string::npos, err.find("--password")) << err;
    EXPECT_EQ(2, RunProgram("unpack a.zip b --aes", &out, &err, dir));
    EXPECT_EQ(2, RunProgram("pack a b c", &out, &err, dir));
    EXPECT_EQ(2, RunProgram("fire x.json --password p", &out, &err, dir)); // not an option of fire
    EXPECT_EQ(0, RunProgram("pack --help", &out, &err, dir));
    EXPECT_EQ(0u, out.find("usage: prefa pack PROJECT_DIR OUT.zip"));
    EXPECT_EQ(0, RunProgram("unpack --help", &out, &err, dir));
    EXPECT_NE(std::string::npos, out.find("PREFA_ZIP_PASSWORD"));
}

TEST(PaquetCommande, AllerRetourAvecLeMotDePasseDeLEnvironnement)
{
    ScratchDir dir;
    const fs::path aff = fs::path(dir.Utf8()) / "AFF1";
    fs::create_directories(aff / "E1");
    WriteAll(dir / L"AFF1/VORENAFF", std::vector<BYTE>(300, 'v'));
    WriteAll(dir / L"AFF1/E1/TEMPER.01", std::vector<BYTE>(5000, 't'));
    WriteAll(dir / L"AFF1/LOCK_AFF", std::vector<BYTE>(512, 0));
    const std::string zip = dir.Utf8() + "/envoi.zip", copie = dir.Utf8() + "/COPIE";
    std::string out, err;
    ASSERT_EQ(0, RunProgram("pack " + aff.string() + " " + zip + " --password secret", &out, &err, dir)) << err;
    EXPECT_NE(std::string::npos, out.find(": 2 files, 1 folders")) << out;
    EXPECT_NE(std::string::npos, out.find("encrypted")) << out;
    EXPECT_NE(std::string::npos, out.find("1 lock and temporary files")) << out;

    // Without the password: refused as bad input, in one line naming the member.
    EXPECT_EQ(2, RunProgram("unpack " + zip + " " + copie, &out, &err, dir));
    EXPECT_EQ(1, Lignes(err)) << err;
    EXPECT_NE(std::string::npos, err.find("no password was given")) << err;
    EXPECT_FALSE(fs::exists(copie));

    ASSERT_EQ(0, RunProgram("unpack " + zip + " " + copie, &out, &err, dir, "PREFA_ZIP_PASSWORD=secret ")) << err;
    EXPECT_EQ(ReadAll(dir / L"AFF1/E1/TEMPER.01"), ReadAll(dir / L"COPIE/E1/TEMPER.01"));
    EXPECT_EQ(ReadAll(dir / L"AFF1/VORENAFF"), ReadAll(dir / L"COPIE/VORENAFF"));
    EXPECT_FALSE(fs::exists(fs::path(copie) / "LOCK_AFF"));
    // The option wins over the environment.
    EXPECT_EQ(2, RunProgram("unpack " + zip + " " + dir.Utf8() + "/AUTRE --password faux", &out, &err, dir,
                            "PREFA_ZIP_PASSWORD=secret "));
    EXPECT_NE(std::string::npos, err.find("wrong password")) << err;

    // File errors: one line each, exit status 1, nothing changed.
    EXPECT_EQ(1, RunProgram("unpack " + zip + " " + copie + " --password secret", &out, &err, dir));
    EXPECT_EQ(1, Lignes(err)) << err;
    EXPECT_NE(std::string::npos, err.find("the folder exists and is not empty")) << err;
    EXPECT_EQ(1, RunProgram("unpack " + dir.Utf8() + "/absente.zip " + dir.Utf8() + "/X", &out, &err, dir));
    EXPECT_NE(std::string::npos, err.find("absente.zip: No such file or directory")) << err;
    EXPECT_EQ(1, RunProgram("pack " + dir.Utf8() + "/AFF9 " + zip, &out, &err, dir));
    EXPECT_EQ(1, Lignes(err)) << err;
}
