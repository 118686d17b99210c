#include "UI/Commands/Measure/MeasureCmd.h"

#include "Server/Base/Progress.h"
#include "Server/Base/TranscriptMgr.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Measure/MeasureMgr.h"
#include "Server/Scene/ViewFragment.h"
#include "Server/Types/UnitsOptionGroup.h"
#include "UI/Base/Command/ControlCommandInputs.h"
#include "UI/Base/Command/RealValueCommandInput.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/LocalNumbers.h"
#include "UI/Base/Session/ActiveAssetUtils.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SceneUtilities.h"
#include "UI/Base/Session/SelectionCommandInput.h"
#include "UI/Base/Session/SelectionInputEvents.h"
#include "UI/Base/View/CursorController.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Commands/Measure/EndMeasureTask.h"
#include "UI/Commands/Measure/MeasureCmdDef.h"
#include "UI/Commands/Measure/MeasureHint.h"
#include "UI/Commands/Measure/MeasureOptions.h"
#include "UI/Commands/Resources.h"

#include <algorithm>
#include <utility>

namespace Vu::Commands {

MeasureCmd::MeasureCmd(MeasureCmdDef* definition, CommandContext* context) : Implements(definition, context)
{
    repeatable(false);
    readArguments();
    auto* manager = Vs::MeasureMgr::get();
    manager->selectionTypes(MeasureOptions::selectionTypes());
    manager->initialize();
    m_filters.fill();
    commandInputSet(CommandInputSet::make(this));
    m_inputs = std::make_unique<MeasureInputs>(commandInputSet());
    m_selections.emplace(m_inputs->selections, m_state);
    for (size_t i = 0; i < m_inputs->selections.size(); ++i)
        m_inputs->selections[i]->requiredFilter(m_filters.of(i));
    m_inputs->chooseSelectionTypes(manager->selectionTypes());
    m_inputs->checkMeasureTypes(m_measureTypes);
    m_inputs->selectionTypes->enableTranscript(false);
    enableSelections();
}

void MeasureCmd::readArguments()
{
    const CommandContext& context = *commandContext();
    int value = 0;
    std::optional<unsigned> given;
    if (context.argument(MeasureCmdDef::measureTypesArgName(), CommandContext::EArgType::Int, &value))
        given = static_cast<unsigned>(value);
    m_measureTypes = MeasureOptions::measureTypes(given);
    value = 0;
    context.argument(MeasureCmdDef::passiveArgName(), CommandContext::EArgType::Int, &value);
    m_passive = value >= 1;
    if (!m_passive)
        return;
    usesCommandDialog(false);
    if (CursorController* cursor = cursorController())
        cursor->cursor(Resources::MeasureCursor());
}

MeasureCmd::~MeasureCmd()
{
    if (EndMeasureTask* waiting = std::exchange(m_endTask, nullptr))
        Application::get()->idleTasks()->remove(waiting);
    if (!m_passive)
        MeasureOptions::keep(Vs::MeasureMgr::get()->selectionTypes(), m_measureTypes);
}

EStackingBehavior MeasureCmd::onStackingBehavior() const
{
    return m_passive ? EStackingBehavior::OverCategory : EStackingBehavior::ByType;
}

// A recording says what was measured; whoever else begins does so with what is selected.
void MeasureCmd::onBegin()
{
    Implements::onBegin();
    const bool isReplayed = commandContext()->isByLine() && Vs::TranscriptMgr::get()->replaying();
    const Vs::SelectionSet* selected = !isReplayed && !m_passive ? ActiveAssetUtils::selectionSet() : nullptr;
    if (!selected)
        return;
    m_selections->add(*selected);
    takeSelections();
    measureAnew();
}

void MeasureCmd::onActivate()
{
    Implements::onActivate();
    Vs::Scene::CameraEventSource::get()->subscribe(this);
    for (const auto& input : commandInputSet()->inputs())
        CommandInputEventSource::get()->subscribe(this, input.get());
    CanvasEventSource::get()->subscribe(this);
    Vs::AssetEventSource::get()->subscribe(this);
    Vs::UnitsOptionGroup::get()->subscribe(this);
    m_selected = m_passive ? ActiveAssetUtils::selectionSet() : nullptr;
    if (m_selected)
        m_selected->subscribe(this);
    m_huds.place();
}

void MeasureCmd::onDeactivate()
{
    if (Vs::SelectionSet* left = std::exchange(m_selected, nullptr))
        left->unsubscribe(this);
    Vs::UnitsOptionGroup::get()->unsubscribe(this);
    Vs::AssetEventSource::get()->unsubscribe(this);
    CanvasEventSource::get()->unsubscribe(this);
    Implements::onDeactivate();
    for (const auto& input : commandInputSet()->inputs())
        CommandInputEventSource::get()->unsubscribe(this, input.get());
    Vs::Scene::CameraEventSource::get()->unsubscribe(this);
    m_huds.hide();
    clearHint();
}

void MeasureCmd::onEnd(ETerminationReason reason)
{
    if (auto* definition = Vs::cast<MeasureCmdDef>(commandDefinition()); definition && m_passive)
        definition->measureEnded(this);
    Implements::onEnd(reason);
}

void MeasureCmd::onCommandInputEvent(CommandInputEvent* event)
{
    const CommandInputBase* input = event->commandInput();
    if (Vs::cast<CommandInputValueChangeEvent>(event)) {
        valueChanged(input);
    } else if (auto* query = Vs::cast<SelectionInputQuerySelectPermittedEvent>(event)) {
        query->permitted(query->permitted() && m_selections->permits(input, *query->selection()));
    } else if (const auto* pointed = Vs::cast<SelectionInputPreselectionEvent>(event)) {
        preselected(pointed->selection());
    } else if (auto* missed = Vs::cast<SelectionInputMissedEvent>(event)) {
        missed->taken(input == m_inputs->selections[2] && beginAnewAt(missed->click()));
    } else if (const auto* hover = Vs::cast<CommandInputHoverEvent>(event)) {
        hovered(input, hover->entering());
    }
}

void MeasureCmd::valueChanged(const CommandInputBase* input)
{
    for (int number = 1; number <= 3; ++number)
        if (input == m_inputs->selections[size_t(number) - 1] && !m_selections->changing())
            selectionChanged(number);
    if (input == m_inputs->selectionTypes) {
        selectionTypesChanged();
    } else if (input == m_inputs->measureTypes) {
        m_measureTypes = m_inputs->checkedMeasureTypes(m_measureTypes);
        measureAnew();
    } else if (input == m_inputs->restart) {
        clearSelections();
    } else if (input == m_inputs->precision) {
        precisionChanged();
    }
}

void MeasureCmd::selectionTypesChanged()
{
    // What was chosen here belongs in a recording; what was kept from another day doesn't.
    m_inputs->selectionTypes->enableTranscript(true);
    Vs::MeasureMgr::get()->selectionTypes(m_inputs->chosenSelectionTypes());
    m_filters.fill();
    enableSelections();
    m_selections->take(3);
    measureAnew();
}

void MeasureCmd::precisionChanged()
{
    m_inputs->precision->enableTranscript(true);
    Vs::Units::UnitDisplaySettings::userEditableSettings().generalPrecision(m_inputs->chosenPrecision());
    for (RealValueCommandInput* result : m_inputs->results())
        result->unitDisplaySettings(Vs::Units::UnitDisplaySettings::get());
    showTexts();
}

// The inputs update by themselves, and earlier: they subscribed first.
void MeasureCmd::optionChanged(Vs::OptionEvent*)
{
    showTexts();
}

void MeasureCmd::showTexts()
{
    m_distancePreview.text(localNumbers(m_inputs->pair.distance->displayText()));
    m_anglePreview.text(localNumbers(m_inputs->pair.angle->displayText()));
    m_huds.place();
}

void MeasureCmd::clearSelections()
{
    m_selections->clear();
    takeSelections();
    measureAnew();
}

bool MeasureCmd::beginAnewAt(const MouseEvent& click)
{
    const Vs::StrongRef<Vs::Selection> object = m_selections->firstAt(click);
    if (!object)
        return false;
    clearSelections();
    return m_inputs->selections[0]->add(object);
}

void MeasureCmd::enableSelections()
{
    m_selections->enable(isRunning() ? selectionManager() : nullptr);
}

void MeasureCmd::takeSelections()
{
    enableSelections();
    for (int number = 1; number <= 3; ++number)
        m_selections->take(number);
}

void MeasureCmd::selectionChanged(int number)
{
    enableSelections();
    m_selections->take(number);
    // The third may have been taken away from the others, or given back to them.
    m_selections->take(3);
    measureAnew();
}

void MeasureCmd::clearSide(int number)
{
    if (number <= 2)
        for (RealValueCommandInput* result : m_inputs->sides[size_t(number) - 1].all())
            result->disable();
    m_huds.remove(number);
}

void MeasureCmd::clearResults()
{
    for (RealValueCommandInput* result : m_inputs->pair.all())
        result->disable();
    for (int number = 1; number <= 3; ++number)
        clearSide(number);
    clearPreviews();
}

void MeasureCmd::measureAnew()
{
    clearResults();
    m_state.requests.clear();
    // Places of texts are measured, too. One that is cancelled takes those that wait with it.
    const Vs::Progress::CancelScope together;
    m_state.requestAll();
    m_state.runRequests();
}

void MeasureCmd::showHud(int selectionNumber)
{
    std::vector<const CommandInputBase*> shown{m_inputs->pair.angle};
    if (selectionNumber <= 2) {
        const auto results = m_inputs->sides[size_t(selectionNumber) - 1].all();
        shown.assign(results.begin(), results.end());
    }
    m_huds.show(selectionNumber, m_state.selection(selectionNumber), shown);
}

void MeasureCmd::showPreview(const Vs::MeasureResult& result, bool isDistance)
{
    const RealValueCommandInput* input = isDistance ? m_inputs->pair.distance : m_inputs->pair.angle;
    const std::wstring text =
        Vs::Units::toText(result.value, input->inputUnits(), input->unitDisplaySettings());
    (isDistance ? m_distancePreview : m_anglePreview).show(result, localNumbers(text));
}

void MeasureCmd::clearPreview(bool isDistance)
{
    (isDistance ? m_distancePreview : m_anglePreview).clear();
}

void MeasureCmd::clearPreviews()
{
    clearPreview(true);
    clearPreview(false);
}

void MeasureCmd::cameraChanged(Vs::Scene::CameraEvent* event)
{
    const GraphicsView* view = SceneUtilities::getActiveAssetGraphicView();
    const Vs::Scene::ViewFragment* fragment = view ? view->modelFragment() : nullptr;
    if (fragment && fragment->camera() == event->camera())
        m_huds.place();
}

void MeasureCmd::canvasResized(CanvasEvent* event)
{
    if (event->canvas() == SceneUtilities::getActiveGraphicsCanvas())
        m_huds.place();
}

void MeasureCmd::hovered(const CommandInputBase* input, bool entering)
{
    if (input == m_inputs->pair.distance)
        m_distancePreview.highlight(entering);
    else if (input == m_inputs->pair.angle)
        m_anglePreview.highlight(entering);
    const MeasureSide* side = m_inputs->sideOf(input);
    Vs::SelectionSet* lit = ActiveAssetUtils::highlightSet();
    if (!side || !lit)
        return;
    lit->clear();
    const auto& object = side == &m_inputs->sides[0] ? m_state.selection1 : m_state.selection2;
    if (!entering || !object)
        return;
    if (input != side->loopLength) {
        lit->add(object);
        return;
    }
    std::vector<Vs::StrongRef<Vs::Selection>> loop;
    for (const auto& edge : Vs::MeasureMgr::get()->getLoopSelections(object))
        loop.push_back(edge);
    lit->replace(loop);
}

// What a click would give together with what is already picked.
void MeasureCmd::preselected(const Vs::Selection* selection)
{
    clearHint();
    auto* object = Vs::cast<Vs::LogicalSelection>(const_cast<Vs::Selection*>(selection));
    if (!m_passive || !object)
        return;
    MeasureState asked(this);
    for (int number = 1; number <= 3; ++number)
        asked.selection(number) = m_state.selection(number);
    const int next = !asked.selection1 ? 1 : !asked.selection2 ? 2 : 3;
    asked.selection(next) = Vs::StrongRef<Vs::LogicalSelection>(object);
    asked.requestAll();
    Vs::MeasureResult result;
    if (const MeasureRequest* answered = asked.firstAnswered(result))
        showHint(*answered, result);
}

void MeasureCmd::clearHint()
{
    if (m_passive)
        cursorController()->hint({});
}

void MeasureCmd::showHint(const MeasureRequest& request, const Vs::MeasureResult& result)
{
    if (const auto place = MeasureHint::placeOf(request))
        cursorController()->hint(localNumbers(MeasureHint::textOf(request, result)), *place);
}

bool MeasureCmd::deliver(const MeasureRequest& request, const Vs::MeasureResult& result)
{
    const Vs::SelectionSet* selected = ActiveAssetUtils::selectionSet();
    const auto objects = request.objects();
    if (selected && std::all_of(objects.begin(), objects.end(),
                                [&](const auto& object) { return selected->contains(*object); }))
        return false;
    if (!m_endTask) {
        m_endTask = new EndMeasureTask(result.value, this);
        Application::get()->idleTasks()->add(m_endTask);
    }
    return true;
}

void MeasureCmd::selectionSetChanged()
{
    measureAnew();
}

// What is gone is given up, and what has changed is measured again.
void MeasureCmd::assetComponentsChanged(Vs::ComponentsEvent* event)
{
    const AssetSession* session = assetSession();
    if (!session || event->asset() != session->asset())
        return;
    m_selections->dropMissing(*session->asset());
    takeSelections();
    measureAnew();
}

} // namespace Vu::Commands
