// The section file.
#include "Fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    prefa_fuzz::Prepare();
    CSectionGenerale s;
    prefa_fuzz::Charge(data, size, [&](CArchive& ar) { s.Serialize(ar); });
    return 0;
}
