#include "UI/Commands/Camera/ViewCmdDefs.h"

#include "Server/CommonData/CommonDataAssetSettings.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/EnvironmentManager.h"
#include "Server/Scene/GraphicsOptionGroup.h"
#include "Server/Scene/RenderParams.h"
#include "UI/Commands/Resources.h"

#include <algorithm>
#include <iterator>

namespace Vu::Commands {
namespace {

constexpr std::array<CommandRow::Group, 3> kGroups = {&CommandGroup::VisualizationGroup,
                                                      &CommandGroup::BaseGroup};

Vs::Scene::GraphicsOptionGroup& options()
{
    return *Vs::Scene::GraphicsOptionGroup::get();
}

/// In a list whose first item is on and whose second is off.
int onOrOff(bool on)
{
    return on ? 0 : 1;
}

/// The number of `value` in a list; the length of the list if it isn't there, which is no item.
template <class Values, class Value>
int placeOf(const Value& value, const Values& values)
{
    return int(std::ranges::find(values, value) - std::begin(values));
}

int nprEffect(const ViewState& state)
{
    constexpr int kEffects[] = {0, 1, 3};
    return placeOf(state.render->nprEffect(), kEffects);
}

int environment(const ViewState&)
{
    constexpr const wchar_t* kIds[] = {L"DarkSky",         L"GreyRoom",     L"PhotoBooth",
                                       L"TranquilityBlue", L"InfinityPool", L"SkyRoom"};
    return placeOf(Vs::Scene::EnvironmentManager::getEnvManager()->activeEnvironmentID(), kIds);
}

int camera(const ViewState& state)
{
    if (!state.settings)
        return -1;
    if (state.settings->perspWithOrthoFaces())
        return 2;
    const int projection = options().cameraProjection();
    if (projection == Vs::Scene::kParallelProjection)
        return 0;
    return projection == Vs::Scene::kPerspectiveProjection ? 1 : -1;
}

int objectShadow(const ViewState& state)
{
    const int type = state.render->objectShadowType();
    if (type == 0)
        return 1;
    return type >= 1 && type <= 3 ? 0 : -1;
}

// clang-format off

constexpr CommandRow kDomeItems[] = {
    {.key = L"ViewDomeOnCommand",  .title = "Dome On"},
    {.key = L"ViewDomeOffCommand", .title = "Dome Off"},
};

constexpr CommandRow kGroundPlaneItems[] = {
    {.key = L"ViewGroundPlaneOnCommand",  .title = "Ground Plane On"},
    {.key = L"ViewGroundPlaneOffCommand", .title = "Ground Plane Off"},
};

constexpr CommandRow kGroundShadowItems[] = {
    {.key = L"ViewGroundReflectionOnCommand",  .title = "Ground Shadow On",  .titleKey = "ViewGroundShadowOnCommand",  .icon = &Resources::ViewGroundShadowOn},
    {.key = L"ViewGroundReflectionOffCommand", .title = "Ground Shadow Off", .titleKey = "ViewGroundShadowOffCommand", .icon = &Resources::ViewGroundShadowOff},
};

constexpr CommandRow kGroundReflectionItems[] = {
    {.key = L"ViewGroundReflectionOnCommand",  .title = "Ground Reflection On",  .icon = &Resources::ViewGroundReflectionOn},
    {.key = L"ViewGroundReflectionOffCommand", .title = "Ground Reflection Off", .icon = &Resources::ViewGroundReflectionOff},
};

constexpr CommandRow kAmbientOcclusionItems[] = {
    {.key = L"ViewAmbientOcclusionOnCommand",  .title = "Ambient Occlusion On",  .icon = &Resources::ViewAmbientOcclusionOn},
    {.key = L"ViewAmbientOcclusionOffCommand", .title = "Ambient Occlusion Off", .icon = &Resources::ViewAmbientOcclusionOff},
};

constexpr CommandRow kNPREffectItems[] = {
    {.key = L"ViewNPROffCommand",      .title = "NPR Off"},
    {.key = L"ViewNPRPastelCommand",   .title = "NPR Pastel"},
    {.key = L"ViewNPRGraphiteCommand", .title = "NPR Graphite"},
};

constexpr CommandRow kEnvironmentItems[] = {
    {.key = L"ViewEnvDarkSkyCommand",         .title = "Dark Sky"},
    {.key = L"ViewEnvGreyRoomCommand",        .title = "Grey Room"},
    {.key = L"ViewEnvPhotoBoothCommand",      .title = "Photo Booth"},
    {.key = L"ViewEnvTranquilityBlueCommand", .title = "Tranquility Blue"},
    {.key = L"ViewEnvInfinityPoolCommand",    .title = "Infinity Pool", .titleKey = "ViewEnvInfinityPool"},
    {.key = L"ViewSkyRoomCommand",            .title = "Sky Room",      .titleKey = "ViewSkyRoomPool"},
};

constexpr CommandRow kMSAAItems[] = {
    {.key = L"ViewMSAAOnCommand",  .title = "Anti Aliasing On"},
    {.key = L"ViewMSAAOffCommand", .title = "Anti Aliasing Off"},
};

constexpr CommandRow kSelectionEffectItems[] = {
    {.key = L"ViewSelectionEffectNormalCommand",     .title = "Normal Selection Effect"},
    {.key = L"ViewSelectionEffectFastCommand",       .title = "Fast Selection Effect"},
    {.key = L"ViewSelectionEffectSimplifiedCommand", .title = "Simplified Selection Effect"},
    {.key = L"ViewSelectionEffectNoCommand",         .title = "No Selection Effect"},
};

constexpr CommandRow kVisualStyleItems[] = {
    {.key = L"ViewVisualStyleShaded",             .title = "Shaded",                            .titleKey = "ViewShadedCommand",             .icon = &Resources::ViewShaded},
    {.key = L"ViewVisualStyleShadedWithEdgesHL",  .title = "Shaded with Hidden Edges",          .titleKey = "ViewShadedHLCommand",           .icon = &Resources::ViewShadedHL},
    {.key = L"ViewVisualStyleShadedWithEdgesHLR", .title = "Shaded with Visible Edges Only",    .titleKey = "ViewShadedWithEdgesHLRCommand", .icon = &Resources::ViewShadedWithEdges},
    {.key = L"ViewVisualStyleWireframe",          .title = "Wireframe",                         .titleKey = "ViewWireframeCommand",          .icon = &Resources::ViewWireframe},
    {.key = L"ViewVisualStyleWireframeHL",        .title = "Wireframe with Hidden Edges",       .titleKey = "ViewWireframeHLCommand",        .icon = &Resources::ViewWireframeHL},
    {.key = L"ViewVisualStyleWireframeHLR",       .title = "Wireframe with Visible Edges Only", .titleKey = "ViewWireframeHLRCommand",       .icon = &Resources::ViewWireframeHLR},
    {.key = L"ViewVisualStyleRealistic",          .title = "Realistic",                         .titleKey = "ViewRealisticCommand",          .icon = &Resources::ViewRealistic},
};

constexpr CommandRow kCameraItems[] = {
    {.key = L"ViewCameraOrthoCommand",               .title = "Orthographic", .icon = &Resources::ViewCameraOrtho},
    {.key = L"ViewCameraPerspCommand",               .title = "Perspective",  .icon = &Resources::ViewCameraPersp},
    {.key = L"ViewCameraPerspWithOrthoFacesCommand", .title = "Perspective with Ortho Faces"},
};

constexpr CommandRow kObjectShadowItems[] = {
    {.key = L"ViewObjectShadowSoft2Command", .title = "Object Shadow On",  .icon = &Resources::ViewObjectShadowOn},
    {.key = L"ViewObjectShadowNoneCommand",  .title = "Object Shadow Off", .icon = &Resources::ViewObjectShadowOff},
};

constexpr CommandRow kColorCyclingItems[] = {
    {.key = L"ViewColorCyclingOnCommand",  .title = "Component Color Cycling On",  .icon = &Resources::ViewColorCyclingOn},
    {.key = L"ViewColorCyclingOffCommand", .title = "Component Color Cycling Off", .icon = &Resources::ViewColorCyclingOff},
};

constexpr CommandRow kLayoutGridItems[] = {
    {.key = L"ViewLayoutGridOnCommand",  .title = "Grid On", .arguments = {L"CmdId"}},
    {.key = L"ViewLayoutGridOffCommand", .title = "Grid Off"},
};

constexpr CommandRow kGridRefNumbersItems[] = {
    {.key = L"ViewGridNumeralsOnCommand",  .title = "Grid Numbers On",  .titleKey = "ViewGridNumbersOnCommand"},
    {.key = L"ViewGridNumeralsOffCommand", .title = "Grid Numbers Off", .titleKey = "ViewGridNumbersOffCommand"},
};

constexpr CommandRow kAxisCrossItems[] = {
    {.key = L"ViewAxisCrossOnCommand",  .title = "Axis Cross On"},
    {.key = L"ViewAxisCrossOffCommand", .title = "Axis Cross Off"},
};

constexpr CommandRow kScaleBarItems[] = {
    {.key = L"ViewScaleBarOnCommand",  .title = "Scale Bar On"},
    {.key = L"ViewScaleBarOffCommand", .title = "Scale Bar Off"},
};

} // namespace

constinit const CommandRow ViewDisplayCmdDef::kRow          = {.key = L"ViewDisplayCommand", .title = "View Display", .icon = &Resources::ViewDisplay, .groups = kGroups, .arguments = {L"CmdId"}};
constinit const CommandRow ViewDomeCmdDef::kRow             = {.key = L"ViewDomeCommand", .title = "Environment Dome", .groups = kGroups, .arguments = {L"CmdId"}};
constinit const CommandRow ViewGroundPlaneCmdDef::kRow      = {.key = L"ViewGroundPlaneCommand", .title = "Ground Plane", .groups = kGroups, .arguments = {L"CmdId"}};
constinit const CommandRow ViewGroundShadowCmdDef::kRow     = {.key = L"ViewGroundShadowCommand", .title = "Ground Shadow", .icon = &Resources::ViewGroundShadowOn, .groups = kGroups, .arguments = {L"CmdId"}};
constinit const CommandRow ViewGroundReflectionCmdDef::kRow = {.key = L"ViewGroundReflectionCommand", .title = "Ground Reflection", .icon = &Resources::ViewGroundReflectionOn, .groups = kGroups, .arguments = {L"CmdId"}};
constinit const CommandRow ViewAmbientOcclusionCmdDef::kRow = {.key = L"ViewAmbientOcclusionCommand", .title = "Ambient Occlusion", .icon = &Resources::ViewAmbientOcclusionOn, .groups = kGroups, .arguments = {L"CmdId"}};
constinit const CommandRow ViewNPREffectCmdDef::kRow        = {.key = L"ViewNPREffectCommand", .title = "NPR Effect", .icon = &Resources::ViewNPREffect, .groups = kGroups, .arguments = {L"CmdId"}};
constinit const CommandRow ViewEnvironmentCmdDef::kRow      = {.key = L"ViewEnvCommand", .title = "Environment", .icon = &Resources::ViewEnvironment, .groups = kGroups, .arguments = {L"CmdId"}};
constinit const CommandRow ViewMSAACmdDef::kRow             = {.key = L"ViewMSAACommand", .title = "Anti-Aliasing", .icon = &Resources::ViewMSAA, .groups = kGroups, .arguments = {L"CmdId"}};
constinit const CommandRow ViewSelectionEffectCmdDef::kRow  = {.key = L"ViewSelectionEffectCommand", .title = "Selection Effect", .icon = &Resources::ViewSelectionEffect, .groups = kGroups, .arguments = {L"CmdId"}};
constinit const CommandRow ViewVisualStyleCmdDef::kRow      = {.key = L"ViewVisualStyleCommand", .title = "Visual Style", .icon = &Resources::ViewShadedWithEdges, .groups = kGroups, .arguments = {L"CmdId"}};
constinit const CommandRow ViewCameraCmdDef::kRow           = {.key = L"ViewCameraCommand", .title = "Camera", .icon = &Resources::ViewCameraPersp, .groups = kGroups, .arguments = {L"CmdId"}};
constinit const CommandRow ViewObjectShadowCmdDef::kRow     = {.key = L"ViewObjectShadowCommand", .title = "Object Shadow", .icon = &Resources::ViewObjectShadowOn, .groups = kGroups, .arguments = {L"CmdId"}};
constinit const CommandRow ViewColorCyclingCmdDef::kRow     = {.key = L"ViewColorCyclingCommand", .title = "Component Color Cycling", .icon = &Resources::ViewColorCyclingOn, .groups = kGroups, .arguments = {L"CmdId"}};
constinit const CommandRow ViewLayoutGridOnCmdDef::kRow     = {.key = L"ViewLayoutGridOnCommand", .title = "Layout Grid", .titleKey = "ViewLayoutGridCommand", .icon = &Resources::Grid, .groups = kGroups, .arguments = {L"CmdId"}};
constinit const CommandRow ViewGridRefNumbersCmdDef::kRow   = {.key = L"ViewGridRefNumeralsCommand", .title = "Grid Reference Numbers", .groups = kGroups, .arguments = {L"CmdId"}};
constinit const CommandRow ViewAxisCrossCmdDef::kRow        = {.key = L"ViewAxisCrossCommand", .title = "Axis Cross", .groups = kGroups, .arguments = {L"CmdId"}};
constinit const CommandRow ViewScaleBarCmdDef::kRow         = {.key = L"ViewScaleBarCommand", .title = "Scale Bar", .groups = kGroups, .arguments = {L"CmdId"}};

constinit const ViewChoices ViewDomeCmdDef::kChoices               = {kDomeItems, [](const ViewState&) { return onOrOff(options().displayDome()); }};
constinit const ViewChoices ViewGroundPlaneCmdDef::kChoices        = {kGroundPlaneItems, [](const ViewState& s) { return onOrOff(s.render->groundPlaneEnabled()); }};
constinit const ViewChoices ViewGroundShadowCmdDef::kChoices       = {kGroundShadowItems, [](const ViewState& s) { return onOrOff(s.render->groundShadowEnabled()); }};
constinit const ViewChoices ViewGroundReflectionCmdDef::kChoices   = {kGroundReflectionItems, [](const ViewState& s) { return onOrOff(s.render->groundReflectionEnabled()); }};
constinit const ViewChoices ViewAmbientOcclusionCmdDef::kChoices   = {kAmbientOcclusionItems, [](const ViewState&) { return onOrOff(options().ambientOccludedEnabled()); }};
constinit const ViewChoices ViewNPREffectCmdDef::kChoices          = {kNPREffectItems, nprEffect};
constinit const ViewChoices ViewEnvironmentCmdDef::kChoices        = {kEnvironmentItems, environment};
constinit const ViewChoices ViewMSAACmdDef::kChoices               = {kMSAAItems, [](const ViewState&) { return onOrOff(options().MSAA()); }};
constinit const ViewChoices ViewSelectionEffectCmdDef::kChoices    = {kSelectionEffectItems, [](const ViewState&) { return options().selectionEffectOption() - 1; }};
constinit const ViewChoices ViewVisualStyleCmdDef::kChoices        = {kVisualStyleItems, [](const ViewState& s) { return s.render->visualStyle(); }};
constinit const ViewChoices ViewCameraCmdDef::kChoices             = {kCameraItems, camera};
constinit const ViewChoices ViewObjectShadowCmdDef::kChoices       = {kObjectShadowItems, objectShadow};
constinit const ViewChoices ViewColorCyclingCmdDef::kChoices       = {kColorCyclingItems, [](const ViewState& s) { return onOrOff(s.render->colorCyclingEnabled()); }};
constinit const ViewChoices ViewLayoutGridOnCmdDef::kChoices       = {kLayoutGridItems, [](const ViewState&) { return onOrOff(options().showLayoutGrid()); }};
constinit const ViewChoices ViewGridRefNumbersCmdDef::kChoices     = {kGridRefNumbersItems, [](const ViewState&) { return onOrOff(options().showGridRefNumbers()); }};
constinit const ViewChoices ViewAxisCrossCmdDef::kChoices          = {kAxisCrossItems, [](const ViewState&) { return onOrOff(options().showAxisCross()); }};
constinit const ViewChoices ViewScaleBarCmdDef::kChoices           = {kScaleBarItems, [](const ViewState&) { return onOrOff(options().showScaleBar()); }};
// clang-format on

} // namespace Vu::Commands
