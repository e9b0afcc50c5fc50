// The mapping store over an isolated settings file and a fake HID tool.
#include "FakeHidutil.h"
#include "model/MappingJson.h"
#include "platform/Diagnostics.h"
#include "store/MappingStore.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>

using namespace orvane;

namespace {

KeyMapping capsLockTo(TargetAction target, bool enabled = true) {
    return {Uuid::random(), SourceKey::regular(KeyCode::capsLock), target, enabled};
}
KeyMapping keyMapping(KeyCode from, KeyCode to) { return {Uuid::random(), SourceKey::regular(from), TargetAction::key(to), true}; }

struct MappingStoreTest : ::testing::Test {
    QTemporaryDir dir;
    orvane::testing::FakeHidutil tool;
    std::vector<std::string> lines;
    std::unique_ptr<UserDefaults> defaults = UserDefaults::openFile(dir.filePath("settings.ini"));

    void SetUp() override { diagnostics::redirectTo(&lines); }
    void TearDown() override { diagnostics::redirectTo(nullptr); }

    std::unique_ptr<MappingStore> openStore() {
        auto store = std::make_unique<MappingStore>(*defaults, HIDUtil(tool.path()));
        store->waitForCapsLockDecisions();
        return store;
    }
    std::pair<bool, bool> storedFlags() const {
        return {defaults->boolValue(MappingStore::hidRemapKey), defaults->boolValue(MappingStore::hidRemapTypeKey)};
    }
    std::pair<bool, bool> flags(const MappingStore& store) const { return {store.isCapsLockHIDRemapped(), store.isCapsLockDirectHID()}; }
    QByteArray storedBytes() const { return defaults->data(MappingStore::userDefaultsKey).value_or("<absent>"); }
};

const QString clearText = R"({"UserKeyMapping":[]})";
QString remapTo(std::uint64_t usage) { return HIDUtil::remapText(HIDUtil::capsLockUsage, usage); }

}  // namespace

// Stored flags without a Caps Lock mapping are cleared: a scenario file.
TEST_F(MappingStoreTest, withoutACapsLockMappingOrStoredFlagsTheToolNeverRunsAndLoadingNeverSaves) {
    const auto store = openStore();
    EXPECT_TRUE(store->mappings().empty());
    EXPECT_TRUE(tool.calls().empty());
    EXPECT_EQ(flags(*store), std::make_pair(false, false));
    EXPECT_FALSE(defaults->contains(MappingStore::userDefaultsKey));
}

TEST_F(MappingStoreTest, capsLockDecisionFollowsTheFirstEnabledCapsLockMappingsTarget) {
    const auto store = openStore();
    QSignalSpy remapped(store.get(), &MappingStore::isCapsLockHIDRemappedChanged);
    // A direct remapping and one via F18 for a combination: the scenario files.
    const struct {
        std::vector<KeyMapping> list;
        QString toolText;
        std::pair<bool, bool> flags;  // remapped, direct
    } steps[] = {
        {{capsLockTo(TargetAction::block())}, remapTo(HIDUtil::f18Usage), {true, false}},
        {{capsLockTo(TargetAction::key(KeyCode::globe))}, remapTo(HIDUtil::f18Usage), {true, false}},  // no HID usage
        {{capsLockTo(TargetAction::block(), false), capsLockTo(TargetAction::key(KeyCode::leftControl))}, remapTo(0x7000000E0),
         {true, true}},
        {{capsLockTo(TargetAction::key(KeyCode::globe), false)}, clearText, {false, false}},
    };
    for (const auto& step : steps) {
        store->setMappings(step.list);
        store->waitForCapsLockDecisions();
        EXPECT_EQ(tool.calls().back().last(), step.toolText);
        EXPECT_EQ(flags(*store), step.flags);
        EXPECT_EQ(storedFlags(), step.flags);
        EXPECT_EQ(store->capsLockMappingViaF18() != nullptr, step.flags == std::make_pair(true, false));
    }
    EXPECT_EQ(remapped.count(), 2);
}

TEST_F(MappingStoreTest, aFailingToolLeavesTheFlagsAlone) {
    defaults->setBool(MappingStore::hidRemapKey, true);
    tool.setOutput("error: no permission");
    const auto store = openStore();
    EXPECT_EQ(flags(*store), std::make_pair(true, false));
    store->addMapping(capsLockTo(TargetAction::key(KeyCode::escape)));
    store->waitForCapsLockDecisions();
    EXPECT_EQ(flags(*store), std::make_pair(true, false));
    EXPECT_EQ(lines.back(), "HIDUtil: Failed to remap Caps Lock: error: no permission");
}

TEST_F(MappingStoreTest, unknownIdsChangeNothingExceptDelete) {
    const auto store = openStore();
    store->addMapping(capsLockTo(TargetAction::key(KeyCode::escape)));
    store->waitForCapsLockDecisions();
    const auto runs = tool.calls().size();
    QSignalSpy changes(defaults.get(), &UserDefaults::changed);

    KeyMapping stranger = keyMapping(KeyCode::a, KeyCode::b);
    store->updateMapping(stranger);
    store->toggleMapping(stranger.id);
    store->waitForCapsLockDecisions();
    EXPECT_EQ(changes.count(), 0);
    EXPECT_EQ(tool.calls().size(), runs);

    // Delete always counts as a change: the list is saved and the decision runs again.
    store->deleteMapping(stranger.id);
    store->waitForCapsLockDecisions();
    EXPECT_GE(changes.count(), 1);
    EXPECT_EQ(tool.calls().size(), runs + 1);
    EXPECT_EQ(store->mappings().size(), 1u);
}

// The decoder's errors are the decoder's tests; here the store's handling of any of them.
TEST_F(MappingStoreTest, undecodableDataGivesAnEmptyListAndStaysStoredUntilTheNextSave) {
    const QByteArray garbage("\x00\xff\x13garbage", 10);
    defaults->setData(MappingStore::userDefaultsKey, garbage);
    const auto store = openStore();
    EXPECT_TRUE(store->mappings().empty());
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines[0].rfind("Failed to decode mappings: ", 0), 0u) << lines[0];
    EXPECT_EQ(storedBytes(), garbage);
    store->addMapping(keyMapping(KeyCode::c, KeyCode::d));
    EXPECT_EQ(storedBytes().toStdString(), encodeMappings(store->mappings()));
}

TEST_F(MappingStoreTest, manyQuickChangesRunTheToolInChangeOrder) {
    const auto store = openStore();
    const KeyMapping caps = capsLockTo(TargetAction::key(KeyCode::escape));
    store->addMapping(caps);
    const std::pair<TargetAction, QString> targets[] = {
        {TargetAction::key(KeyCode::escape), remapTo(0x700000029)}, {TargetAction::block(), remapTo(HIDUtil::f18Usage)},
        {TargetAction::key(KeyCode::tab), remapTo(0x70000002B)},
        {TargetAction::combination(KeyCode::space, {false, false, true, false}), remapTo(HIDUtil::f18Usage)}};
    std::vector<QString> expected{remapTo(0x700000029)};
    for (int edit = 0; edit < 50; ++edit) {
        KeyMapping changed = caps;
        changed.targetAction = targets[edit % 4].first;
        changed.isEnabled = edit % 7 != 3;
        store->updateMapping(changed);
        expected.push_back(changed.isEnabled ? targets[edit % 4].second : clearText);
    }
    store->waitForCapsLockDecisions();
    std::vector<QString> actual;
    for (const auto& call : tool.calls()) actual.push_back(call.last());
    EXPECT_EQ(actual, expected);
    // The last edit (49) is Caps Lock → block: via F18.
    EXPECT_EQ(flags(*store), std::make_pair(true, false));
    EXPECT_EQ(storedFlags(), std::make_pair(true, false));
}

TEST_F(MappingStoreTest, removalAndMovesAtPositionSets) {
    const auto store = openStore();
    std::vector<KeyMapping> rows;
    for (KeyCode k : {KeyCode::a, KeyCode::b, KeyCode::c, KeyCode::d, KeyCode::e}) rows.push_back(keyMapping(k, KeyCode::x));
    auto order = [&] {
        std::string text;
        for (const auto& m : store->mappings()) text += std::string(displayName(m.sourceKey.keyCode()));
        return text;
    };
    const struct {
        std::set<std::size_t> positions;
        std::size_t destination;
        const char* result;
    } moves[] = {
        {{4}, 0, "EABCD"}, {{0}, 5, "BCDEA"}, {{0}, 2, "BACDE"}, {{1, 3}, 0, "BDACE"},
        {{0, 4}, 3, "BCAED"}, {{2}, 2, "ABCDE"}, {{2}, 3, "ABCDE"}, {{0, 1, 2, 3, 4}, 2, "ABCDE"},
    };
    for (const auto& move : moves) {
        store->setMappings(rows);
        store->moveMappings(move.positions, move.destination);
        EXPECT_EQ(order(), move.result) << move.destination;
    }
    store->setMappings(rows);
    store->removeMappings({0, 2, 4});
    EXPECT_EQ(order(), "BD");
    store->removeMappings({7});
    EXPECT_EQ(order(), "BD");
}

// A reopened store reads the list back; the stored flags are read back in aFailingToolLeavesTheFlagsAlone.
TEST_F(MappingStoreTest, movingRowsChangesWhichSameSourceMappingWinsAlsoAfterReopening) {
    const auto store = openStore();
    store->setMappings({keyMapping(KeyCode::a, KeyCode::b), keyMapping(KeyCode::a, KeyCode::c)});
    EXPECT_EQ(store->mappingForKey(KeyCode::a)->targetAction, TargetAction::key(KeyCode::b));
    store->moveMappings({1}, 0);
    EXPECT_EQ(store->mappingForKey(KeyCode::a)->targetAction, TargetAction::key(KeyCode::c));
    EXPECT_EQ(openStore()->mappingForKey(KeyCode::a)->targetAction, TargetAction::key(KeyCode::c));
}

TEST_F(MappingStoreTest, aFailedSaveIsReportedAndTheListStays) {
    QFile blocker(dir.filePath("not-a-folder"));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    auto unwritable = UserDefaults::openFile(dir.filePath("not-a-folder/settings.ini"));
    MappingStore store(*unwritable, HIDUtil(tool.path()));
    store.waitForCapsLockDecisions();
    const KeyMapping m = keyMapping(KeyCode::a, KeyCode::b);
    store.addMapping(m);
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.back().rfind("Failed to save mappings: ", 0), 0u) << lines.back();
    EXPECT_EQ(store.mappings(), std::vector{m});
}
