// Running the prefa program from the command tests.
#pragma once

#include "support/TestSupport.h"

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

namespace prefa_test
{

// Runs the program with the arguments (after an optional prefix of environment
// assignments); returns its exit status, with standard output and error captured.
inline int RunProgram(const std::string& args, std::string* out, std::string* err, const ScratchDir& dir,
                      const std::string& environment = "")
{
    std::string o = dir.Utf8() + "/stdout.txt", e = dir.Utf8() + "/stderr.txt";
    std::string cmd = environment + std::string(PREFA_PROGRAM) + " " + args + " >" + o + " 2>" + e;
    int status = std::system(cmd.c_str());
    auto slurp = [](const std::string& p) {
        std::ifstream in(p);
        std::stringstream s;
        s << in.rdbuf();
        return s.str();
    };
    if (out)
        *out = slurp(o);
    if (err)
        *err = slurp(e);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace prefa_test
