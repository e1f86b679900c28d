// The hosting's tests play the host: no QApplication of their own; Qt starts and stops
// through the calls under test, on the virtual X server sous-xvfb runs them on.
#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
