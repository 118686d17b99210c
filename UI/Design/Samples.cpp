#include "UI/Design/Samples.h"

#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/Edit/EditRequest.h"
#include "Server/DataModel/ModelBuilder.h"
#include "Server/DataModel/SegmentFinder.h"
#include "UI/Base/Session/Sample.h"
#include "UI/Design/Localized.h"
#include "UI/Design/Resources.h"
#include "UI/Design/ShowDesign.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>

namespace Vu::Design {
namespace {

using Look = Vs::ModelBuilder::Look;
using Combine = Vs::CombineEdit::Kind;

constexpr Vs::Colour kSlate = {0.050f, 0.070f, 0.100f, 1.0f};
constexpr Vs::Colour kSteel = {0.420f, 0.450f, 0.490f, 1.0f};
constexpr Vs::Colour kBlue = {0.020f, 0.150f, 0.500f, 1.0f};
constexpr Vs::Colour kAmber = {0.800f, 0.270f, 0.020f, 1.0f};
constexpr Vs::Colour kTeal = {0.010f, 0.320f, 0.300f, 1.0f};
constexpr double kTurn = 2 * std::numbers::pi;

Look look(double x, double y, double z, const wchar_t* name, const Vs::Colour& colour)
{
    return {GkMatrix3d::translation({x, y, z}), name, colour};
}

/// The axis of a cylinder along y.
Look alongY(double x, double y, double z, const wchar_t* name, const Vs::Colour& colour)
{
    return {GkMatrix3d::translation({x, y, z}) * GkMatrix3d::rotation(-kTurn / 4, {1, 0, 0}), name, colour};
}

/// Builds a sample's parts; all sizes are in mm. After an error nothing more is created.
class Maker
{
public:
    Maker(Vs::Asset& asset, Vs::Status& status) : m_asset(asset), m_builder(&asset), m_status(status) {}

    using Part = std::string; ///< Its Component::id.
    Part box(double dx, double dy, double dz, const Look& look)
    {
        return made(m_status.isError() ? nullptr : m_builder.box(dx, dy, dz, look, m_status));
    }
    Part cylinder(double radius, double height, const Look& look)
    {
        return made(m_status.isError() ? nullptr : m_builder.cylinder(radius, height, look, m_status));
    }
    Part sphere(double radius, const Look& look)
    {
        return made(m_status.isError() ? nullptr : m_builder.sphere(radius, look, m_status));
    }
    void combine(Combine kind, const Part& target, std::vector<Part> tools)
    {
        if (m_status.isError())
            return;
        Vs::EditRequest* request = Vs::EditRequest::make(&m_asset, localized("SampleRequest", "Sample"),
                                                         Vs::CombineEdit{kind, target, std::move(tools)});
        request->execute(&m_asset, m_status);
        request->destroy();
    }

private:
    static Part made(const Vs::Component* component) { return component ? component->id : Part(); }

    Vs::Asset& m_asset;
    Vs::ModelBuilder m_builder;
    Vs::Status& m_status;
};

/// A stand with a ring of balls around a post.
void makeStand(Maker& maker)
{
    maker.box(240, 160, 16, look(-120, -80, 0, L"Base plate", kSlate));
    constexpr double kCorners[][2] = {{-100, -60}, {100, -60}, {100, 60}, {-100, 60}};
    for (const auto& [x, y] : kCorners)
        maker.cylinder(9, 22, look(x, y, 16, L"Foot screw", kSteel));
    maker.cylinder(58, 12, look(0, 0, 16, L"Table", kBlue));
    maker.cylinder(14, 96, look(0, 0, 28, L"Post", kSteel));
    maker.cylinder(40, 10, look(0, 0, 124, L"Head", kBlue));
    maker.sphere(24, look(0, 0, 156, L"Knob", kAmber));
    constexpr int kBalls = 8;
    for (int i = 0; i < kBalls; ++i) {
        const double angle = kTurn * i / kBalls;
        maker.sphere(11, look(43 * std::cos(angle), 43 * std::sin(angle), 39, L"Ball", kTeal));
    }
}

/// A disc with a hub, a bore and a circle of holes.
void makeFlange(Maker& maker)
{
    const auto disc = maker.cylinder(60, 14, look(0, 0, 0, L"Flange", kBlue));
    const auto hub = maker.cylinder(30, 46, look(0, 0, 0, L"Hub", kBlue));
    maker.combine(Combine::Join, disc, {hub});
    std::vector<Maker::Part> drills = {maker.cylinder(18, 60, look(0, 0, -7, L"Bore", kSteel))};
    constexpr int kHoles = 6;
    for (int i = 0; i < kHoles; ++i) {
        const double angle = kTurn * i / kHoles;
        drills.push_back(
            maker.cylinder(6.5, 30, look(45 * std::cos(angle), 45 * std::sin(angle), -8, L"Hole", kSteel)));
    }
    maker.combine(Combine::Subtract, disc, drills);
}

/// A block with a bushing and a shaft through it.
void makeBearing(Maker& maker)
{
    const auto block = maker.box(150, 60, 14, look(-75, -30, 0, L"Block", kSlate));
    const auto web = maker.box(70, 60, 50, look(-35, -30, 0, L"Web", kSlate));
    const auto barrel = maker.cylinder(35, 60, alongY(0, -30, 50, L"Barrel", kSlate));
    maker.combine(Combine::Join, block, {web, barrel});
    std::vector<Maker::Part> drills = {maker.cylinder(24, 80, alongY(0, -40, 50, L"Bore", kSteel))};
    for (const double x : {-57.0, 57.0})
        for (const double y : {-18.0, 18.0})
            drills.push_back(maker.cylinder(5.5, 30, look(x, y, -8, L"Hole", kSteel)));
    maker.combine(Combine::Subtract, block, drills);
    const auto bushing = maker.cylinder(24, 66, alongY(0, -33, 50, L"Bushing", kAmber));
    maker.combine(Combine::Subtract, bushing, {maker.cylinder(18, 80, alongY(0, -40, 50, L"Bore", kSteel))});
    maker.cylinder(18, 150, alongY(0, -75, 50, L"Shaft", kSteel));
}

/// One row per sample of the home screen.
struct SampleRow
{
    const wchar_t* name;
    void (*make)(Maker&);
    std::wstring (*title)();
    std::wstring (*note)();
};

// clang-format off
constexpr SampleRow kStand = {L"Stand", &makeStand,
    [] { return localized("SampleStand", "Stand"); }, [] { return localized("SampleStandNote", "17 parts in one assembly"); }};
constexpr SampleRow kFlange = {L"Flange", &makeFlange,
    [] { return localized("SampleFlange", "Flange"); }, [] { return localized("SampleFlangeNote", "A part with holes to measure"); }};
constexpr SampleRow kBearing = {L"Bearing", &makeBearing,
    [] { return localized("SampleBearing", "Bearing block"); }, [] { return localized("SampleBearingNote", "Block, bushing and shaft"); }};
// clang-format on

constexpr const SampleRow* kRows[] = {&kBearing, &kFlange, &kStand};

class SampleRequest : public Vs::Implements<SampleRequest, Vs::Request>
{
public:
    explicit SampleRequest(const SampleRow& row)
        : Implements(localized("SampleRequest", "Sample")), m_row(row)
    {
    }

protected:
    void onExecute(Vs::Asset& asset, Vs::Status& status) override
    {
        Maker maker(asset, status);
        m_row.make(maker);
    }

private:
    const SampleRow& m_row;
};

void open(const SampleRow& row, const std::wstring& title, Vs::Status& status)
{
    SampleRequest request(row);
    Vs::Document* document = createDesign(status);
    if (!document)
        return;
    document->displayName(title);
    Vs::Asset* asset = document->activeAsset();
    request.execute(asset, status);
    asset->markClean();
    showDesign(document, status);
}

/// The samples as the home screen shows them.
class Shown
{
public:
    Shown()
    {
        for (const SampleRow* row : kRows)
            m_samples.push_back(std::make_unique<Sample>(
                [row] {
                    return Sample::Description{
                        row->title(), row->note(),
                        Resources::SamplePicture(std::wstring(L"Samples/") + row->name + L".png")
                            ->localPath()};
                },
                std::wstring(L"Design.OpenSample ") + row->name));
    }

private:
    std::vector<std::unique_ptr<Sample>> m_samples;
};

const Shown kShown;

} // namespace

void makeSample(Vs::Status& status)
{
    if (Vs::Asset* existing = Vs::SegmentFinder::existingAsset()) {
        SampleRequest(kStand).execute(existing, status);
        return;
    }
    open(kStand, localized("SampleName", "Sample"), status);
}

std::vector<std::wstring> sampleNames()
{
    std::vector<std::wstring> names;
    for (const SampleRow* row : kRows)
        names.emplace_back(row->name);
    return names;
}

void openSample(const std::wstring& name, Vs::Status& status)
{
    const auto row = std::ranges::find_if(kRows, [&](const SampleRow* each) { return name == each->name; });
    if (row == std::end(kRows))
        status.addError(localizedFormat("SampleUnknown", "There is no sample \"%1%\".", name));
    else
        open(**row, (*row)->title(), status);
}

} // namespace Vu::Design
