// Event decoding and the engine's tricky cases; its ordinary paths, and the system switching the tap off
// (which the tap manager handles before the engine), run through the scenario files.
#include "Mappings.h"
#include "interception/RemapEngine.h"
#include "model/IndexedMappings.h"

#include <gtest/gtest.h>

using namespace orvane;
using orvane::testing::mapping;

namespace {

TapEvent key(std::uint32_t type, KeyCode code, std::uint64_t flags = 0) {
    return TapEvent::decode(type, static_cast<std::uint16_t>(rawValue(code)), flags, 0);
}
TapEvent down(KeyCode code) { return key(TapEventType::keyDown, code); }
TapEvent up(KeyCode code) { return key(TapEventType::keyUp, code); }
TapEvent flagsChanged(KeyCode code, std::uint64_t flags) { return key(TapEventType::flagsChanged, code, flags); }
TapEvent media(std::int16_t subtype, std::int64_t data1) {
    return TapEvent::decode(TapEventType::systemDefined, 0, 0, 0, subtype, data1);
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

TEST_F(EngineTest, aModifierKeyReadsOnlyItsOwnFlagAndOtherKeysFlagChangesPass) {
    use({mapping(KeyCode::leftShift, TargetAction::combination(KeyCode::a, {false, false, true, false})),
         mapping(KeyCode::a, TargetAction::block())});
    EXPECT_EQ(events(engine.handleEvent(flagsChanged(KeyCode::leftShift, 0x100000))), std::vector{posted(KeyCode::a, false, 0x40000)});
    EXPECT_EQ(events(engine.handleEvent(flagsChanged(KeyCode::leftShift, 0x20000))), std::vector{posted(KeyCode::a, true, 0x40000)});
    EXPECT_EQ(engine.handleEvent(flagsChanged(KeyCode::a, 0x100000)).kind(), TapDecision::Kind::pass);
    EXPECT_EQ(engine.handleEvent(TapEvent::decode(TapEventType::flagsChanged, 10, 0, 0)).kind(), TapDecision::Kind::pass);
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

TEST_F(EngineTest, systemAndRegularKeysOfTheSameNumberStayApart) {
    use({mapping(SourceKey::system(SystemKeyID::playPause), TargetAction::key(KeyCode::f13)),
         mapping(SourceKey::system(SystemKeyID::launchpad), TargetAction::block()),
         mapping(SourceKey::regular(KeyCode::launchpad), TargetAction::key(KeyCode::a))});
    EXPECT_EQ(events(engine.handleEvent(media(8, 0x00100B00))), std::vector{posted(KeyCode::f13, false)});
    EXPECT_EQ(engine.handleEvent(media(8, 0x00830A00)).kind(), TapDecision::Kind::drop);  // 131: the system Launchpad
}

TEST(TapEventDecoding, aModifierIsDownExactlyWhileItsOwnFlagIsSet) {
    const std::uint64_t everyModifier = 0x9F0000;
    for (const KeyCode key : allKeyCodes()) {
        const auto code = static_cast<std::uint16_t>(rawValue(key));
        const std::uint64_t flag = modifierFlagMask(key).value_or(0);
        const TapEvent allSet = TapEvent::decode(TapEventType::flagsChanged, code, everyModifier, 0);
        const TapEvent ownCleared = TapEvent::decode(TapEventType::flagsChanged, code, everyModifier & ~flag, 0);
        EXPECT_EQ(allSet.key, key);
        EXPECT_EQ(allSet.isDown, flag ? std::optional(true) : std::nullopt) << caseName(key);
        EXPECT_EQ(ownCleared.isDown, flag ? std::optional(false) : std::nullopt) << caseName(key);
    }
    EXPECT_FALSE(TapEvent::decode(TapEventType::flagsChanged, 10, everyModifier, 0).key);  // no key has code 10
}

// Plain presses and releases of Volume Up and Play/Pause: the media-keys and capture scenario files.
TEST(TapEventDecoding, mediaKeysReadBitsSixteenToTwentyThreeAndTheReleaseBit) {
    struct Case {
        std::int16_t subtype;
        std::int64_t data1;
        std::optional<int> auxKeyType;
        std::optional<SystemKeyID> systemKey;
        std::optional<bool> isDown;
    };
    const Case cases[] = {
        {8, 0x00100B01, 16, SystemKeyID::playPause, false},  // the repeat bit changes nothing
        {8, 0x12830A00, 0x83, SystemKeyID::launchpad, true},
        {8, static_cast<std::int64_t>(0xFFFFFFFF00130A00ULL), 19, SystemKeyID::nextTrack, true},  // negative data1
        {8, 0x00190A00, 0x19, std::nullopt, true},  // not a catalogue key
        {7, 0x00000A00, std::nullopt, std::nullopt, std::nullopt},
    };
    for (const Case& c : cases) {
        const TapEvent event = TapEvent::decode(TapEventType::systemDefined, 0, 0, 0, c.subtype, c.data1);
        EXPECT_EQ(event.auxKeyType, c.auxKeyType) << std::hex << c.data1;
        EXPECT_EQ(event.systemKey, c.systemKey) << std::hex << c.data1;
        EXPECT_EQ(event.isDown, c.isDown) << std::hex << c.data1;
        EXPECT_FALSE(event.key);
    }
    EXPECT_FALSE(TapEvent::decode(TapEventType::systemDefined, 0, 0, 0, std::nullopt, 0).isDown);  // did not convert
}

TEST(TapEventDecoding, onlyTheExactMarkerMakesAnEventOurs) {
    EXPECT_TRUE(TapEvent::decode(TapEventType::keyUp, 0, 0, syntheticEventMarker).isSynthetic);
    EXPECT_FALSE(TapEvent::decode(TapEventType::keyUp, 0, 0, syntheticEventMarker + 1).isSynthetic);
    EXPECT_FALSE(TapEvent::decode(TapEventType::keyUp, 0, 0, -syntheticEventMarker).isSynthetic);
}
