#pragma once

#include "Server/Skyvault/Client/Dav/Address.h"
#include "Server/Skyvault/Client/Dav/Leftovers.h"
#include "Server/Skyvault/Client/Dav/MultiStatus.h"
#include "Server/Skyvault/Client/Networking.h"

#include <string>
#include <vector>

namespace Vs::Cloud {

/// What a server offers beside WebDAV, by its own word.
struct Service
{
    QUrl web;      ///< Of the page for people.
    QUrl uploads;  ///< Where parts of a file are collected.
    QUrl comments; ///< With a slash at its end.
    bool chunkedUpload = false, versions = false, checksums = false, hasComments = false;
    bool foldersHaveEtags = false; ///< Which change with all that lies in them.
};

/// A drive, as its parts see it, with the plain requests of WebDAV. Results have their whole detail.
struct Session
{
    Session(const QUrl& root, DriveCredentials credentials);

    Http http;
    Address address;
    DriveTraits traits;
    Service service;
    Leftovers leftovers;
    std::string user; ///< As the server knows the user.

    /// "Reading "/a.vlra" on host".
    std::string action(const char* doing, const std::string& path) const;

    /// A request about a path, with an answer of any status.
    Answer ask(const char* method, const std::string& path, Headers headers = {}, const QByteArray& body = {},
               const DriveWatch& watch = {});

    /// One resource with properties beside the usual ones. An ETag that the server tells elsewhere alone is
    /// asked for there.
    DriveResult look(const std::string& path, DavItem& item, const QByteArray& more = {});
    DriveResult find(const std::string& path, DriveEntry& entry);
    enum class Names { OfUsers, All }; ///< With those that are there while something is done, or without.
    /// `itself` becomes the folder's own entry.
    DriveResult list(const std::string& folder, std::vector<DriveEntry>& entries, const DriveWatch& watch,
                     Names names = Names::OfUsers, DriveEntry* itself = nullptr);
    DriveResult makeFolders(const std::string& path);
    /// One folder; fine if it is there already.
    DriveResult makeFolder(const std::string& path);
    /// Also fine if there is nothing.
    DriveResult remove(const std::string& path, Headers headers = {});
    /// What programs that were killed have made for a while, as far as it was noted.
    void removeLeftovers();
};

/// Of the names of files that are there only while something is done. Listings don't have them.
inline std::string ownPrefix()
{
    return ".quillet-";
}

/// Of what a file's new version is sent to before it is moved. It is the same for each save, so that what a
/// killed or a lost one left goes with the next: for those of all, under a lock, else for those of this
/// process.
std::string hiddenNameOf(const std::string& path, bool isLocked);

/// Whether the server may have done what it was asked, though it didn't say so. What a gateway says is no
/// word of the server behind it.
bool mayBeDone(const Answer& answer);

/// For a request that replaces something else than what it is about: only while that has this ETag.
Header onlyOver(const QByteArray& replaced, const std::string& etag);

/// Without W/, as ETags are compared.
std::string strongPart(const std::string& etag);

} // namespace Vs::Cloud
