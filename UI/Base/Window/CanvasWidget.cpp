#include "UI/Base/Window/CanvasWidget.h"

#include "Server/Base/TranscriptMgr.h"
#include "Server/Body/FinerMesh.h"
#include "Server/DataModel/AssetEvents.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/FinerMeshes.h"
#include "Server/Scene/GraphicsOptionGroup.h"
#include "Server/Scene/MSAASettings.h"
#include "Server/Scene/OffscreenRenderer.h"
#include "Server/Scene/Rendra/Renderer.h"
#include "Server/Scene/ViewFragment.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/ProgressBar.h"
#include "UI/Base/View/CanvasEvents.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/MouseEvents.h"
#include "UI/Base/View/MouseOverlay.h"
#include "UI/Base/View/Private/CanvasPicture.h"
#include "UI/Base/View/Private/FrameEvents.h"
#include "UI/Base/View/Private/TouchNavigation.h"
#include "UI/Base/Window/BandWidget.h"
#include "UI/Base/Window/CanvasAccess.h"
#include "UI/Base/Window/CoveredParts.h"
#include "UI/Base/Window/EmptyHint.h"
#include "UI/Base/Window/FocusFrame.h"
#include "UI/Base/Window/KeyboardHold.h"
#include "UI/Base/Window/QtDisplay.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <QOpenGLWidget>
#include <QPainter>
#include <QPointer>
#include <QTimer>

#include <memory>
#include <optional>
#include <set>

namespace Vu {
namespace {

/// How often parts arriving meanwhile are shown.
constexpr int kContentInterval = 60;
/// A camera that has not moved for this long counts as still.
constexpr int kStillInterval = 180;
constexpr double kRadiansPerDegree = 0.017453292519943295;

/// A frame that takes no longer, in milliseconds, can be drawn in full while the camera moves.
constexpr qint64 kFluentTime = 30;

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

/// What both widgets of a canvas have in common: events in, repaints when a camera, an option or the model
/// changes.
class CanvasLink : private Vs::Scene::CameraEventSite, private Vs::AssetEventSite, private Vs::OptionEventSite
{
public:
    CanvasLink(GraphicsCanvas* canvas, QWidget* widget) : m_canvas(canvas), m_widget(widget)
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
        all().insert(this);
        Vs::Scene::CameraEventSource::get()->subscribe(this);
        Vs::AssetEventSource::get()->subscribe(this);
        Vs::Scene::GraphicsOptionGroup::get()->subscribe(this);
    }
    ~CanvasLink() override
    {
        Vs::Scene::CameraEventSource::get()->unsubscribe(this);
        Vs::AssetEventSource::get()->unsubscribe(this);
        Vs::Scene::GraphicsOptionGroup::get()->unsubscribe(this);
        Vs::Scene::FinerMeshes::get().forget(this);
        all().erase(this);
    }

    static std::set<CanvasLink*>& all()
    {
        static auto* const links = new std::set<CanvasLink*>;
        return *links;
    }

    const GraphicsCanvas& canvas() const { return *m_canvas; }
    const QWidget* window() const { return m_widget->window(); }

    void settle()
    {
        if (!m_widget->isVisible())
            return;
        m_still.stop();
        m_judged = nullptr;
        m_settles = true;
        m_widget->repaint();
        m_settles = false;
        Vs::Scene::FinerMeshes::get().await(Vs::Scene::ImageOptions().finerWait);
        m_widget->repaint();
    }

    /// What must be drawn now; none without a view.
    std::vector<Vs::Scene::ViewFragment*> fragments()
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

    /// Whether it is time to look if the meshes in the picture just drawn are too coarse. What a replay picks
    /// must not depend on what was made in time.
    bool asksForFiner() const
    {
        const GraphicsView* view = m_canvas->view();
        return view && m_judged != view && !moving() && !view->waitsForContent() &&
               (m_settles || !Vs::TranscriptMgr::get()->replaying());
    }
    void wish(const std::vector<Vs::Scene::FinerWish>& finer, bool software)
    {
        m_judged = m_canvas->view();
        const auto quality = Vs::Scene::MeshQuality::current();
        Vs::Scene::FinerMeshes::get().want(this, finer,
                                           software ? quality.trianglesInSoftware : quality.triangles);
        followFiner();
    }
    /// Draws what was made meanwhile, and looks again as long as more is coming.
    void followFiner()
    {
        if (m_drawn != Vs::FinerMesh::revision())
            m_widget->update();
        if (!Vs::Scene::FinerMeshes::get().working())
            m_finer.stop();
        else if (!m_finer.isActive())
            m_finer.start();
    }

    /// Whether the camera is moving; a final frame is requested when it stands still.
    bool moving() const { return m_still.isActive(); }

    bool handle(QEvent* event)
    {
        if (event->type() == QEvent::Leave)
            MouseEventSource::get()->mouseLeft(m_canvas);
        if (event->type() == QEvent::Resize) {
            m_judged = nullptr;
            CanvasEvent resized(m_canvas);
            CanvasEventSource::get()->fireCanvasResized(&resized);
        }
        // While a command works the window stays responsive, but nothing may change underneath the command.
        const bool input =
            event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonRelease ||
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
            MouseEvent::Data data{kNoMouseButton, modifiers(wheel->modifiers()), wheel->position().x(),
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
        MouseEvent made(m_canvas, {button, modifiers(mouse->modifiers()), mouse->position().x(),
                                   mouse->position().y(), 0});
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

private:
    static unsigned modifiers(Qt::KeyboardModifiers modifiers)
    {
        constexpr unsigned kKnown = kShiftModifier | kControlModifier | kAltModifier;
        return static_cast<unsigned>(modifiers) & kKnown;
    }

    /// A two-finger move on a trackpad moves the model; with Control it zooms, as a wheel does.
    bool fingers(QWheelEvent& wheel)
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

    bool gesture(QNativeGestureEvent& gesture)
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

    void contentTick()
    {
        GraphicsView* view = m_canvas->view();
        if (!view)
            m_content.stop();
        else if (view->update() || !view->waitsForContent())
            m_widget->update();
    }

    void finerTick()
    {
        Vs::Scene::FinerMeshes::get().takeMade();
        followFiner();
    }

    void cameraChanged(Vs::Scene::CameraEvent* event) override
    {
        GraphicsView* view = m_canvas->view();
        if (!view || view->viewFragments().empty() ||
            view->viewFragments().front()->camera() != event->camera())
            return;
        m_still.start();
        lookAnew();
    }

    void assetComponentsChanged(Vs::ComponentsEvent*) override { lookAnew(); }
    void optionChanged(Vs::OptionEvent*) override { lookAnew(); }

    void lookAnew()
    {
        m_judged = nullptr;
        m_widget->update();
    }

    GraphicsCanvas* m_canvas;
    QWidget* m_widget;
    QTimer m_content, m_still, m_finer;
    const GraphicsView* m_judged = nullptr; ///< The view that was looked at for too coarse meshes.
    bool m_settles = false;
    uint64_t m_drawn = 0; ///< FinerMesh::revision of the last picture.
    int m_held = kNoMouseButton;
};

class GlCanvas : public QOpenGLWidget
{
public:
    GlCanvas(GraphicsCanvas* canvas, QWidget* parent) : QOpenGLWidget(parent), m_link(canvas, this) {}
    ~GlCanvas() override { drop(); }

protected:
    bool event(QEvent* event) override { return m_link.handle(event) || QOpenGLWidget::event(event); }

    // The base class draws immediately on each resize, while a layout goes through several sizes until
    // everything has found its place; the frame is drawn when the window paints.
    void resizeEvent(QResizeEvent* event) override
    {
        m_resizing = true;
        QOpenGLWidget::resizeEvent(event);
        m_resizing = false;
        update();
    }
    void paintEvent(QPaintEvent* event) override
    {
        if (!m_resizing)
            QOpenGLWidget::paintEvent(event);
    }

    void initializeGL() override
    {
        // A move to another window changes the context.
        QObject::connect(context(), &QOpenGLContext::aboutToBeDestroyed, this, [this] { drop(); });
        auto renderer = std::make_unique<Rendra::Renderer>();
        Vs::Status status;
        if (renderer->initialize(status))
            m_renderer = std::move(renderer);
        else
            Application::get()->inform(status.toString());
    }

    void paintGL() override
    {
        if (!m_renderer)
            return;
        Rendra::RenderTarget target = Rendra::RenderTarget::current();
        if (EmptyHint::isEmpty(m_link.canvas()))
            target.grid = target.gridOrigin = true;
        target.width = m_link.canvas().pixelWidth();
        target.height = m_link.canvas().pixelHeight();
        // With software rendering, a moving camera must not wait for expensive effects; the frame drawn when
        // it stands still has them all.
        const bool software = m_renderer->drawsInSoftware();
        const bool rich = !software || !m_link.moving() || m_richTime <= kFluentTime;
        if (rich)
            prepareSmooth({target.width, target.height});
        QOpenGLFramebufferObject* smooth = rich ? m_smooth.get() : nullptr;
        target.framebuffer = smooth ? smooth->handle() : defaultFramebufferObject();
        target.samples = smooth ? smooth->format().samples() : 1;
        target.lineWidth = Rendra::RenderTarget::kLineWidth * static_cast<float>(devicePixelRatioF());
        target.moving = m_link.moving();
        target.effects = rich;
        QElapsedTimer clock;
        clock.start();
        const std::vector<Vs::Scene::ViewFragment*> fragments = m_link.fragments();
        m_renderer->render(fragments, target);
        if (smooth)
            QOpenGLFramebufferObject::blitFramebuffer(nullptr, smooth);
        FrameEventSource* frames = FrameEventSource::get();
        if ((software && rich) || frames->wanted())
            context()->functions()->glFinish();
        if (software && rich)
            m_richTime = clock.elapsed();
        FrameEvent event(&m_link.canvas(), static_cast<double>(clock.nsecsElapsed()) * 1e-9);
        frames->fireFrameDrawn(&event);
        if (m_link.asksForFiner())
            m_link.wish(m_renderer->tooCoarse(fragments, target), software);
    }

private:
    /// The widget's own framebuffer keeps the samples it was created with; the user's option takes effect
    /// from the next frame on.
    void prepareSmooth(const QSize& size)
    {
        int samples = 1, quality = 0;
        if (Vs::Scene::GraphicsOptionGroup::get()->MSAA())
            Vs::Scene::GetMSAASettings(samples, quality);
        if (m_smooth && (samples != m_samples || m_smooth->size() != size))
            m_smooth.reset();
        m_samples = samples;
        if (m_smooth || samples <= 1 || size.isEmpty())
            return;
        QOpenGLFramebufferObjectFormat format;
        format.setSamples(samples);
        format.setAttachment(QOpenGLFramebufferObject::Depth);
        m_smooth = std::make_unique<QOpenGLFramebufferObject>(size, format);
        // A driver that lacks the memory draws without it.
        if (!m_smooth->isValid() || m_smooth->format().samples() <= 1)
            m_smooth.reset();
    }

    void drop()
    {
        if (!m_renderer)
            return;
        makeCurrent();
        m_smooth.reset();
        m_renderer.reset();
        doneCurrent();
    }

    std::unique_ptr<Rendra::Renderer> m_renderer;
    std::unique_ptr<QOpenGLFramebufferObject> m_smooth; ///< Null if edges are not anti-aliased.
    int m_samples = 1;
    bool m_resizing = false;
    qint64 m_richTime = kFluentTime; ///< Milliseconds of the last full frame.
    CanvasLink m_link;
};

class PaintedCanvas : public QWidget
{
public:
    PaintedCanvas(GraphicsCanvas* canvas, QWidget* parent) : QWidget(parent), m_link(canvas, this) {}

protected:
    bool event(QEvent* event) override { return m_link.handle(event) || QWidget::event(event); }

    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        const std::vector<Vs::Scene::ViewFragment*> fragments = m_link.fragments();
        Vs::Scene::Image image;
        Vs::Status status;
        if (fragments.empty() || !drawCanvas(m_link.canvas(), fragments, m_link.moving(),
                                             static_cast<float>(devicePixelRatioF()), image, status)) {
            painter.fillRect(rect(), palette().window());
            painter.drawText(rect(), Qt::AlignCenter | Qt::TextWordWrap,
                             QString::fromStdWString(status.toString()));
            return;
        }
        const QImage picture(image.pixels.data(), static_cast<int>(image.width),
                             static_cast<int>(image.height), static_cast<qsizetype>(image.width) * 4,
                             QImage::Format_RGBA8888);
        painter.drawImage(QRectF(rect()), picture);
        m_link.followFiner();
    }

private:
    CanvasLink m_link;
};

/// Checked once: only creating a context can tell.
bool platformHasOpenGL()
{
    static const bool has = [] {
        if (Application::headless())
            return false;
        QOpenGLContext context;
        return context.create() && context.format().version() >= qMakePair(3, 3);
    }();
    return has;
}

QWidget* makeWidget(GraphicsCanvas* canvas, QWidget* parent)
{
    QWidget* widget = nullptr;
    if (platformHasOpenGL()) {
        const KeyboardHold hold(parent->window());
        widget = new GlCanvas(canvas, parent);
    } else {
        widget = new PaintedCanvas(canvas, parent);
    }
    new FocusFrame(widget);
    tellOfCanvas(widget, *canvas);
    return widget;
}

class WidgetSurface : public CanvasSurface
{
public:
    explicit WidgetSurface(GraphicsCanvas* canvas) : m_canvas(canvas) {}
    ~WidgetSurface() override { delete m_widget; }

    QWidget* widget() const override { return m_widget; }
    bool put(QWidget* parent) override
    {
        const bool isNew = !m_widget;
        if (isNew)
            m_widget = makeWidget(m_canvas, parent);
        else if (m_widget->parentWidget() != parent)
            m_widget->setParent(parent);
        return isNew;
    }

    int width() const override { return m_widget ? m_widget->width() : 0; }
    int height() const override { return m_widget ? m_widget->height() : 0; }
    double pixelRatio() const override { return m_widget ? m_widget->devicePixelRatioF() : 1; }
    void update() override
    {
        if (m_widget)
            m_widget->update();
    }
    void repaint() override
    {
        if (m_widget && m_widget->isVisible())
            m_widget->repaint();
    }
    void pointer(const Vs::CursorResource* pointer) override
    {
        if (m_widget && pointer)
            m_widget->setCursor(cursorOf(*pointer));
        else if (m_widget)
            m_widget->unsetCursor();
    }
    bool underPointer() const override
    {
        return m_widget && QApplication::widgetAt(QCursor::pos()) == m_widget;
    }
    void activateWindow() override
    {
        if (m_widget && !m_widget->isActiveWindow())
            m_widget->activateWindow();
    }
    void band(const std::optional<CanvasBand>& band) override
    {
        if (m_widget && band && !m_band)
            m_band = new BandWidget(m_widget);
        if (m_band && band)
            m_band->showBand(*band);
        else if (m_band)
            m_band->hide();
    }
    void covered(std::vector<CanvasRect>& parts) const override
    {
        if (m_widget)
            addCoveredParts(*m_widget, parts);
    }

private:
    GraphicsCanvas* m_canvas;
    QPointer<QWidget> m_widget;
    QPointer<BandWidget> m_band;
};

} // namespace

std::unique_ptr<CanvasSurface> makeCanvasSurface(GraphicsCanvas* canvas)
{
    return std::make_unique<WidgetSurface>(canvas);
}

void settleCanvases(const QWidget* window)
{
    for (CanvasLink* link : CanvasLink::all())
        if (link->window() == window)
            link->settle();
}

} // namespace Vu
