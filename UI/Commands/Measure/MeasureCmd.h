#pragma once

#include "Server/Base/OptionGroup.h"
#include "Server/DataModel/AssetEvents.h"
#include "Server/DataModel/Selection/SelectionSet.h"
#include "Server/Scene/Camera.h"
#include "UI/Base/Command/InteractiveCommandBase.h"
#include "UI/Base/View/CanvasEvents.h"
#include "UI/Commands/Measure/MeasureFilters.h"
#include "UI/Commands/Measure/MeasureHuds.h"
#include "UI/Commands/Measure/MeasureInputs.h"
#include "UI/Commands/Measure/MeasurePreview.h"
#include "UI/Commands/Measure/MeasureSelections.h"
#include "UI/Commands/Measure/MeasureState.h"

#include <memory>
#include <optional>

class EndMeasureTask;

namespace Vu {
class MouseEvent;
}

namespace Vu::Commands {

class MeasureCmdDef;

/// The measuring tool: up to three selections, and the results for each, for pairs, and for the angle of
/// three. A passive run shows no panel; it measures what is under the pointer and what is selected, and ends
/// with the first value.
class MeasureCmd : public Vs::Implements<MeasureCmd, InteractiveCommandBase, CommandInputEventSite,
                                         Vs::Scene::CameraEventSite>,
                   private CanvasEventSite,
                   private Vs::AssetEventSite,
                   private Vs::OptionEventSite,
                   private Vs::SelectionSetSite
{
public:
    ~MeasureCmd() override;

    bool passive() const { return m_passive; }
    /// The bits of EMeasureTypeBit that are on.
    unsigned measureTypes() const { return m_measureTypes; }
    const MeasureInputs& inputs() const { return *m_inputs; }

    /// For MeasureState.
    void showHud(int selectionNumber);
    void showPreview(const Vs::MeasureResult& result, bool isDistance);
    void clearPreview(bool isDistance);
    void clearPreviews();
    /// Shows the result beside the pointer, in a passive command.
    void showHint(const MeasureRequest& request, const Vs::MeasureResult& result);
    /// Ends the command with the value when next idle, unless all of the request's selections are still
    /// selected: then the user is looking at them, and it returns false.
    bool deliver(const MeasureRequest& request, const Vs::MeasureResult& result);

    /// For EndMeasureTask: it is no longer in the queue.
    void endTaskRuns() { m_endTask = nullptr; }

    ECommandType onCommandType() const override { return ECommandType::Exclusive; }
    /// A passive run stacks on top of the command it measures for.
    EStackingBehavior onStackingBehavior() const override;
    void onBegin() override;
    void onActivate() override;
    void onDeactivate() override;
    void onEnd(ETerminationReason reason) override;

    void onCommandInputEvent(CommandInputEvent* event) override;
    void cameraChanged(Vs::Scene::CameraEvent* event) override;

private:
    friend class MeasureCmdDef;
    MeasureCmd(MeasureCmdDef* definition, CommandContext* context);

    void readArguments();
    void enableSelections();

    void valueChanged(const CommandInputBase* input);
    void selectionChanged(int number);
    void selectionTypesChanged();
    void clearSelections();
    void precisionChanged();
    void optionChanged(Vs::OptionEvent* event) override;
    void showTexts();
    void preselected(const Vs::Selection* selection);
    /// Starts over with what lies there; does nothing and returns false if there is nothing.
    bool beginAnewAt(const MouseEvent& click);
    void hovered(const CommandInputBase* input, bool entering);

    void clearHint();
    void takeSelections();
    void clearSide(int number);
    void clearResults();
    void measureAnew();

    void canvasResized(CanvasEvent* event) override;
    void assetComponentsChanged(Vs::ComponentsEvent* event) override;
    void selectionSetChanged() override;

    std::unique_ptr<MeasureInputs> m_inputs;
    MeasureHuds m_huds;
    MeasurePreview m_distancePreview{true}, m_anglePreview{false};
    MeasureState m_state{this};
    std::optional<MeasureSelections> m_selections;
    MeasureFilters m_filters;
    EndMeasureTask* m_endTask = nullptr;    ///< Waiting in the queue, which owns it.
    Vs::SelectionSet* m_selected = nullptr; ///< The session's, while a passive command listens to it.
    unsigned m_measureTypes = 0;
    bool m_passive = false;
};

} // namespace Vu::Commands
