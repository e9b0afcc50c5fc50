// GoogleTest entry point for view tests: a widgets application (alerts need one) on whatever
// platform the environment names; the test command sets offscreen and the software renderer.
#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
