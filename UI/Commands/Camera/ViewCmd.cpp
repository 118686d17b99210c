#include "UI/Commands/Camera/ViewCmd.h"

#include "Server/CommonData/CommonDataAssetSettings.h"
#include "Server/Scene/EnvironmentManager.h"
#include "Server/Scene/GraphicsOptionGroup.h"
#include "Server/Scene/ViewFragment.h"
#include "UI/Base/Command/CommandEvents.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/View/AutoCamViewFragment.h"
#include "UI/Base/View/SnapEvents.h"
#include "UI/Base/View/TransitionMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"
#include "UI/Commands/Camera/ActiveView.h"
#include "UI/Commands/Camera/ViewCmdDefBase.h"

#include <algorithm>
#include <iterator>

namespace Vu::Commands {
namespace {

using Vs::Scene::GraphicsOptionGroup;
using Vs::Scene::RenderParams;

/// With what a row is applied.
struct Setting
{
    const CommandContext& context;
    const ViewState& view;
    GraphicsOptionGroup& options;
    int value;
    const wchar_t* text;

    bool on() const { return value != 0; }
    /// Sets an option of the user, and the same thing in the picture that is shown.
    void set(void (RenderParams::*render)(bool), Vs::Option<bool>& option) const
    {
        if (view.render)
            (view.render->*render)(on());
        option(on());
    }
    void set(void (RenderParams::*render)(int), Vs::Option<int>& option) const
    {
        if (view.render)
            (view.render->*render)(value);
        option(value);
    }
};

/// `value` 0: without parallel faces, 1: with them.
void setCamera(const Setting& s, Vs::Scene::EProjection projection)
{
    TransitionMgr::get()->finish(); // or else the rest of a glide would bring the old projection back
    if (s.view.camera)
        s.view.camera->toggleProjection(projection);
    s.options.cameraProjection(projection);
    if (s.view.settings)
        s.view.settings->perspWithOrthoFaces(s.on());
    s.options.cameraPerspWithOrthoFaces(s.on());
    GraphicsView* view = graphicsViewOf(SessionMgr::get()->activeAssetSession());
    if (auto* autoCam = Vs::cast<AutoCamViewFragment>(fragmentNamed(view, AutoCamViewFragment::kName)))
        autoCam->performCamOperations();
}

// clang-format off
void dome(const Setting& s)             { s.options.displayDome(s.on()); }
void groundPlane(const Setting& s)      { s.set(&RenderParams::groundPlaneEnabled, s.options.displayGroundPlane); }
void groundShadow(const Setting& s)     { s.set(&RenderParams::groundShadowEnabled, s.options.groundShadowEnabled); }
void groundReflection(const Setting& s) { s.set(&RenderParams::groundReflectionEnabled, s.options.groundReflectionEnabled); }
void ambientOcclusion(const Setting& s) { s.set(&RenderParams::ambientOcclusionEnabled, s.options.ambientOccludedEnabled); }
void nprEffect(const Setting& s)        { s.set(&RenderParams::nprEffect, s.options.NPREffect); }
void environment(const Setting& s)      { Vs::Scene::EnvironmentManager::getEnvManager()->activeEnvironmentID(s.text); }
void msaa(const Setting& s)             { s.options.MSAA(s.on()); }
void selectionEffect(const Setting& s)  { s.options.selectionEffectOption(s.value); }
void visualStyle(const Setting& s)      { s.set(&RenderParams::visualStyle, s.options.visualStyle); }
void perspective(const Setting& s)      { setCamera(s, Vs::Scene::kPerspectiveProjection); }
void orthographic(const Setting& s)     { setCamera(s, Vs::Scene::kParallelProjection); }
void layoutGrid(const Setting& s)       { s.options.showLayoutGrid(s.on()); }
void axisCross(const Setting& s)        { s.options.showAxisCross(s.on()); }
void scaleBar(const Setting& s)         { s.options.showScaleBar(s.on()); }
// clang-format on

/// That there are none is a choice, too, since realistic bodies have shadows otherwise.
void objectShadow(const Setting& s)
{
    s.set(&RenderParams::objectShadowType, s.options.objectShadowType);
    s.options.chooseObjectShadow(s.value);
}

/// Belongs to the picture only: it is gone with the view.
void colorCycling(const Setting& s)
{
    if (s.view.render)
        s.view.render->colorCyclingEnabled(s.on());
}

void gridNumerals(const Setting& s)
{
    s.options.showGridRefNumbers(s.on());
    Inference::SnapEvent event(s.context.asset());
    Inference::SnapEventSource::get()->fireGridNumbersToggled(&event);
}

struct Row
{
    const wchar_t* id;
    void (*apply)(const Setting&);
    int value = 0;
    const wchar_t* text = nullptr;
};

// clang-format off
constexpr Row kRows[] = {
    {L"ViewDomeOnCommand",  dome, 1},
    {L"ViewDomeOffCommand", dome, 0},
    {L"ViewGroundPlaneOnCommand",  groundPlane, 1},
    {L"ViewGroundPlaneOffCommand", groundPlane, 0},
    {L"ViewGroundShadowOnCommand",  groundShadow, 1},
    {L"ViewGroundShadowOffCommand", groundShadow, 0},
    {L"ViewGroundReflectionOnCommand",  groundReflection, 1},
    {L"ViewGroundReflectionOffCommand", groundReflection, 0},
    {L"ViewAmbientOcclusionOnCommand",  ambientOcclusion, 1},
    {L"ViewAmbientOcclusionOffCommand", ambientOcclusion, 0},
    {L"ViewNPROffCommand",      nprEffect, 0},
    {L"ViewNPRPastelCommand",   nprEffect, 1},
    {L"ViewNPRGraphiteCommand", nprEffect, 3},
    {L"ViewEnvDarkSkyCommand",         environment, 0, L"DarkSky"},
    {L"ViewEnvGreyRoomCommand",        environment, 0, L"GreyRoom"},
    {L"ViewEnvPhotoBoothCommand",      environment, 0, L"PhotoBooth"},
    {L"ViewEnvTranquilityBlueCommand", environment, 0, L"TranquilityBlue"},
    {L"ViewEnvInfinityPoolCommand",    environment, 0, L"InfinityPool"},
    {L"ViewSkyRoomCommand",            environment, 0, L"SkyRoomPool"},
    {L"ViewMSAAOnCommand",  msaa, 1},
    {L"ViewMSAAOffCommand", msaa, 0},
    {L"ViewSelectionEffectFastCommand",       selectionEffect, 2},
    {L"ViewSelectionEffectNormalCommand",     selectionEffect, 1},
    {L"ViewSelectionEffectSimplifiedCommand", selectionEffect, 3},
    {L"ViewSelectionEffectNoCommand",         selectionEffect, 4},
    {L"ViewVisualStyleShaded",             visualStyle, 0},
    {L"ViewVisualStyleShadedWithEdgesHL",  visualStyle, 1},
    {L"ViewVisualStyleShadedWithEdgesHLR", visualStyle, 2},
    {L"ViewVisualStyleWireframe",          visualStyle, 3},
    {L"ViewVisualStyleWireframeHL",        visualStyle, 4},
    {L"ViewVisualStyleWireframeHLR",       visualStyle, 5},
    {L"ViewVisualStyleRealistic",          visualStyle, 6},
    {L"ViewCameraPerspCommand",               perspective,  0},
    {L"ViewCameraOrthoCommand",               orthographic, 0},
    {L"ViewCameraPerspWithOrthoFacesCommand", perspective,  1},
    {L"ViewObjectShadowNoneCommand",  objectShadow, 0},
    {L"ViewObjectShadowSharpCommand", objectShadow, 1},
    {L"ViewObjectShadowSoftCommand",  objectShadow, 2},
    {L"ViewObjectShadowSoft2Command", objectShadow, 3},
    {L"ViewColorCyclingOnCommand",  colorCycling, 1},
    {L"ViewColorCyclingOffCommand", colorCycling, 0},
    {L"ViewLayoutGridOnCommand",  layoutGrid, 1},
    {L"ViewLayoutGridOffCommand", layoutGrid, 0},
    {L"ViewGridNumeralsOnCommand",  gridNumerals, 1},
    {L"ViewGridNumeralsOffCommand", gridNumerals, 0},
    {L"ViewAxisCrossOnCommand",  axisCross, 1},
    {L"ViewAxisCrossOffCommand", axisCross, 0},
    {L"ViewScaleBarOnCommand",  scaleBar, 1},
    {L"ViewScaleBarOffCommand", scaleBar, 0},
};
// clang-format on

} // namespace

ViewCmd::ViewCmd(CommandDefinition* definition, CommandContext* context) : Implements(definition, context)
{
    repeatable(false);
}

ECommandType ViewCmd::onCommandType() const
{
    return ECommandType::Exclusive;
}

EStackingBehavior ViewCmd::onStackingBehavior() const
{
    return EStackingBehavior::OverCategory;
}

const Vs::UniqueString* ViewCmd::onStackingCategory() const
{
    return StackingCategory::viewStackingCategory();
}

void ViewCmd::onExecute(Vs::Status&)
{
    const ViewState view = ViewState::active();
    const std::wstring id = commandContext()->argumentAsString(ViewCmdDefBase::cmdIdArgumentName());
    const auto row = std::ranges::find_if(kRows, [&](const Row& candidate) { return id == candidate.id; });
    if (row == std::end(kRows))
        return;
    row->apply({*commandContext(), view, *GraphicsOptionGroup::get(), row->value, row->text});
    WorkspaceWindow::invalidate(kInvalidateAll);
    // The lists show a different item, and some items become available or not.
    CommandEventSource::get()->fireCommandAvailabilitiesChanged();
}

} // namespace Vu::Commands
