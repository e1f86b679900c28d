// prefa_echange write DIR | check DIR WORK | compare-json A B TOLERANCE
#include "Echange.h"

#include "framework/CException.h"
#include "framework/CodePage.h"

#include <cstdio>
#include <cstdlib>

namespace fs = std::filesystem;

namespace
{
int g_echecs = 0;
}

void Echec(const std::string& quoi)
{
    std::fprintf(stderr, "prefa_echange: %s\n", quoi.c_str());
    ++g_echecs;
}

int main(int argc, char** argv)
{
    std::string mode = argc > 1 ? argv[1] : "";
    if (!((mode == "write" && argc == 3) || (mode == "check" && argc == 4) || (mode == "compare-json" && argc == 5)))
    {
        std::fprintf(stderr, "usage: prefa_echange write DIR | check DIR WORK | compare-json A B TOLERANCE\n");
        return 2;
    }
    // The library's error boxes go to standard error, so a failure shows what it reported.
    try
    {
        if (mode == "write")
            EcritFichiers(fs::absolute(fs::u8path(argv[2])));
        else if (mode == "check")
            VerifieFichiers(fs::absolute(fs::u8path(argv[2])), fs::absolute(fs::u8path(argv[3])));
        else
            CompareJson(fs::u8path(argv[2]), fs::u8path(argv[3]), std::atof(argv[4]));
    }
    catch (CException* e)
    {
        Echec("framework exception: " + AfxWideToUtf8(e->GetMessageText().Std()));
        e->Delete();
    }
    std::printf("prefa_echange %s %s: %s\n", mode.c_str(), argv[2], g_echecs ? "FAILED" : "ok");
    return g_echecs ? 1 : 0;
}
