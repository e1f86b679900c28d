// The window tests run in one QApplication, offscreen unless the caller chose another
// platform, with the user's folders redirected to Qt's test locations.
#include <QApplication>
#include <QStandardPaths>

#include <gtest/gtest.h>

// Qt's offscreen platform keeps its screen objects until the process ends; that is not
// a leak of ours (read by LeakSanitizer in the sanitizer build, unused otherwise).
extern "C" const char* __lsan_default_suppressions()
{
    return "leak:libqoffscreen.so\n";
}

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QStandardPaths::setTestModeEnabled(true);
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
