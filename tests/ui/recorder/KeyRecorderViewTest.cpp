// The key recorder field and its picker as the user sees them, over the simulated keyboard; the picker's rules.
#include "UiHarness.h"
#include "ui/recorder/KeyPickerModel.h"
#include "ui/recorder/KeyRecorderField.h"

#include <gtest/gtest.h>

#include <QTest>

using namespace orvane;
using namespace orvane::testing;

namespace {

const QString placeholder = QStringLiteral("Press target key or combination...");

// A field at the top of a window with room for its picker.
struct RecorderViewTest : ::testing::Test {
    UiHarness ui;
    std::unique_ptr<KeyRecorderField> field;

    void showField(bool allowModifiers) {
        field = std::make_unique<KeyRecorderField>(allowModifiers, placeholder);
        ASSERT_TRUE(ui.show(QStringLiteral("RecorderHost.qml"), QSize(720, 480)));
        ui.view()->rootObject()->setProperty("field", QVariant::fromValue(field.get())), ui.settle();
    }
    void TearDown() override { if (field) field->stopRecording(); }
    // A colour of the palette an item uses ("text", "highlight").
    QColor paletteColor(const QString& objectName, const char* role) {
        return ui.read(objectName, "palette").value<QObject*>()->property(role).value<QColor>();
    }
    void openPicker() {
        ui.click(ui.find("pickButton"));
        ASSERT_TRUE(ui.shown("searchField"));
    }
    int cellCount() { return ui.read("keyGridView", "count").toInt(); }
};
using PickerViewTest = RecorderViewTest;

}  // namespace

TEST(KeyPickerSearch, matchesNameElseSymbolCaseInsensitivelyInDeclaredOrderUntrimmed) {
    using enum KeyCode;
    const std::pair<QString, std::vector<KeyCode>> cases[] = {
        // The left arrow's name is its glyph, so only the left modifier keys match.
        {"left", {leftShift, leftControl, leftOption, leftCommand}},
        {"⌘", {leftCommand, rightCommand}},
        {"🌐", {globe}},
        {" page", {}},
    };
    for (const auto& [query, expected] : cases) EXPECT_EQ(KeyPickerModel::searchResults(query), expected) << query.toStdString();
}

TEST(KeyGridModel, cellsNameTheKeyOnlyWhereTheSymbolDiffersFromTheName) {
    KeyGridModel model;
    model.setKeys({KeyCode::a, KeyCode::leftCommand, KeyCode::space, KeyCode::pageUp});
    const std::pair<const char*, bool> expected[] = {{"A", false}, {"⌘", true}, {"␣", true}, {"Page Up", false}};
    for (int row = 0; row < 4; ++row) {
        EXPECT_EQ(model.data(model.index(row), KeyGridModel::symbolRole).toString(), QString::fromUtf8(expected[row].first));
        EXPECT_EQ(model.data(model.index(row), KeyGridModel::showsDisplayNameRole).toBool(), expected[row].second) << row;
    }
}

TEST_F(RecorderViewTest, showsThePlaceholderOrTheChosenKeyWhichCancelKeepsAndClearRemoves) {
    showField(true);
    EXPECT_EQ(ui.read("recorderText", "text").toString(), placeholder);
    EXPECT_NE(ui.read("recorderText", "color").value<QColor>(), paletteColor("recorderText", "text"));  // secondary
    EXPECT_FALSE(ui.shown("clearButton"));

    field->setRecordedKey(RecordedKey{SourceKey::regular(KeyCode::a), Modifiers{.command = true, .shift = true}}), ui.settle();
    EXPECT_EQ(ui.read("recorderText", "text").toString(), QStringLiteral("⇧⌘A"));
    ASSERT_TRUE(ui.shown("clearButton"));
    ui.click(ui.find("recordButton"));
    ASSERT_TRUE(field->isRecording());
    ui.click(ui.find("recordButton"));  // Cancel
    EXPECT_FALSE(field->isRecording());
    EXPECT_EQ(ui.read("recorderText", "text").toString(), QStringLiteral("⇧⌘A"));

    ui.click(ui.find("clearButton"));
    EXPECT_FALSE(field->hasKey());
    EXPECT_EQ(ui.read("recorderText", "text").toString(), placeholder);
}

TEST_F(RecorderViewTest, whileRecordingTheFrameIsHighlightedUntilTheFirstKeyEndsIt) {
    showField(true);
    // Without the permission Record says why and stays; a later Record that can read starts.
    simAccessibility().setTrusted(false);
    ui.click(ui.find("recordButton"));
    EXPECT_TRUE(!field->isRecording() && ui.shown("recorderProblem") && ui.shown("permissionHelpButton"));
    ui.screenshot(QStringLiteral("recorder-not-allowed"));
    simAccessibility().setTrusted(true);
    ui.click(ui.find("recordButton"));
    EXPECT_FALSE(ui.shown("recorderProblem"));
    EXPECT_EQ(ui.read("recorderText", "text").toString(), QStringLiteral("Press any key..."));
    EXPECT_EQ(ui.read("recorderText", "color").value<QColor>(), paletteColor("recorderText", "text"));
    EXPECT_EQ(ui.read("recordButton", "text").toString(), QStringLiteral("Cancel"));
    QObject* border = ui.read("recorderFrame", "border").value<QObject*>();
    EXPECT_EQ(border->property("width").toInt(), 2);
    EXPECT_EQ(border->property("color").value<QColor>(), paletteColor("recorderFrame", "highlight"));
    ui.screenshot(QStringLiteral("recorder-recording"));

    ui.events().inject({10, static_cast<std::uint16_t>(rawValue(KeyCode::a)), EventFlag::command | EventFlag::shift, 0, std::nullopt});
    ui.settle();
    EXPECT_EQ(ui.read("recorderText", "text").toString(), QStringLiteral("⇧⌘A"));
    EXPECT_EQ(ui.read("recordButton", "text").toString(), QStringLiteral("Record"));
    EXPECT_EQ(border->property("width").toInt(), 1);
}

TEST_F(RecorderViewTest, leavingTheScreenWithItsItemOrItsWindowEndsTheRecordingAndResumesTheMainTap) {
    ASSERT_TRUE(ui.manager().start());
    showField(false);
    for (const bool byWindow : {false, true}) {
        ui.click(ui.find("recordButton"));
        ASSERT_FALSE(ui.manager().isRunning());
        byWindow ? ui.view()->hide() : ui.find("recorderView")->setVisible(false), ui.settle();
        EXPECT_TRUE(!field->isRecording() && ui.manager().isRunning()) << byWindow;
        ui.find("recorderView")->setVisible(true);
    }
}

// Which keys a search finds: the picker model's tests.
TEST_F(PickerViewTest, tabsShowTheirKeysASearchReplacesThemAndEachOpeningStartsAfresh) {
    showField(true);
    openPicker();
    EXPECT_EQ(cellCount(), 26);
    // The arrows move the focus over keys, which scroll into view: down past the fold, then left.
    ui.find("keyButton_A")->forceActiveFocus(Qt::TabFocusReason);
    for (Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Down, Qt::Key_Down, Qt::Key_Left}) ui.key(key);
    QQuickItem *focused = ui.find("keyGridView")->window()->activeFocusItem(), *grid = ui.find("keyGridView");
    ASSERT_TRUE(focused && focused->objectName() == "keyButton_Y");
    EXPECT_TRUE(grid->boundingRect().contains(focused->mapRectToItem(grid, focused->boundingRect())));
    ui.click(ui.find("categoryTab_Media & System"));
    EXPECT_EQ(cellCount(), 5);
    ui.screenshot(QStringLiteral("picker-category"), ui.find("searchField"));

    ui.click(ui.find("modOption"));
    ui.click(ui.find("searchField"));
    for (Qt::Key key : {Qt::Key_P, Qt::Key_A, Qt::Key_G, Qt::Key_E}) ui.key(key);
    EXPECT_EQ(cellCount(), 2);
    EXPECT_TRUE(!ui.shown("categoryTabs") && ui.find("keyButton_Page Down"));
    ui.screenshot(QStringLiteral("picker-search"), ui.find("searchField"));

    // Escape writes nothing; the next opening shows the first tab, no search and no modifiers.
    ui.key(Qt::Key_Escape);
    ASSERT_FALSE(ui.shown("searchField"));
    EXPECT_FALSE(field->hasKey());
    openPicker();
    EXPECT_EQ(ui.read("searchField", "text").toString(), QString());
    EXPECT_EQ(cellCount(), 26);
    EXPECT_TRUE(ui.shown("categoryTabs") && !ui.read("modOption", "checked").toBool());
}

TEST_F(PickerViewTest, pickingWritesTheKeyWithTheTickedModifiersInTheDesktopsWordsClosesAndLeavesARecordingRunning) {
    showField(true);
    field->toggleRecording();
    simulateDesktopWords(DesktopWords::linuxDesktop());  // the checkboxes say the desktop's words
    openPicker();
    simulateDesktopWords(DesktopWords::mac());
    QStringList labels;
    for (const char* name : {"modControl", "modOption", "modShift", "modCommand"}) labels << ui.read(name, "text").toString();
    EXPECT_EQ(labels, (QStringList{"Ctrl", "Alt", "Shift", "Super"}));
    for (const char* name : {"modCommand", "modShift", "keyButton_A"}) ui.click(ui.find(name));
    EXPECT_TRUE(!ui.shown("searchField") && field->isRecording());
    EXPECT_EQ(field->recordedKey(), (RecordedKey{SourceKey::regular(KeyCode::a), Modifiers{.command = true, .shift = true}}));

    // Modifiers alone, once one is ticked: they replace the key, and a key picked later replaces them.
    field->stopRecording();
    openPicker();
    EXPECT_FALSE(ui.read("modifiersOnlyButton", "enabled").toBool());
    for (const char* name : {"modControl", "modOption", "modifiersOnlyButton"}) ui.click(ui.find(name));
    EXPECT_TRUE(!ui.shown("searchField") && !field->recordedKey());
    EXPECT_EQ(field->modifiersOnly(), (Modifiers{.option = true, .control = true}));
    EXPECT_EQ(field->text(), QStringLiteral("⌃⌥"));
    openPicker();
    ui.click(ui.find("keyButton_B"));
    EXPECT_TRUE(field->recordedKey() && !field->modifiersOnly());
}

TEST_F(PickerViewTest, withoutModifiersThereIsNoModifierRowAndPicksAreBare) {
    showField(false);
    openPicker();
    EXPECT_FALSE(ui.shown("modifierRow") || ui.shown("modifierDivider"));
    for (const char* name : {"categoryTab_Modifiers", "keyButton_Right Option"}) ui.click(ui.find(name));
    EXPECT_EQ(field->recordedKey(), (RecordedKey{SourceKey::regular(KeyCode::rightOption), {}}));
}

TEST_F(PickerViewTest, thePopoverReachesPastItsWindowAndClosesWhenAnotherWindowIsActivated) {
    showField(true);
    ui.view()->resize(500, 400), ui.settle();  // the sheet's window is narrower than the picker
    openPicker();
    QQuickItem* search = ui.find("searchField");  // there: openPicker asserts it
    EXPECT_NE(search->window(), ui.view());
    EXPECT_GT(search->window()->width(), ui.view()->width());

    EXPECT_TRUE(QTest::qWaitFor([&] { return search->window()->isActive(); }, 10000));
    ui.view()->requestActivate();  // a click anywhere else
    EXPECT_TRUE(QTest::qWaitFor([&] { return !ui.shown("searchField"); }, 10000));
}
