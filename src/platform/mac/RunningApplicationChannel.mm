#include "platform/mac/RunningApplicationChannel.h"

#import <AppKit/AppKit.h>

namespace orvane {

struct RunningApplicationChannel::Observers {
    NSMutableArray<id<NSObject>>* tokens = [NSMutableArray array];
};

namespace {

NSArray<NSRunningApplication*>* otherInstances(const QString& bundleIdentifier) {
    NSArray<NSRunningApplication*>* running =
        [NSRunningApplication runningApplicationsWithBundleIdentifier:bundleIdentifier.toNSString()];
    return [running filteredArrayUsingPredicate:[NSPredicate predicateWithBlock:^BOOL(NSRunningApplication* app, NSDictionary*) {
                        return ![app isEqual:NSRunningApplication.currentApplication];
                    }]];
}

}  // namespace

RunningApplicationChannel::RunningApplicationChannel(QString bundleIdentifier, QList<QByteArray> messages, QObject* parent)
    : InstanceChannel(parent), bundleIdentifier_(std::move(bundleIdentifier)), messages_(std::move(messages)) {}

RunningApplicationChannel::~RunningApplicationChannel() { stopListening(); }

void RunningApplicationChannel::stopListening() {
    if (!observers_) return;
    for (id<NSObject> token in observers_->tokens) [NSDistributedNotificationCenter.defaultCenter removeObserver:token];
    [observers_->tokens removeAllObjects];
}

bool RunningApplicationChannel::isAnotherInstanceRunning() const { return otherInstances(bundleIdentifier_).count > 0; }

void RunningApplicationChannel::activateOtherInstance() {
    [otherInstances(bundleIdentifier_).firstObject
        activateWithOptions:NSApplicationActivateAllWindows | NSApplicationActivateIgnoringOtherApps];
}

bool RunningApplicationChannel::postMessage(const QByteArray& message) {
    if (observers_ || message.isEmpty() || message.size() > maxMessageSize) return false;
    [NSDistributedNotificationCenter.defaultCenter postNotificationName:QString::fromUtf8(message).toNSString()
                                                                 object:nil
                                                               userInfo:nil
                                                     deliverImmediately:YES];
    return isAnotherInstanceRunning();
}

bool RunningApplicationChannel::listen() {
    if (observers_) return true;
    if (isAnotherInstanceRunning()) return false;
    observers_ = std::make_unique<Observers>();
    for (const QByteArray& message : messages_) {
        [observers_->tokens addObject:[NSDistributedNotificationCenter.defaultCenter
                                          addObserverForName:QString::fromUtf8(message).toNSString()
                                                      object:nil
                                                       queue:NSOperationQueue.mainQueue
                                                  usingBlock:^(NSNotification*) {
                                                    emit messageReceived(message);
                                                  }]];
    }
    return true;
}

}  // namespace orvane
