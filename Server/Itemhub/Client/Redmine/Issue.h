#pragma once

#include "Server/Itemhub/Client/JsonReader.h"
#include "Server/Itemhub/ItemStore.h"

#include <functional>
#include <string>
#include <vector>

namespace Vs::Itemhub::Redmine {

/// What we know of a file and the tracker doesn't: it stands in the file's description there, for people to
/// read as well.
struct FileNote
{
    std::string docType;
    std::int64_t madeFrom = 0;
    std::string sha256; ///< Empty for a file that somebody attached on the tracker's page.
};

[[nodiscard]] std::string textOf(const FileNote& note);
/// What a description says; of one that isn't ours, only what the file's name tells.
[[nodiscard]] FileNote noteOf(const std::string& description, const std::string& fileName);

/// A file of an issue, which the tracker never changes: files of one name are versions of each other.
struct File
{
    std::int64_t id = 0;
    std::string name, author, createdAt, label;
    std::string attachedAt;  ///< It may have been sent earlier.
    std::int64_t change = 0; ///< The number of the change that it came with; 0 for what came with the issue.
    std::uint64_t size = 0;
    FileNote note;
};

/// An issue with all that we look for in it.
struct Issue
{
    Web::ItemValues values;
    std::vector<File> files; ///< In the order in which they came, which isn't that of their numbers.
    std::vector<Web::Comment> comments;
    /// The files of one name, the first version first.
    [[nodiscard]] std::vector<File> versionsOf(const std::string& name) const;
    /// The name of the file with that number; NotFound if there is none.
    [[nodiscard]] const std::string& nameOf(std::int64_t file, const std::string& action) const;
};

/// How people of the tracker are called.
using NameOf = std::function<std::string(const JsonReader& person)>;

[[nodiscard]] Web::ItemValues itemOf(const JsonReader& issue, const NameOf& nameOf);
[[nodiscard]] Issue issueOf(const JsonReader& issue, const NameOf& nameOf);
[[nodiscard]] Web::Version versionOf(const File& file, std::int64_t number);

/// Attachments have numbers of their own in the whole system, but the tracker doesn't say whose a file is:
/// ours tell both.
[[nodiscard]] std::int64_t attachmentId(std::int64_t issue, std::int64_t file);
[[nodiscard]] std::int64_t issueOfAttachment(std::int64_t attachment);
[[nodiscard]] std::int64_t fileOfAttachment(std::int64_t attachment);

} // namespace Vs::Itemhub::Redmine
