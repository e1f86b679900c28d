// Running the prefa program from the command tests.
#pragma once

#include "support/TestSupport.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace prefa_test
{

// Runs the program with the arguments, with an optional environment variable given as
// "NAME=value" for this run only; returns its exit status, with standard output and
// error captured. The command interpreter is the system's own (cmd.exe on Windows).
inline int RunProgram(const std::string& args, std::string* out, std::string* err, const ScratchDir& dir,
                      const std::string& environment = "")
{
    std::string o = dir.Utf8() + "/stdout.txt", e = dir.Utf8() + "/stderr.txt";
    std::string cmd = "\"" + std::string(PREFA_PROGRAM) + "\" " + args + " >\"" + o + "\" 2>\"" + e + "\"";
    const std::size_t eq = environment.find('=');
    const CString name = eq == std::string::npos ? CString() : CString(AfxUtf8ToWide(environment.substr(0, eq)));
    const CString old = name.IsEmpty() ? CString() : AfxGetEnvironmentVariable(name);
    if (!name.IsEmpty())
    {
        std::string value = environment.substr(eq + 1);
        value.erase(value.find_last_not_of(' ') + 1);
        AfxSetEnvironmentVariable(name, CString(AfxUtf8ToWide(value)));
    }
    int status = AfxRunCommand(CString(AfxUtf8ToWide(cmd)));
    if (!name.IsEmpty())
        AfxSetEnvironmentVariable(name, old);
    auto slurp = [](const std::string& p) {
        std::ifstream in(std::filesystem::u8path(p));
        std::stringstream s;
        s << in.rdbuf();
        return s.str();
    };
    if (out)
        *out = slurp(o);
    if (err)
        *err = slurp(e);
    return status;
}

} // namespace prefa_test
