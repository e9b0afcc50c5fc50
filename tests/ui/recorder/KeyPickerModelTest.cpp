// The picker's rules without a view: search and the cells' labels.
#include "ui/recorder/KeyPickerModel.h"

#include <gtest/gtest.h>

using namespace orvane;

TEST(KeyPickerSearch, matchesNameElseSymbolCaseInsensitivelyInDeclaredOrderUntrimmed) {
    using enum KeyCode;
    const std::pair<QString, std::vector<KeyCode>> cases[] = {
        {"PAGE", {pageUp, pageDown}},
        // The left arrow's name is its glyph, so only the left modifier keys match.
        {"left", {leftShift, leftControl, leftOption, leftCommand}},
        {"⌘", {leftCommand, rightCommand}},
        {"🌐", {globe}},
        {" page", {}},
        {"keypad", {keypad0, keypad1, keypad2, keypad3, keypad4, keypad5, keypad6, keypad7, keypad8, keypad9, keypadDecimal,
                    keypadMultiply, keypadPlus, keypadClear, keypadDivide, keypadEnter, keypadMinus, keypadEquals}},
    };
    for (const auto& [query, expected] : cases) EXPECT_EQ(KeyPickerModel::searchResults(query), expected) << query.toStdString();
}

TEST(KeyGridModel, cellsNameTheKeyOnlyWhereTheSymbolDiffersFromTheName) {
    KeyGridModel model;
    model.setKeys({KeyCode::a, KeyCode::leftCommand, KeyCode::space, KeyCode::pageUp});
    const std::pair<const char*, bool> expected[] = {{"A", false}, {"⌘", true}, {"␣", true}, {"Page Up", false}};
    for (int row = 0; row < 4; ++row) {
        EXPECT_EQ(model.data(model.index(row), KeyGridModel::symbolRole).toString(), QString::fromUtf8(expected[row].first));
        EXPECT_EQ(model.data(model.index(row), KeyGridModel::showsDisplayNameRole).toBool(), expected[row].second) << row;
    }
}
