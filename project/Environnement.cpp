#include "project/Environnement.h"

#include <filesystem>
#include <fstream>
#include <mutex>
#include <string>

namespace
{
struct Definition
{
    std::mutex mutex;
    bool defined = false;
    CEnvironnement env;
};

Definition& TheDefinition()
{
    static Definition d;
    return d;
}

std::string Trim(const std::string& s)
{
    const char* blanks = " \t\r\n";
    std::size_t a = s.find_first_not_of(blanks);
    if (a == std::string::npos)
        return std::string();
    std::size_t b = s.find_last_not_of(blanks);
    return s.substr(a, b - a + 1);
}

bool ReadRecord(const CString& file, CEnvironnement& env)
{
    std::ifstream in(std::filesystem::path(file.Std()));
    if (!in)
        return false;
    std::string line;
    while (std::getline(in, line))
    {
        line = Trim(line);
        if (line.empty() || line[0] == '#')
            continue;
        std::size_t eq = line.find('=');
        if (eq == std::string::npos)
            continue;
        std::string key = Trim(line.substr(0, eq));
        std::string value = Trim(line.substr(eq + 1));
        if (key == "data_root")
            env.strRacine = CString(AfxUtf8ToWide(value));
        else if (key == "multi_user")
            env.nMultiUtilisateur = (value == "1" || value == "yes" || value == "true" || value == "on") ? 1 : 0;
    }
    return true;
}
} // namespace

int Lecture_Environ_Nom(CEnvironnement& env)
{
    env = CEnvironnement();
    env.strRacine = L".";
    {
        Definition& d = TheDefinition();
        std::lock_guard<std::mutex> lock(d.mutex);
        if (d.defined)
        {
            env = d.env;
            return 1;
        }
    }
    CString file = AfxGetEnvironmentVariable(L"PREFA_ENV");
    if (file.IsEmpty())
        return 0;
    CEnvironnement read;
    read.strRacine = L".";
    if (!ReadRecord(file, read))
        return 0;
    if (read.strRacine.IsEmpty())
        read.strRacine = L".";
    env = read;
    return 1;
}

void DefinitEnvironnement(LPCTSTR lpszRacine, int nMultiUtilisateur)
{
    Definition& d = TheDefinition();
    std::lock_guard<std::mutex> lock(d.mutex);
    d.defined = true;
    d.env.strRacine = (lpszRacine && *lpszRacine) ? lpszRacine : L".";
    d.env.nMultiUtilisateur = nMultiUtilisateur ? 1 : 0;
}

void AnnuleDefinitionEnvironnement()
{
    Definition& d = TheDefinition();
    std::lock_guard<std::mutex> lock(d.mutex);
    d.defined = false;
    d.env = CEnvironnement();
}
