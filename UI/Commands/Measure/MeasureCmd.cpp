#include "UI/Commands/Measure/MeasureCmd.h"

#include "Server/Base/Progress.h"
#include "Server/Base/TranscriptMgr.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Measure/MeasureMgr.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
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
#include "UI/Commands/Localized.h"
#include "UI/Commands/Measure/EndMeasureTask.h"
#include "UI/Commands/Measure/MeasureCmdDef.h"
#include "UI/Commands/Measure/MeasureHint.h"
#include "UI/Commands/Measure/MeasureOptions.h"
#include "UI/Commands/Resources.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace Vu::Commands {

namespace {

Vs::StrongRef<Vs::LogicalSelection> firstObject(const Vs::SelectionSet& set)
{
    for (const auto& selection : set.selections())
        if (auto* object = Vs::cast<Vs::LogicalSelection>(selection.get()))
            return Vs::StrongRef<Vs::LogicalSelection>(object);
    return nullptr;
}

/// Whether neither it nor an assembly around it is hidden.
bool isSeen(const Vs::Selection& selection)
{
    const auto* object = Vs::cast<Vs::LogicalSelection>(&selection);
    const std::string id = object ? object->componentId() : std::string();
    for (size_t end = 0; object && end != std::string::npos;) {
        end = id.find('/', end + 1);
        const Vs::Component* component = object->asset()->findComponent(id.substr(0, end));
        if (!component || !component->visible)
            return false;
    }
    return true;
}

} // namespace

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

// One after the other; the third only where there is something that it can take.
void MeasureCmd::enableSelections()
{
    const bool any[] = {!m_inputs->selections[0]->selectionSet().empty(),
                        !m_inputs->selections[1]->selectionSet().empty(),
                        !m_inputs->selections[2]->selectionSet().empty()};
    const bool points =
        Vs::MeasureMgr::get()->selectionTypes() & static_cast<unsigned>(Vs::ESelectionType::Vertex);
    m_inputs->selections[1]->enabled(any[0] || any[1]);
    SelectionCommandInput* third = m_inputs->selections[2];
    third->enabled(points && (any[1] || any[2]));
    // What its field can't clear isn't shown either.
    if (Vs::SelectionMgr* manager = isRunning() ? selectionManager() : nullptr)
        manager->collect(third, third->enabled() ? third->selectionSet().selections()
                                                 : std::vector<Vs::StrongRef<Vs::Selection>>());
}

// A recording says what was measured; whoever else begins does so with what is selected.
void MeasureCmd::onBegin()
{
    Implements::onBegin();
    const bool isReplayed = commandContext()->isByLine() && Vs::TranscriptMgr::get()->replaying();
    const Vs::SelectionSet* selected = !isReplayed && !m_passive ? ActiveAssetUtils::selectionSet() : nullptr;
    if (!selected)
        return;
    // What was just hidden is still selected.
    size_t taken = 0;
    for (const auto& object : std::vector(selected->selections()))
        if (taken < 2 && isSeen(*object))
            m_inputs->selections[taken++]->add(object);
    enableSelections();
    for (int number = 1; number <= 3; ++number)
        takeSelection(number);
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
        query->permitted(query->permitted() && permits(input, *query->selection()));
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
        if (input == m_inputs->selections[size_t(number) - 1] && !m_changing)
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
    takeSelection(3);
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
    m_changing = true;
    for (SelectionCommandInput* input : m_inputs->selections)
        input->clear();
    if (Vs::SelectionSet* selected = ActiveAssetUtils::selectionSet())
        selected->clear();
    m_changing = false;
    enableSelections();
    for (int number = 1; number <= 3; ++number)
        takeSelection(number);
    measureAnew();
}

bool MeasureCmd::beginAnewAt(const MouseEvent& click)
{
    // It may be what is the second selection of the measurement that ends.
    m_beginsAnew = true;
    const Vs::StrongRef<Vs::Selection> object = m_inputs->selections[0]->under(click);
    m_beginsAnew = false;
    if (!object)
        return false;
    clearSelections();
    return m_inputs->selections[0]->add(object);
}

bool MeasureCmd::permits(const CommandInputBase* input, const Vs::Selection& selection) const
{
    const SelectionCommandInput* other = m_inputs->selections[input == m_inputs->selections[0] ? 1 : 0];
    return m_beginsAnew || !other->selectionSet().contains(selection);
}

void MeasureCmd::takeSelection(int number)
{
    SelectionCommandInput* input = m_inputs->selections[size_t(number) - 1];
    const auto first = firstObject(input->selectionSet());
    m_state.selection(number) = input->enabled() ? first : nullptr;
    // The first is what counts; others stay only as part of what the user has selected.
    std::vector<Vs::StrongRef<Vs::Selection>> kept;
    const Vs::SelectionSet* selected = ActiveAssetUtils::selectionSet();
    for (const auto& each : input->selectionSet().selections())
        if (each.get() == first.get() || (selected && selected->contains(*each)))
            kept.push_back(each);
    if (kept.size() == input->selectionSet().size())
        return;
    m_changing = true;
    input->replace(kept);
    m_changing = false;
}

void MeasureCmd::selectionChanged(int number)
{
    enableSelections();
    takeSelection(number);
    // The third may have been taken away from the others, or given back to them.
    takeSelection(3);
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
    m_changing = true;
    for (SelectionCommandInput* input : m_inputs->selections) {
        Vs::Status gone;
        const auto object = firstObject(input->selectionSet());
        if (object && !Vs::resolvePath(object->path(), *session->asset(), gone))
            input->clear();
    }
    m_changing = false;
    enableSelections();
    for (int number = 1; number <= 3; ++number)
        takeSelection(number);
    measureAnew();
}

} // namespace Vu::Commands
