// The instance channel on macOS: a Core Foundation message port registered under a fixed name.
#pragma once

#include "platform/InstanceChannel.h"

#include <QString>

#include <CoreFoundation/CoreFoundation.h>

namespace orvane {

// The running instance registers a local message port in the user's bootstrap namespace (the claim:
// the name is refused while another process holds it, other users never see it, and it is released
// when the process ends, however it ends); a later launch sends its message as a request and hands
// over only when the answer says the message was taken. Main thread only.
class MessagePortInstanceChannel final : public RequestPortInstanceChannel {
public:
    // The port's name; the bundle identifier of the applications that activateOtherInstance() brings
    // to the front (empty: none, as for a private instance or an executable outside its bundle).
    MessagePortInstanceChannel(QString portName, QString bundleIdentifier, QObject* parent = nullptr);
    ~MessagePortInstanceChannel() override;

    // Lets the other instance come to the front with all its windows: from macOS 14 this launch yields
    // its activation to it (the other instance activates itself as it takes the message).
    void activateOtherInstance() override;

protected:
    // CFMessagePortCreateLocal, its source in the main run loop's common modes.
    bool registerPort() override;
    // CFMessagePortSendRequest, waiting for the answer in a run-loop mode of its own.
    std::optional<QByteArray> sendRequest(const QByteArray& request) override;

private:
    static CFDataRef takeRequest(CFMessagePortRef port, SInt32 messageId, CFDataRef request, void* channel);

    QString portName_;
    QString bundleIdentifier_;
    CFMessagePortRef port_ = nullptr;      // registered while this is the instance
    CFRunLoopSourceRef source_ = nullptr;  // its source in the main run loop
};

}  // namespace orvane
