// GoogleTest entry point for shell and view tests: a widgets application that runs on with its windows closed.
#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
