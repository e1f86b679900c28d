// The prefa command: the library's fire calculations and section properties for
// engineers and scripts, with pictures.
#include "Commandes.h"
#include "Entree.h"

#include <prefa.h>

#include <cstdio>
#include <cstring>
#include <exception>

using namespace prefa_cli;

int main(int argc, char** argv)
{
    std::vector<std::string> args = AfxGetArgumentsUtf8(argc, argv);
    if (args.empty() || args[0] == "--help" || args[0] == "-h" || args[0] == "help")
    {
        std::fputs(MainHelp().c_str(), args.empty() ? stderr : stdout);
        return args.empty() ? 2 : 0;
    }
    if (args[0] == "--version")
    {
        std::printf("prefa %s\n", PREFA_VERSION_STRING);
        return 0;
    }
    const std::string command = args[0];
    args.erase(args.begin());
    try
    {
        struct Command
        {
            const char* name;
            std::string (*help)();
            int (*run)(const Options&);
        };
        static const Command commands[] = {{"fire", FireHelp, FireCommand}, {"section", SectionHelp, SectionCommand},
                                           {"pack", PackHelp, PackCommand}, {"unpack", UnpackHelp, UnpackCommand}};
        for (const Command& c : commands)
        {
            if (command != c.name)
                continue;
            Options o = ParseOptions(command, args);
            if (o.help)
            {
                std::fputs(c.help().c_str(), stdout);
                return 0;
            }
            return c.run(o);
        }
        std::fprintf(stderr, "prefa: unknown command \"%s\" (fire, section, pack, unpack, --help)\n", command.c_str());
        return 2;
    }
    catch (const InputError& e)
    {
        std::fprintf(stderr, "prefa %s: %s\n", command.c_str(), e.what());
        return 2;
    }
    catch (CException* e)
    {
        CString text = e->GetMessageText();
        e->Delete();
        std::fprintf(stderr, "prefa %s: %s\n", command.c_str(), AfxWideToUtf8(text.Std()).c_str());
        return 1;
    }
    catch (const std::exception& e)
    {
        std::fprintf(stderr, "prefa %s: %s\n", command.c_str(), e.what());
        return 1;
    }
}
