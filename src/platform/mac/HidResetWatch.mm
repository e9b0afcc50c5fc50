// When the HID layer may have lost the user key mapping on macOS: the machine woke, a keyboard appeared.
#include "platform/PlatformServices.h"

#import <AppKit/AppKit.h>
#include <IOKit/hid/IOHIDManager.h>
#include <IOKit/hid/IOHIDUsageTables.h>

namespace orvane {
namespace {

std::function<void()>& resetHandler() {
    static std::function<void()> handler;
    return handler;
}

void reset() {
    if (resetHandler()) resetHandler()();
}

// The manager reports the keyboards that were there when matching began as well; those are not new.
NSMutableSet* keyboardsAtStart;

void keyboardMatched(void*, IOReturn, void*, IOHIDDeviceRef keyboard) {
    if ([keyboardsAtStart containsObject:(__bridge id)keyboard]) [keyboardsAtStart removeObject:(__bridge id)keyboard];
    else reset();
}

}  // namespace

// The manager only matches: it never opens a keyboard, so no Input Monitoring permission is asked for.
void installHidResetHandler(std::function<void()> onReset) {
    const bool watching = static_cast<bool>(resetHandler());
    resetHandler() = std::move(onReset);
    if (watching) return;
    [NSWorkspace.sharedWorkspace.notificationCenter addObserverForName:NSWorkspaceDidWakeNotification
                                                                object:nil
                                                                 queue:NSOperationQueue.mainQueue
                                                            usingBlock:^(NSNotification*) { reset(); }];
    IOHIDManagerRef keyboards = IOHIDManagerCreate(kCFAllocatorDefault, kIOHIDOptionsTypeNone);  // kept for the process
    NSDictionary* matching = @{@kIOHIDDeviceUsagePageKey : @(kHIDPage_GenericDesktop), @kIOHIDDeviceUsageKey : @(kHIDUsage_GD_Keyboard)};
    IOHIDManagerSetDeviceMatching(keyboards, (__bridge CFDictionaryRef)matching);
    NSSet* present = (__bridge_transfer NSSet*)IOHIDManagerCopyDevices(keyboards);
    keyboardsAtStart = present ? [present mutableCopy] : [NSMutableSet set];
    IOHIDManagerRegisterDeviceMatchingCallback(keyboards, &keyboardMatched, nullptr);
    IOHIDManagerScheduleWithRunLoop(keyboards, CFRunLoopGetMain(), kCFRunLoopCommonModes);
}

}  // namespace orvane
