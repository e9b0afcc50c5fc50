// The machine's keyboards as one input: each read on the main thread, found and watched for
// hot-plug by a KeyboardFinder.
#pragma once

#include "platform/linux/KeyboardDevices.h"
#include "platform/linux/KeyboardFinder.h"
#include "platform/linux/RecordedCapsLockMapping.h"

#include <QObject>

#include <map>
#include <memory>
#include <string>

namespace orvane {

class EvdevKeyboard;

class EvdevKeyboards final : public QObject, public KeyboardInput {
    Q_OBJECT
public:
    // ownDevnode (the output) and any device named like an Orvane output are never read.
    explicit EvdevKeyboards(std::string ownDevnode, QObject* parent = nullptr);
    ~EvdevKeyboards() override;

    void setListener(Listener* listener) override { listener_ = listener; }
    void setGrabbed(bool grabbed) override;
    bool isGrabbed(KeyboardId keyboard) const override;
    void setCapsLockLight(bool on) override;


private:
    struct Keyboard;

    void addDevice(const char* devnode, bool pluggedNow);
    void removeDevice(const std::string& devnode);
    void readEvents(Keyboard& keyboard);

    std::string ownDevnode_;
    Listener* listener_ = nullptr;
    bool grabbed_ = false;
    KeyboardId nextId_ = 1;
    std::map<std::string, std::unique_ptr<Keyboard>> keyboards_;  // by devnode
    RecordedCapsLockMapping capsLock_;
    KeyboardFinder finder_;
};

}  // namespace orvane
