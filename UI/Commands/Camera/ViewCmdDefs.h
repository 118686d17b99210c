#pragma once

#include "UI/Commands/Camera/ViewCmdDefBase.h"

namespace Vu::Commands {

/// The parent of the view's settings in a menu; a list without items.
class ViewDisplayCmdDef : public RowDefinition<ViewDisplayCmdDef, ViewCmdDefBase>
{
public:
    static const CommandRow kRow;

protected:
    void onSetupListItems(std::vector<Info*>&) override {}
    Info* onSelectedItem(const std::vector<Info*>&, const ViewState&) override { return nullptr; }
};

// The settings. Each has its own row, and its choices.

class ViewDomeCmdDef : public ViewListCmdDef<ViewDomeCmdDef>
{
public:
    static const CommandRow kRow;
    static const ViewChoices kChoices;
};

class ViewGroundPlaneCmdDef : public ViewListCmdDef<ViewGroundPlaneCmdDef>
{
public:
    static const CommandRow kRow;
    static const ViewChoices kChoices;
};

/// Its items are those of the ground reflection under other titles: a choice in this list sets the
/// reflection. The shadow itself is switched in the menu of effects.
class ViewGroundShadowCmdDef : public ViewListCmdDef<ViewGroundShadowCmdDef>
{
public:
    static const CommandRow kRow;
    static const ViewChoices kChoices;
};

class ViewGroundReflectionCmdDef : public ViewListCmdDef<ViewGroundReflectionCmdDef>
{
public:
    static const CommandRow kRow;
    static const ViewChoices kChoices;
};

class ViewAmbientOcclusionCmdDef : public ViewListCmdDef<ViewAmbientOcclusionCmdDef>
{
public:
    static const CommandRow kRow;
    static const ViewChoices kChoices;
};

class ViewNPREffectCmdDef : public ViewListCmdDef<ViewNPREffectCmdDef>
{
public:
    static const CommandRow kRow;
    static const ViewChoices kChoices;
};

/// The sky room shows as no item once it is chosen: it is set under another name than the list looks for.
class ViewEnvironmentCmdDef : public ViewListCmdDef<ViewEnvironmentCmdDef>
{
public:
    static const CommandRow kRow;
    static const ViewChoices kChoices;
};

class ViewMSAACmdDef : public ViewListCmdDef<ViewMSAACmdDef>
{
public:
    static const CommandRow kRow;
    static const ViewChoices kChoices;
};

class ViewSelectionEffectCmdDef : public ViewListCmdDef<ViewSelectionEffectCmdDef>
{
public:
    static const CommandRow kRow;
    static const ViewChoices kChoices;
};

class ViewVisualStyleCmdDef : public ViewListCmdDef<ViewVisualStyleCmdDef>
{
public:
    static const CommandRow kRow;
    static const ViewChoices kChoices;
};

class ViewCameraCmdDef : public ViewListCmdDef<ViewCameraCmdDef>
{
public:
    static const CommandRow kRow;
    static const ViewChoices kChoices;
};

class ViewObjectShadowCmdDef : public ViewListCmdDef<ViewObjectShadowCmdDef>
{
public:
    static const CommandRow kRow;
    static const ViewChoices kChoices;
};

class ViewColorCyclingCmdDef : public ViewListCmdDef<ViewColorCyclingCmdDef>
{
public:
    static const CommandRow kRow;
    static const ViewChoices kChoices;
};

class ViewLayoutGridOnCmdDef : public ViewListCmdDef<ViewLayoutGridOnCmdDef>
{
public:
    static const CommandRow kRow;
    static const ViewChoices kChoices;
};

class ViewGridRefNumbersCmdDef : public ViewListCmdDef<ViewGridRefNumbersCmdDef>
{
public:
    static const CommandRow kRow;
    static const ViewChoices kChoices;
};

class ViewAxisCrossCmdDef : public ViewListCmdDef<ViewAxisCrossCmdDef>
{
public:
    static const CommandRow kRow;
    static const ViewChoices kChoices;
};

class ViewScaleBarCmdDef : public ViewListCmdDef<ViewScaleBarCmdDef>
{
public:
    static const CommandRow kRow;
    static const ViewChoices kChoices;
};

} // namespace Vu::Commands
