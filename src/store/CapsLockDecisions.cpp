#include "store/CapsLockDecisions.h"

#include "platform/Diagnostics.h"

#include <QCoreApplication>
#include <QEvent>
#include <QEventLoop>

namespace orvane {

CapsLockDecisions::CapsLockDecisions(HIDUtil hidUtil, QObject* parent)
    : QObject(parent), hidUtil_(std::move(hidUtil)), worker_(std::make_unique<SerialWorker>()) {}

CapsLockDecisions::~CapsLockDecisions() = default;

void CapsLockDecisions::decide(const Input& input) {
    if (isQuitting_) return;
    worker_->enqueue([this, input] { run(input); });
}

// Runs on the worker; hands its result to the main thread, never touches the list.
void CapsLockDecisions::run(const Input& input) {
    const bool remapped = workerRemapped_.value_or(input.isCapsLockHIDRemapped);
    auto publish = [this](bool isRemapped, bool direct) {
        workerRemapped_ = isRemapped;
        QMetaObject::invokeMethod(this, [this, isRemapped, direct] { emit decided(isRemapped, direct); }, Qt::QueuedConnection);
    };
    if (!input.capsLockMapping) {
        if (remapped && hidUtil_.clearRemapping(&decisionRuns_)) publish(false, false);
        return;
    }
    const TargetAction& target = input.capsLockMapping->targetAction;
    // A key with two roles needs the tap to see its press and release: only F18 gives both.
    if (target.kind() == TargetAction::Kind::key && hidUsage(target.keyCode()) && !input.capsLockMapping->aloneKey) {
        if (!hidUtil_.remapCapsLock(target.keyCode(), &decisionRuns_)) return;
        publish(true, true);
        diagnostics::printLine("MappingStore: Using direct HID mapping for Caps Lock → " + std::string(displayName(target.keyCode())));
        return;
    }
    if (!hidUtil_.remapCapsLock(KeyCode::f18, &decisionRuns_)) return;
    publish(true, false);
    diagnostics::printLine("MappingStore: Using F18 intermediate for Caps Lock (combination/block)");
}

void CapsLockDecisions::waitUntilDone() {
    worker_->waitUntilIdle();
    QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
}

void CapsLockDecisions::beginQuit() {
    if (isQuitting_) return;
    isQuitting_ = true;
    worker_->discardPending();
    decisionRuns_.cancel();
    quitRuns_.setDeadline(ToolRunControl::Clock::now() + std::chrono::seconds(hidUtil_.timeoutSeconds()));
}

void CapsLockDecisions::clearRemapping() {
    // Queued like a decision, so that no decision queued earlier can land after it.
    auto clear = [this] { hidUtil_.clearRemapping(&quitRuns_); };
    if (isQuitting_ || !QCoreApplication::instance()) {
        worker_->enqueue(clear);
        worker_->waitUntilIdle();
    } else {
        waitWithEventLoop(clear);
    }
    // What the worker printed comes before whatever this thread prints next.
    diagnostics::releaseHeld();
}

// Main thread: runs the job on the worker and keeps the event loop turning until it is done. The
// completion is handed back through the event loop, so `finished` is only touched on this thread.
void CapsLockDecisions::waitWithEventLoop(std::function<void()> job) {
    struct Wait {
        bool finished = false;
        QEventLoop* loop = nullptr;
    };
    auto wait = std::make_shared<Wait>();
    worker_->enqueue([this, job = std::move(job), wait] {
        job();
        QMetaObject::invokeMethod(this, [wait] {
            wait->finished = true;
            if (wait->loop) wait->loop->quit();
        }, Qt::QueuedConnection);
    });
    QEventLoop loop;
    wait->loop = &loop;
    // An application-wide quit ends the loop early; quitting then waits for the queue itself.
    if (!wait->finished) loop.exec(QEventLoop::ExcludeUserInputEvents);
    wait->loop = nullptr;
}

}  // namespace orvane
