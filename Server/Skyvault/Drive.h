#pragma once

#include "Server/Network/Credentials.h"
#include "Server/Network/Result.h"
#include "Server/Network/Watch.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Vs::Cloud {

using DriveResult = Network::Result;
using DriveWatch = Network::Watch;
using DriveCredentials = Network::Credentials;

/// A file or folder as reported by the server.
struct DriveEntry
{
    /// From the root of the drive, decoded, UTF-8, with slashes between the names: "/parts/wheel.vlra". A
    /// folder has no trailing slash, and the root is "/". It is the value of SkyvaultNodeData::id.
    std::string path;
    bool isFolder = false;
    std::uint64_t size = 0;
    /// As sent by the server, with quotes and a leading W/ if it has them; empty if it sends none.
    std::string etag;
    std::chrono::system_clock::time_point modified{};
    std::string modifiedBy; ///< The user's name, if the server reports it.
};

/// What is known about one trait of a server. Converted to bool, unknown counts as false.
class Trait
{
public:
    Trait() = default;
    Trait(bool holds) : m_holds(holds) {}
    operator bool() const { return m_holds.value_or(false); }
    bool isKnown() const { return m_holds.has_value(); }
    /// Not known to be false.
    bool mayHold() const { return m_holds.value_or(true); }

private:
    std::optional<bool> m_holds;
};

/// How a server was found to behave. No server's own claims are trusted: everything is probed. A trait whose
/// test was disturbed is unknown, and is tested again by the next save or sign-in.
struct DriveTraits
{
    std::string server; ///< Its own name.
    /// LOCK works and doesn't change the ETag, and a PUT without the token is refused.
    Trait locks;
    Trait refusesExisting;   ///< `If-None-Match: *`.
    Trait refusesStale;      ///< A stale `If-Match`.
    Trait weakEtags;         ///< In the first second, so that a correct `If-Match` may be refused.
    Trait keepsOldOnBreak;   ///< An interrupted PUT leaves the old content.
    Trait movesOntoExisting; ///< MOVE with Overwrite replaces, and never loses the target.
    Trait etagAfterPut;      ///< In the answer to a PUT.
    Trait etagFromPropfind;
    Trait etagsDifferInOneTick;            ///< Of two contents of equal size.
    std::chrono::milliseconds etagTick{0}; ///< How long they may stay the same if not.
    Trait properties;                      ///< PROPPATCH keeps dead properties.
    // From the server's capabilities, requested at each sign-in.
    bool checksums = false;
    bool chunkedUpload = false;
    bool versions = false;
    std::chrono::system_clock::time_point probed{}; ///< The epoch until everything is known.

    bool isKnown() const
    {
        for (const Trait* trait :
             {&locks, &refusesExisting, &refusesStale, &weakEtags, &keepsOldOnBreak, &movesOntoExisting,
              &etagAfterPut, &etagFromPropfind, &etagsDifferInOneTick, &properties}) {
            if (!trait->isKnown())
                return false;
        }
        return true;
    }
    /// Whether it was found that somebody else's change can't be told from one's own.
    bool isUnsafe() const { return locks.isKnown() && refusesStale.isKnown() && !locks && !refusesStale; }
};

/// A save to the drive.
struct DriveUpload
{
    std::string path;   ///< Of the file on the drive; its folder exists.
    std::string source; ///< The local file, UTF-8.
    /// The ETag of the version that the local file is based on; empty for a file that must not exist yet.
    std::optional<std::string> known;
    /// With neither `known` nor this, an existing file is refused as Changed. With it, the existing file is
    /// preserved first: as a version if the server has versions, otherwise as a copy beside it, "name (user
    /// date)".
    bool keepOther = false;
};

/// A drive on a server. Every function waits for the response, for at most a minute without receiving a byte
/// unless configured otherwise; only one thread at a time may use a drive, but several drives may be used on
/// several threads. Every path is one as described at DriveEntry::path. No function blindly retries a request
/// whose response was lost: it checks first.
class Drive
{
public:
    virtual ~Drive() = default;

    /// How long the functions wait without a byte transferred, from their next request on. Any thread may
    /// call this at any time.
    virtual void patience(std::chrono::milliseconds) {}
    /// A local folder, UTF-8, for notes of what is temporarily created on the server: what a killed program
    /// left there is removed by the next `connect`. The folder is created when there is something to note.
    virtual void notesIn(const std::string&) {}

    /// Asks the server who the user is, and probes it in a temporary folder for whatever `known` traits of
    /// less than 30 days ago leave open.
    [[nodiscard]] virtual DriveResult connect(const std::optional<DriveTraits>& known,
                                              const DriveWatch& watch) = 0;
    virtual const DriveTraits& traits() const = 0;
    /// The current credentials: an access token may have been renewed.
    virtual const DriveCredentials& credentials() const = 0;
    /// For messages: the user's name on the server, otherwise that of the credentials.
    virtual std::string userName() const = 0;
    /// The web page on which the user sees the drive; the drive's address if none is known.
    virtual std::string webAddress() const = 0;

    /// The content of a folder, unsorted; names that aren't valid file names locally are skipped.
    [[nodiscard]] virtual DriveResult list(const std::string& folder, std::vector<DriveEntry>& entries,
                                           const DriveWatch& watch) = 0;
    /// One file or folder.
    [[nodiscard]] virtual DriveResult find(const std::string& path, DriveEntry& entry) = 0;
    /// Creates a folder and its missing parents.
    [[nodiscard]] virtual DriveResult makeFolders(const std::string& path) = 0;

    /// Writes a file under a lock, in the way that the traits allow, and reads size and ETag back: `entry` is
    /// what the server then has. On Changed, `entry` is the other version. Nothing half-written remains.
    [[nodiscard]] virtual DriveResult upload(const DriveUpload& upload, DriveEntry& entry,
                                             const DriveWatch& watch) = 0;
    /// Downloads to a local file, which is replaced once everything has arrived.
    [[nodiscard]] virtual DriveResult download(const std::string& path, const std::string& target,
                                               DriveEntry& entry, const DriveWatch& watch) = 0;

    /// A remark on a file: in the server's comments, otherwise as a property of the file; Unsupported if
    /// neither works. If the server counts every change as a version, the file's ETag changes. `id` becomes
    /// the server's identifier of the comment, empty if it doesn't return one.
    [[nodiscard]] virtual DriveResult comment(const std::string& path, const std::string& text,
                                              std::string& id) = 0;
};

/// The sign-in methods that a server offers.
struct DriveOffer
{
    std::string address;      ///< Of the drive: https, or http on this machine alone.
    bool password = false;    ///< Basic or Digest.
    bool browserFlow = false; ///< The server's own login page, which issues a password for this program.
    bool oauth2 = false;      ///< According to the server's metadata.
};

/// The interface of the transport's library. `quilletDriveTransport` (extern "C") returns its single object.
class DriveTransport
{
public:
    virtual ~DriveTransport() = default;

    /// Finds the drive at an address as typed by a user: "cloud.example.org" or a complete one.
    [[nodiscard]] virtual DriveResult discover(const std::string& typed, DriveOffer& offer) = 0;
    /// Signs in through the browser: calls `open` with an address, and waits until the user has finished
    /// there, for at most 20 minutes or until `watch` cancels.
    [[nodiscard]] virtual DriveResult signInByBrowser(const DriveOffer& offer,
                                                      const std::function<bool(const std::string&)>& open,
                                                      DriveCredentials& credentials,
                                                      const DriveWatch& watch) = 0;
    [[nodiscard]] virtual std::unique_ptr<Drive> drive(const std::string& address,
                                                       const DriveCredentials& credentials) = 0;

    /// The desktop's keyring. If none is running, they return CacheFailed and say so. `key` is the drive's
    /// address.
    [[nodiscard]] virtual DriveResult keep(const std::string& key, const DriveCredentials& credentials) = 0;
    [[nodiscard]] virtual DriveResult kept(const std::string& key, DriveCredentials& credentials) = 0;
    [[nodiscard]] virtual DriveResult forget(const std::string& key) = 0;
};

} // namespace Vs::Cloud
