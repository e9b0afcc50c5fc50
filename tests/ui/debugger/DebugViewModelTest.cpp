// The debugger's state without a view: the list's order and limit, scroll requests, the capture's tap.
#include "UiHarness.h"
#include "platform/tapchain/PlatformEvent.h"
#include "ui/debugger/DebugViewModel.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

using namespace orvane;
using namespace orvane::testing;

namespace {

DebugEvent keyDownRecord(int keycode) {
    DebugEvent record;
    record.event = TapEvent::decode(TapEventType::keyDown, static_cast<std::uint16_t>(keycode), 0, 0);
    return record;
}

}  // namespace

TEST(DebugViewModel, aFullListKeepsTheNewestHundredAndStopsAskingToScroll) {
    UiHarness ui;
    DebugViewModel model;
    QSignalSpy scrolls(&model, &DebugViewModel::scrollToNewest);
    for (int i = 0; i < 150; ++i) model.addEvent(keyDownRecord(i));
    EXPECT_EQ(model.count(), 100);
    EXPECT_EQ(model.events().front().event.keyCode, 149);  // newest first, the oldest dropped
    EXPECT_EQ(model.events().back().event.keyCode, 50);
    EXPECT_EQ(scrolls.count(), 100);

    model.clear();  // nothing left to scroll to
    model.setAutoScroll(false);
    model.addEvent(keyDownRecord(1));
    EXPECT_EQ(scrolls.count(), 100);
}

TEST(DebugViewModel, eachCaptureHasOneTapAndItsRecordsArriveOnALaterTurn) {
    UiHarness ui;
    const int before = ui.events().activeTapCount();
    {
        DebugViewModel model;
        model.startCapture();
        model.startCapture();
        EXPECT_EQ(ui.events().activeTapCount(), before + 1);
        ui.events().inject({.type = 10, .keyCode = 2, .systemDefined = std::nullopt});
        EXPECT_EQ(model.count(), 0);  // never changed from inside the tap callback
        ui.settle();
        EXPECT_EQ(model.count(), 1);

        model.stopCapture();
        EXPECT_EQ(ui.events().activeTapCount(), before);
        model.toggleCapture();
    }
    EXPECT_EQ(ui.events().activeTapCount(), before);  // dropped while capturing
}

TEST(DebugViewModel, aCaptureWithoutATapStillShowsCapturing) {
    UiHarness ui;
    ui.events().setTapCreationFails(true);
    DebugViewModel model;
    model.startCapture();
    ui.events().setTapCreationFails(false);
    EXPECT_EQ(model.captureButtonText(), "Stop Capture");
    EXPECT_EQ(model.status(), DebugViewModel::Status::MappingsInactive);
    model.stopCapture();
    EXPECT_EQ(model.status(), DebugViewModel::Status::Instruction);
}
