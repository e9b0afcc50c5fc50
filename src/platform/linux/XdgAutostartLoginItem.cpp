#include "platform/linux/XdgAutostartLoginItem.h"

#include "platform/PrivateInstance.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>

namespace orvane {
namespace {

QString configHome() {
    // The XDG base directory rules ignore a relative XDG_CONFIG_HOME.
    const QString fromEnvironment = qEnvironmentVariable("XDG_CONFIG_HOME");
    if (!fromEnvironment.isEmpty() && QDir::isAbsolutePath(fromEnvironment)) return fromEnvironment;
    return QDir::homePath() + QStringLiteral("/.config");
}

// The value of `key` in the [Desktop Entry] group, or a null string when the key is absent.
QString desktopEntryValue(const QByteArray& contents, const QByteArray& key) {
    bool inMainGroup = false;
    for (QByteArray line : contents.split('\n')) {
        line = line.trimmed();
        if (line.startsWith('[')) {
            inMainGroup = line == "[Desktop Entry]";
            continue;
        }
        if (!inMainGroup || line.startsWith('#')) continue;
        const qsizetype equals = line.indexOf('=');
        if (equals < 0 || line.left(equals).trimmed() != key) continue;
        return QString::fromUtf8(line.mid(equals + 1).trimmed());
    }
    return {};
}

}  // namespace

QString XdgAutostartLoginItem::entryPath() {
    return configHome() + QStringLiteral("/autostart/") + forThisInstance(QStringLiteral("com.user.Orvane")) +
           QStringLiteral(".desktop");
}

QString XdgAutostartLoginItem::execProgram(const QString& executablePath) {
    // Reserved characters that force quoting; inside quotes ", `, $ and \ take a backslash.
    static const QString reserved = QStringLiteral(" \t\n\"'\\><~|&;$*?#()`");
    QString program = executablePath;
    const bool needsQuotes = std::any_of(program.cbegin(), program.cend(), [](QChar c) { return reserved.contains(c); });
    if (needsQuotes) {
        QString quoted;
        for (QChar c : program) {
            if (c == u'"' || c == u'`' || c == u'$' || c == u'\\') quoted += u'\\';
            quoted += c;
        }
        program = u'"' + quoted + u'"';
    }
    // Escapes of the string value itself: a backslash is written twice; % starts a field code.
    program.replace(u'\\', QStringLiteral("\\\\"));
    program.replace(u'%', QStringLiteral("%%"));
    return program;
}

QByteArray XdgAutostartLoginItem::entryContents(const QString& executablePath) {
    QByteArray contents;
    contents += "[Desktop Entry]\n";
    contents += "Type=Application\n";
    contents += "Name=Orvane\n";
    contents += "Comment=Keyboard remapper\n";
    // A private instance's entry starts that private instance (its name needs no quoting).
    const QString instance = privateInstanceName();
    const QString environment =
        instance.isEmpty() ? QString() : QStringLiteral("env %1=%2 ").arg(QLatin1String(privateInstanceVariable), instance);
    contents += "Exec=" + (environment + execProgram(executablePath)).toUtf8() + "\n";
    contents += "Terminal=false\n";
    contents += "X-GNOME-Autostart-enabled=true\n";
    return contents;
}

QString XdgAutostartLoginItem::executablePath() const {
    return executablePath_.isEmpty() ? QCoreApplication::applicationFilePath() : executablePath_;
}

LoginItem::Status XdgAutostartLoginItem::status() {
    QFile file(entryPath());
    if (!file.open(QIODevice::ReadOnly)) return Status::notRegistered;
    const QByteArray contents = file.readAll();
    if (desktopEntryValue(contents, "Hidden") == QLatin1String("true")) return Status::notRegistered;
    if (desktopEntryValue(contents, "X-GNOME-Autostart-enabled") == QLatin1String("false")) return Status::notRegistered;
    return Status::enabled;
}

std::optional<QString> XdgAutostartLoginItem::registerItem() {
    // Already registered: the entry stays as the user or an earlier run left it.
    if (status() == Status::enabled) return std::nullopt;
    const QString path = entryPath();
    const QString directory = QFileInfo(path).absolutePath();
    if (!QDir().mkpath(directory)) return QStringLiteral("Could not create the autostart directory %1").arg(directory);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) return QStringLiteral("Could not write %1: %2").arg(path, file.errorString());
    file.write(entryContents(executablePath()));
    if (!file.commit()) return QStringLiteral("Could not write %1: %2").arg(path, file.errorString());
    return std::nullopt;
}

std::optional<QString> XdgAutostartLoginItem::unregisterItem() {
    QFile file(entryPath());
    if (!file.exists()) return std::nullopt;
    if (!file.remove()) return QStringLiteral("Could not remove %1: %2").arg(file.fileName(), file.errorString());
    return std::nullopt;
}

}  // namespace orvane
