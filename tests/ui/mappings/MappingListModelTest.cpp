// The list model: badges, in-place updates, selection and moves. What rows show: the list view's tests.
#include "Mappings.h"
#include "UiHarness.h"
#include "ui/mappings/MappingListModel.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>

using namespace orvane;
using namespace orvane::testing;

namespace {

QString idText(const KeyMapping& m) { return QString::fromStdString(m.id.toString()); }

struct MappingListModelTest : ::testing::Test {
    UiHarness ui;
    MappingListModel model{ui.store(), ui.events(), ui.manager()};
    KeyMapping a = mapping(KeyCode::a, TargetAction::block()), b = mapping(KeyCode::b, TargetAction::block()),
               c = mapping(KeyCode::c, TargetAction::block()), d = mapping(KeyCode::d, TargetAction::block());

    QVariant at(int row, int role) { return model.data(model.index(row), role); }
};

}  // namespace

TEST_F(MappingListModelTest, badgesTellHowARowTakesEffectAndKeycapsComeInModifierOrderWithTheirFullNames) {
    // The mapping, Caps Lock's HID state (which says nothing about other keys), badge, colour, tooltip.
    const std::tuple<KeyMapping, bool, QString, QString, QString> cases[] = {
        {mapping(SourceKey::system(SystemKeyID::volumeUp), TargetAction::key(KeyCode::f5)), true, "Tap", "orange",
         "Event tap interception (requires app running)"},
        {mapping(KeyCode::capsLock, TargetAction::key(KeyCode::escape)), true, "HID", "green",
         "Direct HID-layer remapping (instant, works without app)"},
        {mapping(KeyCode::capsLock, TargetAction::block()), false, "HID+Tap", "blue", "HID-layer + event tap (for combinations/block)"},
    };
    for (const auto& [row, capsLockDirect, badge, color, tooltip] : cases) {
        ui.store().setMappings({row}), ui.settle();
        ui.store().setCapsLockHIDState(true, capsLockDirect);
        EXPECT_EQ(at(0, MappingListModel::BadgeTextRole).toString(), badge);
        EXPECT_EQ(at(0, MappingListModel::BadgeColorRole).toString(), color) << badge.toStdString();
        EXPECT_EQ(at(0, MappingListModel::BadgeTooltipRole).toString(), tooltip) << badge.toStdString();
    }
    ui.store().setMappings({mapping(KeyCode::f1, TargetAction::combination(KeyCode::c, {true, true, true, true}))});
    EXPECT_EQ(at(0, MappingListModel::TargetKeycapsRole).toStringList(), (QStringList{"⌃", "⌥", "⇧", "⌘", "C"}));
    // The keycaps' full names, one for each, in the desktop's words.
    EXPECT_EQ(at(0, MappingListModel::TargetKeyNamesRole).toStringList(), (QStringList{"Control", "Option", "Shift", "Command", "C"}));
    simulateDesktopWords(DesktopWords::linuxDesktop());
    const std::tuple<KeyMapping, QString, QStringList> named[] = {
        {mapping(SourceKey::system(SystemKeyID::volumeUp), TargetAction::key(KeyCode::escape)), "Volume Up", {"Escape"}},
        {mapping(KeyCode::rightOption, TargetAction::combination(KeyCode::leftCommand, {.command = true, .shift = true})), "Right Alt",
         {"Shift", "Super", "Left Super"}},
    };
    for (const auto& [row, sourceName, targetNames] : named) {
        ui.store().setMappings({row});
        EXPECT_EQ(at(0, MappingListModel::SourceNameRole).toString(), sourceName);
        EXPECT_EQ(at(0, MappingListModel::TargetKeyNamesRole).toStringList(), targetNames) << sourceName.toStdString();
    }
    simulateDesktopWords(DesktopWords::mac());
}

// Rows keep their delegates (and with them the pointer's hover) when only their contents change. That the
// store gets the toggle, and what each kind of target shows: the list view's tests.
TEST_F(MappingListModelTest, togglingUpdatesTheRowInPlaceAndTheCount) {
    ui.store().setMappings({a, b});
    QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    model.toggle(idText(b));
    EXPECT_EQ(reset.count(), 0);
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed.first().at(0).value<QModelIndex>().row(), 1);
    EXPECT_EQ(model.activeSummary(), "1 of 2 active");
}

TEST_F(MappingListModelTest, selectionFollowsItsMappingAndClearsWhenItGoesWhileUnknownIdsChangeNothing) {
    ui.store().setMappings({a, b, c});
    model.setSelectedRow(2);
    QSignalSpy selection(&model, &MappingListModel::selectedRowChanged);
    model.move({2}, 0);
    EXPECT_EQ(model.selectedRow(), 0);
    model.deleteMapping(idText(a));
    EXPECT_EQ(model.selectedRow(), 0);
    EXPECT_EQ(selection.count(), 1);
    for (const QString& unknown : {QString("not-a-uuid"), idText(d)}) {
        model.toggle(unknown);
        model.deleteMapping(unknown);
        model.openEditing(unknown);
    }
    EXPECT_EQ(idsOf(ui.store().mappings()), (std::vector<Uuid>{c.id, b.id}));
    EXPECT_EQ(model.editor(), nullptr);
    model.deleteMapping(idText(c));
    EXPECT_EQ(model.selectedRow(), -1);
}

TEST_F(MappingListModelTest, movesReachTheStoreUnlessTheyKeepTheOrderOrMissTheList) {
    const std::vector<Uuid> unchanged{a.id, b.id, c.id, d.id};
    // The reordering itself is the store's; here the rows reach it, and no-op or stray moves do not.
    const std::tuple<QList<int>, int, std::vector<Uuid>> cases[] = {
        {{0}, 2, {b.id, a.id, c.id, d.id}}, {{0, 2}, 1, {a.id, c.id, b.id, d.id}},
        {{1}, 1, unchanged}, {{1}, 2, unchanged}, {{1, 2}, 3, unchanged}, {{1}, 5, unchanged}, {{9}, 0, unchanged},
    };
    for (const auto& [positions, destination, expected] : cases) {
        ui.store().setMappings({a, b, c, d});
        QSignalSpy storeChanges(&ui.store(), &MappingStore::mappingsChanged);
        model.move(positions, destination);
        EXPECT_EQ(idsOf(ui.store().mappings()), expected) << "to " << destination;
        EXPECT_EQ(storeChanges.count(), expected == unchanged ? 0 : 1) << "to " << destination;
        EXPECT_EQ(at(0, MappingListModel::MappingIdRole).toString(), idText(ui.store().mappings()[0]));  // rows follow
    }
    // A row dragged by whole rows: down lands after the rows it passed, up before; both stop at the ends.
    const std::tuple<int, int, int> drags[] = {{0, 1, 2}, {3, -3, 0}, {1, 9, 4}, {1, -9, 0}};
    for (const auto& [row, steps, destination] : drags) EXPECT_EQ(model.destinationFor(row, steps), destination) << row << steps;
}

// A list that could not be read, then kept aside by a change, then changes that storage refuses.
TEST_F(MappingListModelTest, theStorageNoticeSaysWhereAnUnreadableListIsAndWhenChangesAreNotSaved) {
    QTemporaryDir dir;
    const QString file = dir.filePath("settings.ini");
    auto defaults = UserDefaults::openFile(file);
    defaults->setData(MappingStore::userDefaultsKey, "[not a list");
    MappingStore store(*defaults, HIDUtil(ui.store().hidUtil()));
    MappingListModel unreadable(store, ui.events(), ui.manager());
    const QString kept = QStringLiteral("%1 under Orvane.Mappings.Undecodable").arg(file);
    EXPECT_TRUE(unreadable.storageNotice().contains("could not be read") && unreadable.storageNotice().contains(file));
    store.addMapping(a);
    EXPECT_TRUE(unreadable.storageNotice().endsWith(kept + ".")) << unreadable.storageNotice().toStdString();
    ASSERT_TRUE(QFile::remove(file) && QDir(dir.path()).mkdir("settings.ini"));
    store.addMapping(b);
    EXPECT_TRUE(unreadable.storageNotice().startsWith("Your changes could not be saved")) << unreadable.storageNotice().toStdString();
}
