// The daily update check: fetches the published version document and offers a newer release in an alert.
#pragma once

#include <QObject>
#include <QString>
#include <QUrl>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

class QByteArray;
class QNetworkAccessManager;

namespace orvane {

class AlertPresenter;
class UrlOpener;
class UserDefaults;

// The published version document. All four members are required; other members are ignored.
struct VersionInfo {
    QString version;
    // Must be written as a JSON integer within the signed 64-bit range: 5.0 or 5e0 is no integer and
    // rejects the document; a negative build is accepted and is simply older than any build from 0 up.
    std::int64_t build = 0;
    QString downloadURL;
    QString releaseNotes;

    // Nothing when the data is no JSON object, or a member is missing or has the wrong type.
    static std::optional<VersionInfo> decode(const QByteArray& data);
};

class UpdateChecker : public QObject {
    Q_OBJECT
public:
    // Wall-clock seconds since 1970-01-01 00:00 UTC.
    using Clock = std::function<double()>;

    static inline const QString lastCheckKey = QStringLiteral("Orvane.LastUpdateCheck");
    static constexpr double checkInterval = 86400;
    // Bounds on what a server can make the check hold or show.
    static constexpr int transferTimeoutMs = 60000;
    static constexpr qint64 maxBodyBytes = 1 << 20;
    static constexpr qsizetype maxShownNotes = 2000;

    // The process-wide checker, created on first use with this build's endpoint, version and build,
    // the shared user defaults, the system clock, message-box alerts and the desktop's URL opening.
    static UpdateChecker& shared();
    // Replaces the process-wide checker (tests and tools); install before the first shared().
    static void installShared(std::unique_ptr<UpdateChecker> checker);
    // https://<host configured at build time>/version.json
    static QUrl defaultVersionUrl();

    // network: sends the request; when null the checker makes and owns its own, whose connections
    // it closes when the application is about to quit.
    // An empty currentVersion reads as "0"; currentBuild is read as a decimal integer, 0 when it is none.
    UpdateChecker(UserDefaults& defaults, QNetworkAccessManager* network, Clock clock, QUrl versionUrl,
                  const QString& currentVersion, const QString& currentBuild, AlertPresenter& alerts, UrlOpener& urlOpener,
                  QObject* parent = nullptr);
    ~UpdateChecker() override;

    // Called once at start-up, main thread. Checks when more than a day has passed since the stored time
    // (a stored time that is not finite, or lies in the future, counts as none), storing the new time
    // before the request goes out, so a failed request still counts as the day's check.
    void checkForUpdatesIfNeeded();
    // Sends one GET of the version URL. A reply is used whatever its HTTP status; only a transport
    // failure (no HTTP response, a connection that broke off, no answer within transferTimeoutMs, a
    // body beyond maxBodyBytes) ends the check.
    void fetchVersionInfo();
    // Decodes and compares; a newer release is announced by a queued call, never from inside the caller.
    void handleVersionData(const QByteArray& data);
    // The modal alert (release notes cut at maxShownNotes); "Download" opens downloadURL when it is an
    // https URL, "Later" does nothing.
    void showUpdateAlert(const VersionInfo& info);

private:
    UserDefaults& defaults_;
    QNetworkAccessManager* network_;
    Clock clock_;
    QUrl versionUrl_;
    QString currentVersion_;
    std::int64_t currentBuild_;
    AlertPresenter& alerts_;
    UrlOpener& urlOpener_;
};

}  // namespace orvane
