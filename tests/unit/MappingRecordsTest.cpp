// Equality, labels and identifiers of the mapping records.
#include "model/Mapping.h"

#include <gtest/gtest.h>

using namespace orvane;

TEST(MappingRecords, labelsPutModifierGlyphsInFixedOrderBeforeTheSymbol) {
    const std::pair<RecordedKey, std::string> cases[] = {
        {{SourceKey::regular(KeyCode::a), {true, false, false, true}}, "\u21E7\u2318A"},
        {{SourceKey::regular(KeyCode::returnKey), {false, true, true, false}}, "\u2303\u2325\u21A9"},
        {{SourceKey::system(SystemKeyID::volumeUp), {}}, "\U0001F50A"},
        {{SourceKey::regular(KeyCode::function), {}}, "fn"},
        {{SourceKey::regular(KeyCode::home), {true, true, true, true}}, "\u2303\u2325\u21E7\u2318Home"},
    };
    for (const auto& [key, label] : cases) EXPECT_EQ(key.label(), label);
}

TEST(MappingRecords, equalityTellsKindsApartAndEveryMappingFieldCounts) {
    // Same raw value or the same name, different kind.
    EXPECT_NE(SourceKey::regular(KeyCode::a), SourceKey::system(SystemKeyID::volumeUp));
    EXPECT_NE(SourceKey::regular(KeyCode::missionControl), SourceKey::system(SystemKeyID::missionControl));
    EXPECT_EQ(TargetAction::block(), TargetAction::block());
    EXPECT_NE(TargetAction::key(KeyCode::b), TargetAction::combination(KeyCode::b, {}));
    const KeyMapping base{Uuid::random(), SourceKey::regular(KeyCode::f5),
                          TargetAction::combination(KeyCode::four, {true, false, false, true}), true};
    KeyMapping flipped = base, otherId = base;
    flipped.isEnabled = false;
    otherId.id = Uuid::random();
    EXPECT_NE(base, flipped);
    EXPECT_NE(base, otherId);
}

TEST(MappingRecords, uuidTextIsCanonicalUpperCaseAndParsesEitherCase) {
    const auto parsed = Uuid::parse("c47a3e10-6b2d-4e8f-9a01-b2c3d4e5f607");
    ASSERT_TRUE(parsed);
    EXPECT_EQ(parsed->toString(), "C47A3E10-6B2D-4E8F-9A01-B2C3D4E5F607");
    EXPECT_EQ(Uuid::parse(parsed->toString()), parsed);
    for (const char* bad : {"", "C47A3E10-6B2D-4E8F-9A01-B2C3D4E5F60", "C47A3E10-6B2D-4E8F-9A01-B2C3D4E5F6077",
                            "C47A3E10-6B2D-4E8F-9A01_B2C3D4E5F607", "G47A3E10-6B2D-4E8F-9A01-B2C3D4E5F607"})
        EXPECT_FALSE(Uuid::parse(bad)) << bad;
    const Uuid a = Uuid::random(), b = Uuid::random();
    EXPECT_NE(a, b);
    EXPECT_EQ(a.toString()[14], '4');  // version 4
}
