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
    void storeBytes(const QByteArray& bytes) { defaults->setData(MappingStore::userDefaultsKey, bytes); }
    void storeFlags(bool remapped, bool direct) {
        defaults->setBool(MappingStore::hidRemapKey, remapped);
        defaults->setBool(MappingStore::hidRemapTypeKey, direct);
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

TEST_F(MappingStoreTest, withoutACapsLockMappingTheToolRunsOnlyToClearStoredFlags) {
    for (const bool stored : {false, true}) {
        if (stored) storeFlags(true, false);
        const auto runs = tool.calls().size();
        const auto store = openStore();
        EXPECT_TRUE(store->mappings().empty());
        EXPECT_EQ(tool.calls().size(), runs + (stored ? 1 : 0));
        EXPECT_EQ(flags(*store), std::make_pair(false, false));
        EXPECT_EQ(storedFlags(), std::make_pair(false, false));
    }
    EXPECT_EQ(tool.calls().back().last(), clearText);
    EXPECT_FALSE(defaults->contains(MappingStore::userDefaultsKey));  // loading never saves
}

TEST_F(MappingStoreTest, capsLockDecisionFollowsTheCapsLockMappingsTarget) {
    const auto store = openStore();
    QSignalSpy remapped(store.get(), &MappingStore::isCapsLockHIDRemappedChanged);
    KeyMapping caps = capsLockTo(TargetAction::key(KeyCode::escape));
    const struct {
        TargetAction target;
        bool enabled;
        QString toolText;
        std::pair<bool, bool> flags;  // remapped, direct
    } steps[] = {
        {TargetAction::key(KeyCode::escape), true, remapTo(0x700000029), {true, true}},
        {TargetAction::block(), true, remapTo(HIDUtil::f18Usage), {true, false}},
        {TargetAction::key(KeyCode::globe), true, remapTo(HIDUtil::f18Usage), {true, false}},  // no HID usage
        {TargetAction::key(KeyCode::globe), false, clearText, {false, false}},
    };
    for (const auto& step : steps) {
        caps.targetAction = step.target;
        caps.isEnabled = step.enabled;
        store->setMappings({caps});
        store->waitForCapsLockDecisions();
        EXPECT_EQ(tool.calls().back().last(), step.toolText);
        EXPECT_EQ(flags(*store), step.flags);
        EXPECT_EQ(storedFlags(), step.flags);
        EXPECT_EQ(store->capsLockMappingViaF18() != nullptr, step.flags == std::make_pair(true, false));
    }
    EXPECT_EQ(remapped.count(), 2);
}

TEST_F(MappingStoreTest, aDisabledCapsLockMappingAheadLetsTheNextOneDecide) {
    const auto store = openStore();
    store->setMappings({capsLockTo(TargetAction::block(), false), capsLockTo(TargetAction::key(KeyCode::leftControl))});
    store->waitForCapsLockDecisions();
    EXPECT_EQ(tool.calls().back().last(), remapTo(0x7000000E0));
    EXPECT_EQ(flags(*store), std::make_pair(true, true));
}

TEST_F(MappingStoreTest, aFailingToolLeavesTheFlagsAlone) {
    storeFlags(true, false);
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

TEST_F(MappingStoreTest, undecodableDataGivesAnEmptyListAndStaysStoredUntilTheNextSave) {
    const QByteArray valid = QByteArray::fromStdString(encodeMappings(std::vector{keyMapping(KeyCode::a, KeyCode::b)}));
    const QByteArray cases[] = {
        QByteArray("\x00\xff\x13garbage", 10),
        valid.left(valid.size() / 2),
        R"({"not":"a list"})",
        R"([{"id":"0E1D2C3B-4A59-4687-9A5B-C0D1E2F30415","sourceKey":{"regular":{"_0":"57"}},"targetAction":{"block":{}},"isEnabled":true}])",
    };
    for (const QByteArray& bytes : cases) {
        SCOPED_TRACE(bytes.toStdString());
        storeBytes(bytes);
        lines.clear();
        const auto store = openStore();
        EXPECT_TRUE(store->mappings().empty());
        ASSERT_FALSE(lines.empty());
        EXPECT_EQ(lines[0].rfind("Failed to decode mappings: ", 0), 0u) << lines[0];
        EXPECT_EQ(storedBytes(), bytes);
    }
    const auto store = openStore();
    store->addMapping(keyMapping(KeyCode::c, KeyCode::d));
    EXPECT_EQ(storedBytes().toStdString(), encodeMappings(store->mappings()));
}

TEST_F(MappingStoreTest, manyQuickChangesRunTheToolInChangeOrder) {
    const auto store = openStore();
    const KeyMapping caps = capsLockTo(TargetAction::key(KeyCode::escape));
    store->addMapping(caps);
    const TargetAction targets[] = {TargetAction::key(KeyCode::escape), TargetAction::block(), TargetAction::key(KeyCode::tab),
                                    TargetAction::combination(KeyCode::space, {false, false, true, false})};
    std::vector<QString> expected{remapTo(0x700000029)};
    for (int edit = 0; edit < 50; ++edit) {
        KeyMapping changed = caps;
        changed.targetAction = targets[edit % 4];
        changed.isEnabled = edit % 7 != 3;
        store->updateMapping(changed);
        if (!changed.isEnabled) expected.push_back(clearText);
        else if (edit % 4 == 0) expected.push_back(remapTo(0x700000029));
        else if (edit % 4 == 2) expected.push_back(remapTo(0x70000002B));
        else expected.push_back(remapTo(HIDUtil::f18Usage));
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
