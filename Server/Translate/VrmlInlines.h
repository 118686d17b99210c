#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Vs::Translate {

/// A node that takes in another file.
struct VrmlInlineNode
{
    size_t begin = 0, body = 0, end = 0; ///< Of its name; of what is in its braces.
    std::vector<std::string> urls;       ///< One of which is to be taken, the first that there is.
};

/// The node whose name stands there, up to the brace that ends it. What stands in comments doesn't count.
VrmlInlineNode vrmlInlineAt(std::string_view text, size_t begin);

/// The other files of which a VRML file consists.
struct VrmlInlines
{
    /// The text with an empty group in place of each node that would take in a file from elsewhere, or
    /// itself; empty if there is no such node.
    std::string text;
    std::vector<std::string> files;   ///< Paths of those beside it, and of those that they take in.
    std::vector<std::string> refused; ///< As they are named.
};

/// `text` is what `file` holds; the others are looked for in its folder, those that they take in as well.
VrmlInlines vrmlInlines(std::string_view text, const std::string& file);

} // namespace Vs::Translate
