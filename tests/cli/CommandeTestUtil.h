// Helpers of the fire command's tests: input files in a scratch folder, counting, the
// message of a bad input, and the program run (Programme.h).
#pragma once

#include "Entree.h"
#include "Programme.h"
#include "support/TestSupport.h"

#include <string>

namespace prefa_test
{
inline std::string WriteText(const ScratchDir& dir, const char* name, const std::string& text)
{
    CString path = dir / CString(AfxUtf8ToWide(name));
    WriteAll(path, std::vector<BYTE>(text.begin(), text.end()));
    return AfxWideToUtf8(path.Std());
}

inline int Occurrences(const std::string& s, const std::string& what)
{
    int n = 0;
    for (std::size_t p = s.find(what); p != std::string::npos; p = s.find(what, p + 1))
        ++n;
    return n;
}

inline std::string Message(const std::string& json)
{
    try
    {
        ScratchDir dir;
        prefa_cli::ReadFireInput(WriteText(dir, "in.json", json));
    }
    catch (const prefa_cli::InputError& e)
    {
        return e.what();
    }
    return "";
}
} // namespace prefa_test
