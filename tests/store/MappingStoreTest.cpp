// The mapping store and its HID tool component over an isolated settings file and a fake tool.
#include "FakeHidutil.h"
#include "Mappings.h"
#include "PrintedLines.h"
#include "model/MappingJson.h"
#include "store/MappingStore.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <functional>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

using namespace orvane;
using namespace orvane::testing;

namespace {

KeyMapping capsLockTo(TargetAction target, bool enabled = true) { return mapping(KeyCode::capsLock, target, enabled); }

struct MappingStoreTest : ::testing::Test {
    QTemporaryDir dir;
    FakeHidutil tool;
    PrintedLines lines;
    std::unique_ptr<UserDefaults> defaults = UserDefaults::openFile(dir.filePath("settings.ini"));

    std::unique_ptr<MappingStore> openStore(UserDefaults* settings = nullptr) {
        auto store = std::make_unique<MappingStore>(settings ? *settings : *defaults, HIDUtil(tool.path()));
        store->waitForCapsLockDecisions();
        return store;
    }
    // Remapped and direct, as stored.
    std::pair<bool, bool> storedFlags() const {
        return {defaults->boolValue(MappingStore::hidRemapKey), defaults->boolValue(MappingStore::hidRemapTypeKey)};
    }
    QByteArray storedBytes() const { return defaults->data(MappingStore::userDefaultsKey).value_or("<absent>"); }
};
using HIDUtilTest = MappingStoreTest;

}  // namespace

TEST_F(HIDUtilTest, remapsAndClearsWithTheExactArguments) {
    // The target, the usage it is sent as, and what is printed.
    const std::tuple<KeyCode, const char*, std::vector<std::string>> cases[] = {
        {KeyCode::escape, "30064771113", {"HIDUtil: Remapped Caps Lock → Escape at HID layer"}},
        {KeyCode::globe, "30064771181",
         {"HIDUtil: No HID usage ID for Globe, falling back to F18", "HIDUtil: Remapped Caps Lock → F18 at HID layer"}},
    };
    const HIDUtil hid(tool.path());
    for (const auto& [target, destination, printed] : cases) {
        lines.clear();
        EXPECT_TRUE(hid.remapCapsLock(target));
        const QString mapping = QStringLiteral(
            R"({"UserKeyMapping":[{"HIDKeyboardModifierMappingSrc":30064771129,"HIDKeyboardModifierMappingDst":%1}]})");
        EXPECT_EQ(tool.calls().back(), (QStringList{"property", "--set", mapping.arg(destination)}));
        EXPECT_EQ(lines, printed);
    }
    EXPECT_TRUE(hid.clearRemapping());
    EXPECT_EQ(tool.calls().back(), (QStringList{"property", "--set", R"({"UserKeyMapping":[]})"}));
    EXPECT_EQ(tool.calls().size(), std::size(cases) + 1);
}

TEST_F(HIDUtilTest, successMeansNoErrorInAnyLetterCaseOnEitherStream) {
    // Standard output, standard error, and whether the run counts as a success.
    const std::tuple<QByteArray, QByteArray, bool> cases[] = {
        {QByteArray("UserKeyMapping set. ").repeated(500), "", true},
        {"Error: permission denied\n", "", false},
        {"", "some eRRor happened", false},
        {"terror", "", false},  // the rule is a plain substring match
        {"\xff\xfe error \x80", "", true},  // not UTF-8: counts as empty output
    };
    const HIDUtil hid(tool.path());
    for (const auto& [out, err, succeeds] : cases) {
        SCOPED_TRACE(out.left(40).toStdString() + "|" + err.toStdString());
        tool.setOutput(out), tool.setErrorOutput(err), lines.clear();
        EXPECT_EQ(hid.remapCapsLock(KeyCode::escape), succeeds);
        EXPECT_EQ(hid.clearRemapping(), succeeds);
        ASSERT_EQ(lines.size(), 2u);
        if (succeeds) continue;
        EXPECT_EQ(lines[0], "HIDUtil: Failed to remap Caps Lock: " + (out + err).toStdString());
        EXPECT_EQ(lines[1], "HIDUtil: Failed to clear remapping: " + (out + err).toStdString());
    }
}

TEST_F(HIDUtilTest, aMissingToolFailsWithBothLinesAndAHungOneIsKilledAfterTheTimeout) {
    EXPECT_FALSE(HIDUtil(tool.missingPath()).remapCapsLock(KeyCode::escape));
    ASSERT_EQ(lines.size(), 2u);
    const std::string runPrefix = "HIDUtil: Failed to run hidutil: ";
    ASSERT_EQ(lines[0].rfind(runPrefix, 0), 0u) << lines[0];
    const std::string description = lines[0].substr(runPrefix.size());
    EXPECT_FALSE(description.empty());
    EXPECT_EQ(lines[1], "HIDUtil: Failed to remap Caps Lock: error: " + description);
    EXPECT_EQ(HIDUtil(tool.missingPath()).runHidutil({"x"}).toStdString(), "error: " + description);

    lines.clear();
    tool.setHangs();
    EXPECT_FALSE(HIDUtil(tool.path(), 1).clearRemapping());
    EXPECT_EQ(lines, std::vector<std::string>{"HIDUtil: Failed to clear remapping: error: timed out after 1 seconds"});
    // What the tool started goes with it (soon gone, or a zombie waiting for its new parent).
    const auto childEnded = [&] {
        QFile child(QStringLiteral("/proc/%1/stat").arg(tool.childOfHungTool()));
        return !child.open(QIODevice::ReadOnly) || child.readAll().contains(") Z ");
    };
    EXPECT_TRUE(QTest::qWaitFor(childEnded, 10000)) << tool.childOfHungTool();
}

TEST_F(HIDUtilTest, aToolEndedByASignalFailsAndARunawayAnswerIsCut) {
    tool.setOutput("applied\n"), tool.setCrashes();
    EXPECT_FALSE(HIDUtil(tool.path()).remapCapsLock(KeyCode::escape));
    EXPECT_EQ(lines.back(), "HIDUtil: Failed to remap Caps Lock: error: the tool was ended by a signal");

    const QByteArray huge(1 << 20, 'x');
    orvane::testing::FakeHidutil talkative;
    talkative.setOutput(huge);
    EXPECT_EQ(HIDUtil(talkative.path()).runHidutil({"x"}), QString::fromLatin1(huge.left(HIDUtil::maxOutputBytes)));
}

TEST_F(HIDUtilTest, theToolStillRunsWhenTheProcessHasNoDescriptorsLeft) {
    // A first run as at start-up; it also spares the sanitizer's type checks, which need a pipe, later.
    const HIDUtil hid(tool.path());
    ASSERT_TRUE(hid.clearRemapping());
    rlimit saved{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &saved), 0);
    rlimit low = saved;
    low.rlim_cur = std::min<rlim_t>(saved.rlim_cur, 512);
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &low), 0);
    std::vector<int> fillers;
    for (int fd; (fd = ::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 0)) >= 0;) fillers.push_back(fd);
    const bool cleared = hid.clearRemapping();
    for (const int fd : fillers) ::close(fd);
    ::setrlimit(RLIMIT_NOFILE, &saved);
    EXPECT_TRUE(cleared) << (lines.empty() ? "" : lines.front());
    EXPECT_FALSE(fillers.empty());
}

// What the store feeds a decision (the first enabled Caps Lock mapping) and keeps of its result.
TEST_F(MappingStoreTest, theFirstEnabledCapsLockMappingIsDecidedAndTheResultKept) {
    const auto store = openStore();
    store->setMappings({capsLockTo(TargetAction::block(), false), capsLockTo(TargetAction::key(KeyCode::leftControl))});
    store->waitForCapsLockDecisions();
    EXPECT_EQ(storedFlags(), std::make_pair(true, true));
    store->setMappings({capsLockTo(TargetAction::block())}), store->waitForCapsLockDecisions();
    EXPECT_NE(store->capsLockMappingViaF18(), nullptr);
    EXPECT_EQ(storedFlags(), std::make_pair(true, false));
}

TEST_F(MappingStoreTest, unknownIdsChangeNothingExceptDelete) {
    const auto store = openStore();
    store->addMapping(capsLockTo(TargetAction::key(KeyCode::escape))), store->waitForCapsLockDecisions();
    const auto runs = tool.calls().size();
    QSignalSpy changes(defaults.get(), &UserDefaults::changed);

    KeyMapping stranger = mapping(KeyCode::a, TargetAction::key(KeyCode::b));
    store->updateMapping(stranger);
    store->toggleMapping(stranger.id), store->waitForCapsLockDecisions();
    EXPECT_TRUE(changes.count() == 0 && tool.calls().size() == runs) << changes.count() << ", " << tool.calls().size();

    // Delete always counts as a change: the list is saved and the decision runs again.
    store->deleteMapping(stranger.id), store->waitForCapsLockDecisions();
    EXPECT_TRUE(changes.count() >= 1 && tool.calls().size() == runs + 1) << changes.count() << ", " << tool.calls().size();
    EXPECT_EQ(store->mappings().size(), 1u);
}

// The decoder's errors are the decoder's tests; here the store's handling of any of them.
TEST_F(MappingStoreTest, undecodableDataGivesAnEmptyListAndIsKeptAsideByTheNextSave) {
    const QByteArray garbage("\x00\xff\x13garbage", 10);
    defaults->setData(MappingStore::userDefaultsKey, garbage);
    const auto store = openStore();
    EXPECT_TRUE(store->mappings().empty());
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines[0].rfind("Failed to decode mappings: ", 0), 0u) << lines[0];
    EXPECT_EQ(storedBytes(), garbage);
    EXPECT_TRUE(store->wasUndecodable() && !store->isUndecodableKeptAside());
    store->addMapping(mapping(KeyCode::c, TargetAction::key(KeyCode::d)));
    EXPECT_TRUE(store->isUndecodableKeptAside());
    EXPECT_EQ(storedBytes().toStdString(), encodeMappings(store->mappings()));
    EXPECT_EQ(defaults->data(MappingStore::undecodableBackupKey), garbage);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "MappingStore: Kept the undecodable mappings under Orvane.Mappings.Undecodable"), 1);
}

// Which of two same-source mappings wins after a move: the list view's drag test.
TEST_F(MappingStoreTest, removalAndMovesAtPositionSets) {
    const auto store = openStore();
    std::vector<KeyMapping> rows;
    for (KeyCode k : {KeyCode::a, KeyCode::b, KeyCode::c, KeyCode::d, KeyCode::e})
        rows.push_back(mapping(k, TargetAction::block()));
    const auto order = [](const MappingStore& s) {
        std::string text;
        for (const auto& m : s.mappings()) text += displayName(m.sourceKey.keyCode());
        return text;
    };
    // The positions moved, where to, and the order after.
    const std::tuple<std::set<std::size_t>, std::size_t, const char*> moves[] = {
        {{4}, 0, "EABCD"}, {{0}, 5, "BCDEA"}, {{0}, 2, "BACDE"}, {{1, 3}, 0, "BDACE"},
        {{0, 4}, 3, "BCAED"}, {{2}, 2, "ABCDE"}, {{2}, 3, "ABCDE"}, {{0, 1, 2, 3, 4}, 2, "ABCDE"},
    };
    for (const auto& [positions, destination, result] : moves) {
        store->setMappings(rows);
        store->moveMappings(positions, destination);
        EXPECT_EQ(order(*store), result) << destination;
        EXPECT_EQ(order(*openStore()), result) << "read back";
    }
    store->setMappings(rows);
    store->removeMappings({0, 2, 4, 7});
    EXPECT_EQ(order(*store), "BD");
    EXPECT_EQ(order(*openStore()), "BD");
}

// A failed save is reported and the list stays; once storage works again, a save is reported by what it did.
TEST_F(MappingStoreTest, aFailedSaveIsReportedAndTheNextOneThatWorksIsNot) {
    ASSERT_TRUE(QFile(dir.filePath("not-a-folder")).open(QIODevice::WriteOnly));
    auto unwritable = UserDefaults::openFile(dir.filePath("not-a-folder/settings.ini"));
    const auto store = openStore(unwritable.get());
    const KeyMapping m = mapping(KeyCode::a, TargetAction::key(KeyCode::b)), n = mapping(KeyCode::c, TargetAction::block());
    store->addMapping(m);
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.back().rfind("Failed to save mappings: ", 0), 0u) << lines.back();
    EXPECT_EQ(store->mappings(), std::vector{m});
    EXPECT_TRUE(store->saveError().startsWith("cannot write")) << store->saveError().toStdString();
    ASSERT_TRUE(QFile::remove(dir.filePath("not-a-folder")) && QDir(dir.path()).mkdir("not-a-folder"));
    lines.clear();
    store->addMapping(n);
    EXPECT_TRUE(lines.empty() && store->saveError().isEmpty()) << lines.front();
    EXPECT_EQ(openStore(UserDefaults::openFile(dir.filePath("not-a-folder/settings.ini")).get())->mappings(), (std::vector{m, n}));
}

// Each kind of change is undone in turn, each step saved; redoing stops at the next new change.
TEST_F(MappingStoreTest, changesAreUndoneAndRedoneInTurnUntilANewChange) {
    const auto store = openStore();
    const KeyMapping a = mapping(KeyCode::a, TargetAction::block()), b = mapping(KeyCode::b, TargetAction::block());
    KeyMapping edited = b;
    edited.targetAction = TargetAction::key(KeyCode::c);
    const std::function<void()> changes[] = {
        [&] { store->addMapping(a); }, [&] { store->addMapping(b); }, [&] { store->moveMappings({1}, 0); },
        [&] { store->updateMapping(edited); }, [&] { store->toggleMapping(a.id); }, [&] { store->removeMappings({0}); }};
    std::vector<std::vector<KeyMapping>> states{store->mappings()};
    for (const auto& change : changes) change(), states.push_back(store->mappings());
    for (std::size_t i = states.size() - 1; i > 0; --i) {
        store->undo();
        EXPECT_EQ(store->mappings(), states[i - 1]) << i;
    }
    EXPECT_FALSE(store->canUndo());
    store->redo(), store->redo();
    EXPECT_EQ(openStore()->mappings(), states[2]);
    store->deleteMapping(a.id);
    EXPECT_TRUE(store->canUndo() && !store->canRedo());
}
