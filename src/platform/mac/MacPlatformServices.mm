// The macOS choices: the message-port handover, the reopen Apple event, secure input, activation,
// resident memory from the task's own accounting.
#include "platform/PlatformServices.h"
#include "platform/PrivateInstance.h"
#include "platform/mac/MessagePortInstanceChannel.h"

#import <AppKit/AppKit.h>
#include <Carbon/Carbon.h>
#include <mach/mach.h>

namespace {

std::function<void()>& reopenHandler() {
    static std::function<void()> handler;
    return handler;
}

}  // namespace

// The target of the reopen Apple event ('rapp': the application launched again while it runs).
@interface OrvaneReopenEventTarget : NSObject
- (void)handleReopen:(NSAppleEventDescriptor*)event withReplyEvent:(NSAppleEventDescriptor*)reply;
@end

@implementation OrvaneReopenEventTarget
- (void)handleReopen:(NSAppleEventDescriptor*)__unused event withReplyEvent:(NSAppleEventDescriptor*)__unused reply {
    if (reopenHandler()) reopenHandler()();
}
@end

namespace orvane {

// The port's name is fixed, so an executable run outside its bundle is an instance too; a private
// instance's port carries its name, and it activates no other application.
std::unique_ptr<InstanceChannel> createInstanceChannel() {
    const QString bundleIdentifier =
        privateInstanceName().isEmpty() ? QString::fromNSString(NSBundle.mainBundle.bundleIdentifier) : QString();
    return std::make_unique<MessagePortInstanceChannel>(forThisInstance(QStringLiteral("com.user.Orvane")) + QStringLiteral(".instance"),
                                                        bundleIdentifier);
}

// AppKit would hand the event to Qt's application delegate, which keeps it to itself: ours takes its place.
void installReopenHandler(std::function<void()> onReopen) {
    reopenHandler() = std::move(onReopen);
    static OrvaneReopenEventTarget* target = [OrvaneReopenEventTarget new];
    void (^install)() = ^{
        [NSAppleEventManager.sharedAppleEventManager setEventHandler:target
                                                         andSelector:@selector(handleReopen:withReplyEvent:)
                                                       forEventClass:kCoreEventClass
                                                          andEventID:kAEReopenApplication];
    };
    install();
    // AppKit installs its own handler as launching finishes; ours goes in again after it.
    [NSNotificationCenter.defaultCenter addObserverForName:NSApplicationDidFinishLaunchingNotification
                                                    object:nil
                                                     queue:nil
                                                usingBlock:^(NSNotification*) { install(); }];
}

std::function<bool()> secureInputQuery() {
    return [] { return IsSecureEventInputEnabled() != 0; };
}

// From macOS 14 an application can no longer take the front from the active one; it asks, and the
// launch that handed over to it has yielded (MessagePortInstanceChannel::activateOtherInstance).
void activateApplication() {
    if (@available(macOS 14, *)) [NSApp activate];
    else [NSApp activateIgnoringOtherApps:YES];
}

bool trayIconClickOpensMenu() { return true; }

std::optional<long long> residentMemoryKiB() {
    mach_task_basic_info_data_t info{};
    mach_msg_type_number_t count = MACH_TASK_BASIC_INFO_COUNT;
    if (task_info(mach_task_self(), MACH_TASK_BASIC_INFO, reinterpret_cast<task_info_t>(&info), &count) != KERN_SUCCESS)
        return std::nullopt;
    return static_cast<long long>(info.resident_size / 1024);
}

// The menu bar tints the status item's template image itself.
std::optional<int> trayPanelLightness(const QRect&) { return std::nullopt; }

}  // namespace orvane
