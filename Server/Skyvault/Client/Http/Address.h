#pragma once

#include <QByteArray>
#include <QUrl>

#include <optional>
#include <string>

namespace Vs::Cloud {

/// Whether what goes there is protected: https, or this machine itself, which nobody listens to.
bool isProtected(const QUrl& url);
/// Whether both are the same server to whoever sends secrets: host, port and protocol.
bool isSameOrigin(const QUrl& one, const QUrl& other);
/// "host" or "host:port", for messages.
std::string hostOf(const QUrl& url);
/// Whether a file of this system could be called so, without leading anywhere else. UTF-8.
bool isFileName(const QByteArray& name);

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
    std::optional<std::string> pathOf(const QByteArray& reference) const;

private:
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
