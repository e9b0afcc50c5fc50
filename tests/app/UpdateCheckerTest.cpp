// The update check against a local HTTP server, with an injected clock, alert presenter and URL opener.
#include "AppFakes.h"
#include "TestHttpServer.h"
#include "WaitUntil.h"
#include "app/AlertPresenter.h"
#include "app/UpdateChecker.h"
#include "app/UrlOpener.h"
#include "store/UserDefaults.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QTcpServer>
#include <QTemporaryDir>

using namespace orvane;
using orvane::testing::waitUntil;
using orvane::testing::RecordingUrlOpener;
using orvane::testing::ScriptedAlertPresenter;

namespace {

constexpr double launchTime = 1'700'000'000.25;
const QByteArray newerDocument =
    R"({"version":"1.3","build":1,"downloadURL":"https://example.org/Orvane.dmg","releaseNotes":"Faster."})";

// Counts the requests it is asked to send, and finished replies; never uses a proxy.
struct CountingNetwork : QNetworkAccessManager {
    int requests = 0;
    int finishedReplies = 0;
    CountingNetwork() {
        setProxy(QNetworkProxy::NoProxy);
        connect(this, &QNetworkAccessManager::finished, [this] { ++finishedReplies; });
    }
    QNetworkReply* createRequest(Operation op, const QNetworkRequest& request, QIODevice* data) override {
        ++requests;
        return QNetworkAccessManager::createRequest(op, request, data);
    }
};

struct UpdateCheckerTest : ::testing::Test {
    QTemporaryDir dir;
    std::unique_ptr<UserDefaults> defaults = UserDefaults::openFile(dir.filePath("settings.ini"));
    CountingNetwork network;
    orvane::testing::TestHttpServer server;
    ScriptedAlertPresenter alerts;
    RecordingUrlOpener opener;
    double now = launchTime;

    // The running application is version 1.2, build 5 unless told otherwise.
    std::unique_ptr<UpdateChecker> makeChecker(const QUrl& url, const QString& build = QStringLiteral("5")) {
        return std::make_unique<UpdateChecker>(*defaults, &network, [this] { return now; }, url, QStringLiteral("1.2"), build,
                                               alerts, opener);
    }
    std::unique_ptr<UpdateChecker> makeChecker() { return makeChecker(server.url()); }

    // Waits for every request sent so far to finish, then runs the queued work (the alert) it left.
    void settle() {
        ASSERT_TRUE(waitUntil([this] { return network.finishedReplies == network.requests; }));
        QCoreApplication::sendPostedEvents();
    }
    std::optional<double> storedTime() const {
        if (!defaults->contains(UpdateChecker::lastCheckKey)) return std::nullopt;
        return defaults->doubleValue(UpdateChecker::lastCheckKey);
    }
};

}  // namespace

TEST_F(UpdateCheckerTest, firstLaunchChecksAndStoresTheLaunchTime) {
    server.respond(200, newerDocument);
    const auto checker = makeChecker();
    checker->checkForUpdatesIfNeeded();
    EXPECT_EQ(storedTime(), launchTime);  // already before the reply
    settle();
    EXPECT_EQ(server.requestLines(), QList<QByteArray>{"GET /version.json HTTP/1.1"});
    ASSERT_EQ(alerts.shown.size(), 1u);
    EXPECT_EQ(alerts.shown[0].style, AlertPresenter::Alert::Style::informational);
    EXPECT_EQ(alerts.shown[0].message, "Update Available");
    EXPECT_EQ(alerts.shown[0].informativeText, "Orvane 1.3 is available.\n\nFaster.");
    EXPECT_EQ(alerts.shown[0].buttons, (QStringList{"Download", "Later"}));
}

TEST_F(UpdateCheckerTest, checksOnlyWhenMoreThanADayHasPassed) {
    const struct {
        double storedAgo;
        bool checks;
    } cases[] = {{86400.5, true}, {10 * 86400.0, true}, {86400, false}, {3600, false}, {-60, false} /* clock set back */};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.storedAgo);
        defaults->setDouble(UpdateChecker::lastCheckKey, launchTime - c.storedAgo);
        const int before = network.requests;
        const auto checker = makeChecker();
        checker->checkForUpdatesIfNeeded();
        EXPECT_EQ(network.requests - before, c.checks ? 1 : 0);
        EXPECT_EQ(storedTime(), c.checks ? launchTime : launchTime - c.storedAgo);
        settle();
    }
}

TEST_F(UpdateCheckerTest, withoutAServerTheTimeIsStillStoredAndNothingIsShown) {
    QTcpServer unused;
    ASSERT_TRUE(unused.listen(QHostAddress(QHostAddress::LocalHost), 0));
    const QUrl url(QStringLiteral("http://127.0.0.1:%1/version.json").arg(unused.serverPort()));
    unused.close();
    const auto checker = makeChecker(url);
    checker->checkForUpdatesIfNeeded();
    settle();
    EXPECT_EQ(network.requests, 1);
    EXPECT_EQ(storedTime(), launchTime);
    EXPECT_TRUE(alerts.shown.empty());
}

TEST_F(UpdateCheckerTest, onlyADecodableNewerDocumentIsAnnouncedWhateverTheStatus) {
    const struct {
        int status;
        QByteArray body;
        bool announced;
    } cases[] = {
        {200, newerDocument, true},
        {404, newerDocument, true},
        {500, newerDocument, true},
        {200, R"({"version":"1.2","build":6,"downloadURL":"","releaseNotes":"","extra":[1]})", true},
        {200, R"({"version":"1.2","build":5,"downloadURL":"","releaseNotes":""})", false},
        {200, R"({"version":"1.1.9","build":99,"downloadURL":"","releaseNotes":""})", false},
        {200, R"({"version":"1.2","build":-7,"downloadURL":"","releaseNotes":""})", false},
        {200, R"({"version":"1.3","build":1,"downloadURL":"https://example.org"})", false},
        {200, R"({"version":"1.3","build":"1","downloadURL":"","releaseNotes":""})", false},
        {200, R"({"version":"1.3","build":1.0,"downloadURL":"","releaseNotes":""})", false},
        {200, R"({"version":"1.3","build":9223372036854775808,"downloadURL":"","releaseNotes":""})", false},
        {200, R"({"version":1.3,"build":1,"downloadURL":"","releaseNotes":""})", false},
        {200, R"({"version":"1.3","build":1,"downloadURL":null,"releaseNotes":""})", false},
        {200, R"([{"version":"1.3","build":1,"downloadURL":"","releaseNotes":""}])", false},
        {200, newerDocument + "x", false},
        {200, newerDocument.left(40), false},
        {200, "", false},
    };
    const auto checker = makeChecker();
    for (const auto& c : cases) {
        SCOPED_TRACE(c.body.toStdString());
        alerts.shown.clear();
        server.respond(c.status, c.body);
        checker->fetchVersionInfo();
        settle();
        EXPECT_EQ(alerts.shown.size(), c.announced ? 1u : 0u);
    }
}

TEST_F(UpdateCheckerTest, theAlertWaitsForTheEventLoopAndAnUnreadableRunningBuildCountsAsZero) {
    const auto checker = makeChecker(server.url(), QStringLiteral("5a"));
    checker->handleVersionData(R"({"version":"1.2","build":1,"downloadURL":"","releaseNotes":""})");
    EXPECT_TRUE(alerts.shown.empty());  // never from inside the caller (the reply's handler)
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(alerts.shown.size(), 1u);
}

TEST_F(UpdateCheckerTest, downloadOpensTheDownloadUrlWhenItIsOne) {
    const struct {
        int answer;
        QString downloadURL;
        bool opens;
    } cases[] = {
        {AlertPresenter::firstButtonResponse, "https://example.org/Orvane-1.3.dmg", true},
        {AlertPresenter::secondButtonResponse, "https://example.org/Orvane-1.3.dmg", false},
        {AlertPresenter::firstButtonResponse, "", false},
        {AlertPresenter::firstButtonResponse, "not a url", false},
        {AlertPresenter::firstButtonResponse, "example.org/Orvane.dmg", false},
        {AlertPresenter::firstButtonResponse, "https://exa mple.org/", false},
    };
    const auto checker = makeChecker();
    for (const auto& c : cases) {
        SCOPED_TRACE(c.downloadURL.toStdString());
        opener.opened.clear();
        alerts.answer = c.answer;
        checker->showUpdateAlert({"1.3", 1, c.downloadURL, "Notes"});
        EXPECT_EQ(opener.opened, c.opens ? std::vector<QUrl>{QUrl(c.downloadURL)} : std::vector<QUrl>{});
    }
}
