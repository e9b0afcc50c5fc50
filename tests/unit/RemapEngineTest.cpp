// The engine's decisions over plain mapping lists: the tricky cases. The ordinary paths (key, block,
// combination, first enabled mapping, Caps Lock and media keys) run through the scenario files.
#include "interception/RemapEngine.h"
#include "model/IndexedMappings.h"

#include <gtest/gtest.h>

using namespace orvane;

namespace {

KeyMapping mapping(SourceKey source, TargetAction target, bool enabled = true) { return {Uuid::random(), source, target, enabled}; }
KeyMapping mapping(KeyCode source, TargetAction target, bool enabled = true) { return mapping(SourceKey::regular(source), target, enabled); }

TapEvent key(std::uint32_t type, KeyCode code, std::uint64_t flags = 0) {
    return {.type = type, .keyCode = static_cast<std::uint16_t>(rawValue(code)), .flags = flags, .subtype = std::nullopt};
}
TapEvent down(KeyCode code) { return key(TapEventType::keyDown, code); }
TapEvent up(KeyCode code) { return key(TapEventType::keyUp, code); }
TapEvent flagsChanged(KeyCode code, std::uint64_t flags) { return key(TapEventType::flagsChanged, code, flags); }
TapEvent media(std::int16_t subtype, std::int64_t data1) {
    return {.type = TapEventType::systemDefined, .subtype = subtype, .data1 = data1};
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

TEST_F(EngineTest, onlyTheExactMarkerMakesAnEventOurOwn) {
    use({mapping(KeyCode::b, TargetAction::key(KeyCode::a)),
         mapping(SourceKey::system(SystemKeyID::playPause), TargetAction::block())});
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

TEST_F(EngineTest, aModifierKeyReadsOnlyItsOwnFlagAndOtherKeysFlagChangesPass) {
    use({mapping(KeyCode::leftShift, TargetAction::combination(KeyCode::a, {false, false, true, false})),
         mapping(KeyCode::a, TargetAction::block())});
    EXPECT_EQ(events(engine.handleEvent(flagsChanged(KeyCode::leftShift, 0x100000))), std::vector{posted(KeyCode::a, false, 0x40000)});
    EXPECT_EQ(events(engine.handleEvent(flagsChanged(KeyCode::leftShift, 0x20000))), std::vector{posted(KeyCode::a, true, 0x40000)});
    EXPECT_EQ(engine.handleEvent(flagsChanged(KeyCode::a, 0x100000)).kind(), TapDecision::Kind::pass);
    TapEvent unknown = flagsChanged(KeyCode::a, 0);
    unknown.keyCode = 10;
    EXPECT_EQ(engine.handleEvent(unknown).kind(), TapDecision::Kind::pass);
}

TEST_F(EngineTest, f18StandsForCapsLockOnlyWhileAnEnabledCapsLockMappingGoesViaF18) {
    use({mapping(KeyCode::capsLock, TargetAction::combination(KeyCode::space, {false, false, true, false})),
         mapping(KeyCode::f18, TargetAction::key(KeyCode::f19))});
    // Not remapped: F18 is itself.
    EXPECT_EQ(events(engine.handleEvent(down(KeyCode::f18))), std::vector{posted(KeyCode::f19, true)});
    // Via F18 but the Caps Lock mapping is disabled: F18 is looked up as itself.
    lookup.setCapsLockHIDState(true, false);
    use({mapping(KeyCode::capsLock, TargetAction::block(), false), mapping(KeyCode::f18, TargetAction::key(KeyCode::f19))});
    EXPECT_EQ(events(engine.handleEvent(up(KeyCode::f18))), std::vector{posted(KeyCode::f19, false)});
}

TEST_F(EngineTest, mediaKeysReadOnlyBitsSixteenToTwentyThreeAndKeepSystemAndRegularKeysApart) {
    use({mapping(SourceKey::system(SystemKeyID::playPause), TargetAction::key(KeyCode::f13)),
         mapping(SourceKey::system(SystemKeyID::launchpad), TargetAction::block()),
         mapping(SourceKey::regular(KeyCode::launchpad), TargetAction::key(KeyCode::a))});
    // High bits are ignored, and negative data1 is read the same way.
    EXPECT_EQ(events(engine.handleEvent(media(8, static_cast<std::int64_t>(0xFFFFFFFF00100A00ULL)))), std::vector{posted(KeyCode::f13, true)});
    EXPECT_EQ(engine.handleEvent(media(8, 0x00830A00)).kind(), TapDecision::Kind::drop);  // 131: the system Launchpad
}
