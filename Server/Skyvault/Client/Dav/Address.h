#pragma once

#include "Server/Skyvault/Client/Networking.h"

#include <QByteArray>
#include <QUrl>

#include <optional>
#include <string>

namespace Vs::Cloud {

/// Where a drive lies, and how its paths ("/parts/wheel.vlra", UTF-8) become addresses and come back.
class Address
{
public:
    explicit Address(QUrl root);

    /// Without a slash at its end.
    const QUrl& root() const { return m_root; }
    std::string host() const { return hostOf(m_root); }
    /// `folder` adds the slash that some servers want of one.
    QUrl of(const std::string& path, bool folder = false) const;
    /// Of what an answer refers to; empty for what lies elsewhere, or has a name that no file could have.
    std::optional<std::string> pathOf(QByteArrayView reference) const;

private:
    /// Of an address on this server, decoded.
    std::optional<QByteArrayList> namesIn(QByteArrayView reference) const;
    /// Of one that is written as it is meant.
    std::optional<std::string> pathOfPlain(QByteArrayView text) const;

    QUrl m_root;
    QByteArrayList m_names; ///< Those of the root's path, decoded.
};

/// What stands before the last slash: "/" for what lies in the root.
std::string parentOf(const std::string& path);
std::string nameOf(const std::string& path);
/// "/" and "name" make "/name".
std::string joined(const std::string& folder, const std::string& name);
/// Whether it is a path as DriveEntry::path says, with names that files may have.
bool isDrivePath(const std::string& path);

} // namespace Vs::Cloud
