// Caps Lock remapping in the HID event system through the hidutil command-line tool.
#pragma once

#include "model/KeyCode.h"
#include "platform/HidTool.h"
#include "store/ToolRunControl.h"

#include <QString>
#include <QStringList>

namespace orvane {

// Stateless apart from the tool's path: calls may run on any thread, each waiting for its own child.
class HIDUtil {
public:
    static constexpr std::uint64_t capsLockUsage = 0x700000039;  // 30064771129
    static constexpr std::uint64_t f18Usage = 0x70000006D;       // 30064771181
    // The platform's tool: /usr/bin/hidutil on macOS, orvane-hidutil beside the application on Linux.
    static QString defaultToolPath() { return hidToolPath(); }

    explicit HIDUtil(QString toolPath = defaultToolPath(), int timeoutSeconds = 10);

    // The most of the tool's output that is kept.
    static constexpr qint64 maxOutputBytes = 4096;

    // Runs the tool with both output streams on one pipe; returns what it printed (its first
    // maxOutputBytes), "" when that is not UTF-8, or "error: …" when it could not run, did not finish
    // in time (then it and everything it started are killed), was ended by a signal, or was kept
    // from running or ended early through the control.
    QString runHidutil(const QStringList& arguments, ToolRunControl* control = nullptr) const;
    // True when the tool reported no error. A key without HID usage falls back to F18.
    bool remapCapsLock(KeyCode target, ToolRunControl* control = nullptr) const;
    bool clearRemapping(ToolRunControl* control = nullptr) const;

    static QString remapText(std::uint64_t source, std::uint64_t destination);
    static QString clearText() { return QStringLiteral(R"({"UserKeyMapping":[]})"); }

    const QString& toolPath() const { return toolPath_; }
    int timeoutSeconds() const { return timeoutSeconds_; }

private:
    QString toolPath_;
    int timeoutSeconds_;
};

}  // namespace orvane
