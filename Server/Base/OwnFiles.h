#pragma once

#include <boost/filesystem/path.hpp>

#include <optional>
#include <string>
#include <string_view>

/// Files and folders that the program keeps for its user: what was typed, where somebody works and what the
/// models look like is private, and nobody else may replace these files. Files that a user saves have the
/// permissions that the user wants and are not written here. Any thread.
namespace Vs::OwnFiles {

using Path = boost::filesystem::path;

/// Makes the folder, and those above it that are missing, for this user alone (0700). An existing one that
/// belongs to the user is closed to others, unless a link leads there. Throws Vs::Exception that names the
/// folder and the cause.
void makeFolder(const Path& folder);

/// Whether it is a folder and not a link, belongs to this user, and is closed to all others.
bool isOwnFolder(const Path& folder);

/// Replaces the file as a whole, for this user alone (0600), or leaves the old one. Where a link stands it is
/// the link that is replaced. Throws Vs::Exception that names file and cause.
void write(const Path& file, std::string_view content);

/// What the file holds; nothing if there is none, or if it is a link, isn't a regular file, or isn't this
/// user's.
std::optional<std::string> read(const Path& file);

/// Why somebody other than this user and root could replace the file or folder, as in "/a/b can be written by
/// others"; empty if nobody can. Checks the file and all folders on the way to it.
std::string othersMayChange(const Path& path);

} // namespace Vs::OwnFiles
