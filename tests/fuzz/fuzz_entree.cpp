// The command's JSON input, read as a fire calculation and as a section: a bad text
// gives the command's InputError, nothing else.
#include "Entree.h"
#include "Fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string texte(reinterpret_cast<const char*>(data), size);
    try
    {
        prefa_cli::ParseFireInput("fuzz", texte);
    }
    catch (const prefa_cli::InputError&)
    {
    }
    try
    {
        prefa_cli::ParseSectionInput("fuzz", texte);
    }
    catch (const prefa_cli::InputError&)
    {
    }
    return 0;
}
