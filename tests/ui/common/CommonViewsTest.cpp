// The shared view pieces load, and icons come out in the colour asked for.
#include "UiHarness.h"

#include <gtest/gtest.h>


using namespace orvane::testing;

TEST(CommonViews, iconsAreTintedInTheColourAskedFor) {
    UiHarness ui;
    QQuickView* view = ui.show(QStringLiteral("Icon.qml"), QSize(32, 32));
    ASSERT_TRUE(view);
    view->rootObject()->setProperty("name", "trash");
    view->rootObject()->setProperty("color", QColor("#ff0000"));
    view->rootObject()->setProperty("size", 32);
    const QImage shot = ui.screenshot(QStringLiteral("icon-trash"));
    int red = 0;
    for (int y = 0; y < shot.height(); ++y)
        for (int x = 0; x < shot.width(); ++x) {
            const QColor c = shot.pixelColor(x, y);
            if (c.red() > 200 && c.green() < 60 && c.blue() < 60) ++red;
        }
    EXPECT_GT(red, 20);
}
