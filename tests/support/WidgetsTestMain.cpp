// GoogleTest entry point for the shell and view tests: a widgets application (alerts need one) that keeps
// running with its windows closed, as the real one does; the test command sets offscreen and software.
#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
