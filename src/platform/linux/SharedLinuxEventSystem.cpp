// The real keyboards and a uinput keyboard serve the whole process when Linux is the build's choice.
#include "platform/linux/EvdevKeyboards.h"
#include "platform/linux/LinuxAccessibility.h"
#include "platform/linux/LinuxEventSystem.h"
#include "platform/linux/UinputKeyboard.h"

#include <QCoreApplication>

namespace orvane {
namespace {

// Owns the devices as a child of the application object: they go with it, while an event loop
// still exists, and the event system lets go of them first.
class LinuxDevices final : public QObject {
public:
    LinuxDevices() : QObject(QCoreApplication::instance()) {
        output = new UinputKeyboard(this);
        input = new EvdevKeyboards(output->devnode(), this);
    }
    ~LinuxDevices() override {
        if (system) system->detachDevices();
    }
    UinputKeyboard* output;
    EvdevKeyboards* input;
    LinuxEventSystem* system = nullptr;
};

LinuxDevices& devices() {
    static auto* devices = new LinuxDevices;
    return *devices;
}

}  // namespace

Accessibility& Accessibility::shared() {
    static LinuxAccessibility accessibility([] { return devices().output->isCreated(); });
    return accessibility;
}

EventSystem& EventSystem::shared() {
    static LinuxEventSystem system(*devices().input, *devices().output, [] { return Accessibility::shared().isProcessTrusted(false); });
    devices().system = &system;
    return system;
}

}  // namespace orvane
