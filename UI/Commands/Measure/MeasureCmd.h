#pragma once

#include "Server/Base/OptionGroup.h"
#include "Server/DataModel/AssetEvents.h"
#include "Server/DataModel/Selection/SelectionFilter.h"
#include "Server/DataModel/Selection/SelectionSet.h"
#include "Server/Scene/Camera.h"
#include "UI/Base/Command/InteractiveCommandBase.h"
#include "UI/Base/View/CanvasEvents.h"
#include "UI/Commands/Measure/MeasureHuds.h"
#include "UI/Commands/Measure/MeasureInputs.h"
#include "UI/Commands/Measure/MeasurePreview.h"
#include "UI/Commands/Measure/MeasureState.h"

class EndMeasureTask;

namespace Vu {
class MouseEvent;
}

namespace Vu::Commands {

class MeasureCmdDef;

/// The tool that measures: up to three selections, and what there is to tell of each, of two, and of the
/// angle of three. A passive run shows no panel; it measures what the pointer is over and what is selected,
/// and ends with the first value.
class MeasureCmd : public Vs::Implements<MeasureCmd, InteractiveCommandBase, CommandInputEventSite,
                                         Vs::Scene::CameraEventSite>,
                   private CanvasEventSite,
                   private Vs::AssetEventSite,
                   private Vs::OptionEventSite,
                   private Vs::SelectionSetSite
{
public:
    ~MeasureCmd() override;

    /// Makes the kept settings of the user, if there are none yet.
    static void makeOptions();

    bool passive() const { return m_passive; }
    /// The bits of EMeasureTypeBit that are on.
    unsigned measureTypes() const { return m_measureTypes; }
    const MeasureInputs& inputs() const { return *m_inputs; }

    /// For MeasureState.
    void showHud(int selectionNumber);
    void showPreview(const Vs::MeasureResult& result, bool isDistance);
    void clearPreview(bool isDistance);
    void clearPreviews();
    /// Tells the result beside the pointer, in a passive command.
    void showHint(const MeasureRequest& request, const Vs::MeasureResult& result);
    /// Ends the command with the value at the next idle moment, unless all of the request's selections are
    /// still selected: then a person looks at them, and it returns false.
    bool deliver(const MeasureRequest& request, const Vs::MeasureResult& result);

    /// For EndMeasureTask: the queue has it no more.
    void endTaskRuns() { m_endTask = nullptr; }

    ECommandType onCommandType() const override { return ECommandType::Exclusive; }
    /// A passive run stacks over the command that it measures for.
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
    void keepOptions() const;
    void fillFilters();
    void enableSelections();

    void valueChanged(const CommandInputBase* input);
    void selectionChanged(int number);
    void selectionTypesChanged();
    void clearSelections();
    void precisionChanged();
    void optionChanged(Vs::OptionEvent* event) override;
    void showTexts();
    void preselected(const Vs::Selection* selection);
    /// Begins anew with what lies there; false, and nothing happens, if there is nothing.
    bool beginAnewAt(const MouseEvent& click);
    bool permits(const CommandInputBase* input, const Vs::Selection& selection) const;
    void hovered(const CommandInputBase* input, bool entering);

    void clearHint();
    void takeSelection(int number);
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
    Vs::CompositeSelectionFilter m_filter12{Vs::CompositeSelectionFilter::ELogic::Any};
    Vs::CompositeSelectionFilter m_filter3{Vs::CompositeSelectionFilter::ELogic::Any};
    EndMeasureTask* m_endTask = nullptr;    ///< That waits in the queue, which owns it.
    Vs::SelectionSet* m_selected = nullptr; ///< The session's, while a passive command listens to it.
    unsigned m_measureTypes = 0;
    bool m_passive = false;
    bool m_changing = false;   ///< Its own changes of the selections need no answer.
    bool m_beginsAnew = false; ///< Looks for the first selection of another measurement.
};

} // namespace Vu::Commands
