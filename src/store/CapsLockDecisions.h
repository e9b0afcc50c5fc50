// Caps Lock at the HID layer: a decision per change, run in order on a worker thread, and the clears.
#pragma once

#include "model/Mapping.h"
#include "store/HIDUtil.h"
#include "store/SerialWorker.h"

#include <QObject>

#include <functional>
#include <memory>
#include <optional>

namespace orvane {

// Owned and called on the main thread. Each decision runs on one worker with a snapshot taken when it
// was queued; its result comes back through the event loop as decided(), in the order of queueing.
class CapsLockDecisions : public QObject {
    Q_OBJECT
public:
    // What a decision starts from, taken on the main thread.
    struct Input {
        std::optional<KeyMapping> capsLockMapping;  // the mapping of Caps Lock that applies, if any
        bool isCapsLockHIDRemapped = false;         // the HID layer's state as the main thread knows it
    };

    explicit CapsLockDecisions(HIDUtil hidUtil, QObject* parent = nullptr);
    ~CapsLockDecisions() override;

    const HIDUtil& hidUtil() const { return hidUtil_; }

    // Queues a decision and returns at once; once quitting, queues nothing. Caps Lock to a key with a
    // HID usage and no alone key is remapped directly, anything else through F18; with no mapping a remapped Caps Lock is
    // cleared. A tool run that fails decides nothing.
    void decide(const Input& input);
    // Blocks until queued decisions have run, then delivers their results on this (main) thread.
    void waitUntilDone();
    // Takes Caps Lock's remapping out of the HID layer after the decisions already queued, and
    // returns once that is done. Meanwhile the event loop runs (user input held back), so a slow
    // tool never freezes the windows; once quitting it simply blocks.
    void clearRemapping();
    // Quitting: queued decisions are dropped, a running one is ended, none is queued any more, and
    // every clear from now on shares one tool time-out, so a hung tool is waited for only once.
    void beginQuit();

signals:
    // The HID layer's state after a decision that ran the tool successfully.
    void decided(bool remapped, bool direct);

private:
    void run(const Input& input);
    void waitWithEventLoop(std::function<void()> job);

    const HIDUtil hidUtil_;
    // Worker-side view of the HID layer: a decision's own result is newer than any snapshot taken
    // before that result reached the main thread. Touched only on the worker.
    std::optional<bool> workerRemapped_;
    ToolRunControl decisionRuns_;  // cancelled when quitting begins
    ToolRunControl quitRuns_;      // given the quit's deadline
    bool isQuitting_ = false;
    std::unique_ptr<SerialWorker> worker_;  // declared last: finishes its jobs before the rest goes
};

}  // namespace orvane
