#pragma once

#include "Server/DataModel/ApplicationEditionService.h"

#include <cstddef>

namespace Vu {

/// The links to videos and portals that the edition of the program brings. Main thread only.
class VideoLinksMgr
{
public:
    using Link = Vs::Services::EditionLink;

    static VideoLinksMgr* get();

    [[nodiscard]] bool suggestboxInfoIsEmpty() const;
    /// Throws std::out_of_range where there is none.
    [[nodiscard]] Link suggestboxInfo(size_t index) const;

private:
    VideoLinksMgr() = default;
};

} // namespace Vu
