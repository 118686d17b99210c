#include "UI/Base/Window/CanvasLink.h"

#include "Server/Base/TranscriptMgr.h"
#include "Server/Body/FinerMesh.h"
#include "Server/Scene/FinerMeshes.h"
#include "Server/Scene/GraphicsOptionGroup.h"
#include "Server/Scene/OffscreenRenderer.h"
#include "Server/Scene/ViewFragment.h"
#include "UI/Base/Program/ProgressBar.h"
#include "UI/Base/View/CanvasEvents.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/MouseOverlay.h"
#include "UI/Base/View/Private/TouchNavigation.h"

#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QWidget>

#include <set>

namespace Vu {
namespace {

/// How often parts arriving meanwhile are shown.
constexpr int kContentInterval = 60;
/// A camera that has not moved for this long counts as still.
constexpr int kStillInterval = 180;
constexpr double kRadiansPerDegree = 0.017453292519943295;

std::set<CanvasLink*>& links()
{
    static auto* const links = new std::set<CanvasLink*>;
    return *links;
}

int buttonOf(Qt::MouseButton button)
{
    switch (button) {
    case Qt::LeftButton:
        return kLeftButton;
    case Qt::RightButton:
        return kRightButton;
    case Qt::MiddleButton:
        return kMiddleButton;
    default:
        return kNoMouseButton;
    }
}

unsigned modifiersOf(Qt::KeyboardModifiers modifiers)
{
    constexpr unsigned kKnown = kShiftModifier | kControlModifier | kAltModifier;
    return static_cast<unsigned>(modifiers) & kKnown;
}

} // namespace

CanvasLink::CanvasLink(GraphicsCanvas* canvas, QWidget* widget) : m_canvas(canvas), m_widget(widget)
{
    widget->setMouseTracking(true);
    widget->setFocusPolicy(Qt::StrongFocus);
    widget->setMinimumSize(64, 64);
    widget->setContextMenuPolicy(Qt::PreventContextMenu);
    m_content.setInterval(kContentInterval);
    QObject::connect(&m_content, &QTimer::timeout, widget, [this] { contentTick(); });
    m_finer.setInterval(kContentInterval);
    QObject::connect(&m_finer, &QTimer::timeout, widget, [this] { finerTick(); });
    m_still.setSingleShot(true);
    m_still.setInterval(kStillInterval);
    QObject::connect(&m_still, &QTimer::timeout, widget, [widget] { widget->update(); });
    links().insert(this);
    Vs::Scene::CameraEventSource::get()->subscribe(this);
    Vs::AssetEventSource::get()->subscribe(this);
    Vs::Scene::GraphicsOptionGroup::get()->subscribe(this);
}

CanvasLink::~CanvasLink()
{
    Vs::Scene::CameraEventSource::get()->unsubscribe(this);
    Vs::AssetEventSource::get()->unsubscribe(this);
    Vs::Scene::GraphicsOptionGroup::get()->unsubscribe(this);
    Vs::Scene::FinerMeshes::get().forget(this);
    links().erase(this);
}

void CanvasLink::settleAll(const QWidget* window)
{
    for (CanvasLink* link : links())
        if (link->m_widget->window() == window)
            link->settle();
}

void CanvasLink::settle()
{
    if (!m_widget->isVisible())
        return;
    m_still.stop();
    m_judged = nullptr;
    m_settles = true;
    // Qt puts a repaint off that follows within a frame on another; what is grabbed is drawn in any case.
    m_widget->grab();
    m_settles = false;
    Vs::Scene::FinerMeshes::get().await(Vs::Scene::ImageOptions().finerWait);
    m_widget->update();
}

std::vector<Vs::Scene::ViewFragment*> CanvasLink::fragments()
{
    GraphicsView* view = m_canvas->view();
    if (!view)
        return {};
    if (MouseOverlay* overlay = view->mouseOverlay())
        overlay->layOut(m_widget->width(), m_widget->height());
    view->update();
    m_drawn = Vs::FinerMesh::revision();
    if (view->waitsForContent())
        m_content.start();
    else
        m_content.stop();
    return view->viewFragments();
}

bool CanvasLink::asksForFiner() const
{
    const GraphicsView* view = m_canvas->view();
    return view && m_judged != view && !moving() && !view->waitsForContent() &&
           (m_settles || !Vs::TranscriptMgr::get()->replaying());
}

void CanvasLink::wish(const std::vector<Vs::Scene::FinerWish>& finer, bool software)
{
    m_judged = m_canvas->view();
    const auto quality = Vs::Scene::MeshQuality::current();
    Vs::Scene::FinerMeshes::get().want(this, finer,
                                       software ? quality.trianglesInSoftware : quality.triangles);
    followFiner();
}

void CanvasLink::followFiner()
{
    if (m_drawn != Vs::FinerMesh::revision())
        m_widget->update();
    if (!Vs::Scene::FinerMeshes::get().working())
        m_finer.stop();
    else if (!m_finer.isActive())
        m_finer.start();
}

bool CanvasLink::handle(QEvent* event)
{
    if (event->type() == QEvent::Leave)
        MouseEventSource::get()->mouseLeft(m_canvas);
    if (event->type() == QEvent::Resize) {
        m_judged = nullptr;
        CanvasEvent resized(m_canvas);
        CanvasEventSource::get()->fireCanvasResized(&resized);
    }
    // While a command works the window stays responsive, but nothing may change underneath the command.
    const bool input = event->type() == QEvent::MouseButtonPress ||
                       event->type() == QEvent::MouseButtonRelease ||
                       event->type() == QEvent::MouseButtonDblClick || event->type() == QEvent::MouseMove ||
                       event->type() == QEvent::Wheel || event->type() == QEvent::NativeGesture;
    if (!input)
        return false;
    if (ProgressBar::get()->busy())
        return true;
    MouseEventSource* source = MouseEventSource::get();
    if (event->type() == QEvent::NativeGesture)
        return gesture(*static_cast<QNativeGestureEvent*>(event));
    if (event->type() == QEvent::Wheel) {
        auto* wheel = static_cast<QWheelEvent*>(event);
        if (fingers(*wheel))
            return true;
        MouseEvent::Data data{kNoMouseButton, modifiersOf(wheel->modifiers()), wheel->position().x(),
                              wheel->position().y(), wheel->angleDelta().y()};
        MouseEvent made(m_canvas, data);
        source->fireMouseScroll(&made);
        wheel->accept();
        return true;
    }
    auto* mouse = static_cast<QMouseEvent*>(event);
    int button = buttonOf(mouse->button());
    if (event->type() == QEvent::MouseMove)
        button = m_held;
    MouseEvent made(
        m_canvas, {button, modifiersOf(mouse->modifiers()), mouse->position().x(), mouse->position().y(), 0});
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        m_held = button;
        source->fireMouseDown(&made);
        break;
    case QEvent::MouseButtonRelease:
        source->fireMouseUp(&made);
        m_held = kNoMouseButton;
        break;
    case QEvent::MouseButtonDblClick:
        source->fireMouseDoubleClick(&made);
        break;
    default:
        source->fireMouseMove(&made);
    }
    mouse->accept();
    return true;
}

// A two-finger move on a trackpad moves the model; with Control it zooms, as a wheel does.
bool CanvasLink::fingers(QWheelEvent& wheel)
{
    const bool trackpad = wheel.pointingDevice()->type() == QInputDevice::DeviceType::TouchPad;
    if (!trackpad || wheel.modifiers() != Qt::NoModifier)
        return false;
    // If the driver reports no pixels, a notch of the wheel counts as this many.
    constexpr double kPixelsOfOneNotch = 40.0;
    const QPointF moved = wheel.hasPixelDelta() ? QPointF(wheel.pixelDelta())
                                                : QPointF(wheel.angleDelta()) / 120.0 * kPixelsOfOneNotch;
    TouchNavigation(m_canvas->view()).pan(moved.x(), moved.y());
    wheel.accept();
    return true;
}

bool CanvasLink::gesture(QNativeGestureEvent& gesture)
{
    TouchNavigation touch(m_canvas->view());
    const QPoint place = gesture.position().toPoint();
    if (gesture.gestureType() == Qt::ZoomNativeGesture)
        touch.zoom({place.x(), place.y()}, 1.0 + gesture.value());
    else if (gesture.gestureType() == Qt::RotateNativeGesture)
        touch.roll(gesture.value() * kRadiansPerDegree);
    else
        return false;
    gesture.accept();
    return true;
}

void CanvasLink::contentTick()
{
    GraphicsView* view = m_canvas->view();
    if (!view)
        m_content.stop();
    else if (view->update() || !view->waitsForContent())
        m_widget->update();
}

void CanvasLink::finerTick()
{
    Vs::Scene::FinerMeshes::get().takeMade();
    followFiner();
}

void CanvasLink::cameraChanged(Vs::Scene::CameraEvent* event)
{
    GraphicsView* view = m_canvas->view();
    if (!view || view->viewFragments().empty() || view->viewFragments().front()->camera() != event->camera())
        return;
    m_still.start();
    lookAnew();
}

void CanvasLink::lookAnew()
{
    m_judged = nullptr;
    m_widget->update();
}

} // namespace Vu
