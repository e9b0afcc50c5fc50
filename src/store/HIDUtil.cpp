#include "store/HIDUtil.h"

#include "platform/Diagnostics.h"
#include "store/DescriptorReserve.h"

#include <QProcess>
#include <QStringDecoder>

#include <csignal>
#include <unistd.h>

namespace orvane {
namespace {

void print(const QString& line) { diagnostics::printLine(line.toStdString()); }

bool reportsError(const QString& output) { return output.contains(QLatin1String("error"), Qt::CaseInsensitive); }

}  // namespace

// Fills the reserve while descriptors are plentiful, before anything can have used them up.
HIDUtil::HIDUtil(QString toolPath, int timeoutSeconds) : toolPath_(std::move(toolPath)), timeoutSeconds_(timeoutSeconds) {
    DescriptorReserve::forTools();
}

QString HIDUtil::remapText(std::uint64_t source, std::uint64_t destination) {
    return QStringLiteral(R"({"UserKeyMapping":[{"HIDKeyboardModifierMappingSrc":)") + QString::number(source) +
           QStringLiteral(R"(,"HIDKeyboardModifierMappingDst":)") + QString::number(destination) + QStringLiteral("}]}");
}

QString HIDUtil::runHidutil(const QStringList& arguments, ToolRunControl* control) const {
    ToolRunControl unlimited;
    if (!control) control = &unlimited;
    const auto allowance = control->allowance(std::chrono::seconds(timeoutSeconds_));
    if (!allowance) return QStringLiteral("error: not run, Orvane is quitting");
    // Declared before the process, so that the reserve is topped up once the process has let go of its pipes.
    const struct TopUp {
        ~TopUp() { DescriptorReserve::forTools().refill(); }
    } topUpAfterwards;
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setProgram(toolPath_);
    process.setArguments(arguments);
    // Its own process group, so that a time-out ends whatever the tool started as well.
    process.setChildProcessModifier([] { ::setpgid(0, 0); });
    const bool started = DescriptorReserve::forTools().whileReleased([&] {
        process.start(QIODevice::ReadOnly);
        return process.waitForStarted(-1);
    });
    if (!started) {
        const QString description = process.errorString();
        print(QStringLiteral("HIDUtil: Failed to run hidutil: ") + description);
        return QStringLiteral("error: ") + description;
    }
    const auto processGroup = static_cast<pid_t>(process.processId());
    if (!control->track(processGroup)) {
        process.waitForFinished(-1);
        return QStringLiteral("error: not run, Orvane is quitting");
    }
    // A hung tool must not hold up Caps Lock decisions or quitting for ever.
    const bool finished = process.waitForFinished(static_cast<int>(allowance->count()));
    if (!finished) ::kill(-processGroup, SIGKILL);
    process.waitForFinished(-1);
    control->untrack();
    if (!finished && *allowance < std::chrono::seconds(timeoutSeconds_))
        return QStringLiteral("error: stopped when the time to quit ran out");
    if (!finished) return QStringLiteral("error: timed out after %1 seconds").arg(timeoutSeconds_);
    // A tool ended by a signal applied nothing we can trust, whatever it printed first.
    if (process.exitStatus() == QProcess::CrashExit) return QStringLiteral("error: the tool was ended by a signal");
    // The tool's answer is a line or two; a runaway one is cut rather than carried into the log.
    const QByteArray bytes = process.read(maxOutputBytes);
    QStringDecoder decoder(QStringDecoder::Utf8);
    QString text = decoder.decode(bytes);
    if (decoder.hasError()) return QString();
    return text;
}

bool HIDUtil::remapCapsLock(KeyCode target, ToolRunControl* control) const {
    auto usage = hidUsage(target);
    if (!usage) {
        print(QStringLiteral("HIDUtil: No HID usage ID for ") + QString::fromUtf8(displayName(target).data(), displayName(target).size()) +
              QStringLiteral(", falling back to F18"));
        target = KeyCode::f18;
        usage = f18Usage;
    }
    const QString output = runHidutil({QStringLiteral("property"), QStringLiteral("--set"), remapText(capsLockUsage, *usage)}, control);
    if (reportsError(output)) {
        print(QStringLiteral("HIDUtil: Failed to remap Caps Lock: ") + output);
        return false;
    }
    print(QStringLiteral("HIDUtil: Remapped Caps Lock → ") + QString::fromUtf8(displayName(target).data(), displayName(target).size()) +
          QStringLiteral(" at HID layer"));
    return true;
}

bool HIDUtil::clearRemapping(ToolRunControl* control) const {
    const QString output = runHidutil({QStringLiteral("property"), QStringLiteral("--set"), clearText()}, control);
    if (reportsError(output)) {
        print(QStringLiteral("HIDUtil: Failed to clear remapping: ") + output);
        return false;
    }
    print(QStringLiteral("HIDUtil: Cleared HID remapping, Caps Lock restored"));
    return true;
}

}  // namespace orvane
