// The mapping records, their index against a plain scan, and their stored JSON form (exact out, strict in).
#include "model/IndexedMappings.h"
#include "model/MappingJson.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using namespace orvane;

namespace {

// A document of one element with these member texts; an empty isEnabled leaves that member out.
std::string document(const std::string& target, const std::string& source = R"({"regular":{"_0":57}})",
                     const std::string& enabled = "true", const std::string& id = R"("0E1D2C3B-4A59-4687-9A5B-C0D1E2F30415")") {
    return R"([{"id":)" + id + R"(,"sourceKey":)" + source + R"(,"targetAction":)" + target +
           (enabled.empty() ? "" : R"(,"isEnabled":)" + enabled) + "}]";
}

}  // namespace

TEST(MappingRecords, labelsPutModifierGlyphsInFixedOrderBeforeTheSymbol) {
    const std::pair<RecordedKey, std::string> cases[] = {
        {{SourceKey::regular(KeyCode::a), {true, false, false, true}}, "\u21E7\u2318A"},
        {{SourceKey::regular(KeyCode::returnKey), {false, true, true, false}}, "\u2303\u2325\u21A9"},
        {{SourceKey::system(SystemKeyID::volumeUp), {}}, "\U0001F50A"},
        {{SourceKey::regular(KeyCode::home), {true, true, true, true}}, "\u2303\u2325\u21E7\u2318Home"},
    };
    for (const auto& [key, label] : cases) EXPECT_EQ(key.label(), label);
    KeyMapping dualRole{Uuid::random(), SourceKey::regular(KeyCode::capsLock), TargetAction::modifiersOnly({.control = true}), true};
    EXPECT_EQ(dualRole.summary(), "\u21EA \u2192 \u2303");
    dualRole.aloneKey = KeyCode::escape;
    EXPECT_EQ(dualRole.summary(), "\u21EA \u2192 \u2303  \u00B7 alone \u238B");
}

// Lower-case text read and written in upper case: the print-mappings scenario.
TEST(MappingRecords, malformedUuidTextIsRejectedAndRandomIdsAreVersionFour) {
    for (const char* bad : {"", "C47A3E10-6B2D-4E8F-9A01-B2C3D4E5F60", "C47A3E10-6B2D-4E8F-9A01-B2C3D4E5F6077",
                            "C47A3E10-6B2D-4E8F-9A01_B2C3D4E5F607", "G47A3E10-6B2D-4E8F-9A01-B2C3D4E5F607"})
        EXPECT_FALSE(Uuid::parse(bad)) << bad;
    const std::string text = Uuid::random().toString();
    EXPECT_EQ(text[14], '4');
    EXPECT_NE(std::string("89AB").find(text[19]), std::string::npos) << text;
}

// The index must give the same first-match answers as a scan of the list, for any list.
TEST(MappingIndex, agreesWithALinearScanOnRandomLists) {
    std::mt19937 random(7);
    const auto keys = allKeyCodes();
    const auto systemKeys = allSystemKeys();
    // Few distinct sources so that duplicates and disabled entries ahead of enabled ones are common.
    const std::vector<SourceKey> sources{SourceKey::regular(KeyCode::a), SourceKey::regular(KeyCode::capsLock),
                                         SourceKey::regular(keys.back()), SourceKey::regular(KeyCode::globe),
                                         SourceKey::system(SystemKeyID::volumeUp), SourceKey::system(SystemKeyID::launchpad)};
    for (int round = 0; round < 300; ++round) {
        std::vector<KeyMapping> list(std::uniform_int_distribution<int>(0, 20)(random));
        for (auto& m : list) {
            m.id = Uuid::random();
            m.sourceKey = sources[std::uniform_int_distribution<std::size_t>(0, sources.size() - 1)(random)];
            m.isEnabled = std::bernoulli_distribution(0.6)(random);
        }
        IndexedMappings indexed(list);
        // A scan's answer, as the same position in the index's own copy of the list.
        const auto expected = [&](SourceKey source) {
            const auto found = std::ranges::find_if(list, [&](const auto& m) { return m.isEnabled && m.sourceKey == source; });
            return found == list.end() ? nullptr : &indexed.list()[static_cast<std::size_t>(found - list.begin())];
        };
        for (const KeyCode k : keys) ASSERT_EQ(indexed.mappingForKey(k), expected(SourceKey::regular(k)));
        for (const SystemKeyID k : systemKeys) ASSERT_EQ(indexed.mappingForSystemKey(k), expected(SourceKey::system(k)));
    }
}

// Exact output, and any member order, letter case in ids and unknown members read: the print-mappings
// scenario; what decoded lists do: the other scenario files.
TEST(MappingJson, acceptsWhatTheFormAllows) {
    const std::pair<std::string, TargetAction> accepted[] = {
        {R"({"block":{}})", TargetAction::block()},
        {R"({"block":{"x":1}})", TargetAction::block()},
        {R"({"key":{"_0":53,"_1":true}})", TargetAction::key(KeyCode::escape)},
        {R"({"key":{"_0":53.0}})", TargetAction::key(KeyCode::escape)},
        {R"({"modifiers":{"_0":{"command":true,"option":true,"control":true,"shift":true}}})",
         TargetAction::modifiersOnly({true, true, true, true})},
    };
    for (const auto& [target, expected] : accepted) {
        SCOPED_TRACE(target);
        const auto decoded = decodeMappings(document(target));
        ASSERT_FALSE(decoded.error) << decoded.error->description();
        ASSERT_EQ(decoded.mappings.size(), 1u);
        EXPECT_EQ(decoded.mappings[0].targetAction, expected);
    }
}

// A source key code that names no key, and how a description reads: the undecodable-mappings scenario.
TEST(MappingJson, rejectsTheWholeDocumentWithTheFirstError) {
    using Kind = DecodingError::Kind;
    const std::string block = R"({"block":{}})", a = R"({"regular":{"_0":0}})";
    // The document, and the first error's kind, path and a piece of its message.
    const std::tuple<std::string, Kind, std::string, std::string> cases[] = {
        {"", Kind::malformedJson, "", ""},
        {R"({"a":1})", Kind::typeMismatch, "", "array"},
        {"[1]", Kind::typeMismatch, "[0]", "object"},
        {document(R"({"key":{"_0":53},"block":{}})"), Kind::typeMismatch, "[0].targetAction", "Invalid number of keys found, expected one."},
        {document(R"({"block":null})"), Kind::typeMismatch, "[0].targetAction.block", ""},
        {document(R"({"key":{}})"), Kind::missingMember, "[0].targetAction.key", "_0"},
        {document(R"({"key":{"_0":"53"}})"), Kind::typeMismatch, "[0].targetAction.key._0", ""},
        {document(R"({"key":{"_0":52}})"), Kind::dataCorrupted, "[0].targetAction.key._0", "52"},
        {document(R"({"key":{"_0":53.5}})"), Kind::dataCorrupted, "[0].targetAction.key._0", ""},
        {document(R"({"combination":{"_0":21}})"), Kind::missingMember, "[0].targetAction.combination", "_1"},
        {document(R"({"combination":{"_0":21,"_1":{"command":true,"option":false,"control":false}}})"), Kind::missingMember,
         "[0].targetAction.combination._1", "shift"},
        {document(block, R"({"system":{"_0":17}})"), Kind::dataCorrupted, "[0].sourceKey.system._0", "17"},
        {document(block).substr(0, document(block).size() - 1) + "," + document(block, a, "").substr(1), Kind::missingMember, "[1]",
         "isEnabled"},
        {document(block, a, "1"), Kind::typeMismatch, "[0].isEnabled", ""},
        {document(block, a, "true", R"("not-a-uuid")"), Kind::dataCorrupted, "[0].id", ""},
        {document(block, a, R"(true,"alone":{"_0":52})"), Kind::dataCorrupted, "[0].alone._0", "52"},
        {document(block, a, R"(true,"alone":53)"), Kind::typeMismatch, "[0].alone", "object"},
        {document(R"({"modifiers":{}})"), Kind::missingMember, "[0].targetAction.modifiers", "_0"},
        // The first error in member order wins: a bad source is reported before a missing isEnabled.
        {document(block, "{}", ""), Kind::typeMismatch, "[0].sourceKey", "Invalid number of keys found, expected one."},
    };
    for (const auto& [text, kind, path, messagePart] : cases) {
        SCOPED_TRACE(text);
        const auto decoded = decodeMappings(text);
        ASSERT_TRUE(decoded.error.has_value());
        EXPECT_TRUE(decoded.mappings.empty());
        EXPECT_EQ(decoded.error->kind, kind);
        EXPECT_EQ(decoded.error->path, path);
        EXPECT_NE(decoded.error->message.find(messagePart), std::string::npos) << decoded.error->message;
    }
}

// Among them combinations without modifiers, which must stay combinations.
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
            const std::size_t kind = pick(4);
            mapping.targetAction = kind == 0 ? TargetAction::block()
                                 : kind == 1 ? TargetAction::key(keys[pick(keys.size())])
                                 : kind == 2 ? TargetAction::combination(keys[pick(keys.size())], modifiers)
                                             : TargetAction::modifiersOnly(modifiers);
            mapping.isEnabled = pick(2) == 1;
            if (pick(3) == 0) mapping.aloneKey = keys[pick(keys.size())];
        }
        const std::string json = encodeMappings(mappings);
        const auto decoded = decodeMappings(json);
        ASSERT_FALSE(decoded.error) << json;
        ASSERT_EQ(decoded.mappings, mappings) << json;
        EXPECT_EQ(encodeMappings(decoded.mappings), json);
    }
    EXPECT_EQ(encodeMappings({}), "[]");
}
