// The archive's own readers: every scalar width, both text forms, the length prefix
// and the count check, in the order the bytes themselves choose.
#include "Fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    prefa_fuzz::Prepare();
    prefa_fuzz::Charge(data, size, [](CArchive& ar) {
        for (;;)
        {
            BYTE op;
            ar >> op;
            switch (op % 10)
            {
            case 0: { CString s; ar >> s; break; }
            case 1: { CStringA s; ar >> s; break; }
            case 2: { WORD w; ar >> w; break; }
            case 3: { DWORD d; ar >> d; break; }
            case 4: { double d; ar >> d; break; }
            case 5: { ULONGLONG q; ar >> q; break; }
            case 6: { bool b; ar.ReadStringLength(&b); break; }
            case 7:
            {
                BYTE n;
                ar >> n;
                BYTE tampon[256];
                ar.EnsureRead(tampon, n);
                break;
            }
            case 8:
            {
                DWORD n;
                WORD taille;
                ar >> n >> taille;
                ar.CheckAvailable(n, taille);
                break;
            }
            default: { float f; ar >> f; break; }
            }
        }
    });
    return 0;
}
