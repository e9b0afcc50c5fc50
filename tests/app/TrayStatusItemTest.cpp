// The tray item's menu and icon as drawn and used: its shortcuts while open.
#include "app/TrayStatusItem.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>

using namespace orvane;

TEST(TrayStatusItem, eachShortcutTypedInTheOpenMenuActsAndClosesIt) {
    TrayStatusItem tray(true);
    int counts[3] = {};
    tray.setMenu(buildStatusMenu(true, 0, false, {{}, [&] { ++counts[0]; }, [&] { ++counts[1]; }, [&] { ++counts[2]; }}));
    for (const Qt::Key key : {Qt::Key_Comma, Qt::Key_D, Qt::Key_Q}) {
        tray.menu().popup(QPoint(40, 40));
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&tray.menu()));
        QTest::keyClick(tray.menu().windowHandle(), key, Qt::ControlModifier);
        QCoreApplication::processEvents();
        EXPECT_FALSE(tray.menu().isVisible()) << key;
    }
    EXPECT_TRUE(counts[0] == 1 && counts[1] == 1 && counts[2] == 1) << counts[0] << counts[1] << counts[2];
}
