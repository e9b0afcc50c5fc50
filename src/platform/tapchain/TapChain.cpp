#include "platform/tapchain/TapChain.h"

#include <QThread>

#include <algorithm>

namespace orvane {

TapChain::TapChain(QObject* parent) : QObject(parent) {}

TapChain::~TapChain() {
    // Handles may outlive the chain: from now on they free their tap themselves.
    for (EventTap* tap : taps_) {
        if (tap->released) delete tap;
        else tap->released = true;
    }
}

std::shared_ptr<EventTap> TapChain::addTap(TapLocation location, TapPlacement placement, TapOptions options, std::uint64_t mask,
                                           TapCallback callback, void* userInfo) {
    auto* tap = new EventTap;
    tap->location = location;
    tap->options = options;
    tap->eventMask = mask;
    tap->callback = callback;
    tap->userInfo = userInfo;
    // Place it among the taps of its location: in front of them, or behind them.
    auto position = placement == TapPlacement::headInsert
                        ? std::find_if(taps_.begin(), taps_.end(), [&](const EventTap* t) { return t->location >= location; })
                        : std::find_if(taps_.begin(), taps_.end(), [&](const EventTap* t) { return t->location > location; });
    taps_.insert(position, tap);
    QPointer<TapChain> chain(this);
    return std::shared_ptr<EventTap>(tap, [chain](EventTap* released) {
        if (chain && !released->released) chain->forget(released);
        else delete released;
    });
}

void TapChain::forget(EventTap* tap) {
    tap->released = true;
    if (walking_ > 0) return;  // the walk in progress still holds it; sweep() frees it afterwards
    std::erase(taps_, tap);
    delete tap;
}

void TapChain::sweep() {
    if (walking_ > 0) return;
    std::erase_if(taps_, [](EventTap* t) {
        if (!t->released) return false;
        delete t;
        return true;
    });
}

void TapChain::enter(const PlatformEvent& event) {
    if (QThread::currentThread() != thread()) {
        QMetaObject::invokeMethod(this, [this, event] { enter(event); }, Qt::QueuedConnection);
        return;
    }
    waiting_.push_back(event);
    if (travelling_) return;  // the road in progress picks it up when it is done
    travelling_ = true;
    while (!waiting_.empty()) {
        PlatformEvent next = waiting_.front();
        waiting_.pop_front();
        travel(next);
    }
    travelling_ = false;
}

void TapChain::travel(PlatformEvent event) {
    ++walking_;
    bool delivered = true;
    // Taps created while the event travels stand in the list but it is already past them when
    // inserted in front, which matches a real stream closely enough.
    for (std::size_t i = 0; i < taps_.size(); ++i) {
        EventTap& tap = *taps_[i];
        if (tap.released || !tap.enabled || !tap.inRunLoop || !(tap.eventMask & eventMaskBit(event.type))) continue;
        if (tap.options == TapOptions::listenOnly) {
            callTap(tap, event.type, &event);
            continue;
        }
        PlatformEvent* result = callTap(tap, event.type, &event);
        if (!result) {
            delivered = false;
            break;
        }
        if (result != &event) event = *result;  // a replacement goes on in its place
    }
    --walking_;
    sweep();
    if (delivered && output_) output_(event);
}

PlatformEvent* TapChain::callTap(EventTap& tap, std::uint32_t type, PlatformEvent* event) {
    QObject* context = tap.runLoopContext.data();
    if (!context || context->thread() == QThread::currentThread()) return tap.callback(type, event, tap.userInfo);
    PlatformEvent* result = nullptr;
    QMetaObject::invokeMethod(context, [&] { result = tap.callback(type, event, tap.userInfo); }, Qt::BlockingQueuedConnection);
    return result;
}

void TapChain::disableBySystem(EventTap& tap, std::uint32_t notificationType) {
    if (tap.released) return;
    tap.enabled = false;
    PlatformEvent notification;
    notification.type = notificationType;
    ++walking_;
    callTap(tap, notificationType, &notification);
    --walking_;
    sweep();
}

}  // namespace orvane
