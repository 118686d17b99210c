#include "Server/Skyvault/Client/Http/Exchange.h"

#include "Server/Skyvault/Client/Http/Address.h"

#include <QCryptographicHash>
#include <QSslCertificate>
#include <QSslError>

namespace Vs::Cloud {

namespace {

// What is read ahead of a disk that is slower than the network.
constexpr qint64 kReadAhead = qint64(4) << 20;
// What a sink is given at once.
constexpr qint64 kPiece = qint64(1) << 20;

// Until what was sent has left this machine.
constexpr std::chrono::milliseconds kUntilCut{100};

std::string fingerprint(const QSslCertificate& certificate)
{
    return certificate.digest(QCryptographicHash::Sha256).toHex(':').toUpper().toStdString();
}

QNetworkRequest networkRequest(const Request& request)
{
    QNetworkRequest made(request.url);
    made.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    made.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    made.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    made.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    made.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    made.setRawHeader("User-Agent", "Quillet");
    // A packed answer has another ETag on some servers, and an unknown length.
    made.setRawHeader("Accept-Encoding", "identity");
    for (const Header& header : request.headers)
        made.setRawHeader(header.first, header.second);
    return made;
}

} // namespace

Exchange::Exchange(Request request, DigestLogin login, std::chrono::milliseconds patience,
                   std::shared_ptr<ExchangeState> state)
    : m_request(std::move(request)),
      m_login(std::move(login)),
      m_patience(patience),
      m_state(std::move(state)),
      m_body(m_request)
{
    // They go along to the connection's thread.
    m_idle.setParent(this);
    m_body.setParent(this);
    m_idle.setSingleShot(true);
    QObject::connect(&m_idle, &QTimer::timeout, this, [this] {
        end({CloudErrorState::Unreachable,
             "not a byte came or went for " + std::to_string(m_patience.count() / 1000) + " s"});
    });
}

void Exchange::start(QNetworkAccessManager& manager)
{
    if (!m_body.trouble().empty()) {
        m_cause = {CloudErrorState::CacheFailed, m_body.trouble()};
        return finish();
    }
    QNetworkRequest request = networkRequest(m_request);
    if (m_request.method == "HEAD") {
        m_reply = manager.head(request);
    } else {
        request.setHeader(QNetworkRequest::ContentLengthHeader, m_body.size());
        m_reply = manager.sendCustomRequest(request, m_request.method, &m_body);
    }
    m_reply->setParent(this);
    m_reply->setReadBufferSize(kReadAhead);
    QObject::connect(&manager, &QNetworkAccessManager::authenticationRequired, this,
                     &Exchange::onAuthentication);
    connectReply();
    m_body.atCut([this] {
        QTimer::singleShot(kUntilCut, this, [this] {
            end({CloudErrorState::Unreachable, "the connection was cut"});
        });
    });
    m_idle.start(m_patience);
    if (m_state->cancelled)
        cancel();
}

void Exchange::connectReply()
{
    QObject::connect(m_reply, &QNetworkReply::readyRead, this, &Exchange::takeContent);
    QObject::connect(m_reply, &QNetworkReply::sslErrors, this, &Exchange::onSslErrors);
    QObject::connect(m_reply, &QNetworkReply::metaDataChanged, this, [this] { m_idle.start(m_patience); });
    QObject::connect(m_reply, &QNetworkReply::uploadProgress, this, [this](qint64 done, qint64 total) {
        if (total > 0)
            onProgress(done, total);
    });
    QObject::connect(m_reply, &QNetworkReply::finished, this, &Exchange::finish);
}

void Exchange::onAuthentication(QNetworkReply* reply, QAuthenticator* authenticator)
{
    // Asked a second time for one request, the server has refused what it was given.
    if (reply != m_reply || m_login.user.isEmpty() || m_asked)
        return;
    m_asked = true;
    m_body.allowRewind();
    authenticator->setUser(m_login.user);
    authenticator->setPassword(m_login.password);
}

void Exchange::onSslErrors(const QList<QSslError>& errors)
{
    std::string text;
    for (const QSslError& error : errors)
        text += (text.empty() ? "" : "; ") + error.errorString().toStdString();
    for (const QSslError& error : errors) {
        if (!error.certificate().isNull()) {
            text += " (SHA-256 fingerprint " + fingerprint(error.certificate()) + ")";
            break;
        }
    }
    m_cause = {CloudErrorState::Certificate, text};
}

void Exchange::onProgress(qint64 done, qint64 total)
{
    m_idle.start(m_patience);
    m_state->bytesDone = static_cast<std::uint64_t>(done);
    m_state->bytesInAll = static_cast<std::uint64_t>(std::max<qint64>(total, 0));
}

void Exchange::takeContent()
{
    // Each read of the reply wakes Qt's own thread up, which readAll() would do every 16 KiB.
    while (m_reply && m_cause.isOk()) {
        const qint64 there = std::min(m_reply->bytesAvailable(), kPiece);
        if (there <= 0)
            return;
        m_piece.resize(there);
        const qint64 count = m_reply->read(m_piece.data(), there);
        if (count <= 0)
            return;
        m_piece.truncate(count);
        takePiece();
    }
}

void Exchange::takePiece()
{
    m_idle.start(m_patience);
    m_answer.received += m_piece.size();
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (m_request.sink && status >= 200 && status < 300) {
        m_state->bytesDone = static_cast<std::uint64_t>(m_answer.received);
        m_state->bytesInAll = m_reply->header(QNetworkRequest::ContentLengthHeader).toULongLong();
        if (DriveResult result = m_request.sink(m_piece); !result.isOk())
            return end(std::move(result));
        m_idle.start(m_patience); // The time that the sink took isn't the server's.
        return;
    }
    if (m_answer.content.size() + m_piece.size() > m_request.mostContent)
        return end({CloudErrorState::BadAnswer,
                    "the answer is larger than " + std::to_string(m_request.mostContent) + " bytes"});
    m_answer.content += m_piece;
}

void Exchange::cancel()
{
    end({CloudErrorState::Cancelled, {}});
}

void Exchange::end(DriveResult cause)
{
    if (!m_reply || !m_cause.isOk())
        return;
    m_cause = std::move(cause);
    m_reply->abort();
}

DriveResult Exchange::failureOf(QNetworkReply::NetworkError error) const
{
    if (!m_cause.isOk())
        return m_cause;
    const std::string text = m_reply->errorString().toStdString();
    switch (error) {
    case QNetworkReply::SslHandshakeFailedError:
        return {CloudErrorState::Certificate, text};
    case QNetworkReply::ProtocolFailure:
    case QNetworkReply::ProtocolUnknownError:
        return {CloudErrorState::BadAnswer, text};
    case QNetworkReply::NoError:
    case QNetworkReply::ContentReSendError:
    case QNetworkReply::RemoteHostClosedError:
        return {CloudErrorState::Unreachable, "the connection ended before the answer did"};
    case QNetworkReply::HostNotFoundError:
        return {CloudErrorState::Unreachable, "there is no host of this name"};
    case QNetworkReply::ConnectionRefusedError:
        return {CloudErrorState::Unreachable, "nothing answers there"};
    default:
        return {CloudErrorState::Unreachable, text};
    }
}

bool Exchange::isWhole(QNetworkReply::NetworkError error) const
{
    const QByteArray length = m_reply->rawHeader("Content-Length");
    const bool isAllThere = m_answer.received >= length.toLongLong();
    switch (error) {
    case QNetworkReply::NoError:
        return m_request.method == "HEAD" || isAllThere;
    case QNetworkReply::ContentReSendError:
    case QNetworkReply::RemoteHostClosedError:
        // The end of the connection is the end of an answer without a length, and Qt may see it too early.
        return length.isEmpty() ? isLast() && !m_reply->hasRawHeader("Transfer-Encoding") : isAllThere;
    case QNetworkReply::ProtocolUnknownError:
    case QNetworkReply::ProtocolFailure:
        return false;
    default:
        // By their numbers: those of the network, and those that stand for an answer.
        return error >= QNetworkReply::ContentAccessDenied;
    }
}

bool Exchange::isLast() const
{
    return m_reply->rawHeader("Connection").toLower().contains("close");
}

void Exchange::finish()
{
    m_idle.stop();
    if (m_reply) {
        if (m_cause.isOk())
            takeContent();
        const auto error = m_reply->error();
        const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        for (const auto& header : m_reply->rawHeaderPairs())
            m_answer.headers.push_back(header);
        if (m_cause.isOk() && status > 0 && isWhole(error)) {
            m_answer.status = status;
            m_answer.reason = m_reply->attribute(QNetworkRequest::HttpReasonPhraseAttribute).toByteArray();
        } else {
            m_answer.failure = failureOf(error);
            m_answer.wasReset = m_answer.failure.state == CloudErrorState::Unreachable && m_cause.isOk();
        }
        // Qt may send the next request into a connection whose end was announced, and lose it there.
        if (isLast())
            m_reply->manager()->clearConnectionCache();
        m_reply->deleteLater();
        m_reply->setParent(nullptr);
        m_reply = nullptr;
    } else {
        m_answer.failure = m_cause;
    }
    {
        const std::lock_guard lock(m_state->mutex);
        m_state->answer = std::move(m_answer);
        m_state->done = true;
    }
    m_state->changed.notify_all();
    deleteLater();
}

} // namespace Vs::Cloud
