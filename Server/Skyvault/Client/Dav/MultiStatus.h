#pragma once

#include "Server/Skyvault/Client/Dav/Address.h"
#include "Server/Skyvault/Client/Networking.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

struct _xmlParserCtxt;

namespace Vs::Cloud {

/// One resource in a PROPFIND response.
struct DavItem
{
    DriveEntry entry;
    bool etagFromListing = false; ///< As opposed to by a separate request.
    /// Further properties by local name, as text. For a lock: "locktoken" and "owner"; "supportedlock" is
    /// present if it has an entry.
    std::map<QString, QString> properties;
};

/// Parses a response of status 207 while it arrives, without storing it. One that isn't a multi-status, is
/// truncated, or has a document type is a BadAnswer; entries with invalid file names or on other hosts are
/// skipped.
class MultiStatus
{
public:
    MultiStatus(const Address& address, std::function<void(DavItem&&)> take);
    ~MultiStatus();
    MultiStatus(const MultiStatus&) = delete;
    MultiStatus& operator=(const MultiStatus&) = delete;

    DriveResult add(const QByteArray& piece);
    DriveResult end();

private:
    struct Events; ///< The parser's callbacks.

    void startElement(QByteArrayView name, QByteArrayView space);
    void endElement(QByteArrayView name);
    void addText(QByteArrayView text);
    void endProperty(QByteArrayView name);
    void endResponse();
    /// Ends the parsing.
    void fail(std::string why);
    DriveResult result() const;

    const Address& m_address;
    const std::function<void(DavItem&&)> m_take;
    const std::unique_ptr<_xmlParserCtxt, void (*)(_xmlParserCtxt*)> m_parser;
    qint64 m_bytes = 0;
    std::vector<QByteArrayView> m_path; ///< Local names of the open elements, owned by the parser.
    std::string m_text, m_reference;
    std::string m_timeText; ///< The last one and its value: files uploaded together have the same.
    std::chrono::system_clock::time_point m_time{};
    DavItem m_item;      ///< Of the current response element.
    DavItem m_candidate; ///< Of its part whose status follows later.
    int m_status = 0, m_partStatus = 0;
    bool m_isMultiStatus = false;
    std::string m_trouble;
};

/// The PROPFIND body that requests the properties of DavItem.
QByteArray propertiesWanted(const QByteArray& more = {});

/// Parses "Sun, 06 Nov 1994 08:49:37 GMT"; the epoch for anything else.
std::chrono::system_clock::time_point timeOf(const std::string& text);

} // namespace Vs::Cloud
