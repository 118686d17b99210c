#pragma once

#include "Server/Skyvault/Client/Dav/Session.h"

#include <string>

namespace Vs::Cloud {

/// Reads a file of the drive and compares it with a local one byte by byte; `etag` is that of the content
/// read.
DriveResult hasContent(Session& session, const std::string& path, const std::string& local,
                       std::string& etag);

/// The checksum of a local file in hexadecimal; empty if it can't be read.
QByteArray sha1Of(const std::string& local);

} // namespace Vs::Cloud
