// Hot loops built twice, for processors with AVX2 and for the baseline, the loader
// picking the version the processor runs (GCC on x86-64 ELF systems; elsewhere the one
// baseline version). Additions, multiplications and divisions are correctly rounded at
// any vector width and no fused multiply-add is enabled, so both versions give the same
// results to the bit; only the speed differs. Not for virtual functions.
#pragma once

#if defined(__GNUC__) && !defined(__clang__) && defined(__x86_64__) && defined(__ELF__)
#define PREFA_VECTORIEL_AVX2 __attribute__((target_clones("avx2", "default")))
#else
#define PREFA_VECTORIEL_AVX2
#endif
