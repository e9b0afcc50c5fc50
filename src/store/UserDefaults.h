// The user defaults database: typed values under "Orvane." keys, with a notice after every write.
#pragma once

#include <QByteArray>
#include <QObject>
#include <QSettings>
#include <QString>

#include <functional>
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
    // Both open nothing that is no regular file (a FIFO would block the open): that session reads no
    // settings, every write fails, and what is at the path stays as it is.

    // Null settings are such a session. `reopen` makes the same settings afresh; with it a write
    // after an earlier failed one is judged by what storage holds (see commit).
    explicit UserDefaults(std::unique_ptr<QSettings> settings, QObject* parent = nullptr,
                          std::function<std::unique_ptr<QSettings>()> reopen = {});

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

    QString location() const { return location_; }

signals:
    // After every write made through this object (successful or not).
    void changed();

private:
    static std::unique_ptr<UserDefaults> unusable(const QString& path);
    // Sets (or, without a value, removes) the key and flushes it.
    std::optional<QString> commit(const QString& key, const std::optional<QVariant>& value);
    bool storageHolds(const QString& key, const std::optional<QVariant>& value);

    std::unique_ptr<QSettings> settings_;
    QString location_;
    std::function<std::unique_ptr<QSettings>()> reopen_;
};

}  // namespace orvane
