// GoogleTest entry point for the application shell: a widgets application that keeps running
// with its windows closed, as the real one does.
#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
