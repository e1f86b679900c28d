// The hosting's tests play the host: no QApplication of their own; Qt starts and stops
// through the calls under test, on the virtual X server sous-xvfb runs them on.
#include <gtest/gtest.h>

// What Qt's X platform and fontconfig keep until the process ends is not ours (read by
// LeakSanitizer in the sanitizer build, unused otherwise).
extern "C" const char* __lsan_default_suppressions()
{
    return "leak:libfontconfig.so\nleak:libQt5XcbQpa.so\nleak:libqxcb.so\nleak:libdbus-1.so\n";
}

int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
