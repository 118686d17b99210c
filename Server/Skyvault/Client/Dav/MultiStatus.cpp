#include "Server/Skyvault/Client/Dav/MultiStatus.h"

#include <array>
#include <cstdio>
#include <string_view>

namespace Vs::Cloud {

namespace {

constexpr qint64 kMostBytes = qint64(64) << 20;
constexpr qsizetype kDeepest = 32;
constexpr qsizetype kLongestText = 16384;

int statusOf(const QString& line)
{
    return line.section(' ', 1, 1).toInt();
}

} // namespace

std::chrono::system_clock::time_point timeOf(const QByteArray& text)
{
    static constexpr std::array<std::string_view, 12> kMonths{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                              "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    using namespace std::chrono;
    std::array<char, 4> name{};
    int d = 0, y = 0, hour = 0, minute = 0, second = 0;
    if (std::sscanf(text.constData(), "%*3s, %2d %3s %4d %2d:%2d:%2d", &d, name.data(), &y, &hour, &minute,
                    &second) != 6)
        return {};
    const auto* const month = std::find(kMonths.begin(), kMonths.end(), std::string_view(name.data()));
    const year_month_day date{year(y), std::chrono::month(static_cast<unsigned>(month - kMonths.begin()) + 1),
                              day(static_cast<unsigned>(d))};
    if (!date.ok())
        return {};
    return sys_days(date) + hours(hour) + minutes(minute) + seconds(second);
}

QByteArray propertiesWanted(const QByteArray& more)
{
    return R"(<?xml version="1.0" encoding="utf-8"?><D:propfind xmlns:D="DAV:" xmlns:o="http://owncloud.org/ns">)"
           "<D:prop><D:resourcetype/><D:getcontentlength/><D:getetag/><D:getlastmodified/>"
           "<D:creator-displayname/><o:owner-display-name/>" +
           more + "</D:prop></D:propfind>";
}

MultiStatus::MultiStatus(const Address& address, std::function<void(DavItem&&)> take)
    : m_address(address), m_take(std::move(take))
{
}

DriveResult MultiStatus::bad(const std::string& why) const
{
    return {CloudErrorState::BadAnswer, why};
}

DriveResult MultiStatus::add(const QByteArray& piece)
{
    m_bytes += piece.size();
    if (m_bytes > kMostBytes)
        return bad("the listing is larger than " + std::to_string(kMostBytes >> 20) + " MB");
    m_xml.addData(piece);
    while (!m_xml.atEnd() && m_trouble.empty()) {
        switch (m_xml.readNext()) {
        case QXmlStreamReader::StartElement:
            startElement();
            break;
        case QXmlStreamReader::EndElement:
            endElement();
            break;
        case QXmlStreamReader::Characters:
            m_text += m_xml.text();
            if (m_text.size() > kLongestText)
                m_trouble = "a value in the answer is longer than all measure";
            break;
        case QXmlStreamReader::DTD:
        case QXmlStreamReader::EntityReference:
            m_trouble = "the answer declares a document type, which no such answer has";
            break;
        default:
            break;
        }
    }
    if (m_trouble.empty() && m_xml.hasError() &&
        m_xml.error() != QXmlStreamReader::PrematureEndOfDocumentError)
        m_trouble = "the answer isn't well-formed XML: " + m_xml.errorString().toStdString() + " in line " +
                    std::to_string(m_xml.lineNumber());
    return m_trouble.empty() ? DriveResult() : bad(m_trouble);
}

DriveResult MultiStatus::end()
{
    if (!m_trouble.empty())
        return bad(m_trouble);
    if (!m_isMultiStatus || !m_path.isEmpty())
        return bad("the WebDAV listing in the answer is incomplete");
    return {};
}

void MultiStatus::startElement()
{
    const QString name = m_xml.name().toString();
    if (m_path.isEmpty() && !(name == u"multistatus" && m_xml.namespaceUri() == u"DAV:")) {
        m_trouble = "the answer is not a WebDAV listing";
        return;
    }
    m_isMultiStatus = true;
    m_text.clear();
    m_path.append(name);
    if (m_path.size() > kDeepest)
        m_trouble = "the answer is nested without measure";
    if (name == u"response" && m_path.size() == 2) {
        m_item = {};
        m_reference.clear();
        m_status = 0;
    } else if (name == u"propstat" && m_path.size() == 3) {
        m_candidate = m_item;
        m_partStatus = 0;
    } else if (name == u"collection" && m_path.contains(u"resourcetype")) {
        m_candidate.entry.isFolder = true;
    } else if (name == u"lockentry") {
        m_candidate.properties[QStringLiteral("supportedlock")] = QStringLiteral("yes");
    }
}

void MultiStatus::endElement()
{
    const QString name = m_path.takeLast();
    const qsizetype depth = m_path.size();
    if (depth == 1 && name == u"response") {
        endResponse();
    } else if (depth == 2 && name == u"href") {
        m_reference = m_text.trimmed().toUtf8();
    } else if (depth == 2 && name == u"status") {
        m_status = statusOf(m_text);
    } else if (depth == 3 && name == u"status") {
        m_partStatus = statusOf(m_text);
    } else if (depth == 2 && name == u"propstat") {
        if (m_partStatus == 200)
            m_item = std::move(m_candidate);
    } else if (depth >= 4 && m_path.at(2) == u"propstat") {
        endProperty(depth >= 5 && name == u"href" ? m_path.last() : name);
    }
    m_text.clear();
}

void MultiStatus::endProperty(const QString& name)
{
    const QString text = m_text.trimmed();
    DriveEntry& entry = m_candidate.entry;
    if (name == u"getcontentlength")
        entry.size = text.toULongLong();
    else if (name == u"getetag")
        entry.etag = text.toStdString();
    else if (name == u"getlastmodified")
        entry.modified = timeOf(text.toLatin1());
    else if ((name == u"creator-displayname" || name == u"owner-display-name") && !text.isEmpty())
        entry.modifiedBy = text.toStdString();
    else if (!text.isEmpty())
        m_candidate.properties[name] = text;
}

void MultiStatus::endResponse()
{
    if (m_status != 0 && m_status != 200)
        return;
    const auto path = m_address.pathOf(m_reference);
    if (!path)
        return;
    m_item.entry.path = *path;
    m_take(std::move(m_item));
}

} // namespace Vs::Cloud
