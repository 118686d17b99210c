#pragma once

#include "Server/Network/Request.h"

#include <QFile>

#include <cstddef>

namespace Vs::Network {

/// The body of a request: bytes in memory, or a part of a file, which is read while it is sent.
class Body
{
public:
    explicit Body(const Request& request);

    /// Empty as long as it can be read. Reading fails if another program truncates the file while it is being
    /// sent: less would be stored than was announced.
    const std::string& trouble() const { return m_trouble; }
    qint64 size() const { return m_size; }
    /// Whether everything that should be sent before the connection is cut has been read.
    bool isAtCut() const { return m_cut && m_position >= *m_cut; }
    /// The number of bytes read into `data`; 0 at the end, at the cut, and on failure.
    size_t read(char* data, size_t most);
    bool seek(qint64 position);

private:
    QFile m_file;
    QByteArray m_bytes;
    qint64 m_offset = 0, m_size = 0, m_position = 0;
    std::optional<qint64> m_cut;
    std::string m_trouble;
};

} // namespace Vs::Network
