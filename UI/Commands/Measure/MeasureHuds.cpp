#include "UI/Commands/Measure/MeasureHuds.h"

#include "Server/DataModel/Measure/MeasureMgr.h"
#include "Server/Scene/LogicalToSceneSelectionFilter.h"
#include "UI/Base/Session/SceneUtilities.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/Workspace/HUDManager.h"

namespace Vu::Commands {

namespace {

constexpr const wchar_t* kHuds[] = {L"MeasureCmdFirstSelection", L"MeasureCmdSecondSelection",
                                    L"MeasureCmdThirdSelection"};

} // namespace

std::optional<GkPoint3d> placeOf(const Vs::StrongRef<Vs::LogicalSelection>& object)
{
    const Vs::Scene::SceneSelection* picked = Vs::Scene::LogicalToSceneSelectionFilter::filter(object.get());
    if (picked && picked->hitInfo()) {
        GkPoint3d place = picked->hitInfo()->localHitPoint();
        return place.transformBy(picked->hitInfo()->localToWorldTransform());
    }
    Vs::MeasureResult result;
    if (!Vs::MeasureMgr::get()->measure(object, Vs::EMeasureType::PositionX, result))
        return std::nullopt;
    return result.point1;
}

MeasureHuds::~MeasureHuds()
{
    hide();
    for (const wchar_t* id : kHuds)
        if (PlacedHUD* hud = HUDManager::get()->hudById(id))
            hud->group()->destroyChildren();
}

void MeasureHuds::show(int number, const Vs::StrongRef<Vs::LogicalSelection>& object,
                       const std::vector<const CommandInputBase*>& inputs)
{
    PlacedHUD* hud = HUDManager::get()->hudById(kHuds[number - 1]);
    if (!hud)
        return;
    hud->group()->destroyChildren();
    for (const CommandInputBase* input : inputs)
        hud->group()->add(input);
    m_places[size_t(number) - 1] = placeOf(object);
    place();
}

void MeasureHuds::remove(int number)
{
    m_places[size_t(number) - 1].reset();
    HUDManager::get()->hideHUD(kHuds[number - 1]);
}

void MeasureHuds::hide()
{
    for (const wchar_t* id : kHuds)
        HUDManager::get()->hideHUD(id);
}

void MeasureHuds::place()
{
    const GraphicsView* view = SceneUtilities::getActiveAssetGraphicView();
    static_assert(std::size(kHuds) == std::tuple_size_v<decltype(m_places)>);
    for (size_t i = 0; i < std::size(kHuds); ++i) {
        const auto seen = view && m_places[i] ? view->worldToWindow(*m_places[i]) : std::nullopt;
        if (seen)
            HUDManager::get()->showHUD(kHuds[i], *seen);
        else
            HUDManager::get()->hideHUD(kHuds[i]);
    }
}

} // namespace Vu::Commands
