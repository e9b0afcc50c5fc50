// The add/edit sheet's state: how an edit starts, when it may save, and what saving hands the store.
#include "Mappings.h"
#include "UiHarness.h"
#include "ui/mappings/AddMappingController.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

using namespace orvane;
using namespace orvane::testing;

namespace {

RecordedKey recorded(KeyCode key, Modifiers modifiers = {}) { return {SourceKey::regular(key), modifiers}; }

struct AddMappingControllerTest : ::testing::Test {
    UiHarness ui;

    std::unique_ptr<AddMappingController> sheet(std::optional<KeyMapping> existing = std::nullopt) {
        return std::make_unique<AddMappingController>(ui.store(), ui.events(), ui.manager(), std::move(existing));
    }
};

}  // namespace

// Editing a remapping (title, fields, Remap): the sheet view's tests.
TEST_F(AddMappingControllerTest, anEditSheetStartsFromABlockedMapping) {
    const auto existing = mapping(SourceKey::system(SystemKeyID::mute), TargetAction::block(), false);
    auto s = sheet(existing);
    EXPECT_EQ(s->sourceField()->recordedKey(), (RecordedKey{existing.sourceKey, {}}));
    EXPECT_EQ(s->targetType(), AddMappingController::Block);
    EXPECT_TRUE(!s->targetField()->hasKey() && s->canSave());
}

TEST_F(AddMappingControllerTest, remapNeedsATargetAndBlockDoesNotWhileTheTargetIsKept) {
    auto s = sheet();
    QSignalSpy canSave(s.get(), &AddMappingController::canSaveChanged);
    s->sourceField()->setRecordedKey(recorded(KeyCode::a));
    EXPECT_FALSE(s->canSave());
    s->setTargetType(AddMappingController::Block);
    EXPECT_TRUE(s->canSave());
    s->setTargetType(AddMappingController::Remap);
    s->targetField()->setRecordedKey(recorded(KeyCode::b));
    EXPECT_TRUE(s->canSave());
    s->setTargetType(AddMappingController::Block);
    s->setTargetType(AddMappingController::Remap);
    EXPECT_EQ(s->targetField()->recordedKey(), recorded(KeyCode::b));
    s->sourceField()->clear();
    EXPECT_FALSE(s->canSave());
    EXPECT_EQ(canSave.count(), 4);
}

// A new blocked key: the sheet view's tests.
TEST_F(AddMappingControllerTest, savingANewMappingAppendsItEnabledWithTheRightAction) {
    const Modifiers option{.option = true};
    const auto existing = mapping(KeyCode::c, TargetAction::block());
    ui.store().setMappings({existing});
    const std::pair<RecordedKey, TargetAction> cases[] = {{recorded(KeyCode::b), TargetAction::key(KeyCode::b)},
                                                          {recorded(KeyCode::b, option), TargetAction::combination(KeyCode::b, option)}};
    for (const auto& [target, expected] : cases) {
        auto s = sheet();
        // Only the source's key counts, even if the field was handed modifiers.
        s->sourceField()->setRecordedKey(recorded(KeyCode::a, option));
        s->targetField()->setRecordedKey(target);
        s->save();
        const KeyMapping added = ui.store().mappings().back();
        EXPECT_EQ(added, (KeyMapping{added.id, SourceKey::regular(KeyCode::a), expected, true}));
        EXPECT_NE(added.id, existing.id);
    }
    EXPECT_EQ(ui.store().mappings().size(), 3u);
    EXPECT_EQ(ui.store().mappings()[0], existing);
}

// Saved unchanged, an edit stays as it was: the sheet view's tests; here the edit itself reaches the store.
TEST_F(AddMappingControllerTest, editingKeepsIdPositionAndEnabledState) {
    const auto edited = mapping(KeyCode::b, TargetAction::combination(KeyCode::k, {.command = true}), false);
    ui.store().setMappings({mapping(KeyCode::a, TargetAction::block()), edited});
    auto s = sheet(edited);
    s->sourceField()->setRecordedKey(recorded(KeyCode::d));
    s->setTargetType(AddMappingController::Block);
    s->save();
    ASSERT_EQ(ui.store().mappings().size(), 2u);
    EXPECT_EQ(ui.store().mappings()[1], (KeyMapping{edited.id, SourceKey::regular(KeyCode::d), TargetAction::block(), false}));
}

TEST_F(AddMappingControllerTest, modifiersAloneAndAnAloneKeyAreSavedAndAnEditStartsFromThem) {
    const Modifiers hyper{.command = true, .option = true, .control = true, .shift = true};
    auto s = sheet();
    s->sourceField()->setRecordedKey(recorded(KeyCode::capsLock));
    s->targetField()->setModifiersOnly(hyper);
    s->aloneField()->setRecordedKey(recorded(KeyCode::escape));
    EXPECT_TRUE(s->canSave());
    s->save();
    const KeyMapping added = ui.store().mappings().back();
    EXPECT_EQ(added, (KeyMapping{added.id, SourceKey::regular(KeyCode::capsLock), TargetAction::modifiersOnly(hyper), true, KeyCode::escape}));

    auto edit = sheet(added);
    EXPECT_EQ(edit->targetField()->modifiersOnly(), hyper);
    EXPECT_EQ(edit->aloneField()->recordedKey(), recorded(KeyCode::escape));
    edit->targetField()->setRecordedKey(recorded(KeyCode::leftControl));  // a key replaces the modifiers
    edit->aloneField()->clear();
    edit->save();
    EXPECT_EQ(ui.store().mappings().back(), (KeyMapping{added.id, added.sourceKey, TargetAction::key(KeyCode::leftControl), true}));

    auto media = sheet(added);
    media->aloneField()->setRecordedKey(RecordedKey{SourceKey::system(SystemKeyID::mute), {}});
    EXPECT_FALSE(media->saveMapping());
}

TEST_F(AddMappingControllerTest, aMediaKeyTargetSavesNothingButTheSheetStillCloses) {
    const RecordedKey mute{SourceKey::system(SystemKeyID::mute), {}};
    const auto existing = mapping(KeyCode::a, TargetAction::key(KeyCode::b));
    ui.store().setMappings({existing});
    QSignalSpy storeChanges(&ui.store(), &MappingStore::mappingsChanged);
    auto added = sheet();
    added->sourceField()->setRecordedKey(recorded(KeyCode::c));
    added->targetField()->setRecordedKey(mute);
    EXPECT_TRUE(added->canSave());
    QSignalSpy dismissed(added.get(), &AddMappingController::dismissed);
    added->save();
    EXPECT_EQ(dismissed.count(), 1);
    auto edited = sheet(existing);
    edited->targetField()->setRecordedKey(mute);
    EXPECT_FALSE(edited->saveMapping());
    EXPECT_EQ(storeChanges.count(), 0);
}
