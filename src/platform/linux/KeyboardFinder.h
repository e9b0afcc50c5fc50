// Finds the machine's event devices through libudev and watches them come and go.
#pragma once

#include <QObject>

#include <functional>
#include <string>

struct udev;
struct udev_monitor;

namespace orvane {

class KeyboardFinder final : public QObject {
    Q_OBJECT
public:
    struct Handlers {
        // An event device: there at the start (pluggedNow false) or plugged in later.
        std::function<void(const char* devnode, bool pluggedNow)> added;
        std::function<void(const std::string& devnode)> removed;
    };

    explicit KeyboardFinder(QObject* parent = nullptr);
    ~KeyboardFinder() override;

    // Hands every present event device to `added`, then watches for changes (on the main thread).
    void start(Handlers handlers);

    static bool isEventNode(const char* devnode);
    // Whether every event device of the machine can be read (keyboards cannot be told apart otherwise).
    static bool canReadEventDevices();

private:
    void onHotplug();

    Handlers handlers_;
    udev* udev_ = nullptr;
    udev_monitor* monitor_ = nullptr;
};

}  // namespace orvane
