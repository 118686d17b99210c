#include "UI/Base/View/AutoCamViewFragment.h"

#include "Server/CommonData/CommonDataAssetSettings.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/AssetAdapter.h"
#include "Server/Scene/CameraParameters.h"
#include "Server/Scene/NodeChange.h"
#include "Server/Scene/Projection.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/View/CameraTransition.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/MouseEvents.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <unordered_map>
#include <utility>

namespace Vu {
namespace {

using Vs::Scene::Camera;
using Vs::Scene::CameraParameters;

/// In logical pixels; a small canvas, as in a split view, has a smaller cube.
constexpr double kSize = 116, kMargin = 6;
constexpr double kLargestPart = 0.36;
constexpr double kSmallestSize = 36;
/// From the eye to the centre of the cube: near enough for it to look like a cube.
constexpr double kDistance = 9;
/// A drag over half of the cube's size turns it by about a right angle.
constexpr double kTurnGain = 3.0;
/// A clicking hand shakes by this many pixels.
constexpr double kShake = 3.0;
/// Of the angle's cosine: a camera that was turned to a side by a command stands exactly there.
constexpr double kStraight = 1 - 1e-9;

std::map<const void*, AutoCamViewFragment::RightClick>& rightClicks()
{
    static auto* const listeners = new std::map<const void*, AutoCamViewFragment::RightClick>;
    return *listeners;
}

} // namespace

/// Looks at the camera when whoever is moving it has finished.
class AutoCamViewFragment::OperationsTask : public Vs::Implements<OperationsTask, Vs::Task>
{
public:
    explicit OperationsTask(AutoCamViewFragment* fragment) : m_fragment(fragment) {}

    bool run() override
    {
        if (m_fragment) {
            m_fragment->m_waiting = nullptr;
            // The end of a glide reports the camera once more.
            if (!TransitionMgr::get()->playing())
                m_fragment->performCamOperations();
        }
        return true;
    }
    void forget() { m_fragment = nullptr; }

private:
    AutoCamViewFragment* m_fragment;
};

/// Listens to the cameras for all cubes: of thousands of views, few are in a canvas.
class AutoCamViewFragment::Shown : private Vs::Scene::CameraEventSite
{
public:
    static Shown& get()
    {
        static auto* const shown = new Shown;
        return *shown;
    }
    void add(AutoCamViewFragment* cube) { m_ofView[cube->m_view] = cube; }
    void remove(AutoCamViewFragment* cube)
    {
        const auto found = m_ofView.find(cube->m_view);
        if (found != m_ofView.end() && found->second == cube)
            m_ofView.erase(found);
    }

private:
    Shown() { Vs::Scene::CameraEventSource::get()->subscribe(this); }

    void cameraChanged(Vs::Scene::CameraEvent* event) override
    {
        for (const GraphicsCanvas* canvas : GraphicsCanvas::existingCanvases())
            if (const auto found = m_ofView.find(canvas->view()); found != m_ofView.end())
                found->second->cameraChanged(*event);
    }

    std::unordered_map<const GraphicsView*, AutoCamViewFragment*> m_ofView;
};

Vs::StrongRef<AutoCamViewFragment> AutoCamViewFragment::make(GraphicsView* view, Vs::Asset* asset)
{
    return Vs::StrongRef<AutoCamViewFragment>(new AutoCamViewFragment(view, asset));
}

AutoCamViewFragment::AutoCamViewFragment(GraphicsView* view, Vs::Asset* asset)
    : Implements(nullptr, kName),
      m_view(view),
      m_asset(asset),
      m_area(L"Orbicon", Vs::UniqueString::find("Orbicon", true))
{
    data()->supportSelectBackground(false);
    Vs::Scene::RenderParams& params = *renderParams();
    params.visualStyle(Vs::Scene::kShadedWithVisibleEdges);
    params.groundPlaneEnabled(false);
    params.groundShadowEnabled(false);
    params.groundReflectionEnabled(false);
    params.ambientOcclusionEnabled(false);
    params.nprEffect(0);
    params.objectShadowType(0);
    m_area.visible(UIBaseOptionGroup::get()->wantToShowOrbicon());
    m_area.onChange([this] { changed(); });
    changed();
    Shown::get().add(this);
    m_subscriptions.add(UIBaseOptionGroup::get(), this);
}

AutoCamViewFragment::~AutoCamViewFragment()
{
    Shown::get().remove(this);
    m_subscriptions.clear();
    if (m_waiting)
        m_waiting->forget();
}

void AutoCamViewFragment::enable(bool enabled)
{
    m_area.visible(enabled);
}

void AutoCamViewFragment::changed()
{
    Vs::Scene::NodeChange(viewFragmentNode()).visible(enabled());
    if (m_view->canvas())
        m_view->canvas()->invalidate();
}

Camera* AutoCamViewFragment::modelCamera() const
{
    const ViewFragment* model = m_view->modelFragment();
    return model ? model->camera() : nullptr;
}

Vs::CommonData::CommonDataAssetSettings* AutoCamViewFragment::settings() const
{
    Vs::AssetAdapter* adapter = m_asset->adapter();
    return adapter ? Vs::cast<Vs::CommonData::CommonDataAssetSettings>(adapter->assetSettings()) : nullptr;
}

AutoCamViewFragment::Frame AutoCamViewFragment::frame() const
{
    const auto* common = settings();
    const GkVector3d up = common ? common->sceneUp() : GkVector3d(0, 0, 1);
    const GkVector3d front = common ? common->sceneFront() : GkVector3d(0, -1, 0);
    return {up.crossProduct(front), -front, up};
}

AutoCamViewFragment::Place AutoCamViewFragment::placeIn(double width, double height)
{
    const double size = std::min(kSize, kLargestPart * std::min(width, height));
    if (size < kSmallestSize || width <= 0 || height <= 0)
        return {};
    return {width - size - kMargin, kMargin, size};
}

void AutoCamViewFragment::layOut(double width, double height)
{
    if (!m_cube)
        m_cube = std::make_unique<OrbiconCube>(viewFragmentNode());
    m_place = placeIn(width, height);
    const auto& [left, top, size] = m_place;
    if (size > 0)
        data()->viewport()->placement(left / width, 1 - (top + size) / height, size / width, size / height);
    else
        data()->viewport()->placement(0, 0, 0, 0);
    followModel();
}

void AutoCamViewFragment::covers(double width, double height, std::vector<CanvasRect>& parts)
{
    if (const Place place = placeIn(width, height); enabled() && place.size > 0)
        parts.push_back({place.left, place.top, place.left + place.size, place.top + place.size});
}

// If nothing changed, all of it stays as it was, and nothing is redrawn.
void AutoCamViewFragment::followModel()
{
    const Camera* model = modelCamera();
    if (!m_cube || !model)
        return;
    const Frame axes = frame();
    m_cube->orientation(axes.up, -axes.back);
    CameraParameters now(*camera()), wanted = now;
    wanted.projection = model->projection();
    wanted.target = GkPoint3d::kOrigin;
    wanted.position = GkPoint3d::kOrigin - model->direction() * kDistance;
    wanted.up = model->screenUp();
    wanted.extentsWidth = wanted.extentsHeight = 2 * OrbiconCube::kReach;
    if (!wanted.isEqualTo(now))
        wanted.applyTo(*camera());
}

void AutoCamViewFragment::cameraChanged(const Vs::Scene::CameraEvent& event)
{
    if (event.camera() != modelCamera())
        return;
    if (enabled())
        followModel();
    const auto* common = settings();
    if (m_waiting || !common || !common->perspWithOrthoFaces())
        return;
    m_waiting = new OperationsTask(this);
    Application::get()->deferredTasks()->add(m_waiting);
}

void AutoCamViewFragment::optionChanged(Vs::OptionEvent* event)
{
    if (event->name() == "wantToShowOrbicon")
        enable(UIBaseOptionGroup::get()->wantToShowOrbicon());
}

void AutoCamViewFragment::performCamOperations()
{
    Camera* model = modelCamera();
    const auto* common = settings();
    if (!model || !common || !common->perspWithOrthoFaces())
        return;
    const Frame axes = frame();
    const bool straight =
        std::ranges::any_of(std::array{axes.right, axes.back, axes.up}, [&](const auto& axis) {
            return std::abs(axis.dotProduct(model->direction())) >= kStraight;
        });
    const auto wanted = straight ? Vs::Scene::kParallelProjection : Vs::Scene::kPerspectiveProjection;
    if (model->projection() != wanted)
        model->toggleProjection(wanted);
}

/// The up direction when the model is seen from there: the model's own up or, where that is the viewing
/// direction itself, the side to which the view has to turn least.
GkVector3d AutoCamViewFragment::upFor(const GkVector3d& direction, const Frame& axes) const
{
    if (direction.x != 0 || direction.y != 0)
        return axes.up;
    const Camera& model = *modelCamera();
    const GkVector3d along = model.direction();
    const double above = direction.z; // 1 from the top, -1 from the bottom
    const GkVector3d upright = axes.back * above;
    // Who looks from there already wants the name upright.
    if (-along.dotProduct(axes.up) * above >= kStraight)
        return upright;
    const bool sameHalf = along.dotProduct(axes.up) * above <= 0;
    const GkVector3d wish = along * (2 * above) + model.screenUp() * (sameHalf ? 1.0 : -1.0);
    return std::ranges::max(std::array{upright, axes.right, -upright, -axes.right}, {},
                            [&](const auto& axis) {
                                // The upright one wins where two are as good.
                                return std::round(wish.dotProduct(axis) * 1e6);
                            });
}

void AutoCamViewFragment::lookFrom(const GkVector3d& direction)
{
    Camera* model = modelCamera();
    Transition* transition = model ? TransitionMgr::get()->beginTransition() : nullptr;
    if (!transition)
        return;
    const Frame axes = frame();
    const GkVector3d outward = axes.right * direction.x + axes.back * direction.y + axes.up * direction.z;
    const CameraParameters before(*model);
    model->look(-outward, upFor(direction, axes));
    model->fit(m_view->modelFragment()->bounds());
    const CameraParameters after(*model);
    transition->add(CameraTransition::make(transition, before, after, model));
    const TranscriptCameraTrigger trigger(model);
    TransitionMgr::get()->endTransition();
}

std::optional<size_t> AutoCamViewFragment::zoneUnder(const MouseEvent* event)
{
    if (!enabled() || !event->canvas())
        return std::nullopt;
    layOut(event->canvas()->width(), event->canvas()->height());
    const double x = event->x() - m_place.left, y = m_place.size - (event->y() - m_place.top);
    if (x < 0 || y < 0 || x >= m_place.size || y >= m_place.size)
        return std::nullopt;
    const Vs::Scene::Projection projection(*camera(), m_place.size, m_place.size);
    return m_cube->zoneAt(projection.rayStart(x, y), projection.rayDirection(x, y));
}

bool AutoCamViewFragment::takesMouse(MouseEvent* event)
{
    return zoneUnder(event).has_value();
}

void AutoCamViewFragment::highlight(std::optional<size_t> zone)
{
    if (!m_cube || m_cube->highlighted() == zone)
        return;
    m_cube->highlight(zone);
    changed();
}

void AutoCamViewFragment::hover(MouseEvent* event)
{
    highlight(zoneUnder(event));
}

void AutoCamViewFragment::hoverEnd()
{
    highlight(std::nullopt);
}

void AutoCamViewFragment::onRightClick(const void* owner, RightClick listener)
{
    if (listener)
        rightClicks()[owner] = std::move(listener);
    else
        rightClicks().erase(owner);
}

void AutoCamViewFragment::mousePress(MouseEvent* event)
{
    m_pressed = event->button() == kLeftButton ? zoneUnder(event) : std::nullopt;
    m_dragged = false;
    m_pressX = m_lastX = event->x();
    m_pressY = m_lastY = event->y();
    highlight(m_pressed);
}

void AutoCamViewFragment::mouseDrag(MouseEvent* event)
{
    Camera* model = modelCamera();
    if (!m_pressed || !model)
        return;
    m_dragged = m_dragged || std::hypot(event->x() - m_pressX, event->y() - m_pressY) > kShake;
    if (!m_dragged)
        return;
    const double right = (event->x() - std::exchange(m_lastX, event->x())) * kTurnGain;
    const double upward = -(event->y() - std::exchange(m_lastY, event->y())) * kTurnGain;
    if (!UIBaseOptionGroup::get()->useContrainedOrbit()) {
        model->orbit(right, upward);
    } else {
        const GkVector3d up = frame().up;
        // An upside-down model turns the other way, or it would move against the hand.
        const double sense = model->screenUp().dotProduct(up) < 0 ? -1 : 1;
        model->constrainedOrbit(-right * sense, false, up, model->target());
        model->constrainedOrbit(upward, true, up, model->target());
    }
    highlight(std::nullopt);
}

void AutoCamViewFragment::mouseRelease(MouseEvent* event)
{
    const std::optional<size_t> pressed = std::exchange(m_pressed, std::nullopt);
    const std::optional<size_t> under = zoneUnder(event);
    if (event->button() == kRightButton && under) {
        const auto listeners = rightClicks();
        for (const auto& [owner, listener] : listeners)
            listener(event->canvas(), event->position());
    }
    if (pressed && !m_dragged && pressed == under)
        lookFrom(OrbiconCube::direction(*pressed));
    else if (m_dragged)
        if (Camera* model = modelCamera())
            const TranscriptCameraTrigger trigger(model);
    highlight(zoneUnder(event));
}

} // namespace Vu
