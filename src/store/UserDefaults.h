// The user defaults database: typed values under "Orvane." keys, with a notice after every write.
#pragma once

#include <QByteArray>
#include <QObject>
#include <QSettings>
#include <QString>

#include <memory>
#include <optional>

namespace orvane {

class UserDefaults : public QObject {
    Q_OBJECT
public:
    // The application's own database: the defaults domain com.user.Orvane on macOS, the standard
    // per-user settings file elsewhere (user.com/Orvane.conf under XDG_CONFIG_HOME on Linux). A private
    // instance's is com.user.Orvane-<name> (user.com/Orvane-<name>.conf).
    static std::unique_ptr<UserDefaults> openStandard();
    // An isolated database in one file, for tests and tools.
    static std::unique_ptr<UserDefaults> openFile(const QString& path);

    explicit UserDefaults(std::unique_ptr<QSettings> settings, QObject* parent = nullptr);

    // The process-wide database; openStandard() unless one was installed before first use.
    static UserDefaults& shared();
    static void installShared(std::unique_ptr<UserDefaults> defaults);

    bool contains(const QString& key) const;
    std::optional<QByteArray> data(const QString& key) const;
    // Absent keys, and values that are no Boolean, read as the fallback.
    bool boolValue(const QString& key, bool fallback = false) const;
    double doubleValue(const QString& key, double fallback = 0) const;

    // Each write is flushed to storage. On failure the reason is returned and nothing else changes.
    std::optional<QString> setData(const QString& key, const QByteArray& value);
    std::optional<QString> setBool(const QString& key, bool value);
    std::optional<QString> setDouble(const QString& key, double value);
    std::optional<QString> remove(const QString& key);

    QString location() const { return settings_->fileName(); }

signals:
    // After every write made through this object (successful or not).
    void changed();

private:
    std::optional<QString> commit();

    std::unique_ptr<QSettings> settings_;
};

}  // namespace orvane
