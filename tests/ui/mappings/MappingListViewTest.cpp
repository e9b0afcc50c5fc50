// The configuration window's list from the real QML: empty state, rows of every kind, row actions
// by pointer and keyboard, drag reordering, the interception switch and the settings popover.
#include "MappingsTestSupport.h"

#include <QAccessible>
#include <QTest>

using namespace orvane;
using namespace orvane::testing;

using MappingListViewTest = MappingsViewTest;

TEST_F(MappingListViewTest, anEmptyListInvitesTheFirstMappingAndBothButtonsOpenANewSheet) {
    EXPECT_TRUE(shown("emptyState"));
    EXPECT_FALSE(shown("mappingList"));
    EXPECT_EQ(property("activeCount", "text"), "0 of 0 active");
    ui.screenshot(QStringLiteral("config-empty"));
    for (const char* button : {"addFirstMappingButton", "addMappingButton"}) {
        click(item(button));
        ASSERT_NE(model()->editor(), nullptr) << button;
        EXPECT_EQ(sheetTitle(), "New Mapping");
        key(Qt::Key_Escape);
        EXPECT_EQ(model()->editor(), nullptr);
        EXPECT_EQ(sheetTitle(), QString());
    }
}

TEST_F(MappingListViewTest, rowsShowEachKindOfMappingWithItsBadge) {
    use({
        mapping(KeyCode::a, TargetAction::key(KeyCode::b)),
        mapping(KeyCode::f1, TargetAction::combination(KeyCode::k, {.command = true, .shift = true})),
        mapping(KeyCode::escape, TargetAction::block()),
        mapping(SourceKey::system(SystemKeyID::volumeUp), TargetAction::key(KeyCode::f12)),
        mapping(KeyCode::capsLock, TargetAction::key(KeyCode::escape)),
        mapping(KeyCode::d, TargetAction::combination(KeyCode::leftArrow, {.option = true}), false),
    });
    ui.store().setCapsLockHIDState(true, true);
    frame();
    EXPECT_FALSE(shown("emptyState"));
    EXPECT_EQ(property("activeCount", "text"), "5 of 6 active");
    const QStringList expected[] = {{"A", "Tap", "B"},         {"F1", "Tap", "⇧", "⌘", "K"}, {"⎋", "Tap", "Block"},
                                    {"\U0001F50A", "Tap", "F12"}, {"⇪", "HID", "⎋"},           {"D", "⌥", "←"}};
    for (int i = 0; i < 6; ++i) EXPECT_EQ(visibleTexts(row(i)), expected[i]) << "row " << i;
    EXPECT_FALSE(inRow(5, "enabledCheckBox")->property("checked").toBool());
    ui.screenshot(QStringLiteral("config-list"));

    ui.store().setCapsLockHIDState(true, false);
    frame();
    EXPECT_EQ(visibleTexts(row(4)), (QStringList{"⇪", "HID+Tap", "⎋"}));
    // The checkbox toggles the mapping; enabled again, the row shows its badge again.
    click(inRow(5, "enabledCheckBox"));
    EXPECT_TRUE(ui.store().mappings()[5].isEnabled);
    EXPECT_EQ(visibleTexts(row(5)), (QStringList{"D", "Tap", "⌥", "←"}));
}

TEST_F(MappingListViewTest, hoveringARowRevealsItsEditAndDeleteButtons) {
    const auto first = mapping(KeyCode::a, TargetAction::key(KeyCode::b));
    const auto second = mapping(KeyCode::f1, TargetAction::combination(KeyCode::k, {.command = true, .shift = true}));
    use({first, second});
    EXPECT_FALSE(inRow(1, "rowActions")->isEnabled());
    hover(row(1));
    EXPECT_FALSE(inRow(0, "rowActions")->isEnabled());
    ASSERT_TRUE(inRow(1, "rowActions")->isEnabled());
    for (const auto& [name, label] : {std::pair{"editButton", "Edit mapping"}, std::pair{"deleteButton", "Delete mapping"}}) {
        EXPECT_EQ(inRow(1, name)->property("tooltip").toString(), label);
        QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(inRow(1, name));
        ASSERT_TRUE(accessible);
        EXPECT_EQ(accessible->text(QAccessible::Name), label);
    }
    ui.screenshot(QStringLiteral("config-row-hover"));

    click(inRow(1, "editButton"));
    ASSERT_NE(model()->editor(), nullptr);
    EXPECT_EQ(model()->editor()->targetField()->text(), "⇧⌘K");
    key(Qt::Key_Escape);
    hover(row(0));
    click(inRow(0, "deleteButton"));
    EXPECT_EQ(ui.store().mappings(), std::vector<KeyMapping>{second});
}

// A double click edits a row: the sheet view's tests.
TEST_F(MappingListViewTest, returnEditsTheSelectedRowAndDeleteOrBackspaceRemovesOnlyIt) {
    const auto a = mapping(KeyCode::a, TargetAction::block());
    const auto b = mapping(KeyCode::b, TargetAction::block());
    const auto c = mapping(KeyCode::c, TargetAction::block());
    use({a, b, c});
    key(Qt::Key_Delete);  // nothing selected yet
    EXPECT_EQ(ui.store().mappings().size(), 3u);
    click(row(0));
    key(Qt::Key_Return);
    ASSERT_NE(model()->editor(), nullptr);
    EXPECT_EQ(model()->editor()->sourceField()->text(), "A");
    click(item("cancelButton"));
    EXPECT_EQ(model()->editor(), nullptr);

    click(row(1));
    EXPECT_TRUE(row(1)->property("isSelected").toBool());
    key(Qt::Key_Delete);
    EXPECT_EQ(idsOf(ui.store().mappings()), (std::vector<Uuid>{a.id, c.id}));
    click(row(1));
    key(Qt::Key_Up);
    key(Qt::Key_Backspace);
    EXPECT_EQ(idsOf(ui.store().mappings()), std::vector<Uuid>{c.id});
}

TEST_F(MappingListViewTest, draggingTheLastRowToTheTopMakesItWin) {
    const auto first = mapping(KeyCode::a, TargetAction::key(KeyCode::b));
    const auto other = mapping(KeyCode::c, TargetAction::block());
    const auto last = mapping(KeyCode::a, TargetAction::key(KeyCode::z));
    use({first, other, last});
    const QPoint start = row(2)->mapToScene(QPointF(row(2)->width() * 0.6, 14)).toPoint();
    const QPoint target = row(0)->mapToScene(QPointF(row(2)->width() * 0.6, 2)).toPoint();
    QTest::mousePress(ui.view(), Qt::LeftButton, Qt::NoModifier, start);
    for (int step = 1; step <= 8; ++step) QTest::mouseMove(ui.view(), start + (target - start) * step / 8);
    frame();
    EXPECT_TRUE(shown("dropIndicator"));
    QTest::mouseRelease(ui.view(), Qt::LeftButton, Qt::NoModifier, target);
    frame();
    EXPECT_FALSE(shown("dropIndicator"));
    EXPECT_EQ(idsOf(ui.store().mappings()), (std::vector<Uuid>{last.id, first.id, other.id}));
    EXPECT_EQ(ui.store().mappingForKey(KeyCode::a)->id, last.id);
}

TEST_F(MappingListViewTest, theSwitchShowsTheManagersStateAfterEachCall) {
    // Whether the switch is clicked (or else the menu starts the tap), whether the process is trusted,
    // and the state shown after.
    const std::tuple<bool, bool, bool> steps[] = {{true, true, true}, {true, true, false},
                                                  {true, false, false},  // the start fails: the switch stays off
                                                  {false, true, true}};
    for (const auto& [clicked, trusted, on] : steps) {
        simAccessibility().setTrusted(trusted);
        if (clicked) click(item("activeSwitch"));
        else ui.manager().start();
        frame();
        EXPECT_EQ(ui.manager().isRunning(), on);
        EXPECT_EQ(property("activeSwitch", "checked").toBool(), on);
        EXPECT_EQ(property("activeSwitch", "text"), on ? "Active" : "Inactive");
    }
}

TEST_F(MappingListViewTest, theGearAndThePanelOpenAndCloseTheSettingsPopover) {
    click(item("settingsButton"));
    EXPECT_TRUE(shown("settingsPanel"));
    ui.screenshot(QStringLiteral("config-settings"));
    click(item("settingsButton"));
    EXPECT_FALSE(shown("settingsPanel"));
    click(item("settingsButton"));
    QMetaObject::invokeMethod(item("settingsPanel"), "dismissRequested");
    frame();
    EXPECT_FALSE(shown("settingsPanel"));
}

TEST_F(MappingListViewTest, tabReachesEveryControlInOrder) {
    use({mapping(KeyCode::a, TargetAction::block())});
    QStringList reached;
    for (int i = 0; i < 5; ++i) {
        key(Qt::Key_Tab);
        reached.append(ui.view()->activeFocusItem()->objectName());
    }
    EXPECT_EQ(reached, (QStringList{"activeSwitch", "addMappingButton", "mappingList", "enabledCheckBox", "settingsButton"}));
}
