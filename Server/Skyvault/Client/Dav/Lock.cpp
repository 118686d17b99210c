#include "Server/Skyvault/Client/Dav/Lock.h"

#include <QUuid>
#include <QXmlStreamReader>

#include <algorithm>

namespace Vs::Cloud {

namespace {

// A program killed during a save locks others out for that long, and so does a lock whose response was lost,
// if the server doesn't say whose it is. During a save it is renewed.
constexpr std::chrono::seconds kTime{30};
constexpr std::chrono::seconds kLeastTime{10};

QByteArray lockBody(const std::string& owner)
{
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?><D:lockinfo xmlns:D=\"DAV:\">"
           "<D:lockscope><D:exclusive/></D:lockscope><D:locktype><D:write/></D:locktype><D:owner>" +
           QString::fromStdString(owner).toHtmlEscaped().toUtf8() + "</D:owner></D:lockinfo>";
}

Header timeHeader()
{
    return {"Timeout", "Second-" + QByteArray::number(qint64(kTime.count()))};
}

/// Empty if the server doesn't report it.
QString property(const DavItem& item, const char* name)
{
    const auto found = item.properties.find(QString::fromLatin1(name));
    return found == item.properties.end() ? QString() : found->second;
}

/// "Second-120"; if it can't be parsed, the requested time is assumed.
std::chrono::seconds timeGranted(const QByteArray& content)
{
    QXmlStreamReader xml(content);
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement || xml.name() != u"timeout")
            continue;
        const QString text = xml.readElementText(QXmlStreamReader::SkipChildElements).trimmed();
        const qint64 seconds = text.section('-', 1).toLongLong();
        if (text.startsWith(QLatin1String("Second-")) && seconds > 0)
            return std::clamp(std::chrono::seconds(seconds), kLeastTime, kTime);
    }
    return kTime;
}

} // namespace

Lock::Lock(Session& session, std::string path)
    : m_session(session),
      m_path(std::move(path)),
      m_owner(session.user + " (Quillet " + QUuid::createUuid().toString(QUuid::WithoutBraces).toStdString() +
              ")"),
      m_time(kTime),
      m_since(std::chrono::steady_clock::now())
{
}

DriveResult Lock::take(Session& session, const std::string& path, std::unique_ptr<Lock>& lock)
{
    const std::string action = session.action("Locking", path);
    std::unique_ptr<Lock> made(new Lock(session, path));
    DriveResult result = made->request(action);
    if (!result.isOk())
        return result;
    session.http.beside([held = made.get()] { held->renewAtHalfTime(); });
    lock = std::move(made);
    return {};
}

DriveResult Lock::request(const std::string& action)
{
    const Answer answer = m_session.ask("LOCK", m_path, {timeHeader(), {"Depth", "0"}}, lockBody(m_owner));
    if (answer.isLost() && adopt())
        return {};
    if (answer.status == 423) {
        DavItem item;
        if (!m_session.look(m_path, item, "<D:lockdiscovery/>").isOk())
            item = {};
        return another(item, action);
    }
    if (!answer.isOk())
        return resultOf(answer, action);
    take(answer);
    return m_token.isEmpty() ? failed(CloudErrorState::BadAnswer, action, "the server gave no lock token")
                             : DriveResult();
}

void Lock::take(const Answer& answer)
{
    QByteArray token = answer.header("Lock-Token").trimmed();
    if (token.startsWith('<') && token.endsWith('>'))
        token = token.mid(1, token.size() - 2);
    m_token = token;
    m_madeFile = answer.status == 201;
    m_time = timeGranted(answer.content);
    m_since = std::chrono::steady_clock::now();
}

DriveResult Lock::another(const DavItem& item, const std::string& action)
{
    constexpr int kLongest = 80;
    const QString owner = property(item, "owner").left(kLongest);
    return failed(CloudErrorState::Locked, action,
                  "it is locked" + (owner.isEmpty() ? std::string() : " by " + owner.toStdString()));
}

// Some servers report an owner or a token that they made up themselves.
bool Lock::isSecond(const DavItem& item) const
{
    const QString owner = property(item, "owner");
    const QByteArray token = property(item, "locktoken").toUtf8();
    return !owner.isEmpty() && owner.toStdString() != m_owner && !token.isEmpty() && token != m_token;
}

bool Lock::adopt()
{
    DavItem item;
    if (!m_session.look(m_path, item, "<D:lockdiscovery/>").isOk() ||
        property(item, "owner").toStdString() != m_owner)
        return false;
    m_token = property(item, "locktoken").toUtf8();
    m_madeFile = item.entry.size == 0;
    return !m_token.isEmpty();
}

// Some servers require the token to be tagged with its resource.
void Lock::removeEmptyFile() const
{
    DriveEntry made;
    if (m_session.find(m_path, made).isOk() && made.size == 0)
        static_cast<void>(m_session.remove(m_path, {taggedCondition()}));
}

Header Lock::taggedCondition() const
{
    return {"If", "<" + m_session.address.of(m_path).toEncoded() + "> (<" + m_token + ">)"};
}

void Lock::renewAtHalfTime()
{
    if (m_isRenewing || m_isLost || std::chrono::steady_clock::now() - m_since < m_time / 2)
        return;
    m_isRenewing = true;
    const Answer answer = m_session.ask("LOCK", m_path, {timeHeader(), condition()});
    if (answer.isOk())
        m_time = timeGranted(answer.content);
    else if (answer.status != 0)
        m_isLost = true;
    // Also without a response: at worst it is retried after half of what remains.
    m_since = std::chrono::steady_clock::now();
    m_isRenewing = false;
}

Lock::~Lock()
{
    m_session.http.beside({});
    if (m_token.isEmpty())
        return;
    const Headers headers{{"Lock-Token", "<" + m_token + ">"}};
    // Releasing a lock twice is harmless, but a remaining one locks others out.
    if (m_session.ask("UNLOCK", m_path, headers).wasReset)
        static_cast<void>(m_session.ask("UNLOCK", m_path, headers));
}

} // namespace Vs::Cloud
