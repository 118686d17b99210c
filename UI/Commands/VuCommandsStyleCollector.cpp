#include "UI/Base/IStyleCollector.h"
#include "UI/Commands/Resources.h"

namespace Vu::Commands {
namespace {

/// Offers the picture that the search results show beside a design.
class VuCommandsStyleCollector : public IStyleCollector
{
public:
    void collectImages(std::vector<Vs::ImageResource*>& images) override
    {
        images.push_back(Resources::searchResultsInsertDesign());
    }
};

VuCommandsStyleCollector theCollector;

} // namespace
} // namespace Vu::Commands
