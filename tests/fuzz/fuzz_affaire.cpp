// The project record: its main file, and its 436-byte exchange record (whose dates
// that the calendar refuses raise the invalid-argument exception, as they should).
#include "Fuzz.h"

#include <cstring>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    prefa_fuzz::Prepare();
    CAffaire affaire;
    prefa_fuzz::Charge(data, size, [&](CArchive& ar) { affaire.Serialize(ar); });

    BYTE echange[CAffaire::TAILLE_ECHANGE] = {0};
    std::memcpy(echange, data, std::min<std::size_t>(size, sizeof echange));
    CAffaire lu;
    prefa_fuzz::Interroge([&] { lu.LitEchange(echange); });
    return 0;
}
