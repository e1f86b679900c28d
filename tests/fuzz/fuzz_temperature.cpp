// The temperature field file, then what a loaded field answers: its shape, its nodes,
// the point lookup, a copy and a comparison.
#include "Fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    prefa_fuzz::Prepare();
    CTemperatureGenerale t;
    if (!prefa_fuzz::Charge(data, size, [&](CArchive& ar) { t.Serialize(ar); }))
        return 0;
    const int nLignes = t.GetSizeT();
    prefa_fuzz::Interroge([&] {
        for (int i = 0; i < nLignes; ++i)
            t.GetT1(i, t.GetSizeT(i) - 1);
    });
    const double d = t.GetDELX();
    for (double fx : {0.0, 0.3, 1.7, 5.5})
        for (double fy : {0.0, 0.6, 2.2})
            prefa_fuzz::Interroge([&] { t.T(fx * d, fy * d); });
    prefa_fuzz::Interroge([&] { t.T(0.01, 0.02); });
    // A copy compares equal, unless a NaN is among the values.
    CTemperatureGenerale copie(t);
    const bool sansNaN = t.m_T1 == t.m_T1 && t.GetDELX() == t.GetDELX();
    if (sansNaN && !(copie == t))
        __builtin_trap();
    return 0;
}
