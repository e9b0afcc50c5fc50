#include "platform/mac/QuartzEventSystem.h"

#include "platform/Diagnostics.h"

#import <AppKit/AppKit.h>
#include <ApplicationServices/ApplicationServices.h>

namespace orvane {

// The tap's port and what its callback forwards to; Quartz hands the trampoline this object.
struct EventTap {
    CFMachPortRef port = nullptr;
    TapCallback callback = nullptr;
    void* userInfo = nullptr;
};

namespace {

// Our enumerations carry Quartz's own values.
static_assert(static_cast<CGEventTapLocation>(TapLocation::hid) == kCGHIDEventTap);
static_assert(static_cast<CGEventTapLocation>(TapLocation::session) == kCGSessionEventTap);
static_assert(static_cast<CGEventTapLocation>(TapLocation::annotatedSession) == kCGAnnotatedSessionEventTap);
static_assert(static_cast<CGEventTapPlacement>(TapPlacement::headInsert) == kCGHeadInsertEventTap);
static_assert(static_cast<CGEventTapPlacement>(TapPlacement::tailAppend) == kCGTailAppendEventTap);
static_assert(static_cast<CGEventTapOptions>(TapOptions::activeFilter) == kCGEventTapOptionDefault);
static_assert(static_cast<CGEventTapOptions>(TapOptions::listenOnly) == kCGEventTapOptionListenOnly);
static_assert(static_cast<CGEventField>(EventField::keyboardEventKeycode) == kCGKeyboardEventKeycode);
static_assert(static_cast<CGEventField>(EventField::eventSourceUserData) == kCGEventSourceUserData);

CGEventRef cg(const PlatformEvent* event) { return reinterpret_cast<CGEventRef>(const_cast<PlatformEvent*>(event)); }
CFRunLoopSourceRef cf(const EventSystem::SourceHandle& source) { return reinterpret_cast<CFRunLoopSourceRef>(source.get()); }

// The system disables a tap that was too slow or at the user's request, and tells the tap so: every
// tap of ours (the interception's, the recorder's, the debugger's capture) runs on at once.
CGEventRef forwardToCallback(CGEventTapProxy, CGEventType type, CGEventRef event, void* info) {
    const auto* tap = static_cast<const EventTap*>(info);
    if (type == kCGEventTapDisabledByTimeout || type == kCGEventTapDisabledByUserInput) CGEventTapEnable(tap->port, true);
    return reinterpret_cast<CGEventRef>(tap->callback(type, reinterpret_cast<PlatformEvent*>(event), tap->userInfo));
}

}  // namespace

EventSystem::TapHandle QuartzEventSystem::createTap(TapLocation location, TapPlacement placement, TapOptions options,
                                                    std::uint64_t eventMask, TapCallback callback, void* userInfo) {
    // A listen-only tap (the debugger's) sees keys only with the Input Monitoring permission, which
    // Accessibility does not include: the system asks the user for it once; until then, say so.
    if (options == TapOptions::listenOnly && !CGPreflightListenEventAccess()) {
        CGRequestListenEventAccess();
        diagnostics::printLine("Input Monitoring is not granted: the key event debugger sees no keys until Orvane is "
                               "switched on in System Settings → Privacy & Security → Input Monitoring");
    }
    auto tap = std::make_unique<EventTap>(EventTap{nullptr, callback, userInfo});
    tap->port = CGEventTapCreate(static_cast<CGEventTapLocation>(location), static_cast<CGEventTapPlacement>(placement),
                                 static_cast<CGEventTapOptions>(options), eventMask, &forwardToCallback, tap.get());
    if (!tap->port) return nullptr;
    // Invalidated first: a run-loop source still retaining the port can then never call into a freed tap.
    return TapHandle(tap.release(), [](EventTap* released) {
        CFMachPortInvalidate(released->port);
        CFRelease(released->port);
        delete released;
    });
}

EventSystem::SourceHandle QuartzEventSystem::createRunLoopSource(const TapHandle& tap) {
    if (!tap) return nullptr;
    CFRunLoopSourceRef source = CFMachPortCreateRunLoopSource(kCFAllocatorDefault, tap->port, 0);
    if (!source) return nullptr;
    return SourceHandle(reinterpret_cast<RunLoopSource*>(source), [](RunLoopSource* released) { CFRelease(released); });
}

void QuartzEventSystem::addToCurrentRunLoop(const SourceHandle& source) {
    CFRunLoopAddSource(CFRunLoopGetCurrent(), cf(source), kCFRunLoopCommonModes);
}

void QuartzEventSystem::removeFromCurrentRunLoop(const SourceHandle& source) {
    CFRunLoopRemoveSource(CFRunLoopGetCurrent(), cf(source), kCFRunLoopCommonModes);
}

void QuartzEventSystem::enableTap(const TapHandle& tap, bool enable) { CGEventTapEnable(tap->port, enable); }

std::int64_t QuartzEventSystem::integerField(const PlatformEvent* event, EventField field) const {
    return CGEventGetIntegerValueField(cg(event), static_cast<CGEventField>(field));
}

std::uint64_t QuartzEventSystem::flags(const PlatformEvent* event) const { return CGEventGetFlags(cg(event)); }

std::uint64_t QuartzEventSystem::timestamp(const PlatformEvent* event) const { return CGEventGetTimestamp(cg(event)); }

// Only a system-defined event has a subtype and data; NSEvent raises when others are asked for them.
std::optional<SystemDefinedFields> QuartzEventSystem::systemDefinedFields(const PlatformEvent* event) const {
    @autoreleasepool {
        NSEvent* converted = [NSEvent eventWithCGEvent:cg(event)];
        if (!converted || converted.type != NSEventTypeSystemDefined) return std::nullopt;
        return SystemDefinedFields{converted.subtype, static_cast<std::int64_t>(converted.data1)};
    }
}

EventSystem::OwnedEvent QuartzEventSystem::createKeyboardEvent(std::uint16_t virtualKeyCode, bool keyDown) {
    return OwnedEvent(reinterpret_cast<PlatformEvent*>(CGEventCreateKeyboardEvent(nullptr, virtualKeyCode, keyDown)),
                      EventReleaser{this});
}

void QuartzEventSystem::setType(PlatformEvent* event, std::uint32_t type) { CGEventSetType(cg(event), static_cast<CGEventType>(type)); }

void QuartzEventSystem::setFlags(PlatformEvent* event, std::uint64_t flags) {
    CGEventSetFlags(cg(event), static_cast<CGEventFlags>(flags));
}

void QuartzEventSystem::setIntegerField(PlatformEvent* event, EventField field, std::int64_t value) {
    CGEventSetIntegerValueField(cg(event), static_cast<CGEventField>(field), value);
}

void QuartzEventSystem::postToHID(const PlatformEvent* event) { CGEventPost(kCGHIDEventTap, cg(event)); }

void QuartzEventSystem::releaseEvent(PlatformEvent* event) { CFRelease(cg(event)); }

}  // namespace orvane
