// The virtual keyboard applications read from: a uinput device made with libevdev.
#pragma once

#include "platform/linux/KeyboardDevices.h"

#include <QObject>

#include <memory>
#include <string>

struct libevdev;
struct libevdev_uinput;
class QSocketNotifier;

namespace orvane {

class UinputKeyboard final : public QObject, public KeyboardOutput {
    Q_OBJECT
public:
    // The name every Orvane output device carries; no Orvane ever reads a device of this name.
    static constexpr const char* deviceName = "Orvane Virtual Keyboard";

    explicit UinputKeyboard(QObject* parent = nullptr);
    ~UinputKeyboard() override;

    // False when /dev/uinput could not be opened for writing.
    bool isCreated() const { return device_ != nullptr; }
    // Its /dev/input/event… node, empty when not created.
    std::string devnode() const;

    void writeKey(std::uint16_t code, int value) override;

private:
    void readLights();

    libevdev* description_ = nullptr;
    libevdev_uinput* device_ = nullptr;
    QSocketNotifier* notifier_ = nullptr;
};

}  // namespace orvane
