// The key recorder field as the user sees it: texts, colours, frame and recording over the simulated keyboard.
#include "RecorderTestSupport.h"

using namespace orvane;
using namespace orvane::testing;

TEST_F(RecorderViewTest, showsThePlaceholderOrTheChosenKeyAndClearOnlyWithAKey) {
    showField(true);
    EXPECT_EQ(read("recorderText", "text").toString(), QStringLiteral("Press target key or combination..."));
    EXPECT_EQ(read("recorderText", "color").value<QColor>(), paletteColor("recorderText", "placeholderText"));
    EXPECT_FALSE(isShown("clearButton"));

    field->setRecordedKey(RecordedKey{SourceKey::regular(KeyCode::a), Modifiers{.command = true, .shift = true}});
    ui.settle();
    EXPECT_EQ(read("recorderText", "text").toString(), QStringLiteral("⇧⌘A"));
    EXPECT_EQ(read("recorderText", "color").value<QColor>(), paletteColor("recorderText", "text"));
    ASSERT_TRUE(isShown("clearButton"));

    ui.click(ui.find("clearButton"));
    EXPECT_FALSE(field->hasKey());
    EXPECT_EQ(read("recorderText", "text").toString(), QStringLiteral("Press target key or combination..."));
    EXPECT_FALSE(isShown("clearButton"));
}

TEST_F(RecorderViewTest, recordingPausesTheMainTapAndTheFirstKeyEndsIt) {
    ASSERT_TRUE(ui.manager().start());
    showField(true);
    ui.click(ui.find("recordButton"));

    EXPECT_FALSE(ui.manager().isRunning());
    EXPECT_EQ(read("recorderText", "text").toString(), QStringLiteral("Press any key..."));
    EXPECT_EQ(read("recorderText", "color").value<QColor>(), paletteColor("recorderText", "text"));
    EXPECT_EQ(read("recordButton", "text").toString(), QStringLiteral("Cancel"));
    QObject* border = read("recorderFrame", "border").value<QObject*>();
    EXPECT_EQ(border->property("width").toInt(), 2);
    EXPECT_EQ(border->property("color").value<QColor>(), paletteColor("recorderFrame", "highlight"));
    ui.screenshot(QStringLiteral("recorder-recording"));

    const PlatformEvent commandShiftADown{10, static_cast<std::uint16_t>(rawValue(KeyCode::a)),
                                          EventFlag::command | EventFlag::shift, 0, std::nullopt};
    ui.events().inject(commandShiftADown);
    ui.settle();

    EXPECT_TRUE(ui.manager().isRunning());
    EXPECT_TRUE(ui.events().takeDelivered().empty());  // the recorded press reached no application
    EXPECT_EQ(read("recorderText", "text").toString(), QStringLiteral("⇧⌘A"));
    EXPECT_EQ(read("recordButton", "text").toString(), QStringLiteral("Record"));
    EXPECT_EQ(border->property("width").toInt(), 1);
}

TEST_F(RecorderViewTest, cancelKeepsTheKeyAndLeavesAStoppedTapStopped) {
    showField(false);
    field->setRecordedKey(RecordedKey{SourceKey::regular(KeyCode::escape), {}});
    ui.click(ui.find("recordButton"));
    ASSERT_TRUE(field->isRecording());

    ui.click(ui.find("recordButton"));

    EXPECT_FALSE(field->isRecording());
    EXPECT_FALSE(ui.manager().isRunning());
    EXPECT_EQ(read("recorderText", "text").toString(), QStringLiteral("⎋"));
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
