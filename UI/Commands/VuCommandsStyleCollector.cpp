#include "UI/Base/Program/IStyleCollector.h"
#include "UI/Commands/Resources.h"

namespace Vu::Commands {
namespace {

/// Offers the picture that the search results show beside a design, and the look of this add-in's widgets.
class VuCommandsStyleCollector : public IStyleCollector
{
public:
    void collectImages(std::vector<Vs::ImageResource*>& images) override
    {
        images.push_back(Resources::searchResultsInsertDesign());
    }
    void collectStyleSheets(std::vector<Vs::Resource*>& sheets) override
    {
        sheets.push_back(Resources::DefaultStyle());
    }
};

VuCommandsStyleCollector theCollector;

} // namespace
} // namespace Vu::Commands
