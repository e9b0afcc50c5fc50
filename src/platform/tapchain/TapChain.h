// The ordered taps of the event stream, with Quartz's rules for who sees an event and what goes on.
#pragma once

#include "platform/tapchain/PlatformEvent.h"

#include <QObject>
#include <QPointer>

#include <deque>
#include <functional>
#include <memory>
#include <vector>

namespace orvane {

// One tap in the chain. Fields are the chain's to manage; backends only hand handles around.
struct EventTap {
    TapLocation location;
    TapOptions options;
    std::uint64_t eventMask;
    TapCallback callback;
    void* userInfo;
    bool enabled = false;    // a new tap is disabled until enabled
    bool inRunLoop = false;  // its source sits in a run loop
    QPointer<QObject> runLoopContext;  // lives in the thread whose run loop holds the source
    bool released = false;
};

struct RunLoopSource {
    std::shared_ptr<EventTap> tap;  // a source keeps its tap alive, as a run-loop source retains its port
};

// Events enter at the bottom (the keyboard, or a post at the HID level) and pass the taps from the
// front: HID-level taps, then session taps, then annotated-session taps; at each location a
// head-inserted tap stands in front of those already there. An active tap may let the event go
// on, replace it or end its road; a listen-only tap only observes. What leaves the last tap goes
// to the output: the applications.
//
// Events are handled one at a time: an event that enters while another travels (a tap posting a
// replacement) waits until the first has finished its road. Callbacks run on the thread whose run
// loop holds their tap's source; an event entered from another thread is handed to the chain's
// own thread first.
class TapChain : public QObject {
    Q_OBJECT
public:
    using Output = std::function<void(const PlatformEvent&)>;

    explicit TapChain(QObject* parent = nullptr);
    ~TapChain() override;

    std::shared_ptr<EventTap> addTap(TapLocation location, TapPlacement placement, TapOptions options, std::uint64_t mask,
                                     TapCallback callback, void* userInfo);
    void setOutput(Output output) { output_ = std::move(output); }

    // Input: an event from the keyboard, or posted at the HID level; both take the same road.
    void enter(const PlatformEvent& event);

    // The system switches a tap off as if it timed out or by user input, and tells its callback.
    void disableBySystem(EventTap& tap, std::uint32_t notificationType);

private:
    void travel(PlatformEvent event);
    PlatformEvent* callTap(EventTap& tap, std::uint32_t type, PlatformEvent* event);
    void forget(EventTap* tap);
    void sweep();

    std::vector<EventTap*> taps_;  // in road order
    std::deque<PlatformEvent> waiting_;
    bool travelling_ = false;
    int walking_ = 0;  // nesting of walks over taps_: removals are deferred while walking
    Output output_;
};

}  // namespace orvane
