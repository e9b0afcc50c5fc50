// The operating system's keyboard event services, one operation per Quartz / Core Foundation call we use.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace orvane {

// Opaque platform objects; each backend defines them.
struct PlatformEvent;
struct EventTap;
struct RunLoopSource;

enum class TapLocation : std::uint32_t { hid = 0, session = 1, annotatedSession = 2 };
enum class TapPlacement : std::uint32_t { headInsert = 0, tailAppend = 1 };
enum class TapOptions : std::uint32_t { activeFilter = 0, listenOnly = 1 };

// Integer fields of an event.
enum class EventField : std::uint32_t { keyboardEventKeycode = 9, eventSourceUserData = 42 };

// Returns the event to let it go on (the same or a replacement), or null to end its road.
// Listen-only taps' results are ignored.
using TapCallback = PlatformEvent* (*)(std::uint32_t type, PlatformEvent* event, void* userInfo);

// What the system-defined conversion of an event yields (NSEvent's subtype and data1).
struct SystemDefinedFields {
    std::int16_t subtype = 0;
    std::int64_t data1 = 0;
};

// Bit of an event type in a tap's event mask.
constexpr std::uint64_t eventMaskBit(std::uint32_t type) { return type < 64 ? (std::uint64_t{1} << type) : 0; }

class EventSystem {
public:
    // Handles are reference-counted like their Core Foundation counterparts: dropping the last
    // reference releases the object (a released tap leaves the event stream).
    using TapHandle = std::shared_ptr<EventTap>;
    using SourceHandle = std::shared_ptr<RunLoopSource>;

    struct EventReleaser {
        EventSystem* system;
        void operator()(PlatformEvent* event) const { system->releaseEvent(event); }
    };
    using OwnedEvent = std::unique_ptr<PlatformEvent, EventReleaser>;

    virtual ~EventSystem() = default;

    // The implementation chosen at build time; it serves the whole process.
    static EventSystem& shared();

    // Fails (null) for example when the process is not trusted for Accessibility.
    virtual TapHandle createTap(TapLocation location, TapPlacement placement, TapOptions options, std::uint64_t eventMask,
                                TapCallback callback, void* userInfo) = 0;
    virtual SourceHandle createRunLoopSource(const TapHandle& tap) = 0;
    // The calling thread's run loop, in the common modes.
    virtual void addToCurrentRunLoop(const SourceHandle& source) = 0;
    virtual void removeFromCurrentRunLoop(const SourceHandle& source) = 0;
    virtual void enableTap(const TapHandle& tap, bool enable) = 0;

    virtual std::int64_t integerField(const PlatformEvent* event, EventField field) const = 0;
    virtual std::uint64_t flags(const PlatformEvent* event) const = 0;
    // When the event happened, in nanoseconds of a steady clock (CGEventGetTimestamp).
    virtual std::uint64_t timestamp(const PlatformEvent* event) const = 0;
    // None when the event cannot be converted.
    virtual std::optional<SystemDefinedFields> systemDefinedFields(const PlatformEvent* event) const = 0;

    // A new keyboard event (no event source); null when creation fails.
    virtual OwnedEvent createKeyboardEvent(std::uint16_t virtualKeyCode, bool keyDown) = 0;
    virtual void setFlags(PlatformEvent* event, std::uint64_t flags) = 0;
    // Makes a new keyboard event one of another type (CGEventSetType): a modifier's flags change.
    virtual void setType(PlatformEvent* event, std::uint32_t type) = 0;
    virtual void setIntegerField(PlatformEvent* event, EventField field, std::int64_t value) = 0;
    // Posts a copy at the HID level: it enters below the session taps and passes them all.
    virtual void postToHID(const PlatformEvent* event) = 0;

protected:
    virtual void releaseEvent(PlatformEvent* event) = 0;
};

// The Accessibility trust query (AXIsProcessTrustedWithOptions).
class Accessibility {
public:
    // How to grant trust where the system has no Accessibility settings of its own.
    struct Instructions {
        std::string title;  // the alert's, in the system's words
        std::string informativeText;
        std::vector<std::string> commands;  // to type in a terminal, each shown on a line of its own
        std::string openButtonTitle;
        std::string url;  // what that button opens
    };

    virtual ~Accessibility() = default;
    static Accessibility& shared();
    // With prompt, the system asks the user to grant trust (and answers the current state).
    virtual bool isProcessTrusted(bool prompt) = 0;
    // Whether a listen-only tap (the debugger's) sees keys, without a prompt: the trust itself where
    // reading the keyboard is one permission; on macOS Input Monitoring, which trust does not include.
    virtual bool mayListenToKeyboard() { return isProcessTrusted(false); }
    // None where the system's Accessibility settings are the way.
    virtual std::optional<Instructions> instructions() const { return std::nullopt; }
};

}  // namespace orvane
