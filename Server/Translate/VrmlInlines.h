#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Vs::Translate {

/// The other files of which a VRML file consists.
struct VrmlInlines
{
    /// The text with an empty group in place of each node that would take in a file from elsewhere, or
    /// itself; empty if there is no such node.
    std::string text;
    std::vector<std::string> files;   ///< Paths of those beside it, and of those that they take in.
    std::vector<std::string> refused; ///< As they are named.
};

/// `text` is what `file` holds. Whoever reads it must do so in the folder of the file, since that is where
/// the kernel looks for others.
VrmlInlines vrmlInlines(std::string_view text, const std::string& file);

} // namespace Vs::Translate
