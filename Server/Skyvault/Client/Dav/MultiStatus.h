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

/// One resource of an answer to PROPFIND.
struct DavItem
{
    DriveEntry entry;
    bool etagFromListing = false; ///< Rather than by another request.
    /// Properties beside those of the entry, by their local names, as text. Of a lock: "locktoken" and
    /// "owner"; "supportedlock" is there if it holds an entry.
    std::map<QString, QString> properties;
};

/// Reads an answer of status 207 while it comes, and keeps nothing of it. What is no multi-status, is cut
/// short, or has a document type is a BadAnswer; entries with names that no file could have, and of other
/// hosts, are left out.
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
    struct Events; ///< What the parser calls.

    void startElement(QByteArrayView name, QByteArrayView space);
    void endElement(QByteArrayView name);
    void addText(QByteArrayView text);
    void endProperty(QByteArrayView name);
    void endResponse();
    /// Ends the reading.
    void fail(std::string why);
    DriveResult result() const;

    const Address& m_address;
    const std::function<void(DavItem&&)> m_take;
    const std::unique_ptr<_xmlParserCtxt, void (*)(_xmlParserCtxt*)> m_parser;
    qint64 m_bytes = 0;
    std::vector<QByteArrayView> m_path; ///< Local names of the open elements, which the parser keeps.
    std::string m_text, m_reference;
    std::string m_timeText; ///< The last one, and what it says: files that came together have the same.
    std::chrono::system_clock::time_point m_time{};
    DavItem m_item;      ///< Of the response that is read.
    DavItem m_candidate; ///< Of its part whose status comes later.
    int m_status = 0, m_partStatus = 0;
    bool m_isMultiStatus = false;
    std::string m_trouble;
};

/// The body of a PROPFIND for the properties of DavItem.
QByteArray propertiesWanted(const QByteArray& more = {});

/// "Sun, 06 Nov 1994 08:49:37 GMT"; the epoch if it is something else.
std::chrono::system_clock::time_point timeOf(const std::string& text);

} // namespace Vs::Cloud
