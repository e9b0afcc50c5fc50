// The stored JSON form: exact bytes out, strict acceptance in, and the first error reported.
#include "model/MappingJson.h"

#include <gtest/gtest.h>

#include <random>

using namespace orvane;

namespace {

const char* capsLockToEscapeJson =
    R"({"id":"0E1D2C3B-4A59-4687-9A5B-C0D1E2F30415","sourceKey":{"regular":{"_0":57}},"targetAction":{"key":{"_0":53}},"isEnabled":true})";
const char* f5ToCommandShift4Json =
    R"({"id":"5B1A9F3C-2D4E-4F60-8A7B-9C0D1E2F3A4B","sourceKey":{"regular":{"_0":96}},"targetAction":{"combination":{"_0":21,"_1":{"command":true,"option":false,"control":false,"shift":true}}},"isEnabled":true})";
const char* muteBlockedJson =
    R"({"id":"C47A3E10-6B2D-4E8F-9A01-B2C3D4E5F607","sourceKey":{"system":{"_0":7}},"targetAction":{"block":{}},"isEnabled":false})";

Uuid id(const char* text) { return *Uuid::parse(text); }

std::vector<KeyMapping> threeExamples() {
    Modifiers commandShift;
    commandShift.command = true;
    commandShift.shift = true;
    return {
        {id("0E1D2C3B-4A59-4687-9A5B-C0D1E2F30415"), SourceKey::regular(KeyCode::capsLock), TargetAction::key(KeyCode::escape), true},
        {id("5B1A9F3C-2D4E-4F60-8A7B-9C0D1E2F3A4B"), SourceKey::regular(KeyCode::f5),
         TargetAction::combination(KeyCode::four, commandShift), true},
        {id("C47A3E10-6B2D-4E8F-9A01-B2C3D4E5F607"), SourceKey::system(SystemKeyID::mute), TargetAction::block(), false},
    };
}

// A mapping document with one element whose targetAction (or other member) is replaced.
std::string withTarget(const std::string& target) {
    return R"([{"id":"0E1D2C3B-4A59-4687-9A5B-C0D1E2F30415","sourceKey":{"regular":{"_0":57}},"targetAction":)" + target +
           R"(,"isEnabled":true}])";
}

}  // namespace

TEST(MappingJson, encodesTheThreeExamplesByteForByte) {
    const auto mappings = threeExamples();
    EXPECT_EQ(encodeMappings(std::span(mappings).subspan(0, 1)), std::string("[") + capsLockToEscapeJson + "]");
    EXPECT_EQ(encodeMappings(std::span(mappings).subspan(1, 1)), std::string("[") + f5ToCommandShift4Json + "]");
    EXPECT_EQ(encodeMappings(std::span(mappings).subspan(2, 1)), std::string("[") + muteBlockedJson + "]");
    EXPECT_EQ(encodeMappings(mappings),
              std::string("[") + capsLockToEscapeJson + "," + f5ToCommandShift4Json + "," + muteBlockedJson + "]");
    EXPECT_EQ(encodeMappings({}), "[]");
}

TEST(MappingJson, decodesTheExamplesInAnyMemberOrderAndLetterCase) {
    const auto decoded = decodeMappings(std::string("[") + capsLockToEscapeJson + "," + f5ToCommandShift4Json + "," + muteBlockedJson + "]");
    ASSERT_FALSE(decoded.error) << decoded.error->description();
    EXPECT_EQ(decoded.mappings, threeExamples());

    const auto reordered = decodeMappings(
        R"([ {"isEnabled":false, "targetAction":{"block":{"x":1}}, "note":"ignored",
              "sourceKey":{"system":{"_0":7}}, "id":"c47a3e10-6b2d-4e8f-9a01-b2c3d4e5f607"} ])");
    ASSERT_FALSE(reordered.error) << reordered.error->description();
    ASSERT_EQ(reordered.mappings.size(), 1u);
    EXPECT_EQ(reordered.mappings[0], threeExamples()[2]);
}

TEST(MappingJson, combinationWithoutModifiersStaysACombination) {
    const KeyMapping mapping{Uuid::random(), SourceKey::regular(KeyCode::a), TargetAction::combination(KeyCode::b, {}), true};
    const std::string json = encodeMappings(std::span(&mapping, 1));
    EXPECT_NE(json.find(R"("combination":{"_0":11,"_1":{"command":false,"option":false,"control":false,"shift":false}})"), std::string::npos);
    const auto decoded = decodeMappings(json);
    ASSERT_EQ(decoded.mappings.size(), 1u);
    EXPECT_EQ(decoded.mappings[0].targetAction.kind(), TargetAction::Kind::combination);
    EXPECT_NE(decoded.mappings[0].targetAction, TargetAction::key(KeyCode::b));
}

TEST(MappingJson, acceptsWhatTheFormAllows) {
    const std::pair<std::string, TargetAction> accepted[] = {
        {R"({"block":{}})", TargetAction::block()},
        {R"({"block":{"x":1}})", TargetAction::block()},
        {R"({"key":{"_0":53},"comment":"x"})", TargetAction::key(KeyCode::escape)},
        {R"({"key":{"_0":53,"_1":true}})", TargetAction::key(KeyCode::escape)},
        {R"({"key":{"_0":53.0}})", TargetAction::key(KeyCode::escape)},
    };
    for (const auto& [target, expected] : accepted) {
        SCOPED_TRACE(target);
        const auto decoded = decodeMappings(withTarget(target));
        ASSERT_FALSE(decoded.error) << decoded.error->description();
        ASSERT_EQ(decoded.mappings.size(), 1u);
        EXPECT_EQ(decoded.mappings[0].targetAction, expected);
    }
}

TEST(MappingJson, rejectsTheWholeDocumentWithTheFirstError) {
    using Kind = DecodingError::Kind;
    const char* valid = capsLockToEscapeJson;
    struct Case {
        std::string document;
        Kind kind;
        std::string path;
        std::string messagePart;
    };
    const Case cases[] = {
        {"", Kind::malformedJson, "", ""},
        {"[", Kind::malformedJson, "", ""},
        {"[1e999]", Kind::malformedJson, "", ""},
        {R"({"a":1})", Kind::typeMismatch, "", "array"},
        {"[1]", Kind::typeMismatch, "[0]", "object"},
        {withTarget(R"({"key":{"_0":53},"block":{}})"), Kind::typeMismatch, "[0].targetAction", "Invalid number of keys found, expected one."},
        {withTarget("{}"), Kind::typeMismatch, "[0].targetAction", "Invalid number of keys found, expected one."},
        {withTarget(R"({"block":null})"), Kind::typeMismatch, "[0].targetAction.block", ""},
        {withTarget(R"({"block":true})"), Kind::typeMismatch, "[0].targetAction.block", ""},
        {withTarget(R"({"key":{}})"), Kind::missingMember, "[0].targetAction.key", "_0"},
        {withTarget(R"({"key":{"_0":"53"}})"), Kind::typeMismatch, "[0].targetAction.key._0", ""},
        {withTarget(R"({"key":{"_0":true}})"), Kind::typeMismatch, "[0].targetAction.key._0", ""},
        {withTarget(R"({"key":{"_0":52}})"), Kind::dataCorrupted, "[0].targetAction.key._0", "52"},
        {withTarget(R"({"key":{"_0":53.5}})"), Kind::dataCorrupted, "[0].targetAction.key._0", ""},
        {withTarget(R"({"key":{"_0":18446744073709551615}})"), Kind::dataCorrupted, "[0].targetAction.key._0", ""},
        {withTarget(R"({"combination":{"_0":21}})"), Kind::missingMember, "[0].targetAction.combination", "_1"},
        {withTarget(R"({"combination":{"_0":21,"_1":{"command":true,"option":false,"control":false}}})"), Kind::missingMember,
         "[0].targetAction.combination._1", "shift"},
        {withTarget(R"({"combination":{"_0":21,"_1":{"command":1,"option":false,"control":false,"shift":false}}})"),
         Kind::typeMismatch, "[0].targetAction.combination._1.command", ""},
        {R"([{"id":"0E1D2C3B-4A59-4687-9A5B-C0D1E2F30415","sourceKey":{"regular":{"_0":52}},"targetAction":{"block":{}},"isEnabled":true}])",
         Kind::dataCorrupted, "[0].sourceKey.regular._0", "52"},
        {R"([{"id":"0E1D2C3B-4A59-4687-9A5B-C0D1E2F30415","sourceKey":{"system":{"_0":17}},"targetAction":{"block":{}},"isEnabled":true}])",
         Kind::dataCorrupted, "[0].sourceKey.system._0", "17"},
        {R"([{"id":"0E1D2C3B-4A59-4687-9A5B-C0D1E2F30415","sourceKey":{"regular":{"_0":0},"system":{"_0":0}},"targetAction":{"block":{}},"isEnabled":true}])",
         Kind::typeMismatch, "[0].sourceKey", "Invalid number of keys found, expected one."},
        {std::string("[") + valid + R"(,{"id":"0E1D2C3B-4A59-4687-9A5B-C0D1E2F30415","sourceKey":{"regular":{"_0":0}},"targetAction":{"block":{}}}])",
         Kind::missingMember, "[1]", "isEnabled"},
        {R"([{"id":"0E1D2C3B-4A59-4687-9A5B-C0D1E2F30415","sourceKey":{"regular":{"_0":0}},"targetAction":{"block":{}},"isEnabled":1}])",
         Kind::typeMismatch, "[0].isEnabled", ""},
        {R"([{"id":"not-a-uuid","sourceKey":{"regular":{"_0":0}},"targetAction":{"block":{}},"isEnabled":true}])",
         Kind::dataCorrupted, "[0].id", ""},
        {R"([{"id":"0E1D2C3B-4A59-4687-9A5B-C0D1E2F3041G","sourceKey":{"regular":{"_0":0}},"targetAction":{"block":{}},"isEnabled":true}])",
         Kind::dataCorrupted, "[0].id", ""},
        {R"([{"id":7,"sourceKey":{"regular":{"_0":0}},"targetAction":{"block":{}},"isEnabled":true}])", Kind::typeMismatch, "[0].id", ""},
        // The first error in member order wins: a bad source is reported before a missing isEnabled.
        {R"([{"id":"0E1D2C3B-4A59-4687-9A5B-C0D1E2F30415","sourceKey":{},"targetAction":{"block":{}}}])", Kind::typeMismatch,
         "[0].sourceKey", "Invalid number of keys found, expected one."},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.document);
        const auto decoded = decodeMappings(c.document);
        ASSERT_TRUE(decoded.error.has_value());
        EXPECT_TRUE(decoded.mappings.empty());
        EXPECT_EQ(decoded.error->kind, c.kind);
        EXPECT_EQ(decoded.error->path, c.path);
        EXPECT_NE(decoded.error->message.find(c.messagePart), std::string::npos) << decoded.error->message;
        EXPECT_NE(decoded.error->description().find(c.messagePart), std::string::npos);
    }
}

TEST(MappingJson, randomListsSurviveARoundTrip) {
    std::mt19937 random(20261123);
    const auto keys = allKeyCodes();
    const auto systemKeys = allSystemKeys();
    auto pick = [&](std::size_t n) { return std::uniform_int_distribution<std::size_t>(0, n - 1)(random); };
    for (int round = 0; round < 200; ++round) {
        std::vector<KeyMapping> mappings(pick(12));
        for (auto& mapping : mappings) {
            mapping.id = Uuid::random();
            mapping.sourceKey = pick(4) == 0 ? SourceKey::system(systemKeys[pick(systemKeys.size())]) : SourceKey::regular(keys[pick(keys.size())]);
            const Modifiers modifiers{pick(2) == 1, pick(2) == 1, pick(2) == 1, pick(2) == 1};
            switch (pick(3)) {
            case 0: mapping.targetAction = TargetAction::block(); break;
            case 1: mapping.targetAction = TargetAction::key(keys[pick(keys.size())]); break;
            default: mapping.targetAction = TargetAction::combination(keys[pick(keys.size())], modifiers); break;
            }
            mapping.isEnabled = pick(2) == 1;
        }
        const std::string json = encodeMappings(mappings);
        const auto decoded = decodeMappings(json);
        ASSERT_FALSE(decoded.error) << json;
        ASSERT_EQ(decoded.mappings, mappings) << json;
        EXPECT_EQ(encodeMappings(decoded.mappings), json);
    }
}
