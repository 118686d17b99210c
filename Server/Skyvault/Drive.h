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

/// A file or folder as the server tells of it.
struct DriveEntry
{
    /// From the root of the drive, decoded, UTF-8, with slashes between the names: "/parts/wheel.vlra". A
    /// folder ends without a slash, and the root is "/". It is what SkyvaultNodeData::id gives.
    std::string path;
    bool isFolder = false;
    std::uint64_t size = 0;
    /// As the server gave it, with quotes and a leading W/ if it has them; empty where it gives none.
    std::string etag;
    std::chrono::system_clock::time_point modified{};
    std::string modifiedBy; ///< The user's name, where the server tells.
};

/// What is known of one trait of a server. As a bool, what isn't known does not hold.
class Trait
{
public:
    Trait() = default;
    Trait(bool holds) : m_holds(holds) {}
    operator bool() const { return m_holds.value_or(false); }
    bool isKnown() const { return m_holds.has_value(); }
    /// Not known not to.
    bool mayHold() const { return m_holds.value_or(true); }

private:
    std::optional<bool> m_holds;
};

/// What a server was found to do. Trust no server's word for it: all of it is probed. What was disturbed
/// while it was tried is not known, and tried again by the next save or sign-in.
struct DriveTraits
{
    std::string server; ///< As it names itself.
    /// LOCK works and leaves the ETag as it is, and a PUT without the token is refused.
    Trait locks;
    Trait refusesExisting;   ///< `If-None-Match: *`.
    Trait refusesStale;      ///< A stale `If-Match`.
    Trait weakEtags;         ///< In the first second, so that a right `If-Match` may be refused.
    Trait keepsOldOnBreak;   ///< A PUT that breaks off leaves the old content.
    Trait movesOntoExisting; ///< MOVE with Overwrite replaces, and never loses the target.
    Trait etagAfterPut;      ///< In the answer to a PUT.
    Trait etagFromPropfind;
    Trait etagsDifferInOneTick;            ///< Of two contents of equal size.
    std::chrono::milliseconds etagTick{0}; ///< How long they may be the same, if they don't.
    Trait properties;                      ///< PROPPATCH keeps dead properties.
    // By the server's capabilities, which it is asked for at each sign-in.
    bool checksums = false;
    bool chunkedUpload = false;
    bool versions = false;
    std::chrono::system_clock::time_point probed{}; ///< The epoch until all of it is known.

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
    /// Whether it was found that another's change can't be told from one's own.
    bool isUnsafe() const { return locks.isKnown() && refusesStale.isKnown() && !locks && !refusesStale; }
};

/// What a file is written over.
struct DriveUpload
{
    std::string path;   ///< Of the file on the drive; its folder exists.
    std::string source; ///< The local file, UTF-8.
    /// The ETag of the version that the local file goes back to; empty for a file that must not exist yet.
    std::optional<std::string> known;
    /// With neither `known` nor this, an existing file is refused as Changed. With it, what is there is kept
    /// first: as a version where the server has versions, else as a copy beside it, "name (user date)".
    bool keepOther = false;
};

/// A drive on a server. All functions wait for the answer, at most a minute without any byte unless told
/// otherwise; they may be called on any one thread at a time, and several drives may be in use on several.
/// Every path is one of DriveEntry::path. No function repeats a request blindly whose answer was lost: it
/// looks first.
class Drive
{
public:
    virtual ~Drive() = default;

    /// How long the functions wait while no byte comes or goes, from their next request on. Any thread may
    /// call this at any time.
    virtual void patience(std::chrono::milliseconds) {}
    /// A folder of this machine, UTF-8, for notes of what is made on the server for a while: what a killed
    /// program left there is removed by the next `connect`. It is made when there is something to note.
    virtual void notesIn(const std::string&) {}

    /// Asks who the user is to the server, and probes it in a folder of its own, which goes again, for what
    /// `known` traits that are younger than 30 days leave open.
    [[nodiscard]] virtual DriveResult connect(const std::optional<DriveTraits>& known,
                                              const DriveWatch& watch) = 0;
    virtual const DriveTraits& traits() const = 0;
    /// As they are now: an access token may have been renewed.
    virtual const DriveCredentials& credentials() const = 0;
    /// For messages: the name that the server gives the user, else that of the credentials.
    virtual std::string userName() const = 0;
    /// The web page where the user sees the drive; the drive's address if none is known.
    virtual std::string webAddress() const = 0;

    /// The content of a folder, sorted by nothing; names that no local file could have are left out.
    [[nodiscard]] virtual DriveResult list(const std::string& folder, std::vector<DriveEntry>& entries,
                                           const DriveWatch& watch) = 0;
    /// One file or folder.
    [[nodiscard]] virtual DriveResult find(const std::string& path, DriveEntry& entry) = 0;
    /// Makes a folder with those above it, as far as they are missing.
    [[nodiscard]] virtual DriveResult makeFolders(const std::string& path) = 0;

    /// Writes a file under a lock, by the road that the traits allow, and reads size and ETag back: `entry`
    /// is what the server keeps then. On Changed, `entry` is the other's version. Nothing half-written stays.
    [[nodiscard]] virtual DriveResult upload(const DriveUpload& upload, DriveEntry& entry,
                                             const DriveWatch& watch) = 0;
    /// Reads a file into a local one, which is replaced when all of it is there.
    [[nodiscard]] virtual DriveResult download(const std::string& path, const std::string& target,
                                               DriveEntry& entry, const DriveWatch& watch) = 0;

    /// A remark on a file: in the server's comments, else as a property of the file; Unsupported if neither
    /// works. Where versions are counted by each change, the file has another ETag afterwards. `id` becomes
    /// what the server knows the comment by, empty where it doesn't say.
    [[nodiscard]] virtual DriveResult comment(const std::string& path, const std::string& text,
                                              std::string& id) = 0;
};

/// The ways to sign in that a server offers.
struct DriveOffer
{
    std::string address;      ///< Of the drive: https, or http on this machine alone.
    bool password = false;    ///< Basic or Digest.
    bool browserFlow = false; ///< The server's own login page, which gives a password for this program.
    bool oauth2 = false;      ///< By the server's metadata.
};

/// What the transport's library gives. Its one object is found by `quilletDriveTransport` (extern "C").
class DriveTransport
{
public:
    virtual ~DriveTransport() = default;

    /// Finds the drive at an address as a person types it: "cloud.example.org" or a full one.
    [[nodiscard]] virtual DriveResult discover(const std::string& typed, DriveOffer& offer) = 0;
    /// Signs in by the browser: calls `open` with an address, and waits until the person has finished there,
    /// at most 20 minutes, or `watch` cancels.
    [[nodiscard]] virtual DriveResult signInByBrowser(const DriveOffer& offer,
                                                      const std::function<bool(const std::string&)>& open,
                                                      DriveCredentials& credentials,
                                                      const DriveWatch& watch) = 0;
    [[nodiscard]] virtual std::unique_ptr<Drive> drive(const std::string& address,
                                                       const DriveCredentials& credentials) = 0;

    /// The desktop's keyring. Where none runs, they answer with CacheFailed and say so. `key` is the drive's
    /// address.
    [[nodiscard]] virtual DriveResult keep(const std::string& key, const DriveCredentials& credentials) = 0;
    [[nodiscard]] virtual DriveResult kept(const std::string& key, DriveCredentials& credentials) = 0;
    [[nodiscard]] virtual DriveResult forget(const std::string& key) = 0;
};

} // namespace Vs::Cloud
