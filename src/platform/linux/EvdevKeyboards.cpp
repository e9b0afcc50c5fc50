#include "platform/linux/EvdevKeyboards.h"

#include "platform/linux/CapsLockKeymap.h"
#include "platform/linux/EvdevKeyboard.h"

#include <QSocketNotifier>
#include <QtGlobal>

namespace orvane {
namespace {

// Keyboards are read and written on Qt's own event dispatcher rather than the GLib one: on the road
// from a keyboard to the output it costs a third less CPU per key. Qt reads QT_NO_GLIB when the
// application object makes its dispatcher, after static initialisation; the choice is taken back
// once keyboards are read, so that programs this process starts get the environment it was given.
const bool qtDispatcherChosen = [] {
    if (qEnvironmentVariableIsSet("QT_NO_GLIB")) return false;
    qputenv("QT_NO_GLIB", "1");
    return true;
}();

}  // namespace

struct EvdevKeyboards::Keyboard {
    KeyboardId id = 0;
    std::unique_ptr<EvdevKeyboard> device;
    QSocketNotifier* notifier = nullptr;

    ~Keyboard() { delete notifier; }
};

EvdevKeyboards::EvdevKeyboards(std::string ownDevnode, QObject* parent) : QObject(parent), ownDevnode_(std::move(ownDevnode)) {
    if (qtDispatcherChosen) qunsetenv("QT_NO_GLIB");
    finder_.start({[this](const char* devnode, bool pluggedNow) { addDevice(devnode, pluggedNow); },
                   [this](const std::string& devnode) { removeDevice(devnode); }});
}

EvdevKeyboards::~EvdevKeyboards() { keyboards_.clear(); }

void EvdevKeyboards::addDevice(const char* devnode, bool pluggedNow) {
    if (devnode == ownDevnode_ || keyboards_.contains(devnode)) return;
    auto keyboard = std::make_unique<Keyboard>();
    keyboard->device = EvdevKeyboard::open(devnode, capsLock_);
    if (!keyboard->device) return;
    // Caps Lock below the taps holds for keyboards plugged in later too; those present at the
    // start had it from the HID tool.
    if (pluggedNow) applyCapsLockMappingInForce(keyboard->device->fd());
    keyboard->id = nextId_++;
    Keyboard* added = keyboard.get();
    keyboard->notifier = new QSocketNotifier(keyboard->device->fd(), QSocketNotifier::Read);
    connect(keyboard->notifier, &QSocketNotifier::activated, this, [this, added] { readEvents(*added); });
    keyboards_.emplace(devnode, std::move(keyboard));
    if (grabbed_) added->device->grabIfIdle();
}

void EvdevKeyboards::removeDevice(const std::string& devnode) {
    const auto found = keyboards_.find(devnode);
    if (found == keyboards_.end()) return;
    const KeyboardId id = found->second->id;
    // Not deleted at once: this may run inside the keyboard's own notifier.
    found->second->notifier->setEnabled(false);
    found->second->notifier->deleteLater();
    found->second->notifier = nullptr;
    keyboards_.erase(found);
    if (listener_) listener_->keyboardRemoved(id);
}

void EvdevKeyboards::readEvents(Keyboard& keyboard) {
    if (!keyboard.device->readKeys(listener_, keyboard.id)) {  // the device is gone
        for (auto& [devnode, known] : keyboards_)
            if (known.get() == &keyboard) return removeDevice(std::string(devnode));
        return;
    }
    if (grabbed_) keyboard.device->grabIfIdle();
}

void EvdevKeyboards::setGrabbed(bool grabbed) {
    grabbed_ = grabbed;
    for (auto& [devnode, keyboard] : keyboards_) {
        if (grabbed) keyboard->device->grabIfIdle();
        else keyboard->device->ungrab();
    }
}

bool EvdevKeyboards::isGrabbed(KeyboardId id) const {
    for (const auto& [devnode, keyboard] : keyboards_)
        if (keyboard->id == id) return keyboard->device->isGrabbed();
    return false;
}

void EvdevKeyboards::setCapsLockLight(bool on) {
    for (auto& [devnode, keyboard] : keyboards_) keyboard->device->setCapsLockLight(on);
}

}  // namespace orvane
