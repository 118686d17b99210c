#pragma once

#include <boost/filesystem/path.hpp>

#include <string>
#include <vector>

namespace Vs::XMLUtility {

/// One finding in an XML file.
struct Error
{
    boost::filesystem::path file; ///< The XML file, or the schema if that is at fault.
    int line = 0;                 ///< Counted from 1; 0 if it belongs to no line.
    std::wstring message;

    /// `FILE:LINE: message`.
    std::wstring toString() const;
};

/// Checks an XML file against a schema. Returns what is wrong, in the order of the lines; empty if the file
/// is valid. Nothing outside the two files is read: no network, no external entities, no expansion.
[[nodiscard]] std::vector<Error> validate(const boost::filesystem::path& file,
                                          const boost::filesystem::path& schema);

/// Whether `file` is valid.
[[nodiscard]] bool schemaValidator(const boost::filesystem::path& file,
                                   const boost::filesystem::path& schema);

} // namespace Vs::XMLUtility
