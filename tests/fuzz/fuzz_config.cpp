// The workstation configuration ("BRAXEL.CFG") and the lock record, read from a file
// as the locks read it.
#include "Fuzz.h"

#include <fstream>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string& racine = prefa_fuzz::Prepare();
    // Made once: a workstation identity asks the system for its names, which is slow.
    static CConfigBRAXEL config, detenteur;
    prefa_fuzz::Charge(data, size, [&](CArchive& ar) { config.Serialize(ar); });

    const std::string chemin = racine + "/LOCK_AFF";
    {
        std::ofstream f(chemin, std::ios::binary | std::ios::trunc);
        f.write(reinterpret_cast<const char*>(data), (std::streamsize)size);
    }
    const int r = detenteur.GestionFichierLock(2, CString(AfxUtf8ToWide(chemin)));
    if ((r == 0) != (size >= CConfigBRAXEL::TAILLE_LOCK))
        __builtin_trap(); // read exactly when the record is whole
    return 0;
}
