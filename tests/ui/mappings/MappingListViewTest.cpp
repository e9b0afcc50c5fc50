// The configuration window from the real QML: the list (rows, row actions, drag, switch, settings) and the add/edit sheet.
#include "Mappings.h"
#include "UiHarness.h"
#include "ui/mappings/MappingListModel.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QGuiApplication>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QScreen>
#include <QStyleHints>
#include <QTest>

#include <cmath>

#include <unistd.h>

using namespace orvane;
using namespace orvane::testing;

namespace {

// The visible items at or under item, in tree order (an invisible item hides its children).
QList<QQuickItem*> visibleItems(QQuickItem* item) {
    QList<QQuickItem*> items;
    if (!item || !item->isVisible()) return items;
    items << item;
    for (QQuickItem* child : item->childItems()) items += visibleItems(child);
    return items;
}
// What a text item shows (empty for any other item).
QString textOf(QQuickItem* item) { return item->inherits("QQuickText") ? item->property("text").toString() : QString(); }

// The non-empty texts of visible text items at or under item, in tree order: what a row shows.
QStringList visibleTexts(QQuickItem* item) {
    QStringList texts;
    for (QQuickItem* each : visibleItems(item))
        if (!textOf(each).isEmpty()) texts << textOf(each);
    return texts;
}

// Fixed texts that do not fit at or under item: cut short, wider than their item, or reaching past
// the edges of within (the window or sheet that holds them).
std::string misfits(QQuickItem* item, QQuickItem* within = nullptr) {
    within = within ? within : item;
    QStringList cut;
    for (QQuickItem* text : visibleItems(item)) {
        if (textOf(text).isEmpty()) continue;
        const QRectF place = text->mapRectToItem(within, QRectF(0, 0, text->width(), text->height()));
        const bool wraps = text->property("wrapMode").toInt() != 0;
        if (text->property("truncated").toBool() || (!wraps && text->implicitWidth() > text->width() + 0.5) ||
            !within->boundingRect().adjusted(-0.5, -0.5, 0.5, 0.5).contains(place))
            cut << textOf(text);
    }
    return cut.join(" | ").toStdString();
}

// WCAG's contrast ratio of two opaque colours.
double contrast(const QColor& a, const QColor& b) {
    const auto luminance = [](const QColor& c) {
        const auto linear = [](double v) { return v <= 0.03928 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4); };
        return 0.2126 * linear(c.redF()) + 0.7152 * linear(c.greenF()) + 0.0722 * linear(c.blueF());
    };
    const double la = luminance(a), lb = luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

// The visible, enabled texts at or under item that read below 4.5:1 on their ground: the colour most of
// their box shows in the window's picture, with the text's colour laid on it at its opacity. (Disabled
// controls need no contrast.) The desktop's accent buttons, named here, keep its own colours.
std::string faintTexts(QQuickItem* item) {
    const QImage picture = item->window()->grabWindow();
    const auto onAccent = [](QQuickItem* each) {
        for (; each; each = each->parentItem())
            if (each->objectName() == "addFirstMappingButton" || each->objectName() == "targetTypeControl") return true;
        return false;
    };
    QStringList faint;
    for (QQuickItem* text : visibleItems(item)) {
        if (textOf(text).isEmpty() || !text->isEnabled() || onAccent(text)) continue;
        QHash<QRgb, int> counts;
        const QRect box = text->mapRectToScene(text->boundingRect()).toAlignedRect().intersected(picture.rect());
        if (box.isEmpty()) continue;  // out of the picture: misfits() tells
        for (int y = box.top(); y <= box.bottom(); ++y)
            for (int x = box.left(); x <= box.right(); ++x) ++counts[picture.pixel(x, y)];
        const auto most = std::max_element(counts.keyValueBegin(), counts.keyValueEnd(), [](auto a, auto b) { return a.second < b.second; });
        const QColor ground = QColor(most->first), ink = text->property("color").value<QColor>();
        double alpha = ink.alphaF();
        for (QQuickItem* each = text; each; each = each->parentItem()) alpha *= each->opacity();
        if (alpha == 0) continue;
        const auto mix = [&](double from, double to) { return from + (to - from) * alpha; };
        const QColor seen = QColor::fromRgbF(mix(ground.redF(), ink.redF()), mix(ground.greenF(), ink.greenF()), mix(ground.blueF(), ink.blueF()));
        if (const double ratio = contrast(seen, ground); ratio < 4.5)
            faint << QStringLiteral("%1 %2 on %3 (%4)").arg(textOf(text), seen.name(), ground.name()).arg(ratio, 0, 'f', 1);
    }
    return faint.join(" | ").toStdString();
}

// The tooltip that every control shares (made when first shown), once it shows.
QObject* shownToolTip(QQuickView* view) {
    QObject* tooltip = nullptr;
    EXPECT_TRUE(QTest::qWaitFor([&] {
        for (QObject* object : view->engine()->findChildren<QObject*>())
            if (object->inherits("QQuickToolTip") && object->property("visible").toBool()) tooltip = object;
        return tooltip != nullptr;
    }));
    return tooltip;
}

// How many pixel rows of the keycap, inside its border, hold ink: anything far from the cap's colour.
int inkHeight(const QImage& window, QQuickItem* keycap) {
    const QRect cap = keycap->mapRectToScene(keycap->boundingRect()).toAlignedRect().adjusted(2, 2, -2, -2);
    const QColor ground = window.pixelColor(cap.topLeft());
    const auto far = [&](QColor c) { return std::abs(c.red() - ground.red()) + std::abs(c.green() - ground.green()) + std::abs(c.blue() - ground.blue()) > 120; };
    int rows = 0;
    for (int y = cap.top(); y <= cap.bottom(); ++y) {
        int x = cap.left();
        while (x <= cap.right() && !far(window.pixelColor(x, y))) ++x;
        rows += x <= cap.right();
    }
    return rows;
}

struct MappingListViewTest : ::testing::Test {
    UiHarness ui;

    void SetUp() override { ASSERT_TRUE(ui.show(QStringLiteral("MappingListView.qml"), QSize(500, 400))); }
    void use(std::vector<KeyMapping> mappings) { ui.store().setMappings(std::move(mappings)), ui.settle(); }

    MappingListModel* model() { return ui.view()->rootObject()->findChild<MappingListModel*>(); }
    QQuickItem* row(int i) { return ui.find(QStringLiteral("mappingRow%1").arg(i)); }
    QQuickItem* inRow(int i, const char* name) { return childNamed(row(i), QString::fromLatin1(name)); }
    QString sheetTitle() { return ui.shown("sheetTitle") ? ui.read("sheetTitle", "text").toString() : QString(); }
    // Where the sheet's fixed parts are, as text: switching Block and Remap must move none of them.
    std::string sheetPlaces() {
        std::string places;
        for (const char* name : {"sheetTitle", "sourceRecorder", "targetTypeControl", "cancelButton", "primaryButton"}) {
            const QRectF rect = ui.find(name)->mapRectToItem(ui.find("mappingSheet"), ui.find(name)->boundingRect());
            places += QStringLiteral("%1: %2,%3 %4x%5; ").arg(name).arg(rect.x()).arg(rect.y()).arg(rect.width()).arg(rect.height()).toStdString();
        }
        return places;
    }
    QString recorderText(const char* recorder) {
        return childNamed(ui.find(recorder), QStringLiteral("recorderText"))->property("text").toString();
    }
};
using AddMappingViewTest = MappingListViewTest;

// Focusable controls in the focused window (the main one or a popover) that draw nothing different
// around themselves when given the focus, whatever the reason the focus came. A scope that hands the
// focus on to a control inside is that control's business.
QStringList controlsWithoutVisibleFocus(UiHarness& ui) {
    QStringList unseen;
    auto* window = qobject_cast<QQuickWindow*>(QGuiApplication::focusWindow());
    if (!window) return {"(no focused window)"};
    QQuickItem elsewhere(window->contentItem());  // holds the focus for the picture without it
    for (QQuickItem* item : visibleItems(window->contentItem())) {
        if (!item->activeFocusOnTab() || !item->isEnabled()) continue;
        const QRect area = item->mapRectToScene(item->boundingRect()).toAlignedRect().adjusted(-4, -4, 4, 4);
        const auto pictureWithFocusOn = [&](QQuickItem* focused) {
            return focused->forceActiveFocus(Qt::OtherFocusReason), ui.settle(), window->grabWindow().copy(area);
        };
        const QImage before = pictureWithFocusOn(&elsewhere), after = pictureWithFocusOn(item);
        int changed = 0;
        for (int y = 0; y < area.height(); ++y)
            for (int x = 0; x < area.width(); ++x) changed += before.pixel(x, y) != after.pixel(x, y);
        if (window->activeFocusItem() == item && changed < area.width() + area.height()) unseen << item->objectName();
    }
    return unseen;
}

}  // namespace

TEST_F(MappingListViewTest, anEmptyListInvitesTheFirstMappingAndBothButtonsOpenANewSheet) {
    EXPECT_TRUE(ui.shown("emptyState") && !ui.shown("mappingList"));
    EXPECT_EQ(ui.read("activeCount", "text"), "0 of 0 active");
    ui.screenshot(QStringLiteral("config-empty"));
    for (const char* button : {"addFirstMappingButton", "addMappingButton"}) {
        ui.click(ui.find(button));
        ASSERT_NE(model()->editor(), nullptr) << button;
        EXPECT_EQ(sheetTitle(), "New Mapping");
        ui.key(Qt::Key_Escape);
        EXPECT_EQ(model()->editor(), nullptr);
        EXPECT_EQ(sheetTitle(), QString());
    }
}

// Which badge a row earns in each Caps Lock state: the model's tests; their contrast: the palettes' test.
TEST_F(MappingListViewTest, rowsShowEachKindOfMappingWithItsBadge) {
    use({mapping(KeyCode::a, TargetAction::key(KeyCode::b)),
         mapping(KeyCode::f1, TargetAction::combination(KeyCode::k, {.command = true, .shift = true})),
         mapping(KeyCode::escape, TargetAction::block()),
         mapping(SourceKey::system(SystemKeyID::volumeUp), TargetAction::key(KeyCode::f12)),
         mapping(KeyCode::capsLock, TargetAction::key(KeyCode::escape)),
         mapping(KeyCode::d, TargetAction::combination(KeyCode::leftArrow, {.option = true}), false)});
    ui.store().setCapsLockHIDState(true, true), ui.settle();
    EXPECT_FALSE(ui.shown("emptyState"));
    EXPECT_EQ(ui.read("activeCount", "text"), "5 of 6 active");
    const QStringList expected[] = {{"A", "Tap", "B"},         {"F1", "Tap", "⇧", "⌘", "K"}, {"⎋", "Tap", "Block"},
                                    {"\U0001F50A", "Tap", "F12"}, {"⇪", "HID", "⎋"},           {"D", "⌥", "←"}};
    for (int i = 0; i < 6; ++i) EXPECT_EQ(visibleTexts(row(i)), expected[i]) << "row " << i;
    EXPECT_FALSE(inRow(5, "enabledCheckBox")->property("checked").toBool());
    // The block sign is drawn in red; a disabled row's keycaps, source and target, are dimmed.
    EXPECT_GT(pixelsLike(inRow(2, "blockTarget"), QColor("#ff3b30")), 10);
    const auto ink = [&](int i, const char* part) { return childNamed(inRow(i, part), "keycapLabel")->property("color"); };
    for (const char* part : {"sourceKeycap", "targetKeycaps"}) EXPECT_NE(ink(5, part), ink(0, part)) << part;
    ui.screenshot(QStringLiteral("config-list"));
    // The checkbox toggles the mapping; enabled again, the row shows its badge again.
    ui.click(inRow(5, "enabledCheckBox"));
    EXPECT_TRUE(ui.store().mappings()[5].isEnabled);
    EXPECT_EQ(visibleTexts(row(5)), (QStringList{"D", "Tap", "⌥", "←"}));
}

// The names themselves: the model's tests.
TEST_F(MappingListViewTest, keycapsNameTheirKeysWhenHoveredAndDrawSymbolsLargeEnoughToTellApart) {
    QGuiApplication::styleHints()->setUseHoverEffects(true);  // as on a desktop; controls read it when made
    ASSERT_TRUE(ui.show(QStringLiteral("MappingListView.qml"), QSize(500, 400)));
    use({mapping(SourceKey::system(SystemKeyID::playPause), TargetAction::key(KeyCode::escape)),
         mapping(SourceKey::system(SystemKeyID::nextTrack), TargetAction::combination(KeyCode::k, {.command = true})),
         mapping(SourceKey::system(SystemKeyID::previousTrack), TargetAction::key(KeyCode::a)),
         mapping(SourceKey::system(SystemKeyID::volumeUp), TargetAction::key(KeyCode::globe))});
    const QImage window = ui.screenshot(QStringLiteral("config-keycap-symbols"));
    const auto capAt = [&](int i, const char* part) {
        QQuickItem* cap = inRow(i, part);
        return childNamed(cap, "targetKeycap") ? childNamed(cap, "targetKeycap") : cap;
    };
    // Pictures (⏯ ⏭ ⏮ 🔊 🌐) stand 14 px tall or more; symbols (⎋ ⌘) at least as tall as a capital letter.
    const int letter = inkHeight(window, capAt(2, "targetKeycaps"));
    const std::tuple<int, const char*, int> least[] = {{0, "sourceKeycap", 14}, {1, "sourceKeycap", 14},   {2, "sourceKeycap", 14},
                                                       {3, "sourceKeycap", 14}, {3, "targetKeycaps", 14},  {0, "targetKeycaps", letter},
                                                       {1, "targetKeycaps", letter}};
    for (const auto& [i, part, height] : least) EXPECT_GE(inkHeight(window, capAt(i, part)), height) << i << part;
    ui.click(capAt(1, "sourceKeycap"), UiHarness::Mouse::hover);
    QObject* tooltip = shownToolTip(ui.view());
    EXPECT_EQ(tooltip ? tooltip->property("text").toString() : QString(), "Next Track");
    ui.click(capAt(1, "targetKeycaps"), UiHarness::Mouse::hover);
    EXPECT_TRUE(QTest::qWaitFor([&] { return tooltip->property("text").toString() == "Command"; }));
}

TEST_F(MappingListViewTest, hoveringARowRevealsItsEditAndDeleteButtons) {
    const auto kinds = oneOfEachKind();  // A → B, F1 → ⇧⌘K, ...
    use({kinds[0], kinds[1]});
    EXPECT_FALSE(inRow(1, "rowActions")->isEnabled());
    ui.click(row(1), UiHarness::Mouse::hover);
    EXPECT_FALSE(inRow(0, "rowActions")->isEnabled());
    ASSERT_TRUE(inRow(1, "rowActions")->isEnabled());
    for (const auto& [name, label] : {std::pair{"editButton", "Edit mapping"}, std::pair{"deleteButton", "Delete mapping"}}) {
        EXPECT_EQ(inRow(1, name)->property("tooltip").toString(), label);
        QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(inRow(1, name));
        ASSERT_TRUE(accessible);
        EXPECT_EQ(accessible->text(QAccessible::Name), label);
    }
    ui.screenshot(QStringLiteral("config-row-hover"));

    ui.click(inRow(1, "editButton"));
    ASSERT_NE(model()->editor(), nullptr);
    EXPECT_EQ(model()->editor()->targetField()->text(), "⇧⌘K");
    ui.key(Qt::Key_Escape);
    ui.click(row(0), UiHarness::Mouse::hover);
    ui.click(inRow(0, "deleteButton"));
    EXPECT_EQ(ui.store().mappings(), std::vector<KeyMapping>{kinds[1]});
}

// A double click edits a row: the sheet's tests below.
TEST_F(MappingListViewTest, returnEditsTheSelectedRowAndDeleteOrBackspaceRemovesOnlyIt) {
    const auto a = mapping(KeyCode::a, TargetAction::block()), b = mapping(KeyCode::b, TargetAction::block()),
               c = mapping(KeyCode::c, TargetAction::block());
    use({a, b, c});
    ui.key(Qt::Key_Delete);  // nothing selected yet
    EXPECT_EQ(ui.store().mappings().size(), 3u);
    ui.click(row(0));
    ui.key(Qt::Key_Return);
    ASSERT_NE(model()->editor(), nullptr);
    EXPECT_EQ(model()->editor()->sourceField()->text(), "A");
    ui.click(ui.find("cancelButton"));
    EXPECT_EQ(model()->editor(), nullptr);

    ui.click(row(1));
    EXPECT_TRUE(row(1)->property("isSelected").toBool());
    ui.key(Qt::Key_Delete);
    EXPECT_EQ(idsOf(ui.store().mappings()), (std::vector<Uuid>{a.id, c.id}));
    ui.key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(idsOf(ui.store().mappings()), (std::vector<Uuid>{a.id, b.id, c.id}));
    ui.click(row(1));
    for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Backspace}) ui.key(key);
    EXPECT_EQ(idsOf(ui.store().mappings()), (std::vector<Uuid>{b.id, c.id}));
    // Alt with an arrow moves the selected row, which stays selected.
    ui.click(row(0));
    ui.key(Qt::Key_Down, Qt::AltModifier);
    EXPECT_TRUE(idsOf(ui.store().mappings()) == (std::vector<Uuid>{c.id, b.id}) && model()->selectedRow() == 1);
    ui.key(Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(idsOf(ui.store().mappings()), (std::vector<Uuid>{b.id, c.id}));
    // With no sheet open, Escape and Ctrl+W close the window.
    for (const auto& [key, modifiers] : {std::pair{Qt::Key_Escape, Qt::NoModifier}, std::pair{Qt::Key_W, Qt::ControlModifier}}) {
        ui.view()->show(), ui.view()->requestActivate(), ui.settle();
        ui.key(key, modifiers);
        EXPECT_FALSE(ui.view()->isVisible()) << key;
    }
}

TEST_F(MappingListViewTest, draggingTheLastRowToTheTopMakesItWin) {
    const auto first = mapping(KeyCode::a, TargetAction::key(KeyCode::b)), other = mapping(KeyCode::c, TargetAction::block()),
               last = mapping(KeyCode::a, TargetAction::key(KeyCode::z));
    use({first, other, last});
    const QPoint start = row(2)->mapToScene(QPointF(row(2)->width() * 0.6, 14)).toPoint();
    const QPoint target = row(0)->mapToScene(QPointF(row(2)->width() * 0.6, 2)).toPoint();
    QTest::mousePress(ui.view(), Qt::LeftButton, Qt::NoModifier, start);
    for (int step = 1; step <= 8; ++step) QTest::mouseMove(ui.view(), start + (target - start) * step / 8);
    ui.settle();
    EXPECT_TRUE(ui.shown("dropIndicator"));
    QTest::mouseRelease(ui.view(), Qt::LeftButton, Qt::NoModifier, target), ui.settle();
    EXPECT_FALSE(ui.shown("dropIndicator"));
    EXPECT_EQ(idsOf(ui.store().mappings()), (std::vector<Uuid>{last.id, first.id, other.id}));
    EXPECT_EQ(ui.store().mappingForKey(KeyCode::a)->id, last.id);
}

// A row held at the bottom edge of a long list scrolls it and lands further down than the list showed.
TEST_F(MappingListViewTest, aLongListShowsItsScrollBarAndScrollsWhileARowIsHeldAtItsEdge) {
    std::vector<KeyMapping> rows;
    for (int i = 0; i < 30; ++i) rows.push_back(mapping(KeyCode::a, TargetAction::block()));
    use(rows);
    EXPECT_EQ(ui.read("listScrollBar", "policy").toInt(), 2);  // ScrollBar.AlwaysOn
    QQuickItem* list = ui.find("mappingList");
    const QPoint start = row(0)->mapToScene(QPointF(row(0)->width() * 0.6, 14)).toPoint();
    const QPoint edge = list->mapToScene(QPointF(row(0)->width() * 0.6, list->height() - 4)).toPoint();
    QTest::mousePress(ui.view(), Qt::LeftButton, Qt::NoModifier, start);
    for (int step = 1; step <= 8; ++step) QTest::mouseMove(ui.view(), start + (edge - start) * step / 8);
    QTest::qWait(1500);
    QTest::mouseRelease(ui.view(), Qt::LeftButton, Qt::NoModifier, edge), ui.settle();
    const auto ids = idsOf(ui.store().mappings());
    EXPECT_GT(std::find(ids.begin(), ids.end(), rows[0].id) - ids.begin(), 20);
}

TEST_F(MappingListViewTest, theSwitchShowsTheManagersStateAfterEachCall) {
    // Whether the switch is clicked (or else the menu starts the tap), whether the process is trusted,
    // and the state shown after.
    const std::tuple<bool, bool, bool> steps[] = {{true, true, true}, {true, true, false},
                                                  {true, false, false},  // the start fails: the switch stays off
                                                  {false, true, true}, {true, true, false}, {true, false, false}};
    for (const auto& [clicked, trusted, on] : steps) {
        simAccessibility().setTrusted(trusted);
        clicked ? ui.click(ui.find("activeSwitch")) : (void)ui.manager().start();
        ui.settle();
        EXPECT_TRUE(ui.manager().isRunning() == on && ui.read("activeSwitch", "checked").toBool() == on) << on;
        EXPECT_EQ(ui.read("activeSwitch", "text"), on ? "Active" : "Inactive");
        EXPECT_EQ(ui.shown("permissionNotice"), !on && !trusted) << on;
    }
    ui.screenshot(QStringLiteral("config-permission-missing"));
}

TEST_F(MappingListViewTest, inTheSmallestWindowTheGearTogglesTheSettingsWholeOverItsTooltipAndTheWindowKeepsDrawing) {
    QGuiApplication::styleHints()->setUseHoverEffects(true);  // as on a desktop; controls read it when made
    ASSERT_TRUE(ui.show(QStringLiteral("MappingListView.qml"), QSize(450, 300)));
    ui.click(ui.find("settingsButton"), UiHarness::Mouse::hover);
    QObject* tooltip = shownToolTip(ui.view());
    ASSERT_TRUE(tooltip);
    // A frame whose layout feeds on itself never ends: SIGALRM ends the process ("Alarm clock") after 20 s.
    ::alarm(20);
    ui.click(ui.find("settingsButton"));  // which draws a frame
    ::alarm(0);
    ASSERT_TRUE(ui.shown("settingsPanel"));
    QQuickItem* panel = ui.find("settingsPanel");
    const QRect popover = panel->window()->geometry();
    EXPECT_TRUE(ui.view()->screen()->availableGeometry().contains(popover));
    EXPECT_GE(popover.height(), panel->implicitHeight());
    EXPECT_FALSE(tooltip->property("visible").toBool());
    ui.screenshot(QStringLiteral("config-settings-smallest"));
    ui.click(ui.find("settingsButton"));  // the gear again, or the panel, closes it
    EXPECT_FALSE(ui.shown("settingsPanel"));
    ui.click(ui.find("settingsButton"));
    QMetaObject::invokeMethod(panel, "dismissRequested"), ui.settle();
    EXPECT_FALSE(ui.shown("settingsPanel"));
}

// The design's sizes: the window at its smallest, the sheet, the settings popover and the picker.
TEST_F(MappingListViewTest, everyFixedTextFitsAtTheDesignsSizes) {
    ui.view()->resize(450, 300), ui.settle();
    EXPECT_EQ(misfits(ui.view()->contentItem()), "");
    use({mapping(KeyCode::capsLock, TargetAction::combination(KeyCode::k, {.command = true, .option = true, .control = true, .shift = true}))});
    EXPECT_EQ(misfits(ui.view()->contentItem()), "");
    ui.click(ui.find("settingsButton"));
    EXPECT_EQ(misfits(ui.find("settingsPanel")->window()->contentItem()), "");
    ui.click(ui.find("settingsButton"));
    ui.click(ui.find("addMappingButton"));
    for (const char* segment : {"segmentBlock", "segmentRemap"}) {
        EXPECT_EQ(misfits(ui.find("mappingSheet")), "");
        ui.click(ui.find(segment));
    }
    ui.click(childNamed(ui.find("targetRecorder"), QStringLiteral("pickButton")));
    QQuickItem* picker = ui.find("categoryTabs")->window()->contentItem();
    for (const char* part : {"searchField", "categoryTabs", "modifierRow"})
        EXPECT_EQ(misfits(ui.find(part), picker), "") << part;
}

// Captions, hints, badges and keycaps on the window, the rows, the settings, the sheet and the picker. Controls
// made after a change of palette keep the style's palette from the start (a desktop's palette is there from
// the start), so the sheet and the picker, made at each opening, are seen in the first palette only.
TEST_F(MappingListViewTest, everyTextReadsAtFourAndAHalfToOneInALightAndADarkPalette) {
    const QPalette light = QGuiApplication::palette();
    for (const QPalette& palette : {light, QPalette(QColor("#3a3a3a"), QColor("#323232"))}) {
        QGuiApplication::setPalette(palette);
        use({});
        EXPECT_EQ(faintTexts(ui.view()->contentItem()), "") << palette.window().color().name().toStdString();
        use({mapping(KeyCode::a, TargetAction::key(KeyCode::b)), mapping(KeyCode::capsLock, TargetAction::key(KeyCode::escape)),
             mapping(KeyCode::escape, TargetAction::block()), mapping(KeyCode::f1, TargetAction::key(KeyCode::b))});
        ui.store().setCapsLockHIDState(true, true), ui.click(row(3));
        ui.view()->contentItem()->forceActiveFocus(), ui.settle();  // the row stays selected in a list without the focus
        EXPECT_EQ(faintTexts(ui.view()->contentItem()), "") << palette.window().color().name().toStdString();
        ui.screenshot(QStringLiteral("config-list-%1").arg(palette.window().color().name().mid(1)));
        ui.click(ui.find("settingsButton"));
        EXPECT_EQ(faintTexts(ui.find("settingsPanel")), "") << palette.window().color().name().toStdString();
        ui.click(ui.find("settingsButton"));
        if (palette != light) break;
        ui.click(ui.find("addMappingButton"));
        for (const char* segment : {"segmentBlock", "segmentRemap"}) EXPECT_EQ(faintTexts(ui.find("mappingSheet")), ""), ui.click(ui.find(segment));
        ui.click(childNamed(ui.find("targetRecorder"), QStringLiteral("pickButton")));
        EXPECT_EQ(faintTexts(ui.find("categoryTabs")->window()->contentItem()), "");
        ui.key(Qt::Key_Escape), ui.key(Qt::Key_Escape);
    }
    QGuiApplication::setPalette(light);
}

TEST_F(AddMappingViewTest, everyFocusableControlShowsItHasTheFocusInTheListTheSheetAndThePicker) {
    use({mapping(KeyCode::a, TargetAction::block())});
    EXPECT_EQ(controlsWithoutVisibleFocus(ui).join(' ').toStdString(), "");
    ui.click(ui.find("addMappingButton"));
    EXPECT_EQ(controlsWithoutVisibleFocus(ui).join(' ').toStdString(), "");
    ui.click(childNamed(ui.find("targetRecorder"), "pickButton"));
    ASSERT_TRUE(ui.shown("searchField"));
    EXPECT_EQ(controlsWithoutVisibleFocus(ui).join(' ').toStdString(), "");
}

TEST_F(AddMappingViewTest, aNewSheetOffersRemapBlockMovesNothingElseAndReturnAddsABlockedKey) {
    ui.click(ui.find("addMappingButton"));  // its title: the empty list's test
    EXPECT_EQ(ui.read("primaryButton", "text"), "Add Mapping");
    EXPECT_FALSE(ui.find("primaryButton")->isEnabled());
    EXPECT_TRUE(ui.read("segmentRemap", "checked").toBool() && ui.shown("targetRecorder") && !ui.shown("blockCaption"));
    EXPECT_EQ(recorderText("sourceRecorder"), "Press the key to remap...");
    EXPECT_EQ(recorderText("targetRecorder"), "Press target key or combination...");
    ui.screenshot(QStringLiteral("sheet-new"));

    const std::string underRemap = sheetPlaces();
    ui.click(ui.find("segmentBlock"));
    EXPECT_EQ(sheetPlaces(), underRemap);
    EXPECT_FALSE(ui.read("segmentRemap", "checked").toBool() || ui.shown("targetRecorder") || !ui.shown("blockCaption"));
    EXPECT_EQ(ui.read("blockCaption", "text"), "The source key will be completely disabled.");
    // Without a source Return does nothing and the sheet stays.
    ui.key(Qt::Key_Return);
    EXPECT_TRUE(ui.shown("mappingSheet") && ui.store().mappings().empty());

    // Recording through the keyboard: the recorder field's tests.
    model()->editor()->sourceField()->setRecordedKey(RecordedKey{SourceKey::regular(KeyCode::f5), {}}), ui.settle();
    EXPECT_EQ(recorderText("sourceRecorder"), "F5");
    EXPECT_TRUE(ui.find("primaryButton")->isEnabled());
    ui.key(Qt::Key_Return);
    EXPECT_FALSE(ui.shown("mappingSheet") || model()->editor());
    ASSERT_EQ(ui.store().mappings().size(), 1u);
    const KeyMapping added = ui.store().mappings()[0];
    EXPECT_EQ(added, (KeyMapping{added.id, SourceKey::regular(KeyCode::f5), TargetAction::block(), true}));
}

TEST_F(AddMappingViewTest, editingACombinationShowsItAndSavesItUnchanged) {
    const auto combination = mapping(KeyCode::f1, TargetAction::combination(KeyCode::k, {.command = true, .shift = true}), false);
    use({mapping(KeyCode::a, TargetAction::block()), combination});
    ui.click(row(1), UiHarness::Mouse::doubleClick);
    EXPECT_EQ(sheetTitle(), "Edit Mapping");
    EXPECT_EQ(recorderText("sourceRecorder"), "F1");
    EXPECT_EQ(recorderText("targetRecorder"), "⇧⌘K");
    EXPECT_TRUE(ui.read("segmentRemap", "checked").toBool());
    EXPECT_EQ(ui.read("primaryButton", "text"), "Save Changes");
    ui.screenshot(QStringLiteral("sheet-edit-combination"));
    ui.click(ui.find("primaryButton"));
    EXPECT_FALSE(ui.shown("mappingSheet"));
    EXPECT_EQ(ui.store().mappings().at(1), combination);
}

TEST_F(AddMappingViewTest, aKeyWithTwoRolesShowsBothInItsRowAndItsSheet) {
    auto twoRoles = mapping(KeyCode::capsLock, TargetAction::modifiersOnly({.command = true, .option = true, .control = true, .shift = true}));
    twoRoles.aloneKey = KeyCode::escape;
    use({twoRoles});
    EXPECT_EQ(visibleTexts(row(0)), (QStringList{"⇪", "HID+Tap", "⌃", "⌥", "⇧", "⌘", "· alone ⎋"}));
    ui.click(row(0), UiHarness::Mouse::doubleClick);
    EXPECT_EQ(recorderText("targetRecorder"), "⌃⌥⇧⌘");
    EXPECT_EQ(recorderText("aloneRecorder"), "⎋");
    ui.screenshot(QStringLiteral("sheet-edit-alone"));
    ui.click(ui.find("primaryButton"));
    EXPECT_EQ(ui.store().mappings().at(0), twoRoles);
}
