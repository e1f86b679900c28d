// What the libFuzzer harnesses share. Each harness hands the fuzzer's bytes to one
// loader of the library; the loader may accept them or refuse them with the
// framework's archive exception (or memory exception), nothing else: any other
// exception escapes the harness and libFuzzer reports it, as it reports crashes,
// sanitizer findings, hangs (-timeout) and allocations beyond -malloc_limit_mb.
#pragma once

#include <prefa.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>
#include <unistd.h>

namespace prefa_fuzz
{

// Once per process: message boxes go nowhere, and the data root is a scratch
// folder (removed at exit), so that loaders that look for older files find none.
inline const std::string& Prepare()
{
    // Kept for the whole process (never destroyed): the exit handler still needs it.
    static const std::string* racine = [] {
        AfxSetMessageBoxHandler([](const CString&, UINT) { return (int)IDOK; });
        // In memory where the system offers it: the lock harness writes a file per input.
        char enMemoire[] = "/dev/shm/prefa_fuzz_XXXXXX";
        char modele[] = "/tmp/prefa_fuzz_XXXXXX";
        const char* dossier = mkdtemp(enMemoire) ? enMemoire : mkdtemp(modele) ? modele : "/tmp/prefa_fuzz";
        auto* r = new std::string(dossier);
        std::filesystem::create_directories(*r);
        DefinitEnvironnement(CString(AfxUtf8ToWide(*r)), 1);
        std::atexit([] {
            std::error_code ec;
            std::filesystem::remove_all(*racine, ec);
        });
        return r;
    }();
    return *racine;
}

// Loads the bytes through an archive in memory with f. True when f went through,
// false when the bytes were refused the expected way.
template <class F>
bool Charge(const std::uint8_t* data, std::size_t size, F&& f)
{
    CMemFile fichier(data, size);
    CArchive ar(&fichier, CArchive::load);
    try
    {
        f(ar);
        return true;
    }
    catch (CArchiveException* e)
    {
        e->Delete();
    }
    catch (CMemoryException* e)
    {
        e->Delete();
    }
    return false;
}

// Runs f, for the queries on a loaded object whose index faults are allowed.
template <class F>
void Interroge(F&& f)
{
    try
    {
        f();
    }
    catch (CInvalidArgException* e)
    {
        e->Delete();
    }
}

} // namespace prefa_fuzz
