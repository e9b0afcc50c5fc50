// The key recorder field as the user sees it: texts, colours, frame and recording over the simulated
// keyboard. Pausing the main tap while recording: the scenario files and the recorder's own tests.
#include "RecorderTestSupport.h"

using namespace orvane;
using namespace orvane::testing;

TEST_F(RecorderViewTest, showsThePlaceholderOrTheChosenKeyWhichCancelKeepsAndClearRemoves) {
    showField(true);
    EXPECT_EQ(read("recorderText", "text").toString(), QStringLiteral("Press target key or combination..."));
    EXPECT_EQ(read("recorderText", "color").value<QColor>(), paletteColor("recorderText", "placeholderText"));
    EXPECT_FALSE(isShown("clearButton"));

    field->setRecordedKey(RecordedKey{SourceKey::regular(KeyCode::a), Modifiers{.command = true, .shift = true}});
    ui.settle();
    EXPECT_EQ(read("recorderText", "text").toString(), QStringLiteral("⇧⌘A"));
    EXPECT_EQ(read("recorderText", "color").value<QColor>(), paletteColor("recorderText", "text"));
    ASSERT_TRUE(isShown("clearButton"));
    ui.click(ui.find("recordButton"));
    ASSERT_TRUE(field->isRecording());
    ui.click(ui.find("recordButton"));  // Cancel
    EXPECT_FALSE(field->isRecording());
    EXPECT_EQ(read("recorderText", "text").toString(), QStringLiteral("⇧⌘A"));

    ui.click(ui.find("clearButton"));
    EXPECT_FALSE(field->hasKey());
    EXPECT_EQ(read("recorderText", "text").toString(), QStringLiteral("Press target key or combination..."));
    EXPECT_FALSE(isShown("clearButton"));
}

TEST_F(RecorderViewTest, whileRecordingTheFrameIsHighlightedUntilTheFirstKeyEndsIt) {
    showField(true);
    ui.click(ui.find("recordButton"));
    EXPECT_EQ(read("recorderText", "text").toString(), QStringLiteral("Press any key..."));
    EXPECT_EQ(read("recorderText", "color").value<QColor>(), paletteColor("recorderText", "text"));
    EXPECT_EQ(read("recordButton", "text").toString(), QStringLiteral("Cancel"));
    QObject* border = read("recorderFrame", "border").value<QObject*>();
    EXPECT_EQ(border->property("width").toInt(), 2);
    EXPECT_EQ(border->property("color").value<QColor>(), paletteColor("recorderFrame", "highlight"));
    ui.screenshot(QStringLiteral("recorder-recording"));

    ui.events().inject({10, static_cast<std::uint16_t>(rawValue(KeyCode::a)), EventFlag::command | EventFlag::shift, 0, std::nullopt});
    ui.settle();
    EXPECT_EQ(read("recorderText", "text").toString(), QStringLiteral("⇧⌘A"));
    EXPECT_EQ(read("recordButton", "text").toString(), QStringLiteral("Record"));
    EXPECT_EQ(border->property("width").toInt(), 1);
}

TEST_F(RecorderViewTest, leavingTheScreenEndsTheRecordingAndResumesTheMainTap) {
    ASSERT_TRUE(ui.manager().start());
    showField(false);
    ui.click(ui.find("recordButton"));
    ASSERT_FALSE(ui.manager().isRunning());

    ui.find("recorderView")->setVisible(false);
    ui.settle();

    EXPECT_FALSE(field->isRecording());
    EXPECT_TRUE(ui.manager().isRunning());
}
