#pragma once

#include "Server/Skyvault/Client/Dav/Session.h"

#include <string>

namespace Vs::Cloud {

/// The local file that a save uploads, in its state at the start of the save.
class Source
{
public:
    explicit Source(std::string file) : m_file(std::move(file)) {}

    /// Determines its size; CacheFailed if it can't be read.
    DriveResult open(const std::string& action);
    /// Computes its checksum, for servers that store one.
    void addSum();

    const std::string& file() const { return m_file; }
    qint64 size() const { return m_size; }
    const QByteArray& sum() const { return m_sum; } ///< SHA-1, in hexadecimal; empty if not computed.

    /// Uploads all of it, with its checksum if the server stores one.
    Answer putTo(Session& session, const std::string& path, Headers headers, const DriveWatch& watch) const;

private:
    const std::string m_file;
    qint64 m_size = 0;
    QByteArray m_sum;
};

} // namespace Vs::Cloud
