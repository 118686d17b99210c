#include "Server/Skyvault/Client/Dav/MultiStatus.h"

#include <algorithm>
#include <cstring>
#include <libxml/parser.h>
#include <locale.h>
#include <time.h>

namespace Vs::Cloud {

namespace {

constexpr qint64 kMostBytes = qint64(64) << 20;
constexpr size_t kDeepest = 32;
constexpr size_t kLongestText = 16384;

/// The status in "HTTP/1.1 200 OK".
int statusOf(QByteArrayView line)
{
    const QByteArrayView text = line.trimmed();
    const qsizetype space = text.indexOf(' ');
    return space < 0 ? 0
                     : text.sliced(space + 1).first(std::min<qsizetype>(3, text.size() - space - 1)).toInt();
}

QByteArrayView viewOf(const xmlChar* text)
{
    return reinterpret_cast<const char*>(text);
}

} // namespace

std::chrono::system_clock::time_point timeOf(const std::string& text)
{
    // Month names are English, whatever the user's language.
    static const locale_t kEnglish = ::newlocale(LC_TIME_MASK, "C", nullptr);
    tm time{};
    const char* const date = std::strchr(text.c_str(), ','); // The day of the week adds nothing.
    if (!date || !::strptime_l(date, ", %d %b %Y %H:%M:%S GMT", &time, kEnglish))
        return {};
    return std::chrono::system_clock::from_time_t(::timegm(&time));
}

QByteArray propertiesWanted(const QByteArray& more)
{
    return R"(<?xml version="1.0" encoding="utf-8"?><D:propfind xmlns:D="DAV:" xmlns:o="http://owncloud.org/ns">)"
           "<D:prop><D:resourcetype/><D:getcontentlength/><D:getetag/><D:getlastmodified/>"
           "<D:creator-displayname/><o:owner-display-name/>" +
           more + "</D:prop></D:propfind>";
}

struct MultiStatus::Events
{
    static MultiStatus& readerOf(void* given) { return *static_cast<MultiStatus*>(given); }

    static void onStart(void* reader, const xmlChar* name, const xmlChar*, const xmlChar* space, int,
                        const xmlChar**, int, int, const xmlChar**)
    {
        readerOf(reader).startElement(viewOf(name), viewOf(space));
    }
    static void onEnd(void* reader, const xmlChar* name, const xmlChar*, const xmlChar*)
    {
        readerOf(reader).endElement(viewOf(name));
    }
    static void onCharacters(void* reader, const xmlChar* text, int size)
    {
        readerOf(reader).addText({reinterpret_cast<const char*>(text), size});
    }
    static void onDocumentType(void* reader, const xmlChar*, const xmlChar*, const xmlChar*)
    {
        readerOf(reader).fail("the answer declares a document type, which such an answer never has");
    }
    static void onFault(void*, xmlError*) {} // Errors are queried; nothing is printed.

    static xmlParserCtxt* newParser(MultiStatus* reader)
    {
        xmlSAXHandler events{};
        events.initialized = XML_SAX2_MAGIC;
        events.startElementNs = onStart;
        events.endElementNs = onEnd;
        events.characters = onCharacters;
        events.cdataBlock = onCharacters;
        events.internalSubset = onDocumentType;
        events.serror = onFault;
        xmlInitParser();
        xmlParserCtxt* const parser = xmlCreatePushParserCtxt(&events, reader, nullptr, 0, nullptr);
        if (!parser)
            throw std::bad_alloc();
        xmlCtxtUseOptions(parser, XML_PARSE_NONET);
        return parser;
    }
};

MultiStatus::MultiStatus(const Address& address, std::function<void(DavItem&&)> take)
    : m_address(address), m_take(std::move(take)), m_parser(Events::newParser(this), xmlFreeParserCtxt)
{
}

MultiStatus::~MultiStatus() = default;

void MultiStatus::fail(std::string why)
{
    if (m_trouble.empty())
        m_trouble = std::move(why);
    xmlStopParser(m_parser.get());
}

DriveResult MultiStatus::result() const
{
    return m_trouble.empty() ? DriveResult() : DriveResult{CloudErrorState::BadAnswer, m_trouble};
}

DriveResult MultiStatus::add(const QByteArray& piece)
{
    m_bytes += piece.size();
    if (m_bytes > kMostBytes)
        fail("the listing is larger than " + std::to_string(kMostBytes >> 20) + " MB");
    if (m_trouble.empty())
        xmlParseChunk(m_parser.get(), piece.constData(), int(piece.size()), 0);
    if (m_trouble.empty() && !m_parser->wellFormed) {
        const xmlError* const error = xmlCtxtGetLastError(m_parser.get());
        const QByteArray why = error ? QByteArray(error->message).trimmed().left(100) : QByteArray();
        fail("the answer isn't well-formed XML: " + why.toStdString() + " in line " +
             std::to_string(error ? error->line : 0));
    }
    return result();
}

DriveResult MultiStatus::end()
{
    if (!m_isMultiStatus || !m_path.empty())
        fail("the WebDAV listing in the answer is incomplete");
    return result();
}

void MultiStatus::startElement(QByteArrayView name, QByteArrayView space)
{
    if (m_path.empty() && !(name == "multistatus" && space == "DAV:"))
        return fail("the answer is not a WebDAV listing");
    m_isMultiStatus = true;
    m_text.clear();
    m_path.push_back(name);
    if (m_path.size() > kDeepest)
        return fail("the answer is nested without measure");
    if (name == "response" && m_path.size() == 2) {
        m_item = {};
        m_reference.clear();
        m_status = 0;
    } else if (name == "propstat" && m_path.size() == 3) {
        m_candidate = m_item;
        m_partStatus = 0;
    } else if (name == "collection" &&
               std::find(m_path.begin(), m_path.end(), QByteArrayView("resourcetype")) != m_path.end()) {
        m_candidate.entry.isFolder = true;
    } else if (name == "lockentry") {
        m_candidate.properties[QStringLiteral("supportedlock")] = QStringLiteral("yes");
    }
}

void MultiStatus::addText(QByteArrayView text)
{
    m_text.append(text.data(), size_t(text.size()));
    if (m_text.size() > kLongestText)
        fail("a value in the answer is longer than all measure");
}

void MultiStatus::endElement(QByteArrayView name)
{
    m_path.pop_back();
    const size_t depth = m_path.size();
    if (depth == 1 && name == "response") {
        endResponse();
    } else if (depth == 2 && name == "href") {
        m_reference = m_text;
    } else if (depth == 2 && name == "status") {
        m_status = statusOf(m_text);
    } else if (depth == 3 && name == "status") {
        m_partStatus = statusOf(m_text);
    } else if (depth == 2 && name == "propstat") {
        if (m_partStatus == 200)
            m_item = std::move(m_candidate);
    } else if (depth >= 4 && m_path[2] == "propstat") {
        endProperty(depth >= 5 && name == "href" ? m_path.back() : name);
    }
    m_text.clear();
}

void MultiStatus::endProperty(QByteArrayView name)
{
    const QByteArrayView text = QByteArrayView(m_text).trimmed();
    DriveEntry& entry = m_candidate.entry;
    if (text.isEmpty())
        return;
    if (name == "getcontentlength") {
        entry.size = text.toULongLong();
    } else if (name == "getetag") {
        entry.etag.assign(text.data(), size_t(text.size()));
    } else if (name == "getlastmodified") {
        if (m_timeText != m_text) {
            m_timeText = m_text;
            m_time = timeOf(m_text);
        }
        entry.modified = m_time;
    } else if (name == "creator-displayname" || name == "owner-display-name") {
        entry.modifiedBy.assign(text.data(), size_t(text.size()));
    } else if (const QString key = QString::fromUtf8(name); !m_candidate.properties.contains(key)) {
        // If there are several locks, the first one counts.
        m_candidate.properties[key] = QString::fromUtf8(text);
    }
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
