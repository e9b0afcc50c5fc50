// The Caps Lock decisions against a fake tool: what each one runs and reports, in order, and at quit.
#include "FakeHidutil.h"
#include "Mappings.h"
#include "PrintedLines.h"
#include "store/CapsLockDecisions.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>

using namespace orvane;
using namespace orvane::testing;

namespace {

QString remapTo(std::uint64_t usage) { return HIDUtil::remapText(HIDUtil::capsLockUsage, usage); }
CapsLockDecisions::Input capsLockTo(std::optional<TargetAction> target) {  // a snapshot: "not remapped"
    return {target ? std::optional(mapping(KeyCode::capsLock, *target)) : std::nullopt, false};
}

struct CapsLockDecisionsTest : ::testing::Test {
    FakeHidutil tool;
    PrintedLines lines;
    CapsLockDecisions decisions{HIDUtil(tool.path())};
    QSignalSpy decided{&decisions, &CapsLockDecisions::decided};

    std::vector<QString> toolTexts() const {
        std::vector<QString> texts;
        for (const auto& call : tool.calls()) texts.push_back(call.last());
        return texts;
    }
};

}  // namespace

// Queued at once, with snapshots that say "not remapped"; a failing run decides nothing. As in the
// scenario files: without a Caps Lock mapping or stored flags the tool never runs (no HIDUtil line).
TEST_F(CapsLockDecisionsTest, decisionsRunInTurnDirectWhereTheKeyHasAHidUsageElseViaF18) {
    const std::tuple<std::optional<TargetAction>, QString, bool> kinds[] = {  // target, what the tool gets, direct
        {std::nullopt, HIDUtil::clearText(), false},  // after a remapping, which is newer than the snapshot
        {TargetAction::key(KeyCode::escape), remapTo(0x700000029), true},
        {TargetAction::block(), remapTo(HIDUtil::f18Usage), false},
        {TargetAction::key(KeyCode::globe), remapTo(HIDUtil::f18Usage), false},  // no HID usage
        {TargetAction::combination(KeyCode::space, {false, false, true, false}), remapTo(HIDUtil::f18Usage), false},
    };
    decisions.decide(capsLockTo(std::nullopt));  // nothing remapped yet: no run
    std::vector<QString> texts;
    QList<QVariantList> results;
    for (int i = 1; i <= 50; ++i) {
        const auto& [target, toolText, direct] = kinds[i * 3 % 5];
        decisions.decide(capsLockTo(target));
        texts.push_back(toolText);
        results.push_back({target.has_value(), direct});
    }
    decisions.waitUntilDone();
    EXPECT_EQ(toolTexts(), texts);
    EXPECT_TRUE(decided == results);

    tool.setOutput("error: no permission");  // a run that fails decides nothing
    decisions.decide(capsLockTo(std::nullopt)), decisions.waitUntilDone();
    EXPECT_EQ(decided.size(), results.size());
}

// A hung tool at quit: the running decision is ended, the queued ones never run, and of the two
// clears (stopping, then on the way out) only the first waits, for one time-out at most.
TEST_F(CapsLockDecisionsTest, quittingEndsTheDecisionsAndWaitsForAHungToolOnlyOnce) {
    CapsLockDecisions quitting(HIDUtil(tool.path(), 1));
    tool.setHangs();
    for (KeyCode target : {KeyCode::escape, KeyCode::tab, KeyCode::a}) quitting.decide(capsLockTo(TargetAction::key(target)));
    ASSERT_TRUE(QTest::qWaitFor([&] { return tool.calls().size() == 1; }, 10000));  // the first one hangs
    quitting.beginQuit();
    quitting.clearRemapping();
    quitting.clearRemapping();
    EXPECT_EQ(toolTexts(), (std::vector<QString>{remapTo(30064771113), HIDUtil::clearText()}));
    EXPECT_EQ(lines.back(), "HIDUtil: Failed to clear remapping: error: not run, Orvane is quitting");
}
