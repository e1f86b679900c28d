// What Qt's X platform, fontconfig and D-Bus keep until the process ends is not ours
// (read by the sanitizers in the sanitizer build, unused otherwise). The full stacks let
// the suppressions find these libraries through frames without frame pointers.
extern "C" const char* __asan_default_options()
{
    return "fast_unwind_on_malloc=0";
}

extern "C" const char* __lsan_default_suppressions()
{
    return "leak:libfontconfig.so\nleak:libQt5XcbQpa.so\nleak:libqxcb.so\nleak:libqoffscreen.so\nleak:libdbus-1.so\n";
}
