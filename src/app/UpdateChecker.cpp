#include "app/UpdateChecker.h"

#include "BuildConfig.h"
#include "app/AlertPresenter.h"
#include "app/DesktopUrlOpener.h"
#include "app/MessageBoxAlertPresenter.h"
#include "app/UrlOpener.h"
#include "app/VersionComparison.h"
#include "platform/SharedInstance.h"
#include "store/UserDefaults.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QDateTime>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>

#include <nlohmann/json.hpp>

#include <cmath>
#include <limits>

namespace orvane {
namespace {

std::optional<QString> stringMember(const nlohmann::json& object, const char* name) {
    const auto member = object.find(name);
    if (member == object.end() || !member->is_string()) return std::nullopt;
    return QString::fromStdString(member->get_ref<const std::string&>());
}

std::optional<std::int64_t> integerMember(const nlohmann::json& object, const char* name) {
    const auto member = object.find(name);
    if (member == object.end()) return std::nullopt;
    // The parser keeps non-negative integers as unsigned and fractions (even 5.0) as floats.
    if (member->is_number_unsigned()) {
        const auto value = member->get<std::uint64_t>();
        if (value > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) return std::nullopt;
        return static_cast<std::int64_t>(value);
    }
    if (member->is_number_integer()) return member->get<std::int64_t>();
    return std::nullopt;
}

// A reply that never got an HTTP response, or whose transfer broke off, carries no usable body.
// An HTTP error status (404, 500) also sets error(), but its body is still read.
bool failedInTransport(const QNetworkReply& reply) {
    if (!reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid()) return true;
    const auto error = reply.error();
    return error != QNetworkReply::NoError && error <= QNetworkReply::UnknownNetworkError;
}

}  // namespace

std::optional<VersionInfo> VersionInfo::decode(const QByteArray& data) {
    const auto document = nlohmann::json::parse(data.cbegin(), data.cend(), nullptr, /*allow_exceptions=*/false);
    if (!document.is_object()) return std::nullopt;  // also the parser's "discarded" value on malformed input
    auto version = stringMember(document, "version");
    const auto build = integerMember(document, "build");
    auto downloadURL = stringMember(document, "downloadURL");
    auto releaseNotes = stringMember(document, "releaseNotes");
    if (!version || !build || !downloadURL || !releaseNotes) return std::nullopt;
    return VersionInfo{std::move(*version), *build, std::move(*downloadURL), std::move(*releaseNotes)};
}

UpdateChecker& UpdateChecker::shared() {
    return SharedInstance<UpdateChecker>::get([] {
        static DesktopUrlOpener urlOpener;
        const Clock systemClock = [] { return static_cast<double>(QDateTime::currentMSecsSinceEpoch()) / 1000.0; };
        return std::make_unique<UpdateChecker>(UserDefaults::shared(), nullptr, systemClock, defaultVersionUrl(),
                                               QString::fromUtf8(buildconfig::version), QString::fromUtf8(buildconfig::build),
                                               MessageBoxAlertPresenter::shared(), urlOpener);
    });
}

void UpdateChecker::installShared(std::unique_ptr<UpdateChecker> checker) { SharedInstance<UpdateChecker>::install(std::move(checker)); }

QUrl UpdateChecker::defaultVersionUrl() {
    QUrl url;
    url.setScheme(QStringLiteral("https"));
    url.setHost(QString::fromUtf8(buildconfig::updateHost));
    url.setPath(QStringLiteral("/version.json"));
    return url;
}

UpdateChecker::UpdateChecker(UserDefaults& defaults, QNetworkAccessManager* network, Clock clock, QUrl versionUrl,
                             const QString& currentVersion, const QString& currentBuild, AlertPresenter& alerts,
                             UrlOpener& urlOpener, QObject* parent)
    : QObject(parent),
      defaults_(defaults),
      network_(network ? network : new QNetworkAccessManager(this)),
      clock_(std::move(clock)),
      versionUrl_(std::move(versionUrl)),
      currentVersion_(currentVersion.isEmpty() ? QStringLiteral("0") : currentVersion),
      currentBuild_(buildNumberFromText(currentBuild.toStdString())),
      alerts_(alerts),
      urlOpener_(urlOpener) {
    // Qt's TLS backends end with the application object, and the process-wide checker lives until
    // exit: an https connection still cached then would end without them, with a warning.
    if (!network && QCoreApplication::instance())
        connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, network_, &QNetworkAccessManager::clearConnectionCache);
}

UpdateChecker::~UpdateChecker() = default;

void UpdateChecker::checkForUpdatesIfNeeded() {
    const double now = clock_();
    double last = defaults_.doubleValue(lastCheckKey, 0);
    // A damaged time (not a number, infinite, or later than now) would put the check off for good.
    if (!std::isfinite(last) || last > now) last = 0;
    if (!(now - last > checkInterval)) return;
    defaults_.setDouble(lastCheckKey, now);  // a write failure changes nothing: the check still runs
    fetchVersionInfo();
}

void UpdateChecker::fetchVersionInfo() {
    QNetworkRequest request(versionUrl_);
    request.setTransferTimeout(transferTimeoutMs);  // a silent server ends the check instead of holding it open
    QNetworkReply* reply = network_->get(request);
    // The reply is freed even when the checker is gone first; the handler itself dies with the checker.
    connect(reply, &QNetworkReply::finished, reply, &QObject::deleteLater);
    // A version document is a few hundred bytes: a body beyond the cap is not read, but abandoned.
    connect(reply, &QNetworkReply::downloadProgress, reply, [reply](qint64 received, qint64 total) {
        if (received > maxBodyBytes || total > maxBodyBytes) reply->abort();
    });
    connect(reply, &QNetworkReply::finished, this, [this, reply] {
        if (failedInTransport(*reply) || reply->bytesAvailable() > maxBodyBytes) return;
        handleVersionData(reply->readAll());
    });
}

void UpdateChecker::handleVersionData(const QByteArray& data) {
    const auto info = VersionInfo::decode(data);
    if (!info) return;
    if (!isNewerVersion(info->version.toStdString(), info->build, currentVersion_.toStdString(), currentBuild_)) return;
    // The alert blocks in its own event loop; running it from the event loop rather than inside the
    // caller (the reply's finished handler) keeps the network stack out of that nested loop.
    // Another alert on screen (the permission's, at a first launch) is answered first.
    QMetaObject::invokeMethod(this, [this, info = *info] { alerts_.whenFree([this, info] { showUpdateAlert(info); }); },
                              Qt::QueuedConnection);
}

void UpdateChecker::showUpdateAlert(const VersionInfo& info) {
    AlertPresenter::Alert alert;
    alert.style = AlertPresenter::Alert::Style::informational;
    alert.message = QStringLiteral("Update Available");
    QString notes = info.releaseNotes;
    if (notes.size() > maxShownNotes) notes = notes.left(maxShownNotes) + QChar(0x2026);
    alert.informativeText = QStringLiteral("Orvane ") + info.version + QStringLiteral(" is available.\n\n") + notes;
    alert.buttons = {QStringLiteral("Download"), QStringLiteral("Later")};
    if (alerts_.present(alert) != AlertPresenter::firstButtonResponse) return;

    // Only a web page over https: a file:, custom-scheme or plain http link from the server is not followed.
    const QUrl url(info.downloadURL, QUrl::StrictMode);
    if (url.isValid() && url.scheme() == QLatin1String("https") && !url.host().isEmpty())
        openOrShow(urlOpener_, alerts_, url, QStringLiteral("Could Not Open the Download Page"));
}

}  // namespace orvane
