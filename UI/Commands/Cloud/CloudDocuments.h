#pragma once

#include <boost/filesystem/path.hpp>

namespace Vs {
class Document;
}

namespace Vu::Commands {

/// What connects open documents with the cloud drive, besides the commands: a document whose path lies in the
/// cache is known to be of the drive, one that had waited learns its identifier when it has arrived, and a
/// save that was refused for another's version stays as a notification. A file of the cache is shown by its
/// place on the drive, one of another account by the drive's name alone (FilePlace). Main thread only.
class CloudDocuments
{
public:
    /// At the start of the add-in, and at its end.
    static void install();
    static void uninstall();

    /// Whether a document is one of the drive: it has its identifier, or waits for it in the cache while the
    /// drive can't be reached.
    [[nodiscard]] static bool isOfDrive(const Vs::Document& document);

    /// Saves what was refused as a new file beside the other's on the drive; an open document goes along.
    /// What fails is told.
    static void saveConflictCopy(const boost::filesystem::path& file);
};

} // namespace Vu::Commands
