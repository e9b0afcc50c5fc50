// An HTTP server on 127.0.0.1 for tests: answers every request with one chosen status and body.
#pragma once

#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>

namespace orvane::testing {

class TestHttpServer : public QObject {
public:
    // Listens on a free port of 127.0.0.1 only.
    TestHttpServer() {
        server_.listen(QHostAddress(QHostAddress::LocalHost), 0);
        connect(&server_, &QTcpServer::newConnection, this, &TestHttpServer::serve);
    }

    QUrl url() const { return QUrl(QStringLiteral("http://127.0.0.1:%1/version.json").arg(server_.serverPort())); }
    void respond(int status, QByteArray body) { status_ = status, body_ = std::move(body); }
    // The request lines received, e.g. "GET /version.json HTTP/1.1".
    const QList<QByteArray>& requestLines() const { return requestLines_; }

private:
    void serve() {
        while (QTcpSocket* socket = server_.nextPendingConnection()) {
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
                // Answered once the request's header is complete; a body is never expected.
                if (!socket->peek(socket->bytesAvailable()).contains("\r\n\r\n")) return;
                const QByteArray request = socket->readAll();
                requestLines_.append(request.left(request.indexOf("\r\n")));
                socket->write("HTTP/1.1 " + QByteArray::number(status_) + " Status\r\nContent-Type: application/json\r\n" +
                              "Content-Length: " + QByteArray::number(body_.size()) + "\r\nConnection: close\r\n\r\n" + body_);
                socket->disconnectFromHost();
            });
        }
    }

    QTcpServer server_;
    int status_ = 200;
    QByteArray body_;
    QList<QByteArray> requestLines_;
};

}  // namespace orvane::testing
