#include "store/UserDefaults.h"

#include "platform/Diagnostics.h"
#include "platform/PrivateInstance.h"
#include "platform/SharedInstance.h"

#include <QFileInfo>
#include <QMetaType>
#include <QStandardPaths>

namespace orvane {
namespace {

void reportUnreadable(const QString& path) {
    diagnostics::printLine("UserDefaults: Cannot read " + path.toStdString() + ", starting without the stored settings");
}

// Settings that exist but cannot be read leave the session with defaults only: say so once, as
// every save of the session will then fail too.
std::unique_ptr<QSettings> reportingUnreadable(std::unique_ptr<QSettings> settings) {
    if (settings->status() == QSettings::AccessError) reportUnreadable(settings->fileName());
    return settings;
}

// Something at the path that is no regular file (a FIFO, a device, a folder): QSettings would open it
// as it is made, and a FIFO with no writer blocks that open for good.
bool isNoFile(const QString& path) {
    const QFileInfo info(path);
    return info.exists() && !info.isFile();
}

}  // namespace

// The file QSettings keeps the native format in where that is a file (XDG systems); on macOS the
// database is the preferences service, and nothing is at this path.
std::unique_ptr<UserDefaults> UserDefaults::openStandard() {
    const QString organization = QStringLiteral("user.com"), application = forThisInstance(QStringLiteral("Orvane"));
    const QString file = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u'/' + organization + u'/' +
                         application + QStringLiteral(".conf");
    if (isNoFile(file)) return unusable(file);
    auto open = [organization, application] {
        return std::make_unique<QSettings>(QSettings::NativeFormat, QSettings::UserScope, organization, application);
    };
    return std::make_unique<UserDefaults>(reportingUnreadable(open()), nullptr, open);
}

std::unique_ptr<UserDefaults> UserDefaults::openFile(const QString& path) {
    if (isNoFile(path)) return unusable(path);
    auto open = [path] { return std::make_unique<QSettings>(path, QSettings::IniFormat); };
    return std::make_unique<UserDefaults>(reportingUnreadable(open()), nullptr, open);
}

std::unique_ptr<UserDefaults> UserDefaults::unusable(const QString& path) {
    reportUnreadable(path);
    auto defaults = std::make_unique<UserDefaults>(nullptr);
    defaults->location_ = path;
    return defaults;
}

UserDefaults::UserDefaults(std::unique_ptr<QSettings> settings, QObject* parent, std::function<std::unique_ptr<QSettings>()> reopen)
    : QObject(parent), settings_(std::move(settings)), location_(settings_ ? settings_->fileName() : QString()),
      reopen_(std::move(reopen)) {}

UserDefaults& UserDefaults::shared() {
    return SharedInstance<UserDefaults>::get([] { return openStandard(); });
}

void UserDefaults::installShared(std::unique_ptr<UserDefaults> defaults) { SharedInstance<UserDefaults>::install(std::move(defaults)); }

bool UserDefaults::contains(const QString& key) const { return settings_ && settings_->contains(key); }

std::optional<QByteArray> UserDefaults::data(const QString& key) const {
    if (!contains(key)) return std::nullopt;
    return settings_->value(key).toByteArray();
}

bool UserDefaults::boolValue(const QString& key, bool fallback) const {
    if (!contains(key)) return fallback;
    const QVariant value = settings_->value(key);
    // INI files give Booleans back as strings; accept those, and nothing else unexpected.
    if (value.typeId() == QMetaType::Bool) return value.toBool();
    const QString text = value.toString().trimmed().toLower();
    if (text == QLatin1String("true") || text == QLatin1String("1")) return true;
    if (text == QLatin1String("false") || text == QLatin1String("0")) return false;
    return fallback;
}

double UserDefaults::doubleValue(const QString& key, double fallback) const {
    if (!contains(key)) return fallback;
    bool ok = false;
    const double value = settings_->value(key).toDouble(&ok);
    return ok ? value : fallback;
}

std::optional<QString> UserDefaults::setData(const QString& key, const QByteArray& value) { return commit(key, QVariant(value)); }

std::optional<QString> UserDefaults::setBool(const QString& key, bool value) { return commit(key, QVariant(value)); }

std::optional<QString> UserDefaults::setDouble(const QString& key, double value) { return commit(key, QVariant(value)); }

std::optional<QString> UserDefaults::remove(const QString& key) { return commit(key, std::nullopt); }

std::optional<QString> UserDefaults::commit(const QString& key, const std::optional<QVariant>& value) {
    std::optional<QString> failure;
    if (!settings_) {
        failure = QStringLiteral("cannot write %1").arg(location_);
    } else {
        if (value) settings_->setValue(key, *value);
        else settings_->remove(key);
        settings_->sync();
        switch (settings_->status()) {
        case QSettings::NoError: break;
        case QSettings::AccessError: failure = QStringLiteral("cannot write %1").arg(location_); break;
        case QSettings::FormatError: failure = QStringLiteral("%1 is not a valid settings file").arg(location_); break;
        }
        // QSettings keeps its first error for good: after one failed flush, later ones that work
        // still report it. Storage read afresh tells; a flush that worked wrote every pending change,
        // so the fresh object takes over with a clean status.
        if (failure && storageHolds(key, value)) failure.reset();
    }
    emit changed();
    return failure;
}

bool UserDefaults::storageHolds(const QString& key, const std::optional<QVariant>& value) {
    if (!reopen_) return false;
    auto fresh = reopen_();
    if (fresh->status() != QSettings::NoError) return false;
    const QVariant stored = fresh->value(key);
    // The INI format gives every value but bytes back as text.
    const bool holds = value ? fresh->contains(key) && (stored == *value || stored.toString() == value->toString())
                             : !fresh->contains(key);
    if (holds) settings_ = std::move(fresh);
    return holds;
}

}  // namespace orvane
