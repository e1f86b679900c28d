// A test seam of the file layer. When a hook is installed it is asked before each
// write, flush (fsync) and rename that the file layer makes, the steps of every
// mirror-file save and of the exclusive creation of small files, and answers 0 to
// let the step run or an OS error number that the step then fails with, exactly as
// if the system had refused it. Tests install a hook to make the n-th step fail; a
// program never does, and then each step costs one test of a null pointer.
#pragma once

#include "Types.h"

enum AFX_FILE_STEP
{
    afxFileWrite,
    afxFileFlush,
    afxFileRename
};

typedef LONG (*AFX_FILE_FAULT_HOOK)(AFX_FILE_STEP nStep);

// Installs the hook (nullptr removes it) and returns the one it replaces.
AFX_FILE_FAULT_HOOK AfxSetFileFaultHook(AFX_FILE_FAULT_HOOK pfnHook);

namespace prefa_framework
{
extern AFX_FILE_FAULT_HOOK g_pfnFileFault;
}

// The error step nStep is to fail with: 0 (no hook, or the hook lets it run).
inline LONG AfxFileFault(AFX_FILE_STEP nStep)
{
    return prefa_framework::g_pfnFileFault ? prefa_framework::g_pfnFileFault(nStep) : 0;
}
