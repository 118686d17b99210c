#pragma once

#include <functional>
#include <string>

namespace Vs {

class Document;

/// Where a document that is being saved gets the picture of itself from, which file lists show. What can draw
/// registers here; without that a file keeps the picture it has, or has none. Main thread only.
class ThumbnailSource
{
public:
    /// Gives the bytes of a PNG picture, 256 pixels wide and high at most, or nothing. Asked once for each
    /// save. An exception counts as no picture: it never stops a save.
    using Picture = std::function<std::string(const Document&)>;

    /// Takes the place of the one before; an empty function takes it away.
    static void install(Picture picture);

    /// The picture, or nothing if there is none or it isn't a PNG of reasonable size.
    [[nodiscard]] static std::string png(const Document& document);
};

} // namespace Vs
