// The key picker in its popover: tabs, search, the modifier row and picking into the field.
#include "RecorderTestSupport.h"

#include <QTest>

using namespace orvane;
using namespace orvane::testing;

namespace {

class PickerViewTest : public RecorderViewTest {
protected:
    void openPicker() {
        ui.click(ui.find("pickButton"));
        ASSERT_TRUE(isShown("searchField"));
    }
    int cellCount() { return read("keyGridView", "count").toInt(); }
};

}  // namespace

TEST_F(PickerViewTest, tabsShowTheirKeysASearchReplacesThemAndEachOpeningStartsAfresh) {
    showField(true);
    openPicker();
    EXPECT_EQ(cellCount(), 26);

    ui.click(ui.find("categoryTab_Media & System"));
    EXPECT_EQ(cellCount(), 5);
    for (const char* name : {"Globe", "Launchpad", "Dictation", "Do Not Disturb", "Mission Control"})
        EXPECT_TRUE(ui.find(QStringLiteral("keyButton_") + QLatin1String(name))) << name;
    ui.screenshotWindowOf(ui.find("searchField"), QStringLiteral("picker-category"));

    ui.click(ui.find("modOption"));
    ui.click(ui.find("searchField"));
    for (char c : {'p', 'a', 'g', 'e'}) QTest::keyClick(ui.keyWindow(), c);
    ui.settle();
    EXPECT_FALSE(isShown("categoryTabs"));
    EXPECT_EQ(cellCount(), 2);
    EXPECT_TRUE(ui.find("keyButton_Page Down"));
    ui.screenshotWindowOf(ui.find("searchField"), QStringLiteral("picker-search"));

    // Escape writes nothing; the next opening shows the first tab, no search and no modifiers.
    ui.key(Qt::Key_Escape);
    ASSERT_FALSE(isShown("searchField"));
    EXPECT_FALSE(field->hasKey());
    openPicker();
    EXPECT_EQ(read("searchField", "text").toString(), QString());
    EXPECT_TRUE(isShown("categoryTabs"));
    EXPECT_EQ(cellCount(), 26);
    EXPECT_FALSE(read("modOption", "checked").toBool());
}

TEST_F(PickerViewTest, pickingWritesTheKeyWithTheTickedModifiersClosesAndLeavesARecordingRunning) {
    showField(true);
    field->toggleRecording();
    openPicker();
    ASSERT_TRUE(isShown("modifierRow"));
    ui.click(ui.find("modCommand"));
    ui.click(ui.find("modShift"));

    ui.click(ui.find("keyButton_A"));

    EXPECT_FALSE(isShown("searchField"));
    ASSERT_TRUE(field->recordedKey());
    EXPECT_EQ(*field->recordedKey(), (RecordedKey{SourceKey::regular(KeyCode::a), Modifiers{.command = true, .shift = true}}));
    EXPECT_TRUE(field->isRecording());
}

TEST_F(PickerViewTest, withoutModifiersThereIsNoModifierRowAndPicksAreBare) {
    showField(false);
    openPicker();
    EXPECT_FALSE(isShown("modifierRow"));
    EXPECT_FALSE(isShown("modifierDivider"));
    ui.click(ui.find("categoryTab_Modifiers"));

    ui.click(ui.find("keyButton_Right Option"));

    ASSERT_TRUE(field->recordedKey());
    EXPECT_EQ(*field->recordedKey(), (RecordedKey{SourceKey::regular(KeyCode::rightOption), {}}));
}

TEST_F(PickerViewTest, thePopoverReachesPastItsWindowAndClosesWhenAnotherWindowIsActivated) {
    showField(true);
    ui.view()->resize(500, 400);  // the sheet's window is narrower than the picker
    ui.settle();
    openPicker();
    QQuickItem* search = ui.find("searchField");
    ASSERT_TRUE(search);
    EXPECT_NE(search->window(), ui.view());
    EXPECT_GT(search->window()->width(), ui.view()->width());

    EXPECT_TRUE(QTest::qWaitFor([&] { return search->window()->isActive(); }, 10000));
    ui.view()->requestActivate();  // a click anywhere else
    EXPECT_TRUE(QTest::qWaitFor([&] { return !isShown("searchField"); }, 10000));
    EXPECT_FALSE(field->hasKey());
}
