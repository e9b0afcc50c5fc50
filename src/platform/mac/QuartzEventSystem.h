// The event system on macOS: each operation is the one Quartz / Core Foundation call it is named after.
#pragma once

#include "platform/EventSystem.h"

namespace orvane {

// A PlatformEvent* is a CGEventRef, a RunLoopSource* a CFRunLoopSourceRef; an EventTap holds the
// CFMachPortRef with the callback it forwards to. Handles release with CFRelease.
class QuartzEventSystem final : public EventSystem {
public:
    TapHandle createTap(TapLocation location, TapPlacement placement, TapOptions options, std::uint64_t eventMask,
                        TapCallback callback, void* userInfo) override;
    SourceHandle createRunLoopSource(const TapHandle& tap) override;
    void addToCurrentRunLoop(const SourceHandle& source) override;
    void removeFromCurrentRunLoop(const SourceHandle& source) override;
    void enableTap(const TapHandle& tap, bool enable) override;

    std::int64_t integerField(const PlatformEvent* event, EventField field) const override;
    std::uint64_t flags(const PlatformEvent* event) const override;
    std::uint64_t timestamp(const PlatformEvent* event) const override;
    std::optional<SystemDefinedFields> systemDefinedFields(const PlatformEvent* event) const override;

    OwnedEvent createKeyboardEvent(std::uint16_t virtualKeyCode, bool keyDown) override;
    void setFlags(PlatformEvent* event, std::uint64_t flags) override;
    void setType(PlatformEvent* event, std::uint32_t type) override;
    void setIntegerField(PlatformEvent* event, EventField field, std::int64_t value) override;
    void postToHID(const PlatformEvent* event) override;

protected:
    void releaseEvent(PlatformEvent* event) override;
};

}  // namespace orvane
