// The add/edit sheet from the real QML inside the list window: its controls for new and edited
// mappings, recording through the simulated keyboard, and Return.
#include "MappingsTestSupport.h"

using namespace orvane;
using namespace orvane::testing;

class AddMappingViewTest : public MappingsViewTest {
protected:
    QString recorderText(const char* recorder) {
        return childNamed(item(recorder), QStringLiteral("recorderText"))->property("text").toString();
    }
    bool checked(const char* segment) { return property(segment, "checked").toBool(); }
    void type(std::uint32_t eventType, KeyCode key) {
        ui.events().inject({eventType, static_cast<std::uint16_t>(rawValue(key)), 0, 0, std::nullopt});
    }
};

TEST_F(AddMappingViewTest, aNewSheetOffersRemapRecordsTheSourceAndReturnAddsABlockedKey) {
    click(item("addMappingButton"));
    EXPECT_EQ(sheetTitle(), "New Mapping");
    EXPECT_EQ(property("primaryButton", "text"), "Add Mapping");
    EXPECT_FALSE(item("primaryButton")->isEnabled());
    EXPECT_TRUE(checked("segmentRemap") && !checked("segmentBlock"));
    EXPECT_TRUE(shown("targetRecorder") && !shown("blockCaption"));
    EXPECT_EQ(recorderText("sourceRecorder"), "Press the key to remap...");
    EXPECT_EQ(recorderText("targetRecorder"), "Press target key or combination...");
    ui.screenshot(QStringLiteral("sheet-new"));

    click(item("segmentBlock"));
    EXPECT_TRUE(checked("segmentBlock") && !checked("segmentRemap"));
    EXPECT_TRUE(shown("blockCaption") && !shown("targetRecorder"));
    EXPECT_EQ(property("blockCaption", "text"), "The source key will be completely disabled.");
    // Without a source Return does nothing and the sheet stays.
    key(Qt::Key_Return);
    EXPECT_TRUE(shown("mappingSheet"));
    EXPECT_TRUE(ui.store().mappings().empty());

    click(childNamed(item("sourceRecorder"), QStringLiteral("recordButton")));
    EXPECT_EQ(recorderText("sourceRecorder"), "Press any key...");
    type(10, KeyCode::f5);
    type(11, KeyCode::f5);
    frame();
    EXPECT_EQ(recorderText("sourceRecorder"), "F5");
    EXPECT_TRUE(item("primaryButton")->isEnabled());
    key(Qt::Key_Return);
    EXPECT_FALSE(shown("mappingSheet"));
    EXPECT_EQ(model()->editor(), nullptr);
    ASSERT_EQ(ui.store().mappings().size(), 1u);
    EXPECT_EQ(ui.store().mappings()[0], (KeyMapping{ui.store().mappings()[0].id, SourceKey::regular(KeyCode::f5), TargetAction::block(), true}));
}

TEST_F(AddMappingViewTest, editingACombinationShowsItAndSavesItUnchanged) {
    const auto combination =
        mapping(KeyCode::f1, TargetAction::combination(KeyCode::k, {.command = true, .shift = true}), false);
    use({mapping(KeyCode::a, TargetAction::block()), combination});
    doubleClick(row(1));
    EXPECT_EQ(sheetTitle(), "Edit Mapping");
    EXPECT_EQ(recorderText("sourceRecorder"), "F1");
    EXPECT_EQ(recorderText("targetRecorder"), "⇧⌘K");
    EXPECT_TRUE(checked("segmentRemap"));
    EXPECT_EQ(property("primaryButton", "text"), "Save Changes");
    ui.screenshot(QStringLiteral("sheet-edit-combination"));
    click(item("primaryButton"));
    EXPECT_FALSE(shown("mappingSheet"));
    EXPECT_EQ(ui.store().mappings().at(1), combination);
}
