#pragma once

#include "Server/Network/Request.h"

#include <QFile>

#include <cstddef>

namespace Vs::Network {

/// What a request sends: bytes that are held, or a part of a file, which is read as it is sent.
class Body
{
public:
    explicit Body(const Request& request);

    /// Empty as long as it can be read. A file that another program cuts short while it is sent can't: less
    /// would be kept than was announced.
    const std::string& trouble() const { return m_trouble; }
    qint64 size() const { return m_size; }
    /// Whether all has been read that is to be sent before the connection is cut.
    bool isAtCut() const { return m_cut && m_position >= *m_cut; }
    /// How much was read into `data`; 0 at its end, at the cut, and in trouble.
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
