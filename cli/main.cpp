// The prefa command: the library's calculations for engineers and scripts.
#include <prefa.h>

#include <cstdio>
#include <cstring>

int main(int argc, char** argv)
{
    if (argc >= 2 && std::strcmp(argv[1], "--version") == 0)
    {
        std::printf("prefa %s\n", PREFA_VERSION_STRING);
        return 0;
    }
    std::fprintf(stderr, "usage: prefa --version\n");
    return 2;
}
