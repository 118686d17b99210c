#pragma once

#include <boost/filesystem/path.hpp>

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace Vs {

/// The file of an option group: a line `name = value` for each option that was set, `#` before a comment.
/// A value is true, false, a number, or texts in double quotes with backslash escapes.
class OptionFile
{
public:
    using Values = std::map<std::string, std::string, std::less<>>;

    /// A file that isn't there is empty. Throws Vs::Exception that names the file, the line and the cause.
    static Values read(const boost::filesystem::path& file);
    /// Replaces the file as a whole, or leaves the old one. Throws Vs::Exception.
    static void write(const boost::filesystem::path& file, const Values& values);

    static std::string quoted(std::wstring_view text);
    /// The texts of a value. Returns false if it is not made of quoted texts alone.
    static bool unquoted(std::string_view value, std::vector<std::wstring>& texts);
};

} // namespace Vs
