// The drawing record, every version (the oldest look for an older file, absent here).
#include "Fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    prefa_fuzz::Prepare();
    CInfoPlan plan;
    prefa_fuzz::Charge(data, size, [&](CArchive& ar) { plan.Serialize(ar, L"AFF1", 1); });
    return 0;
}
