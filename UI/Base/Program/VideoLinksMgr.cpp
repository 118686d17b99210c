#include "UI/Base/Program/VideoLinksMgr.h"

#include "UI/Base/Program/Application.h"

namespace Vu {
namespace {

std::vector<VideoLinksMgr::Link> suggestboxLinks()
{
    const auto* edition = Application::get()->service<Vs::Services::ApplicationEditionService>();
    return edition ? edition->suggestboxLinks() : std::vector<VideoLinksMgr::Link>();
}

} // namespace

VideoLinksMgr* VideoLinksMgr::get()
{
    static VideoLinksMgr manager;
    return &manager;
}

bool VideoLinksMgr::suggestboxInfoIsEmpty() const
{
    return suggestboxLinks().empty();
}

VideoLinksMgr::Link VideoLinksMgr::suggestboxInfo(size_t index) const
{
    return suggestboxLinks().at(index);
}

} // namespace Vu
