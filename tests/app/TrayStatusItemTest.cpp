// The tray item's menu and icon as drawn and used: its shortcuts while open, its state dot, its ink.
#include "Files.h"
#include "app/PanelIcon.h"
#include "app/TrayStatusItem.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace orvane;

static bool inked(QColor pixel, QColor background) {
    return std::abs(pixel.lightness() - background.lightness()) + std::abs(pixel.hue() - background.hue()) > 40;
}

TEST(TrayStatusItem, eachShortcutTypedInTheOpenMenuActsAndClosesIt) {
    TrayStatusItem tray(true);
    int counts[3] = {};
    tray.setMenu(buildStatusMenu(true, 0, false, {{}, [&] { ++counts[0]; }, [&] { ++counts[1]; }, [&] { ++counts[2]; }}));
    for (const Qt::Key key : {Qt::Key_Comma, Qt::Key_D, Qt::Key_Q}) {
        tray.menu().popup(QPoint(40, 40));
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&tray.menu()));
        QTest::keyClick(tray.menu().windowHandle(), key, Qt::ControlModifier), QCoreApplication::processEvents();
        EXPECT_FALSE(tray.menu().isVisible()) << key;
    }
    EXPECT_TRUE(counts[0] == 1 && counts[1] == 1 && counts[2] == 1) << counts[0] << counts[1] << counts[2];
}

// The first row's dot as drawn: running a disc inked at its centre, stopped a ring clear at its centre.
TEST(TrayStatusItem, theStoppedDotIsDrawnAsARingAndTheRunningOneAsADisc) {
    for (const bool running : {true, false}) {
        TrayStatusItem tray(true);
        tray.setMenu(buildStatusMenu(running, 0, false, {}));
        tray.menu().popup(QPoint(40, 40));
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&tray.menu()));
        const QImage shot = tray.menu().grab().toImage();
        const QRect row = tray.menu().actionGeometry(tray.menu().actions().first()).adjusted(2, 2, -2, -2);  // inside the frame
        const QColor background = shot.pixelColor(row.right(), row.center().y());
        QRect ink;
        for (int x = row.left(); x < row.left() + row.height(); ++x)  // the icon column, left of the title
            for (int y = row.top(); y <= row.bottom(); ++y)
                if (inked(shot.pixelColor(x, y), background)) ink |= QRect(x, y, 1, 1);
        ASSERT_GE(ink.width(), 6) << running;
        EXPECT_EQ(inked(shot.pixelColor(ink.center()), background), running);
        EXPECT_TRUE(inked(shot.pixelColor(ink.left(), ink.center().y()), background)) << running;
        tray.menu().hide();
    }
}

TEST(TrayStatusItem, thePanelIconIsTheThemesSymbolicIconElseOursInkedAgainstThePanelOrPalette) {
    QTemporaryDir themes;
    QDir(themes.path()).mkpath("plain/scalable");
    const QByteArray theme = "[Icon Theme]\nName=plain\nDirectories=scalable\n[scalable]\nSize=16\nType=Scalable\nMaxSize=256\n";
    ASSERT_TRUE(orvane::testing::writeFile(themes.filePath("plain/index.theme"), theme));
    ASSERT_TRUE(QFile::copy(":/icons/keyboard.svg", themes.filePath("plain/scalable/input-keyboard-symbolic.svg")));
    QIcon::setThemeSearchPaths({themes.path()});
    QIcon::setThemeName("plain");
    EXPECT_EQ(panelIcon("keyboard.fill", QPalette()).name(), themedStatusIconName);
    EXPECT_NE(panelIcon("keyboard.fill", QPalette(), 30).name(), themedStatusIconName);  // a panel read wins

    QIcon::setThemeName("absent");
    // Against the palette's window, or against the panel where its lightness is known (here the opposite).
    for (const QColor window : {QColor(Qt::black), QColor(Qt::white), QColor(0x30, 0x30, 0x40), QColor(0xE0, 0xE0, 0xD0)})
        for (const std::optional<int> panel : {std::optional<int>(), std::optional<int>(255 - window.lightness())}) {
            const QImage icon = panelIcon("keyboard", QPalette(window, window), panel).pixmap(32).toImage();
            QColor ink(Qt::transparent);
            for (int i = 0; i < 32 * 32 && ink.alpha() < 200; ++i) ink = icon.pixelColor(i % 32, i / 32);
            EXPECT_GT(std::abs(ink.lightness() - panel.value_or(window.lightness())), 128) << window.name().toStdString();
        }
}
