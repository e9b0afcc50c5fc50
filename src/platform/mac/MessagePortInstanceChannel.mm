#include "platform/mac/MessagePortInstanceChannel.h"

#import <AppKit/AppKit.h>

namespace orvane {
namespace {

// A launch waits this long to queue its request (the queue is full only if the holder hangs) and
// this long for the answer: the holder answers from its main run loop, which a start-up or a quit
// can keep busy for a while; a launch that gets no answer tries again (claimOrHandOver).
constexpr CFTimeInterval sendTimeout = 1;
constexpr CFTimeInterval answerTimeout = 5;

// While a launch waits for the answer, its run loop runs in this mode only, so nothing else of the
// launch's (Qt's sources are in the common modes) runs inside the wait.
const CFStringRef answerMode = CFSTR("com.user.Orvane.instance-answer");

}  // namespace

MessagePortInstanceChannel::MessagePortInstanceChannel(QString portName, QString bundleIdentifier, QObject* parent)
    : RequestPortInstanceChannel(parent), portName_(std::move(portName)), bundleIdentifier_(std::move(bundleIdentifier)) {}

// Invalidated first, which unregisters the name and ends the callbacks into this object.
MessagePortInstanceChannel::~MessagePortInstanceChannel() {
    if (!port_) return;
    CFMessagePortInvalidate(port_);
    CFRunLoopRemoveSource(CFRunLoopGetMain(), source_, kCFRunLoopCommonModes);
    CFRelease(source_);
    CFRelease(port_);
}

void MessagePortInstanceChannel::activateOtherInstance() {
    if (bundleIdentifier_.isEmpty()) return;
    NSRunningApplication* current = NSRunningApplication.currentApplication;
    for (NSRunningApplication* other in [NSRunningApplication runningApplicationsWithBundleIdentifier:bundleIdentifier_.toNSString()]) {
        if ([other isEqual:current]) continue;
        if (@available(macOS 14, *)) {
            [NSApp yieldActivationToApplication:other];
            [other activateFromApplication:current options:NSApplicationActivateAllWindows];
            return;
        }
        // macOS 13's way, deprecated from 14 (where it does nothing), and so never taken there.
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wdeprecated-declarations"
        [other activateWithOptions:NSApplicationActivateAllWindows | NSApplicationActivateIgnoringOtherApps];
#pragma clang diagnostic pop
        return;
    }
}

bool MessagePortInstanceChannel::registerPort() {
    NSString* name = portName_.toNSString();
    CFMessagePortContext context{0, this, nullptr, nullptr, nullptr};
    CFMessagePortRef port = CFMessagePortCreateLocal(kCFAllocatorDefault, (__bridge CFStringRef)name, &takeRequest, &context, nullptr);
    if (!port) return false;  // another process holds the name
    // A name already registered in this process gives that port back: only a port of our own is a claim.
    CFMessagePortContext registered{};
    CFMessagePortGetContext(port, &registered);
    CFRunLoopSourceRef source = registered.info == this ? CFMessagePortCreateRunLoopSource(kCFAllocatorDefault, port, 0) : nullptr;
    if (!source) {
        CFRelease(port);
        return false;
    }
    port_ = port;
    source_ = source;
    CFRunLoopAddSource(CFRunLoopGetMain(), source_, kCFRunLoopCommonModes);
    return true;
}

std::optional<QByteArray> MessagePortInstanceChannel::sendRequest(const QByteArray& request) {
    NSString* name = portName_.toNSString();
    CFMessagePortRef remote = CFMessagePortCreateRemote(kCFAllocatorDefault, (__bridge CFStringRef)name);
    if (!remote) return std::nullopt;  // no instance holds the name
    CFDataRef data = request.toRawCFData();
    CFDataRef reply = nullptr;
    const SInt32 status = CFMessagePortSendRequest(remote, 0, data, sendTimeout, answerTimeout, answerMode, &reply);
    CFRelease(data);
    CFRelease(remote);
    if (status != kCFMessagePortSuccess) return std::nullopt;
    const QByteArray answer = reply ? QByteArray::fromCFData(reply) : QByteArray();
    if (reply) CFRelease(reply);
    return answer;
}

// The port releases the answer it is given once it has been sent.
CFDataRef MessagePortInstanceChannel::takeRequest(CFMessagePortRef, SInt32, CFDataRef request, void* channel) {
    const QByteArray answer =
        static_cast<MessagePortInstanceChannel*>(channel)->answer(request ? QByteArray::fromCFData(request) : QByteArray());
    return answer.isEmpty() ? nullptr : answer.toCFData();
}

}  // namespace orvane
