#include "UI/Base/Validation/MetricProbe.h"

#include "Server/Scene/Camera.h"
#include "Server/Scene/SceneNodes.h"
#include "UI/Base/Command/CommandBase.h"
#include "UI/Base/Command/CommandEvents.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/CommandObserver.h"
#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Base/Validation/Private/MetricFrames.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/MouseEvents.h"
#include "UI/Base/View/Private/FrameEvents.h"

#include <algorithm>
#include <optional>

namespace Vu {
namespace {

class ElapsedTimeProbe : public MetricProbe
{
public:
    std::vector<MetricTime> times() const override { return {m_clock.elapsed()}; }

private:
    MetricClock m_clock;
};

class FramesProbe : public MetricProbe, private FrameEventSite, private Vs::Scene::CameraEventSite
{
public:
    FramesProbe() { Vs::Scene::CameraEventSource::get()->subscribe(this); }
    ~FramesProbe() override { Vs::Scene::CameraEventSource::get()->unsubscribe(this); }

    bool windowless() const override { return m_frames.drewWindowless(); }

private:
    void frameDrawn(FrameEvent* event) override { add({event->seconds(), 0}); }
    void cameraChanged(Vs::Scene::CameraEvent*) override { m_frames.drawSoon(true); }

    MetricFrames m_frames;
    FrameEventSource::Wanted m_wanted{this};
};

/// A one-shot command is done when it has ended, any other when it waits for the user.
class CommandsProbe : public MetricProbe, private ICommandObserver, private CommandEventSite
{
public:
    CommandsProbe()
    {
        CommandMgr::addObserver(this);
        CommandEventSource::get()->subscribe(this);
    }
    ~CommandsProbe() override
    {
        CommandEventSource::get()->unsubscribe(this);
        CommandMgr::removeObserver(this);
    }

private:
    void before(const CommandRun& run) override
    {
        // A run of another manager can be nested in this one.
        if (run.depth > 0 || (m_command && Vs::cast<SimpleCommand>(m_command)))
            return;
        m_manager = run.manager;
        m_command = nullptr;
        m_clock.emplace();
    }
    void commandCreated(CommandCreatedEvent* event) override
    {
        if (m_clock && !m_command)
            m_command = event->command();
    }
    void commandAvailabilitiesChanged(Vs::Event*) override
    {
        if (!m_clock || !m_command)
            return;
        const std::vector<CommandBase*>& begun = m_manager->commandStack();
        if (std::find(begun.begin(), begun.end(), m_command) != begun.end())
            done();
    }
    void after(const CommandRun& run) override
    {
        if (!m_clock || run.command != m_command)
            return;
        if (run.refused)
            m_clock.reset();
        else
            done();
    }
    void done()
    {
        add(m_clock->elapsed());
        m_clock.reset();
        m_command = nullptr;
    }

    std::optional<MetricClock> m_clock; ///< Of the command in progress.
    const CommandMgr* m_manager = nullptr;
    const CommandBase* m_command = nullptr; ///< Null until created.
};

/// The sites that find and highlight what is under the mouse subscribed earlier, so each move arrives here
/// after they have handled it.
class PrehighlightProbe : public MetricProbe, private MouseEventSite, private FrameEventSite
{
public:
    explicit PrehighlightProbe(bool untilSeen) : m_untilSeen(untilSeen)
    {
        MouseEventSource::get()->subscribe(this);
    }
    ~PrehighlightProbe() override { MouseEventSource::get()->unsubscribe(this); }

    bool windowless() const override { return m_frames.drewWindowless(); }

private:
    static uint64_t sceneOf(const MouseEvent& event)
    {
        const GraphicsView* view = event.canvas() ? event.canvas()->view() : nullptr;
        return view && view->viewNode() ? view->viewNode()->subtreeRevision() : 0;
    }

    void mouseMoveGlobal(MouseEvent* event) override
    {
        m_move.emplace();
        m_scene = sceneOf(*event);
    }
    void mouseDrag(MouseEvent*) override { m_move.reset(); }
    void mouseMove(MouseEvent* event) override
    {
        if (!m_move)
            return;
        if (!m_untilSeen) {
            add(m_move->elapsed());
        } else if (!m_unseen && m_scene != sceneOf(*event)) {
            m_unseen = m_move;
            m_canvas = event->canvas();
            if (MetricFrames::serves(m_canvas))
                m_frames.drawSoon(false);
        }
        m_move.reset();
    }
    void frameDrawn(FrameEvent* event) override
    {
        if (!m_unseen || event->canvas() != m_canvas)
            return;
        add(m_unseen->elapsed());
        m_unseen.reset();
    }

    const bool m_untilSeen;
    std::optional<MetricClock> m_move;   ///< Of the move being delivered.
    std::optional<MetricClock> m_unseen; ///< Of the first move whose highlight isn't visible yet.
    uint64_t m_scene = 0;                ///< The scene's revision at that move.
    const GraphicsCanvas* m_canvas = nullptr;
    MetricFrames m_frames;
    FrameEventSource::Wanted m_wanted{this};
};

} // namespace

std::unique_ptr<MetricProbe> MetricProbe::make(EMetricType type)
{
    switch (type) {
    case EMetricType::FramesRate:
        return std::make_unique<FramesProbe>();
    case EMetricType::CommandInteractivity:
        return std::make_unique<CommandsProbe>();
    case EMetricType::PrehighlightSelect:
        return std::make_unique<PrehighlightProbe>(false);
    case EMetricType::PrehighlightInteractivity:
        return std::make_unique<PrehighlightProbe>(true);
    case EMetricType::ElapsedTime:
        break;
    }
    return std::make_unique<ElapsedTimeProbe>();
}

} // namespace Vu
