#include "TestHttpServer.h"

#include <QTcpSocket>

namespace orvane::testing {
namespace {

constexpr int maxConnections = 64;
constexpr qsizetype maxRequestBytes = 16 * 1024;

}  // namespace

TestHttpServer::TestHttpServer() {
    server_.listen(QHostAddress(QHostAddress::LocalHost), 0);
    connect(&server_, &QTcpServer::newConnection, this, &TestHttpServer::serve);
}

QUrl TestHttpServer::url() const { return QUrl(QStringLiteral("http://127.0.0.1:%1/version.json").arg(server_.serverPort())); }

void TestHttpServer::respond(int status, QByteArray body) {
    status_ = status;
    body_ = std::move(body);
}

void TestHttpServer::serve() {
    while (QTcpSocket* socket = server_.nextPendingConnection()) {
        if (++connections_ > maxConnections) {
            socket->abort();
            socket->deleteLater();
            continue;
        }
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
            // The request is only looked at once its header is complete; a body is never expected.
            if (socket->bytesAvailable() > maxRequestBytes) return socket->abort();
            if (!socket->peek(maxRequestBytes).contains("\r\n\r\n")) return;
            const QByteArray request = socket->readAll();
            requestLines_.append(request.left(request.indexOf("\r\n")));
            socket->write("HTTP/1.1 " + QByteArray::number(status_) + " Status\r\nContent-Type: application/json\r\n" +
                          "Content-Length: " + QByteArray::number(body_.size()) + "\r\nConnection: close\r\n\r\n" + body_);
            socket->disconnectFromHost();
        });
    }
}

}  // namespace orvane::testing
