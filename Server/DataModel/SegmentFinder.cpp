#include "Server/DataModel/SegmentFinder.h"

#include "Server/Base/Require.h"
#include "Server/DataModel/AssetEvents.h"

namespace Vs {
namespace {

class Choice : public AssetEventSite
{
public:
    Choice() { AssetEventSource::get()->subscribe(this); }
    void assetClosed(AssetEvent* event) override
    {
        if (event->asset() == asset)
            asset = nullptr;
    }

    Asset* asset = nullptr;
};

Choice& choice()
{
    // Never destroyed: assets may close until the process ends.
    static auto* const made = new Choice;
    return *made;
}

} // namespace

void SegmentFinder::useExistingAsset(Asset* asset)
{
    assertMainThread();
    choice().asset = asset;
}

Asset* SegmentFinder::existingAsset()
{
    return choice().asset;
}

} // namespace Vs
