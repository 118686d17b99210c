#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Vs::Translate {

/// A node that inlines another file.
struct VrmlInlineNode
{
    size_t begin = 0, body = 0, end = 0; ///< Of its name; of what is in its braces.
    std::vector<std::string> urls;       ///< Alternatives, of which the first that exists is taken.
};

/// The node whose name is at that position, up to its closing brace. Comments are skipped.
VrmlInlineNode vrmlInlineAt(std::string_view text, size_t begin);

/// The other files that belong to a VRML file.
struct VrmlInlines
{
    /// The text with an empty group in place of each node that would inline a file from elsewhere, or itself;
    /// empty if there is no such node.
    std::string text;
    std::vector<std::string> files;   ///< Paths of those next to it, and of those that they inline.
    std::vector<std::string> refused; ///< As named in the file.
};

/// `text` is the content of `file`; the others are looked for in its folder, including those that they
/// inline.
VrmlInlines vrmlInlines(std::string_view text, const std::string& file);

} // namespace Vs::Translate
