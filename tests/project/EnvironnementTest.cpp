#include "project/Environnement.h"
#include "project/FichiersEtudes.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

using namespace prefa_test;

namespace
{
// Sets PREFA_ENV for the life of the object, then restores it.
class EnvVar
{
public:
    explicit EnvVar(const char* value) : m_old(AfxGetEnvironmentVariable(L"PREFA_ENV"))
    {
        AfxSetEnvironmentVariable(L"PREFA_ENV", value ? CString(AfxUtf8ToWide(value)).GetString() : nullptr);
    }
    ~EnvVar() { AfxSetEnvironmentVariable(L"PREFA_ENV", m_old); }

private:
    CString m_old;
};
} // namespace

TEST(Environnement, RecordFileDefaultsAndProgramSettings)
{
    AnnuleDefinitionEnvironnement();
    CEnvironnement env;
    {
        EnvVar unset(nullptr);
        EXPECT_EQ(0, Lecture_Environ_Nom(env));
        EXPECT_EQ(CString(L"."), env.strRacine);
        EXPECT_EQ(0, env.nMultiUtilisateur);
    }
    ScratchDir dir;
    CString record = dir / L"prefa.env";
    std::string text = "# suite settings\n  data_root =  " + dir.Utf8() + "/donn\xC3\xA9" "es  \nmulti_user = 1\nother = x\n";
    WriteAll(record, std::vector<BYTE>(text.begin(), text.end()));
    {
        EnvVar set(AfxWideToUtf8(record.Std()).c_str());
        EXPECT_EQ(1, Lecture_Environ_Nom(env));
        EXPECT_EQ(CString(dir.Path() + L"/donn\u00E9es"), env.strRacine);
        EXPECT_EQ(1, env.nMultiUtilisateur);
        CString sep(AfxPathSeparator()); // '\\' on Windows
        EXPECT_EQ(dir.Path() + L"/donn\u00E9es" + sep + L"E1" + sep + L"TEMPER.03",
                  Compose_Fichier_Etudes(L"E1", L"TEMPER.", 3));

        // What the program sets wins over the file, until it is withdrawn.
        DefinitEnvironnement(L"/data", 0);
        EXPECT_EQ(1, Lecture_Environ_Nom(env));
        EXPECT_EQ(CString(L"/data"), env.strRacine);
        EXPECT_EQ(0, env.nMultiUtilisateur);
        AnnuleDefinitionEnvironnement();
        Lecture_Environ_Nom(env);
        EXPECT_EQ(1, env.nMultiUtilisateur);
    }
    {
        EnvVar missing("/no/such/prefa.env");
        EXPECT_EQ(0, Lecture_Environ_Nom(env));
        EXPECT_EQ(CString(L"."), env.strRacine);
    }
}
