// The version rules, and the update check against local HTTP and HTTPS servers with an injected clock, alerts and URL opener.
#include "AppFakes.h"
#include "app/MessageBoxAlertPresenter.h"
#include "app/UpdateChecker.h"
#include "app/VersionComparison.h"
#include "store/UserDefaults.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCoreApplication>
#include <QMessageBox>
#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QProcess>
#include <QSslKey>
#include <QSslServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <cmath>

using namespace orvane;
using namespace orvane::testing;

namespace {

constexpr double launchTime = 1'700'000'000.25;
const QByteArray newerDocument =
    R"({"version":"1.3","build":1,"downloadURL":"https://example.org/Orvane.dmg","releaseNotes":"Faster."})";

// Counts the requests it is asked to send, and finished replies; never uses a proxy; trusts alsoTrusted too.
struct CountingNetwork : QNetworkAccessManager {
    int requests = 0, finishedReplies = 0;
    int transferTimeout = 0;  // the last request's
    QList<QSslCertificate> alsoTrusted;
    CountingNetwork() {
        setProxy(QNetworkProxy::NoProxy);
        connect(this, &QNetworkAccessManager::finished, [this] { ++finishedReplies; });
    }
    QNetworkReply* createRequest(Operation op, const QNetworkRequest& request, QIODevice* data) override {
        ++requests;
        transferTimeout = request.transferTimeout();
        QNetworkRequest trusting = request;
        QSslConfiguration tls = trusting.sslConfiguration();
        tls.addCaCertificates(alsoTrusted);
        trusting.setSslConfiguration(tls);
        return QNetworkAccessManager::createRequest(op, trusting, data);
    }
};

struct UpdateCheckerTest : ::testing::Test {
    QTemporaryDir dir;
    std::unique_ptr<UserDefaults> defaults = UserDefaults::openFile(dir.filePath("settings.ini"));
    CountingNetwork network;
    ScriptedAlertPresenter alerts;
    RecordingUrlOpener opener;
    // Servers on free ports of 127.0.0.1 that answer every request with this status and body: one
    // plain, one with a certificate for 127.0.0.1 signed by its own key, made by the openssl tool.
    QTcpServer server;
    QSslServer secureServer;
    int status = 200;
    QByteArray body;
    QList<QByteArray> requestLines;  // e.g. "GET /version.json HTTP/1.1"

    void SetUp() override {
        QProcess openssl;
        openssl.start("openssl", {"req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "1", "-subj", "/CN=127.0.0.1",
                                  "-addext", "subjectAltName=IP:127.0.0.1", "-keyout", "-", "-out", "-"});
        ASSERT_TRUE(openssl.waitForFinished(30000) && openssl.exitCode() == 0) << openssl.readAllStandardError().toStdString();
        const QByteArray keyAndCertificate = openssl.readAllStandardOutput();
        QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
        tls.setLocalCertificate(QSslCertificate(keyAndCertificate));
        tls.setPrivateKey(QSslKey(keyAndCertificate, QSsl::Rsa));
        secureServer.setSslConfiguration(tls);
        for (QTcpServer* listener : {&server, static_cast<QTcpServer*>(&secureServer)}) {
            ASSERT_TRUE(listener->listen(QHostAddress(QHostAddress::LocalHost), 0));
            QObject::connect(listener, &QTcpServer::pendingConnectionAvailable, [this, listener] {  // after any handshake
                while (QTcpSocket* socket = listener->nextPendingConnection()) {
                    QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
                    QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
                        // Answered once the request's header is complete; a body is never expected.
                        if (!socket->peek(socket->bytesAvailable()).contains("\r\n\r\n")) return;
                        const QByteArray request = socket->readAll();
                        requestLines.append(request.left(request.indexOf("\r\n")));
                        socket->write("HTTP/1.1 " + QByteArray::number(status) + " Status\r\nContent-Type: application/json\r\n" +
                                      "Content-Length: " + QByteArray::number(body.size()) + "\r\nConnection: close\r\n\r\n" + body);
                        socket->disconnectFromHost();
                    });
                }
            });
        }
    }
    // The running application is version 1.2, build 5 unless told otherwise; it asks the local server
    // unless given another URL.
    std::unique_ptr<UpdateChecker> makeChecker(QUrl url = {}, const QString& build = QStringLiteral("5")) {
        if (url.isEmpty()) url = QUrl(QStringLiteral("http://127.0.0.1:%1/version.json").arg(server.serverPort()));
        return std::make_unique<UpdateChecker>(*defaults, &network, [] { return launchTime; }, url, QStringLiteral("1.2"), build,
                                               alerts, opener);
    }

    // Waits for every request sent so far to finish, then runs the queued work (the alert) it left.
    void settle() {
        ASSERT_TRUE(QTest::qWaitFor([this] { return network.finishedReplies == network.requests; }, 30000));
        QCoreApplication::sendPostedEvents();
    }
    std::optional<double> storedTime() const {
        if (!defaults->contains(UpdateChecker::lastCheckKey)) return std::nullopt;
        return defaults->doubleValue(UpdateChecker::lastCheckKey);
    }
};

}  // namespace

TEST(VersionComparison, componentsKeepOnlyPiecesThatAreWholeDecimalIntegers) {
    const std::pair<const char*, std::vector<std::int64_t>> cases[] = {
        {"1.4.2", {1, 4, 2}}, {"1.2beta.3", {1, 3}}, {"+7.-3.+.-.+-1", {7, -3}}, {" 1.2 .0x10.1e3", {}},
        {"9223372036854775807.9223372036854775808.-9223372036854775808", {INT64_MAX, INT64_MIN}},
    };
    for (const auto& [version, components] : cases) EXPECT_EQ(versionComponents(version), components) << version;
}

TEST(VersionComparison, buildTextThatIsNoIntegerReadsAsZero) {
    const std::pair<const char*, std::int64_t> cases[] = {
        {"42", 42}, {"+42", 42}, {"-3", -3}, {"", 0}, {"42a", 0}, {" 42", 0}, {"4.2", 0}, {"99999999999999999999", 0}};
    for (const auto& [text, build] : cases) EXPECT_EQ(buildNumberFromText(text), build) << text;
}

TEST(VersionComparison, newerIsDecidedPerComponentThenByBuild) {
    // Remote version and build, running version and build, and whether the remote one is newer.
    const std::tuple<const char*, std::int64_t, const char*, std::int64_t, bool> cases[] = {
        {"1.10", 1, "1.9", 99, true}, {"1.2", 5, "1.2.0", 4, true}, {"1.2", 5, "1.2", 5, false}, {"1.2.1", 0, "1.2", 9, true},
        {"1.99", 9, "2.0", 0, false}, {"", 1, "", 0, true}, {"1.-1", 9, "1", 0, false},
    };
    for (const auto& [remote, remoteBuild, current, currentBuild, newer] : cases)
        EXPECT_EQ(isNewerVersion(remote, remoteBuild, current, currentBuild), newer)
            << remote << " (" << remoteBuild << ") against " << current << " (" << currentBuild << ")";
}

TEST_F(UpdateCheckerTest, theFirstCheckHearsOnlyAServerReachedAndTrustedThenChecksOnlyAfterMoreThanADay) {
    body = newerDocument;
    const QString overHttps = QStringLiteral("https://127.0.0.1:%1/version.json").arg(secureServer.serverPort());
    // The version URL, whether requests trust the server's certificate, and whether the update is announced.
    const std::tuple<QString, bool, bool> cases[] = {
        {QStringLiteral("http://127.0.0.1:%1/version.json").arg(server.serverPort()), false, true},
        {overHttps, true, true},
        {overHttps, false, false},  // nobody vouches for its certificate: a failure like any other, before any HTTP
    };
    for (const auto& [url, trusted, announced] : cases) {
        SCOPED_TRACE(url.toStdString() + (trusted ? " trusted" : ""));
        defaults->remove(UpdateChecker::lastCheckKey), alerts.shown.clear(), requestLines.clear();
        network.clearConnectionCache();  // a kept connection would keep the trust it was opened with
        network.alsoTrusted = trusted ? QList{secureServer.sslConfiguration().localCertificate()} : QList<QSslCertificate>{};
        const auto checker = makeChecker(QUrl(url));
        checker->checkForUpdatesIfNeeded();
        EXPECT_EQ(storedTime(), launchTime);  // already before the reply
        settle();
        EXPECT_EQ(network.transferTimeout, UpdateChecker::transferTimeoutMs);
        EXPECT_EQ(requestLines, announced ? QList<QByteArray>{"GET /version.json HTTP/1.1"} : QList<QByteArray>{});
        ASSERT_EQ(alerts.shown.size(), announced ? 1u : 0u);
        if (!announced) continue;
        EXPECT_EQ(summary(alerts.shown[0]), "informational: Update Available [Download|Later]");
    }

    // Seconds since the stored check, and whether a check runs: a future or infinite time is damage, not a check.
    const std::pair<double, bool> days[] = {{86400.5, true}, {86400, false}, {-60, true}, {std::nan(""), true}};
    for (const auto& [storedAgo, checks] : days) {
        SCOPED_TRACE(storedAgo);
        defaults->setDouble(UpdateChecker::lastCheckKey, launchTime - storedAgo);
        const int before = network.requests;
        makeChecker()->checkForUpdatesIfNeeded();  // the request outlives its checker
        EXPECT_EQ(network.requests - before, checks ? 1 : 0);
        EXPECT_EQ(storedTime(), checks ? launchTime : launchTime - storedAgo);
        settle();
    }
}

TEST_F(UpdateCheckerTest, onlyADecodableNewerDocumentIsAnnouncedWhateverTheStatus) {
    // The reply's status and body, and whether an update is announced.
    const std::tuple<int, QByteArray, bool> cases[] = {
        {404, newerDocument, true},
        {200, R"({"version":"1.2","build":6,"downloadURL":"","releaseNotes":"","extra":[1]})", true},
        {200, R"({"version":"1.3","build":1,"downloadURL":"https://example.org"})", false},
        {200, R"({"version":"1.3","build":1.0,"downloadURL":"","releaseNotes":""})", false},
        {200, R"({"version":"1.3","build":9223372036854775808,"downloadURL":"","releaseNotes":""})", false},
        {200, R"({"version":"1.3","build":1,"downloadURL":null,"releaseNotes":""})", false},
        {200, R"([{"version":"1.3","build":1,"downloadURL":"","releaseNotes":""}])", false},
        {200, newerDocument.left(40), false},
        {200, newerDocument + QByteArray(UpdateChecker::maxBodyBytes, ' '), false},  // abandoned, not buffered
    };
    const auto checker = makeChecker();
    for (const auto& [code, document, announced] : cases) {
        SCOPED_TRACE(document.left(120).toStdString());
        alerts.shown.clear(), status = code, body = document;
        checker->fetchVersionInfo();
        settle();
        EXPECT_EQ(alerts.shown.size(), announced ? 1u : 0u);
    }
}

TEST_F(UpdateCheckerTest, theAlertWaitsForTheEventLoopAndAnUnreadableRunningBuildCountsAsZero) {
    const auto checker = makeChecker(QUrl(), QStringLiteral("5a"));
    checker->handleVersionData(R"({"version":"1.2","build":1,"downloadURL":"","releaseNotes":""})");
    EXPECT_TRUE(alerts.shown.empty());  // never from inside the caller (the reply's handler)
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(alerts.shown.size(), 1u);
    checker->showUpdateAlert({"1.3", 1, "", QString(5000, u'x')});  // notes beyond the cap are cut
    EXPECT_EQ(alerts.shown.back().informativeText, "Orvane 1.3 is available.\n\n" + QString(UpdateChecker::maxShownNotes, u'x') + u'…');
}

TEST_F(UpdateCheckerTest, downloadOpensTheDownloadUrlWhenItIsOne) {
    // The button pressed, the document's download URL, and whether it is opened.
    const std::tuple<int, QString, bool> cases[] = {
        {AlertPresenter::firstButtonResponse, "https://example.org/Orvane-1.3.dmg", true},
        {AlertPresenter::secondButtonResponse, "https://example.org/Orvane-1.3.dmg", false},
        {AlertPresenter::firstButtonResponse, "http://example.org/Orvane.dmg", false},
    };
    const auto checker = makeChecker();
    for (const auto& [answer, downloadURL, opens] : cases) {
        SCOPED_TRACE(downloadURL.toStdString());
        opener.opened.clear(), alerts.answer = answer;
        checker->showUpdateAlert({"1.3", 1, downloadURL, "Notes"});
        EXPECT_EQ(opener.opened, opens ? std::vector<QUrl>{QUrl(downloadURL)} : std::vector<QUrl>{});
    }
    // Where nothing opens it, a second alert shows the address to open by hand.
    opener.handles = false, alerts.answer = AlertPresenter::firstButtonResponse;
    checker->showUpdateAlert({"1.3", 1, "https://example.org/Orvane-1.3.dmg", "Notes"});
    EXPECT_EQ(summary(alerts.shown.back()), "warning: Could Not Open the Download Page [OK]");
    EXPECT_EQ(alerts.shown.back().lines, QStringList{"https://example.org/Orvane-1.3.dmg"});
}

// An alert asked for while another is on screen comes once that one is answered and acted on; an
// alert's lines stand whole, selectable, each on its own.
TEST(MessageBoxAlertPresenter, alertsTakeTurnsAndTheirLinesStandAlone) {
    MessageBoxAlertPresenter alerts;
    std::vector<std::string> order;
    QString shownText;
    QTimer::singleShot(0, [&] {
        alerts.whenFree([&] { order.push_back("second"); });
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_TRUE(box);
        shownText = box->informativeText();
        box->close();
    });
    alerts.present({AlertPresenter::Alert::Style::warning, "First", "Type this:", {"sudo modprobe uinput"}, {"OK"}});
    order.push_back("first acted on");
    QCoreApplication::sendPostedEvents(), QCoreApplication::processEvents();
    EXPECT_EQ(order, (std::vector<std::string>{"first acted on", "second"}));
    EXPECT_EQ(shownText, "<p>Type this:</p><pre>sudo modprobe uinput</pre>");
}
