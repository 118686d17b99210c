#pragma once

#include "Server/Itemhub/ItemStore.h"
#include "Server/Itemhub/Private/WorkFiles.h"

#include <boost/filesystem/path.hpp>

#include <functional>
#include <string>

/// Items' files on this machine; see ItemhubUtilities. All functions wait for the network, run on any
/// thread, and throw as ItemStore does, and Vs::Exception.
namespace Vs::Itemhub::Documents {

using Path = boost::filesystem::path;

/// Creates an item and the record of its file, which doesn't exist yet. `extension` includes the dot.
[[nodiscard]] Path addNewItem(ItemStore& store, const std::string& account, NewItem wanted,
                              const std::string& key, const std::string& extension,
                              const std::string& docType, const Watch& watch);

/// Downloads the newest version. `isOpen` says whether a document of the program has a file open, so that
/// it isn't replaced underneath it. The path is empty if there is no version yet.
[[nodiscard]] Path download(ItemStore& store, const std::string& account, const std::string& uri,
                            const std::function<bool(const Path&)>& isOpen, const Watch& watch);

/// Attaches a copy of a file to an item, and returns its address.
[[nodiscard]] std::string attach(ItemStore& store, std::int64_t item, const Path& file,
                                 const std::string& name, const std::string& docType, const Watch& watch);

/// The same for a snapshot, attached to the item of a working file.
[[nodiscard]] std::string attachSnapshot(ItemStore& store, const WorkFile& work, const Path& snapshot,
                                         const Watch& watch);

/// Removes what can be downloaded again and hasn't been used for a month: working files that match the
/// service's version, and contents no longer used by any working file. Doesn't throw.
void trim(const std::string& account);

/// A valid file name close to what a user typed.
[[nodiscard]] std::string fileName(const std::string& typed, const std::string& extension);

} // namespace Vs::Itemhub::Documents
