#include "UI/Design/Sample.h"

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/ModelBuilder.h"
#include "Server/DataModel/Request.h"
#include "Server/DataModel/SegmentFinder.h"
#include "UI/Design/Localized.h"
#include "UI/Design/ShowDesign.h"

#include <cmath>

namespace Vu::Design {
namespace {

using Look = Vs::ModelBuilder::Look;

constexpr Vs::Colour kSlate = {0.050f, 0.070f, 0.100f, 1.0f};
constexpr Vs::Colour kSteel = {0.420f, 0.450f, 0.490f, 1.0f};
constexpr Vs::Colour kBlue = {0.020f, 0.150f, 0.500f, 1.0f};
constexpr Vs::Colour kAmber = {0.800f, 0.270f, 0.020f, 1.0f};
constexpr Vs::Colour kTeal = {0.010f, 0.320f, 0.300f, 1.0f};

Look look(double x, double y, double z, const wchar_t* name, const Vs::Colour& colour)
{
    return {GkMatrix3d::translation({x, y, z}), name, colour};
}

/// A stand with a ring of balls around a post; sizes in mm.
class SampleRequest : public Vs::Implements<SampleRequest, Vs::Request>
{
public:
    SampleRequest() : Implements(localized("SampleRequest", "Sample")) {}

protected:
    void onExecute(Vs::Asset& asset, Vs::Status& status) override
    {
        Vs::ModelBuilder builder(&asset);
        builder.box(240, 160, 16, look(-120, -80, 0, L"Base plate", kSlate), status);
        constexpr double kCorners[][2] = {{-100, -60}, {100, -60}, {100, 60}, {-100, 60}};
        for (const auto& [x, y] : kCorners)
            builder.cylinder(9, 22, look(x, y, 16, L"Foot screw", kSteel), status);
        builder.cylinder(58, 12, look(0, 0, 16, L"Table", kBlue), status);
        builder.cylinder(14, 96, look(0, 0, 28, L"Post", kSteel), status);
        builder.cylinder(40, 10, look(0, 0, 124, L"Head", kBlue), status);
        builder.sphere(24, look(0, 0, 156, L"Knob", kAmber), status);
        constexpr int kBalls = 8;
        constexpr double kTurn = 6.283185307179586;
        for (int i = 0; i < kBalls; ++i) {
            const double angle = kTurn * i / kBalls;
            builder.sphere(11, look(43 * std::cos(angle), 43 * std::sin(angle), 39, L"Ball", kTeal), status);
        }
    }
};

} // namespace

void makeSample(Vs::Status& status)
{
    SampleRequest request;
    if (Vs::Asset* existing = Vs::SegmentFinder::existingAsset()) {
        request.execute(existing, status);
        return;
    }
    Vs::Document* document = createDesign(status);
    if (!document)
        return;
    document->displayName(localized("SampleName", "Sample"));
    Vs::Asset* asset = document->activeAsset();
    request.execute(asset, status);
    asset->markClean();
    showDesign(document, status);
}

} // namespace Vu::Design
