// The engine's decisions over plain mapping lists: each path and its tricky cases.
#include "interception/RemapEngine.h"
#include "model/IndexedMappings.h"

#include <gtest/gtest.h>

using namespace orvane;

namespace {

KeyMapping mapping(SourceKey source, TargetAction target, bool enabled = true) { return {Uuid::random(), source, target, enabled}; }
KeyMapping mapping(KeyCode source, TargetAction target, bool enabled = true) { return mapping(SourceKey::regular(source), target, enabled); }

TapEvent key(std::uint32_t type, KeyCode code, std::uint64_t flags = 0) {
    TapEvent event;
    event.type = type;
    event.keyCode = static_cast<std::uint16_t>(rawValue(code));
    event.flags = flags;
    return event;
}
TapEvent down(KeyCode code) { return key(TapEventType::keyDown, code); }
TapEvent up(KeyCode code) { return key(TapEventType::keyUp, code); }
TapEvent flagsChanged(KeyCode code, std::uint64_t flags) { return key(TapEventType::flagsChanged, code, flags); }
TapEvent media(std::int16_t subtype, std::int64_t data1) {
    TapEvent event;
    event.type = TapEventType::systemDefined;
    event.subtype = subtype;
    event.data1 = data1;
    return event;
}

SyntheticKeyEvent posted(KeyCode code, bool isDown, std::optional<std::uint64_t> flags = std::nullopt) {
    return {static_cast<std::uint16_t>(rawValue(code)), isDown, flags};
}

std::vector<SyntheticKeyEvent> events(const TapDecision& decision) { return {decision.begin(), decision.end()}; }

struct EngineTest : ::testing::Test {
    IndexedMappings lookup;
    RemapEngine engine{lookup};

    void use(std::vector<KeyMapping> list) { lookup.assign(std::move(list)); }
};

}  // namespace

TEST_F(EngineTest, emptyListPassesEverything) {
    for (const TapEvent& event : {down(KeyCode::a), up(KeyCode::capsLock), flagsChanged(KeyCode::leftCommand, 0x100000),
                                  media(8, 0x00100A00), key(15, KeyCode::a)})
        EXPECT_EQ(engine.handleEvent(event).kind(), TapDecision::Kind::pass);
}

TEST_F(EngineTest, firstEnabledMappingWinsAndDisabledOnesAreSkipped) {
    use({mapping(KeyCode::a, TargetAction::key(KeyCode::x), false), mapping(KeyCode::a, TargetAction::key(KeyCode::b)),
         mapping(KeyCode::a, TargetAction::key(KeyCode::c))});
    EXPECT_EQ(events(engine.handleEvent(down(KeyCode::a))), std::vector{posted(KeyCode::b, true)});
    EXPECT_EQ(events(engine.handleEvent(up(KeyCode::a))), std::vector{posted(KeyCode::b, false)});
}

TEST_F(EngineTest, keyPathReplacesBlocksAndCombines) {
    use({mapping(KeyCode::a, TargetAction::key(KeyCode::b)), mapping(KeyCode::q, TargetAction::block()),
         mapping(KeyCode::f5, TargetAction::combination(KeyCode::four, {true, false, false, true})),
         mapping(KeyCode::z, TargetAction::combination(KeyCode::x, {}))});
    // Autorepeat is an ordinary key-down: each repeat posts one more key-down.
    for (int repeat = 0; repeat < 3; ++repeat) EXPECT_EQ(events(engine.handleEvent(down(KeyCode::a))), std::vector{posted(KeyCode::b, true)});
    EXPECT_EQ(engine.handleEvent(down(KeyCode::q)).kind(), TapDecision::Kind::drop);
    EXPECT_EQ(engine.handleEvent(up(KeyCode::q)).kind(), TapDecision::Kind::drop);
    // The real modifier state never enters the posted flags.
    TapEvent withShiftHeld = down(KeyCode::f5);
    withShiftHeld.flags = 0x80000;
    EXPECT_EQ(events(engine.handleEvent(withShiftHeld)), std::vector{posted(KeyCode::four, true, 0x120000)});
    EXPECT_EQ(events(engine.handleEvent(up(KeyCode::f5))), std::vector{posted(KeyCode::four, false, 0x120000)});
    EXPECT_EQ(events(engine.handleEvent(down(KeyCode::z))), std::vector{posted(KeyCode::x, true)});
    EXPECT_EQ(engine.handleEvent(down(KeyCode::b)).kind(), TapDecision::Kind::pass);
}

TEST_F(EngineTest, postedEventsAreNeverMatchedAgain) {
    use({mapping(KeyCode::a, TargetAction::key(KeyCode::b)), mapping(KeyCode::b, TargetAction::key(KeyCode::a)),
         mapping(SourceKey::system(SystemKeyID::playPause), TargetAction::block())});
    TapEvent echo = down(KeyCode::b);
    echo.userData = syntheticEventMarker;
    EXPECT_EQ(engine.handleEvent(echo).kind(), TapDecision::Kind::pass);
    TapEvent mediaEcho = media(8, 0x00100A00);
    mediaEcho.userData = syntheticEventMarker;
    EXPECT_EQ(engine.handleEvent(mediaEcho).kind(), TapDecision::Kind::pass);
    TapEvent nearMarker = down(KeyCode::b);
    nearMarker.userData = syntheticEventMarker + 1;
    EXPECT_EQ(events(engine.handleEvent(nearMarker)), std::vector{posted(KeyCode::a, true)});
}

TEST_F(EngineTest, tapDisabledNotificationsPass) {
    use({mapping(KeyCode::a, TargetAction::block())});
    for (std::uint32_t type : {TapEventType::tapDisabledByTimeout, TapEventType::tapDisabledByUserInput}) {
        TapEvent event = down(KeyCode::a);
        event.type = type;
        EXPECT_EQ(engine.handleEvent(event).kind(), TapDecision::Kind::pass);
    }
}

TEST_F(EngineTest, modifierKeysFollowTheirFlagAfterTheChange) {
    use({mapping(KeyCode::rightCommand, TargetAction::key(KeyCode::escape)),
         mapping(KeyCode::leftShift, TargetAction::combination(KeyCode::a, {false, false, true, false}))});
    EXPECT_EQ(events(engine.handleEvent(flagsChanged(KeyCode::rightCommand, 0x100000))), std::vector{posted(KeyCode::escape, true)});
    EXPECT_EQ(events(engine.handleEvent(flagsChanged(KeyCode::rightCommand, 0x0))), std::vector{posted(KeyCode::escape, false)});
    // Releasing Right Command while Left Command is still held leaves the shared flag set: a press.
    EXPECT_EQ(events(engine.handleEvent(flagsChanged(KeyCode::rightCommand, 0x100000))), std::vector{posted(KeyCode::escape, true)});
    // Another modifier's flag does not count.
    EXPECT_EQ(events(engine.handleEvent(flagsChanged(KeyCode::leftShift, 0x100000))), std::vector{posted(KeyCode::a, false, 0x40000)});
    EXPECT_EQ(engine.handleEvent(flagsChanged(KeyCode::leftCommand, 0x100000)).kind(), TapDecision::Kind::pass);
    // A flags change reported for a key that is not modifier-like passes.
    use({mapping(KeyCode::a, TargetAction::block())});
    EXPECT_EQ(engine.handleEvent(flagsChanged(KeyCode::a, 0x100000)).kind(), TapDecision::Kind::pass);
    TapEvent unknown = flagsChanged(KeyCode::a, 0);
    unknown.keyCode = 10;
    EXPECT_EQ(engine.handleEvent(unknown).kind(), TapDecision::Kind::pass);
}

TEST_F(EngineTest, capsLockToggleBecomesAFullPressUnlessTheHidLayerOwnsIt) {
    const Modifiers commandOption{true, true, false, false};
    use({mapping(KeyCode::capsLock, TargetAction::combination(KeyCode::space, commandOption))});
    for (std::uint64_t flags : {0x10000ULL, 0x0ULL})
        EXPECT_EQ(events(engine.handleEvent(flagsChanged(KeyCode::capsLock, flags))),
                  (std::vector{posted(KeyCode::space, true, 0x180000), posted(KeyCode::space, false, 0x180000)}));
    lookup.setCapsLockHIDState(true, false);
    EXPECT_EQ(engine.handleEvent(flagsChanged(KeyCode::capsLock, 0x10000)).kind(), TapDecision::Kind::pass);
}

TEST_F(EngineTest, f18StandsForCapsLockOnlyWhileRemappedViaF18) {
    use({mapping(KeyCode::capsLock, TargetAction::combination(KeyCode::space, {false, false, true, false})),
         mapping(KeyCode::f18, TargetAction::key(KeyCode::f19))});
    // Not remapped: F18 is itself.
    EXPECT_EQ(events(engine.handleEvent(down(KeyCode::f18))), std::vector{posted(KeyCode::f19, true)});
    // Via F18: F18 follows its own down/up as Caps Lock (no press-and-release).
    lookup.setCapsLockHIDState(true, false);
    EXPECT_EQ(events(engine.handleEvent(down(KeyCode::f18))), std::vector{posted(KeyCode::space, true, 0x40000)});
    EXPECT_EQ(events(engine.handleEvent(up(KeyCode::f18))), std::vector{posted(KeyCode::space, false, 0x40000)});
    // Direct HID mapping: F18 is itself again.
    lookup.setCapsLockHIDState(true, true);
    EXPECT_EQ(events(engine.handleEvent(down(KeyCode::f18))), std::vector{posted(KeyCode::f19, true)});
    // Via F18 but the Caps Lock mapping is disabled: F18 is looked up as itself.
    lookup.setCapsLockHIDState(true, false);
    use({mapping(KeyCode::capsLock, TargetAction::block(), false), mapping(KeyCode::f18, TargetAction::key(KeyCode::f19))});
    EXPECT_EQ(events(engine.handleEvent(up(KeyCode::f18))), std::vector{posted(KeyCode::f19, false)});
}

TEST_F(EngineTest, mediaKeysDecodeTypeAndStateFromData1) {
    use({mapping(SourceKey::system(SystemKeyID::playPause), TargetAction::key(KeyCode::f13)),
         mapping(SourceKey::system(SystemKeyID::launchpad), TargetAction::block()),
         mapping(SourceKey::regular(KeyCode::launchpad), TargetAction::key(KeyCode::a))});
    EXPECT_EQ(events(engine.handleEvent(media(8, 0x00100A00))), std::vector{posted(KeyCode::f13, true)});
    EXPECT_EQ(events(engine.handleEvent(media(8, 0x00100B00))), std::vector{posted(KeyCode::f13, false)});
    EXPECT_EQ(events(engine.handleEvent(media(8, 0x00100A01))), std::vector{posted(KeyCode::f13, true)});  // repeat bit ignored
    // Only bits 16-23 name the key: high bits are ignored, and negative data1 is read the same way.
    EXPECT_EQ(events(engine.handleEvent(media(8, static_cast<std::int64_t>(0xFFFFFFFF00100A00ULL)))), std::vector{posted(KeyCode::f13, true)});
    EXPECT_EQ(engine.handleEvent(media(8, 0x00830A00)).kind(), TapDecision::Kind::drop);  // 131: the system Launchpad
    EXPECT_EQ(engine.handleEvent(media(7, 0x00100A00)).kind(), TapDecision::Kind::pass);
    EXPECT_EQ(engine.handleEvent(media(8, 0x00190A00)).kind(), TapDecision::Kind::pass);  // type 25 names no key
    EXPECT_EQ(engine.handleEvent(media(8, 0x00000A00)).kind(), TapDecision::Kind::pass);  // volume up: no mapping
    TapEvent unconverted = media(8, 0x00100A00);
    unconverted.subtype.reset();
    EXPECT_EQ(engine.handleEvent(unconverted).kind(), TapDecision::Kind::pass);
}

TEST_F(EngineTest, modifierFlagsCombineTheFourBits) {
    EXPECT_EQ(RemapEngine::modifierFlags({true, true, true, false}), 0x1C0000u);
    EXPECT_EQ(RemapEngine::modifierFlags({false, false, false, true}), 0x20000u);
    EXPECT_EQ(RemapEngine::modifierFlags({}), 0u);
}
