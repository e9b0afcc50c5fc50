// When the HID layer may have lost the user key mapping on macOS: the machine woke, a keyboard appeared.
#include "platform/PlatformServices.h"

#import <AppKit/AppKit.h>
#include <IOKit/hid/IOHIDManager.h>
#include <IOKit/hid/IOHIDUsageTables.h>

namespace orvane {
namespace {

// One keyboard matches once per keyboard interface, and a wake brings the wake notification and the
// keyboards' return: a burst of causes calls the handler once, this long after the last of them.
constexpr NSTimeInterval coalesceSeconds = 1.0;

// The wake observer and the keyboard matching, for as long as a handler is installed.
// The manager only matches: it never opens a keyboard, so no Input Monitoring permission is asked for.
class HidResetWatch {
public:
    explicit HidResetWatch(std::function<void()> onReset) : onReset_(std::move(onReset)) {
        wakeObserver_ = [NSWorkspace.sharedWorkspace.notificationCenter addObserverForName:NSWorkspaceDidWakeNotification
                                                                                    object:nil
                                                                                     queue:NSOperationQueue.mainQueue
                                                                                usingBlock:^(NSNotification*) { scheduleReset(); }];
        keyboards_ = IOHIDManagerCreate(kCFAllocatorDefault, kIOHIDOptionsTypeNone);
        NSDictionary* matching = @{@kIOHIDDeviceUsagePageKey : @(kHIDPage_GenericDesktop), @kIOHIDDeviceUsageKey : @(kHIDUsage_GD_Keyboard)};
        IOHIDManagerSetDeviceMatching(keyboards_, (__bridge CFDictionaryRef)matching);
        NSSet* present = (__bridge_transfer NSSet*)IOHIDManagerCopyDevices(keyboards_);
        keyboardsAtStart_ = present ? [present mutableCopy] : [NSMutableSet set];
        IOHIDManagerRegisterDeviceMatchingCallback(keyboards_, &keyboardMatched, this);
        IOHIDManagerScheduleWithRunLoop(keyboards_, CFRunLoopGetMain(), kCFRunLoopCommonModes);
    }

    ~HidResetWatch() {
        [NSWorkspace.sharedWorkspace.notificationCenter removeObserver:wakeObserver_];
        IOHIDManagerRegisterDeviceMatchingCallback(keyboards_, nullptr, nullptr);
        IOHIDManagerUnscheduleFromRunLoop(keyboards_, CFRunLoopGetMain(), kCFRunLoopCommonModes);
        CFRelease(keyboards_);
        [pending_ invalidate];
    }

    HidResetWatch(const HidResetWatch&) = delete;
    HidResetWatch& operator=(const HidResetWatch&) = delete;

    void setHandler(std::function<void()> onReset) { onReset_ = std::move(onReset); }

private:
    // The manager reports the keyboards that were there when matching began as well; those are not new.
    static void keyboardMatched(void* watch, IOReturn, void*, IOHIDDeviceRef keyboard) {
        auto* self = static_cast<HidResetWatch*>(watch);
        if ([self->keyboardsAtStart_ containsObject:(__bridge id)keyboard]) [self->keyboardsAtStart_ removeObject:(__bridge id)keyboard];
        else self->scheduleReset();
    }

    // The timer is the run loop's until it fires or is invalidated here, so it never outlives the watch.
    void scheduleReset() {
        [pending_ invalidate];
        pending_ = [NSTimer timerWithTimeInterval:coalesceSeconds
                                          repeats:NO
                                            block:^(NSTimer*) {
                                              pending_ = nil;
                                              if (onReset_) onReset_();
                                            }];
        [NSRunLoop.mainRunLoop addTimer:pending_ forMode:NSRunLoopCommonModes];
    }

    std::function<void()> onReset_;
    id<NSObject> wakeObserver_;
    IOHIDManagerRef keyboards_;
    NSMutableSet* keyboardsAtStart_;
    NSTimer* pending_;
};

std::unique_ptr<HidResetWatch>& watch() {
    static std::unique_ptr<HidResetWatch> current;
    return current;
}

}  // namespace

// An empty handler ends the watch: its observers are removed and a pending call is dropped.
void installHidResetHandler(std::function<void()> onReset) {
    if (!onReset) watch().reset();
    else if (watch()) watch()->setHandler(std::move(onReset));
    else watch() = std::make_unique<HidResetWatch>(std::move(onReset));
}

}  // namespace orvane
