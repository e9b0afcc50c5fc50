// The machine's keyboards through libevdev, found and watched for hot-plug through libudev.
#pragma once

#include "platform/linux/KeyboardDevices.h"

#include <QObject>

#include <map>
#include <memory>
#include <string>

struct libevdev;
struct udev;
struct udev_monitor;
class QSocketNotifier;

namespace orvane {

class EvdevKeyboards final : public QObject, public KeyboardInput {
    Q_OBJECT
public:
    // A keyboard is an event device with keys and the letter keys; ownDevnode (the output) and any
    // device named like an Orvane output are never read.
    explicit EvdevKeyboards(std::string ownDevnode, QObject* parent = nullptr);
    ~EvdevKeyboards() override;

    void setListener(Listener* listener) override { listener_ = listener; }
    void setGrabbed(bool grabbed) override;
    bool isGrabbed(KeyboardId keyboard) const override;
    void setCapsLockLight(bool on) override;

    // Whether every event device of the machine can be read (keyboards cannot be told apart otherwise).
    static bool canReadEventDevices();

private:
    struct Keyboard;

    void addDevice(const char* devnode, bool pluggedNow);
    void removeDevice(const std::string& devnode);
    void readEvents(Keyboard& keyboard);
    void grabIfIdle(Keyboard& keyboard);
    void onHotplug();

    std::string ownDevnode_;
    Listener* listener_ = nullptr;
    bool grabbed_ = false;
    KeyboardId nextId_ = 1;
    std::map<std::string, std::unique_ptr<Keyboard>> keyboards_;  // by devnode
    udev* udev_ = nullptr;
    udev_monitor* monitor_ = nullptr;
};

}  // namespace orvane
