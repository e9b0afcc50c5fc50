// The one decoding of an event's raw fields: keys, press state, media keys and our own marker.
#include "interception/TapEvent.h"

#include <gtest/gtest.h>

using namespace orvane;

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

TEST(TapEventDecoding, mediaKeysReadBitsSixteenToTwentyThreeAndTheReleaseBit) {
    struct Case {
        std::int16_t subtype;
        std::int64_t data1;
        std::optional<int> auxKeyType;
        std::optional<SystemKeyID> systemKey;
        std::optional<bool> isDown;
    };
    const Case cases[] = {
        {8, 0x00000A00, 0, SystemKeyID::volumeUp, true},
        {8, 0x00100B00, 16, SystemKeyID::playPause, false},
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
