// An HTTP server on 127.0.0.1 for tests: answers every request with one chosen status and body.
#pragma once

#include <QByteArray>
#include <QTcpServer>
#include <QUrl>

namespace orvane::testing {

class TestHttpServer : public QObject {
public:
    // Listens on a free port of 127.0.0.1 only. Serves a bounded number of small requests.
    TestHttpServer();

    QUrl url() const;  // http://127.0.0.1:<port>/version.json
    void respond(int status, QByteArray body);
    // The request lines received, e.g. "GET /version.json HTTP/1.1".
    const QList<QByteArray>& requestLines() const { return requestLines_; }

private:
    void serve();

    QTcpServer server_;
    int status_ = 200;
    QByteArray body_;
    QList<QByteArray> requestLines_;
    int connections_ = 0;
};

}  // namespace orvane::testing
