// Trust on Linux: keyboards can be read and the virtual keyboard written.
#pragma once

#include "platform/EventSystem.h"

#include <QString>

#include <functional>

namespace orvane {

class LinuxAccessibility final : public Accessibility {
public:
    // outputCreated: whether the virtual keyboard could be made (/dev/uinput is writable).
    explicit LinuxAccessibility(std::function<bool()> outputCreated) : outputCreated_(std::move(outputCreated)) {}

    // Linux has no prompt of its own: prompt changes nothing.
    bool isProcessTrusted(bool prompt) override;
    std::optional<Instructions> instructions() const override;

    // Where the instructions are for an application in applicationDir: installed beside it, else in
    // the source tree it was built in; a relative name where neither is found.
    static std::string instructionsPath(const QString& applicationDir);

private:
    std::function<bool()> outputCreated_;
};

}  // namespace orvane
