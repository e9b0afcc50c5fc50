// The list model: what each row shows, in-place updates, selection and moves.
#include "MappingsTestSupport.h"

#include <QSignalSpy>

using namespace orvane;
using namespace orvane::testing;

class MappingListModelTest : public ::testing::Test {
protected:
    UiHarness ui;
    MappingListModel model{ui.store(), ui.events(), ui.manager()};
    KeyMapping a = mapping(KeyCode::a, TargetAction::block());
    KeyMapping b = mapping(KeyCode::b, TargetAction::block());
    KeyMapping c = mapping(KeyCode::c, TargetAction::block());
    KeyMapping d = mapping(KeyCode::d, TargetAction::block());

    QVariant at(int row, int role) { return model.data(model.index(row), role); }
};

TEST_F(MappingListModelTest, eachRowShowsItsKeycapsBadgeAndTarget) {
    const QString tap = "Event tap interception (requires app running)";
    struct Case {
        KeyMapping mapping;
        bool capsLockDirect;
        QString source, badge, color, tooltip;
        MappingListModel::TargetKind kind;
        QStringList keycaps;
    };
    const Case cases[] = {
        // Other rows are checked as the list view shows them. Modifier keycaps come in ⌃ ⌥ ⇧ ⌘ order.
        {mapping(KeyCode::f1, TargetAction::combination(KeyCode::c, {true, true, true, true})), false, "F1", "Tap",
         "orange", tap, MappingListModel::Combination, {"⌃", "⌥", "⇧", "⌘", "C"}},
        // Caps Lock's HID state says nothing about other keys.
        {mapping(SourceKey::system(SystemKeyID::volumeUp), TargetAction::key(KeyCode::f5)), true, "\U0001F50A", "Tap",
         "orange", tap, MappingListModel::Key, {"F5"}},
        {mapping(KeyCode::capsLock, TargetAction::key(KeyCode::escape)), true, "⇪", "HID", "green",
         "Direct HID-layer remapping (instant, works without app)", MappingListModel::Key, {"⎋"}},
        {mapping(KeyCode::capsLock, TargetAction::block()), false, "⇪", "HID+Tap", "blue",
         "HID-layer + event tap (for combinations/block)", MappingListModel::Block, {}},
    };
    for (const Case& t : cases) {
        SCOPED_TRACE(t.source.toStdString() + " " + t.badge.toStdString());
        ui.store().setMappings({t.mapping});
        ui.settle();
        ui.store().setCapsLockHIDState(true, t.capsLockDirect);
        EXPECT_EQ(at(0, MappingListModel::MappingIdRole).toString(), idText(t.mapping));
        EXPECT_EQ(at(0, MappingListModel::SourceTextRole).toString(), t.source);
        EXPECT_EQ(at(0, MappingListModel::BadgeTextRole).toString(), t.badge);
        EXPECT_EQ(at(0, MappingListModel::BadgeColorRole).toString(), t.color);
        EXPECT_EQ(at(0, MappingListModel::BadgeTooltipRole).toString(), t.tooltip);
        EXPECT_EQ(at(0, MappingListModel::TargetKindRole).toInt(), t.kind);
        EXPECT_EQ(at(0, MappingListModel::TargetKeycapsRole).toStringList(), t.keycaps);
    }
}

// Rows keep their delegates (and with them the pointer's hover) when only their contents change.
TEST_F(MappingListModelTest, togglingUpdatesTheRowInPlaceAndTheCount) {
    ui.store().setMappings({a, b});
    QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    model.toggle(idText(b));
    EXPECT_EQ(reset.count(), 0);
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed.first().at(0).value<QModelIndex>().row(), 1);
    EXPECT_FALSE(ui.store().mappings()[1].isEnabled);
    EXPECT_EQ(model.activeSummary(), "1 of 2 active");
}

TEST_F(MappingListModelTest, selectionFollowsItsMappingAndClearsWhenItGoes) {
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

TEST_F(MappingListModelTest, movingPositionSetsFollowsTheListsMoveRule) {
    struct Case {
        QList<int> positions;
        int destination;
        std::vector<Uuid> expected;
    };
    const std::vector<Uuid> unchanged{a.id, b.id, c.id, d.id};
    // The reordering itself is the store's; here the rows reach it, and no-op or stray moves do not.
    const Case cases[] = {
        {{0}, 2, {b.id, a.id, c.id, d.id}}, {{0, 2}, 1, {a.id, c.id, b.id, d.id}},
        {{1}, 1, unchanged}, {{1}, 2, unchanged}, {{1, 2}, 3, unchanged}, {{1}, 5, unchanged}, {{9}, 0, unchanged},
    };
    for (const Case& t : cases) {
        SCOPED_TRACE(::testing::Message() << "to " << t.destination);
        ui.store().setMappings({a, b, c, d});
        QSignalSpy storeChanges(&ui.store(), &MappingStore::mappingsChanged);
        model.move(t.positions, t.destination);
        EXPECT_EQ(idsOf(ui.store().mappings()), t.expected);
        EXPECT_EQ(storeChanges.count(), t.expected == unchanged ? 0 : 1);
        EXPECT_EQ(at(0, MappingListModel::MappingIdRole).toString(), idText(ui.store().mappings()[0]));
    }
    // A row dragged by whole rows: down lands after the rows it passed, up before; both stop at the ends.
    EXPECT_EQ(model.destinationFor(0, 1), 2);
    EXPECT_EQ(model.destinationFor(3, -3), 0);
    EXPECT_EQ(model.destinationFor(1, 9), 4);
    EXPECT_EQ(model.destinationFor(1, -9), 0);
}
