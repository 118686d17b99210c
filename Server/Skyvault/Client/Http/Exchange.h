#pragma once

#include "Server/Skyvault/Client/Http/Body.h"
#include "Server/Skyvault/Client/Http/Request.h"

#include <QAuthenticator>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTimer>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>

namespace Vs::Cloud {

/// What a waiting thread sees of an exchange.
struct ExchangeState
{
    std::mutex mutex;
    std::condition_variable changed;
    bool done = false;
    Answer answer;
    std::atomic<std::uint64_t> bytesDone = 0, bytesInAll = 0;
    std::atomic<bool> cancelled = false;
};

/// A user and a secret for Digest, which needs the server's challenge first; empty otherwise.
struct DigestLogin
{
    QString user, password;
};

/// One request and its answer. It lives on the connection's thread and goes when it has ended.
class Exchange : public QObject
{
public:
    Exchange(Request request, DigestLogin login, std::chrono::milliseconds patience,
             std::shared_ptr<ExchangeState> state);

    void start(QNetworkAccessManager& manager);
    void cancel();

private:
    void connectReply();
    void takeContent();
    void takePiece();
    void onAuthentication(QNetworkReply* reply, QAuthenticator* authenticator);
    void onSslErrors(const QList<QSslError>& errors);
    void onProgress(qint64 done, qint64 total);
    /// Ends the request with a cause of ours.
    void end(DriveResult cause);
    void finish();
    bool isWhole(QNetworkReply::NetworkError error) const;
    /// Of its connection, as the server says.
    bool isLast() const;
    DriveResult failureOf(QNetworkReply::NetworkError error) const;

    const Request m_request;
    const DigestLogin m_login;
    const std::chrono::milliseconds m_patience;
    const std::shared_ptr<ExchangeState> m_state;
    Body m_body;
    QTimer m_idle;
    QNetworkReply* m_reply = nullptr;
    Answer m_answer;
    QByteArray m_piece;  ///< That came last; kept, as its memory serves for the next.
    DriveResult m_cause; ///< Ours, if we ended it.
    bool m_asked = false;
};

} // namespace Vs::Cloud
