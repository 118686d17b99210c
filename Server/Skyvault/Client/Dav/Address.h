#pragma once

#include "Server/Skyvault/Client/Networking.h"

#include <QByteArray>
#include <QUrl>

#include <optional>
#include <string>

namespace Vs::Cloud {

/// Where a drive is, and how its paths ("/parts/wheel.vlra", UTF-8) are converted to addresses and back.
class Address
{
public:
    explicit Address(QUrl root);

    /// Without a trailing slash.
    const QUrl& root() const { return m_root; }
    std::string host() const { return hostOf(m_root); }
    /// `folder` adds the slash that some servers require for folders.
    QUrl of(const std::string& path, bool folder = false) const;
    /// The path of a reference in a response; empty if it is elsewhere or has an invalid file name.
    std::optional<std::string> pathOf(QByteArrayView reference) const;

private:
    /// The decoded names of an address on this server.
    std::optional<QByteArrayList> namesIn(QByteArrayView reference) const;
    /// The path of a reference that needs no decoding.
    std::optional<std::string> pathOfPlain(QByteArrayView text) const;

    QUrl m_root;
    QByteArrayList m_names; ///< The decoded names of the root's path.
};

/// Everything before the last slash: "/" for what is in the root.
std::string parentOf(const std::string& path);
std::string nameOf(const std::string& path);
/// "/" and "name" make "/name".
std::string joined(const std::string& folder, const std::string& name);
/// Whether it is a path as described at DriveEntry::path, with valid file names.
bool isDrivePath(const std::string& path);

} // namespace Vs::Cloud
