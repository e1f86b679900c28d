#include "FileFault.h"

namespace prefa_framework
{
AFX_FILE_FAULT_HOOK g_pfnFileFault = nullptr;
}

AFX_FILE_FAULT_HOOK AfxSetFileFaultHook(AFX_FILE_FAULT_HOOK pfnHook)
{
    AFX_FILE_FAULT_HOOK previous = prefa_framework::g_pfnFileFault;
    prefa_framework::g_pfnFileFault = pfnHook;
    return previous;
}
