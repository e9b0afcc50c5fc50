// The event system of a Linux machine: keyboards in, the taps with Quartz's rules, a virtual keyboard out.
#pragma once

#include "platform/linux/KeyOutput.h"
#include "platform/linux/KeyboardDevices.h"
#include "platform/linux/KeyboardTranslator.h"
#include "platform/tapchain/ChainEventSystem.h"

#include <vector>

namespace orvane {

// While a tap that may change events is live, keyboards are grabbed and what leaves the taps is
// written to the output; otherwise keyboards reach applications directly and the taps (a capture,
// say) only watch. Runs on the main thread.
class LinuxEventSystem final : public ChainEventSystem, private KeyboardInput::Listener {
public:
    // trusted: whether keyboards can be read and the output written; taps cannot be made otherwise.
    LinuxEventSystem(KeyboardInput& input, KeyboardOutput& output, std::function<bool()> trusted);
    ~LinuxEventSystem() override;

    bool isIntercepting() const { return intercepting_; }
    // Releases what the output holds, lets the keyboards go and never touches the devices again
    // (they are about to be destroyed).
    void detachDevices();

private:
    void keyEvent(KeyboardId keyboard, std::uint16_t code, int value) override;
    void keyboardRemoved(KeyboardId keyboard) override;
    void handleKey(KeyboardId keyboard, std::uint16_t code, int value, bool grabbed);

    bool mayCreateTap() override { return trusted_(); }
    std::uint64_t currentFlags() const override { return translator_.flags(); }
    void tapsChanged() override;
    void deliver(const PlatformEvent& event);

    KeyboardInput* input_;
    KeyOutput output_;
    std::function<bool()> trusted_;
    KeyboardTranslator translator_;
    bool intercepting_ = false;
    // Which keyboards hold which key: a key held on two keyboards is one press until both let go.
    // A handful at most, so a flat list (its room kept) costs no allocation per key.
    struct Held {
        std::uint16_t code;
        KeyboardId keyboard;
    };
    std::vector<Held> held_;
};

}  // namespace orvane
