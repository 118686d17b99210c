#include "Server/Network/RedirectListener.h"

#include <QTcpSocket>

#include <memory>

namespace Vs::Network {

namespace {

constexpr int kRequestTime = 3000;
constexpr qsizetype kLongestRequest = 16384;

/// The request up to the end of the headers.
QByteArray readRequest(QTcpSocket& socket)
{
    QByteArray request;
    while (!request.contains("\r\n\r\n") && request.size() < kLongestRequest &&
           (socket.bytesAvailable() > 0 || socket.waitForReadyRead(kRequestTime)))
        request += socket.readAll();
    return request;
}

void answer(QTcpSocket& socket, const QByteArray& status, const QByteArray& text)
{
    const QByteArray page = "<!DOCTYPE html><meta charset=\"utf-8\"><title>Quillet</title><p>" + text;
    socket.write("HTTP/1.1 " + status + "\r\nContent-Type: text/html; charset=utf-8\r\nContent-Length: " +
                 QByteArray::number(page.size()) +
                 "\r\nCache-Control: no-store\r\nConnection: close\r\n\r\n" + page);
    socket.disconnectFromHost();
    if (socket.state() != QAbstractSocket::UnconnectedState)
        socket.waitForDisconnected(kRequestTime);
}

} // namespace

RedirectListener::RedirectListener()
{
    m_server.listen(QHostAddress::LocalHost, 0);
}

QUrl RedirectListener::address() const
{
    if (!m_server.isListening())
        return {};
    return QUrl("http://127.0.0.1:" + QString::number(m_server.serverPort()) + "/signed-in");
}

std::optional<QUrlQuery> RedirectListener::wait(std::chrono::milliseconds time, const QByteArray& state)
{
    if (!m_server.hasPendingConnections() && !m_server.waitForNewConnection(int(time.count())))
        return std::nullopt;
    const std::unique_ptr<QTcpSocket> socket(m_server.nextPendingConnection());
    if (!socket)
        return std::nullopt;
    const QByteArrayList line = readRequest(*socket).split('\n').first().trimmed().split(' ');
    const QUrl asked = line.size() == 3 ? QUrl::fromEncoded(line[1]) : QUrl();
    const QUrlQuery query(asked);
    // Any page in a browser can send requests here, but none knows the state.
    if (line.first() != "GET" || asked.path() != address().path() ||
        query.queryItemValue(QStringLiteral("state"), QUrl::FullyDecoded).toUtf8() != state) {
        answer(*socket, "400 Bad Request", "This address is not the one that a sign-in goes back to.");
        return std::nullopt;
    }
    answer(*socket, "200 OK", "You can close this page and go back to Quillet.");
    return query;
}

} // namespace Vs::Network
