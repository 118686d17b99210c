#pragma once

#include "Server/Skyvault/Client/Dav/Address.h"
#include "Server/Skyvault/Client/Dav/Leftovers.h"
#include "Server/Skyvault/Client/Dav/MultiStatus.h"
#include "Server/Skyvault/Client/Networking.h"

#include <string>
#include <vector>

namespace Vs::Cloud {

/// What a server claims to offer beyond WebDAV.
struct Service
{
    QUrl web;      ///< The page for people.
    QUrl uploads;  ///< Where the parts of a file are collected.
    QUrl comments; ///< With a trailing slash.
    bool chunkedUpload = false, versions = false, checksums = false, hasComments = false;
    bool foldersHaveEtags = false; ///< Which change with anything inside.
};

/// A drive as its parts see it, with the basic WebDAV requests. Results have their complete detail.
struct Session
{
    Session(const QUrl& root, DriveCredentials credentials);

    Http http;
    Address address;
    DriveTraits traits;
    Service service;
    Leftovers leftovers;
    std::string user; ///< The user's name on the server.

    /// "Reading "/a.vlra" on host".
    std::string action(const char* doing, const std::string& path) const;

    /// A request on a path, with a response of any status.
    Answer ask(const char* method, const std::string& path, Headers headers = {}, const QByteArray& body = {},
               const DriveWatch& watch = {});

    /// One resource with additional properties. An ETag that the server reports only elsewhere is requested
    /// there.
    DriveResult look(const std::string& path, DavItem& item, const QByteArray& more = {});
    DriveResult find(const std::string& path, DriveEntry& entry);
    enum class Names { OfUsers, All }; ///< Without or with those that exist only temporarily.
    /// Sets `itself` to the folder's own entry.
    DriveResult list(const std::string& folder, std::vector<DriveEntry>& entries, const DriveWatch& watch,
                     Names names = Names::OfUsers, DriveEntry* itself = nullptr);
    DriveResult makeFolders(const std::string& path);
    /// One folder; succeeds if it exists already.
    DriveResult makeFolder(const std::string& path);
    /// Also succeeds if there is nothing.
    DriveResult remove(const std::string& path, Headers headers = {});
    /// Removes what killed programs created temporarily, as far as it was noted.
    void removeLeftovers();
};

/// The prefix of files that exist only temporarily. Listings omit them.
inline std::string ownPrefix()
{
    return ".quillet-";
}

/// The name that a file's new version is uploaded to before it is moved. It is the same for each save, so
/// that the next save cleans up what a killed or lost one left: shared by everybody under a lock, otherwise
/// specific to this process.
std::string hiddenNameOf(const std::string& path, bool isLocked);

/// Whether the server may have carried out a request without saying so. A gateway's response says nothing
/// about the server behind it.
bool mayBeDone(const Answer& answer);

/// For a request that replaces something other than its own target: only while that has this ETag.
Header onlyOver(const QByteArray& replaced, const std::string& etag);

/// Without W/, the form in which ETags are compared.
std::string strongPart(const std::string& etag);

} // namespace Vs::Cloud
