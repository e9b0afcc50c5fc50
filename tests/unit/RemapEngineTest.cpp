// The engine's cases that no script can reach, and our marker's decoding. The engine's ordinary paths, how
// events decode (each modifier's own flag, media keys' bits) and the system switching the tap off (which the
// tap manager handles before the engine) run through the scenario files.
#include "Mappings.h"
#include "interception/RemapEngine.h"
#include "model/IndexedMappings.h"

#include <gtest/gtest.h>

using namespace orvane;
using orvane::testing::mapping;

static std::vector<SyntheticKeyEvent> postedFor(RemapEngine& engine, std::uint32_t type, KeyCode code) {
    const TapDecision decision = engine.handleEvent(TapEvent::decode(type, static_cast<std::uint16_t>(rawValue(code)), 0, 0));
    return {decision.begin(), decision.end()};
}
static SyntheticKeyEvent posted(KeyCode code, bool isDown) {
    return {static_cast<std::uint16_t>(rawValue(code)), isDown, std::nullopt};
}

// Whether Caps Lock goes via F18 is the store's decision, which follows the list; here the moment between a
// change of the list and that decision.
TEST(RemapEngine, f18StandsForCapsLockOnlyWhileAnEnabledCapsLockMappingGoesViaF18) {
    IndexedMappings lookup;
    RemapEngine engine{lookup};
    lookup.assign({mapping(KeyCode::capsLock, TargetAction::combination(KeyCode::space, {.control = true})),
                   mapping(KeyCode::f18, TargetAction::key(KeyCode::f19))});
    // Not remapped: F18 is itself.
    EXPECT_EQ(postedFor(engine, TapEventType::keyDown, KeyCode::f18), std::vector{posted(KeyCode::f19, true)});
    // Via F18 but the Caps Lock mapping is disabled: F18 is looked up as itself.
    lookup.setCapsLockHIDState(true, false);
    lookup.assign({mapping(KeyCode::capsLock, TargetAction::block(), false), mapping(KeyCode::f18, TargetAction::key(KeyCode::f19))});
    EXPECT_EQ(postedFor(engine, TapEventType::keyUp, KeyCode::f18), std::vector{posted(KeyCode::f19, false)});
}

TEST(TapEventDecoding, onlyTheExactMarkerMakesAnEventOurs) {
    for (const std::int64_t data : {syntheticEventMarker, syntheticEventMarker + 1, -syntheticEventMarker})
        EXPECT_EQ(TapEvent::decode(TapEventType::keyUp, 0, 0, data).isSynthetic, data == syntheticEventMarker) << data;
}
