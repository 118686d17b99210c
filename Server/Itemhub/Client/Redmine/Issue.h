#pragma once

#include "Server/Itemhub/Client/JsonReader.h"
#include "Server/Itemhub/ItemStore.h"

#include <functional>
#include <string>
#include <vector>

namespace Vs::Itemhub::Redmine {

/// What we know about a file and the tracker doesn't. It is kept in the file's description there, where
/// people can read it, too.
struct FileNote
{
    std::string docType;
    std::int64_t madeFrom = 0;
    std::string sha256; ///< Empty for a file that somebody attached on the tracker's page.
};

[[nodiscard]] std::string textOf(const FileNote& note);
/// What a description says; if it isn't one of ours, only what the file name reveals.
[[nodiscard]] FileNote noteOf(const std::string& description, const std::string& fileName);

/// A file of an issue. The tracker never changes files: those of the same name are versions of each
/// other.
struct File
{
    std::int64_t id = 0;
    std::string name, author, createdAt, label;
    std::string attachedAt;  ///< It may have been uploaded earlier.
    std::int64_t change = 0; ///< The number of the change it came with; 0 if it came with the issue.
    std::uint64_t size = 0;
    FileNote note;
};

/// An issue with everything we need from it.
struct Issue
{
    Web::ItemValues values;
    std::vector<File> files; ///< In order of arrival, which isn't the order of their numbers.
    std::vector<Web::Comment> comments;
    /// The files of one name, oldest version first.
    [[nodiscard]] std::vector<File> versionsOf(const std::string& name) const;
    /// The name of the file with this number; NotFound if there is none.
    [[nodiscard]] const std::string& nameOf(std::int64_t file, const std::string& action) const;
};

/// The display name of a person on the tracker.
using NameOf = std::function<std::string(const JsonReader& person)>;

[[nodiscard]] Web::ItemValues itemOf(const JsonReader& issue, const NameOf& nameOf);
[[nodiscard]] Issue issueOf(const JsonReader& issue, const NameOf& nameOf);
[[nodiscard]] Web::Version versionOf(const File& file, std::int64_t number);

/// Attachment numbers are unique across the tracker, but it doesn't say which issue a file belongs to:
/// our identifiers encode both.
[[nodiscard]] std::int64_t attachmentId(std::int64_t issue, std::int64_t file);
[[nodiscard]] std::int64_t issueOfAttachment(std::int64_t attachment);
[[nodiscard]] std::int64_t fileOfAttachment(std::int64_t attachment);

} // namespace Vs::Itemhub::Redmine
