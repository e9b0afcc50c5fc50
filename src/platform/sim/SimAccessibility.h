// Accessibility trust as a switch, with a count of the prompts the system would have shown.
#pragma once

#include "platform/EventSystem.h"

namespace orvane {

class SimAccessibility final : public Accessibility {
public:
    bool isProcessTrusted(bool prompt) override {
        if (prompt) ++prompts_;
        return trusted_;
    }
    void setTrusted(bool trusted) { trusted_ = trusted; }
    bool trusted() const { return trusted_; }
    int prompts() const { return prompts_; }

private:
    bool trusted_ = true;
    int prompts_ = 0;
};

}  // namespace orvane
