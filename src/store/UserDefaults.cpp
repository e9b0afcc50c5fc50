#include "store/UserDefaults.h"

#include "platform/Diagnostics.h"
#include "platform/PrivateInstance.h"
#include "platform/SharedInstance.h"

#include <QMetaType>

namespace orvane {
namespace {

// Settings that exist but cannot be read leave the session with defaults only: say so once, as
// every save of the session will then fail too.
std::unique_ptr<QSettings> reportingUnreadable(std::unique_ptr<QSettings> settings) {
    if (settings->status() == QSettings::AccessError)
        diagnostics::printLine("UserDefaults: Cannot read " + settings->fileName().toStdString() + ", starting without the stored settings");
    return settings;
}

}  // namespace

std::unique_ptr<UserDefaults> UserDefaults::openStandard() {
    return std::make_unique<UserDefaults>(reportingUnreadable(std::make_unique<QSettings>(
        QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("user.com"), forThisInstance(QStringLiteral("Orvane")))));
}

std::unique_ptr<UserDefaults> UserDefaults::openFile(const QString& path) {
    return std::make_unique<UserDefaults>(reportingUnreadable(std::make_unique<QSettings>(path, QSettings::IniFormat)));
}

UserDefaults::UserDefaults(std::unique_ptr<QSettings> settings, QObject* parent) : QObject(parent), settings_(std::move(settings)) {}

UserDefaults& UserDefaults::shared() {
    return SharedInstance<UserDefaults>::get([] { return openStandard(); });
}

void UserDefaults::installShared(std::unique_ptr<UserDefaults> defaults) { SharedInstance<UserDefaults>::install(std::move(defaults)); }

bool UserDefaults::contains(const QString& key) const { return settings_->contains(key); }

std::optional<QByteArray> UserDefaults::data(const QString& key) const {
    if (!settings_->contains(key)) return std::nullopt;
    return settings_->value(key).toByteArray();
}

bool UserDefaults::boolValue(const QString& key, bool fallback) const {
    if (!settings_->contains(key)) return fallback;
    const QVariant value = settings_->value(key);
    // INI files give Booleans back as strings; accept those, and nothing else unexpected.
    if (value.typeId() == QMetaType::Bool) return value.toBool();
    const QString text = value.toString().trimmed().toLower();
    if (text == QLatin1String("true") || text == QLatin1String("1")) return true;
    if (text == QLatin1String("false") || text == QLatin1String("0")) return false;
    return fallback;
}

double UserDefaults::doubleValue(const QString& key, double fallback) const {
    if (!settings_->contains(key)) return fallback;
    bool ok = false;
    const double value = settings_->value(key).toDouble(&ok);
    return ok ? value : fallback;
}

std::optional<QString> UserDefaults::setData(const QString& key, const QByteArray& value) {
    settings_->setValue(key, value);
    return commit();
}

std::optional<QString> UserDefaults::setBool(const QString& key, bool value) {
    settings_->setValue(key, value);
    return commit();
}

std::optional<QString> UserDefaults::setDouble(const QString& key, double value) {
    settings_->setValue(key, value);
    return commit();
}

std::optional<QString> UserDefaults::remove(const QString& key) {
    settings_->remove(key);
    return commit();
}

std::optional<QString> UserDefaults::commit() {
    settings_->sync();
    std::optional<QString> failure;
    switch (settings_->status()) {
    case QSettings::NoError: break;
    case QSettings::AccessError: failure = QStringLiteral("cannot write %1").arg(settings_->fileName()); break;
    case QSettings::FormatError: failure = QStringLiteral("%1 is not a valid settings file").arg(settings_->fileName()); break;
    }
    emit changed();
    return failure;
}

}  // namespace orvane
