// Failing allocations on demand, to check that an operation that throws half-way frees
// what it allocated. This header replaces the global operator new and delete: include
// it from exactly one source file of a test program.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <functional>
#include <new>

namespace prefa_test
{
namespace allocations
{
inline bool g_compte = false;  // counting allocations and releases
inline long g_restantes = -1;  // allocations left before one fails; -1: none fails
inline long g_vivantes = 0;    // allocations less releases while counting
} // namespace allocations

// Runs operation with its n-th allocation failing, for n = 0, 1, ... until a run
// makes fewer than n + 1 allocations; returns the largest number of blocks a run left
// allocated once operation had returned or thrown std::bad_alloc (0 when nothing
// leaks). operation must create and destroy everything it uses.
inline long FuiteSousEchecs(const std::function<void()>& operation)
{
    using namespace allocations;
    long pire = 0;
    for (long n = 0;; ++n)
    {
        g_vivantes = 0;
        g_restantes = n;
        g_compte = true;
        try
        {
            operation();
        }
        catch (const std::bad_alloc&)
        {
        }
        g_compte = false;
        const bool echec = g_restantes < 0;
        g_restantes = -1;
        pire = g_vivantes > pire ? g_vivantes : pire;
        if (!echec)
            return pire;
    }
}
} // namespace prefa_test

void* operator new(std::size_t n)
{
    using namespace prefa_test::allocations;
    if (g_compte && g_restantes >= 0 && g_restantes-- == 0)
        throw std::bad_alloc();
    void* p = std::malloc(n ? n : 1);
    if (!p)
        throw std::bad_alloc();
    if (g_compte)
        ++g_vivantes;
    return p;
}

void operator delete(void* p) noexcept
{
    using namespace prefa_test::allocations;
    if (p && g_compte)
        --g_vivantes;
    std::free(p);
}

void operator delete(void* p, std::size_t) noexcept
{
    operator delete(p);
}
