#pragma once

#include "Server/Itemhub/ItemStore.h"
#include "Server/Itemhub/Private/WorkFiles.h"

#include <boost/filesystem/path.hpp>

#include <functional>
#include <string>

/// Items' files on this machine; see ItemhubUtilities. All of it waits for the network, runs on any thread,
/// and throws as ItemStore does and Vs::Exception.
namespace Vs::Itemhub::Documents {

using Path = boost::filesystem::path;

/// Makes an item, and the record of its file, which isn't there yet. `extension` has its dot.
[[nodiscard]] Path addNewItem(ItemStore& store, const std::string& account, NewItem wanted,
                              const std::string& key, const std::string& extension,
                              const std::string& docType, const Watch& watch);

/// Brings the newest version here. `isOpen` says of a file whether a document of the program shows it, so
/// that it isn't replaced below it. The path is empty if there is no version yet.
[[nodiscard]] Path download(ItemStore& store, const std::string& account, const std::string& uri,
                            const std::function<bool(const Path&)>& isOpen, const Watch& watch);

/// Attaches a copy of a file to an item, and gives its address.
[[nodiscard]] std::string attach(ItemStore& store, std::int64_t item, const Path& file,
                                 const std::string& name, const std::string& docType, const Watch& watch);

/// The same of a snapshot, to the item of a working file.
[[nodiscard]] std::string attachSnapshot(ItemStore& store, const WorkFile& work, const Path& snapshot,
                                         const Watch& watch);

/// Removes what can be downloaded again and was not used for a month: working files that the service has as
/// they are, and contents that no working file has any more. Doesn't throw.
void trim(const std::string& account);

/// A name that a file may have, near to what a person typed.
[[nodiscard]] std::string fileName(const std::string& typed, const std::string& extension);

} // namespace Vs::Itemhub::Documents
