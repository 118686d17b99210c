#include "UI/Base/Window/GlCanvas.h"

#include "Server/Scene/FinerMeshes.h"
#include "Server/Scene/GraphicsOptionGroup.h"
#include "Server/Scene/MSAASettings.h"
#include "Server/Scene/Rendra/DriverReset.h"
#include "Server/Scene/Rendra/Renderer.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/Private/FrameEvents.h"
#include "UI/Base/Window/EmptyHint.h"

#include <QElapsedTimer>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <QTimer>

#include <tuple>

namespace Vu {
namespace {

/// A frame that takes no longer, in milliseconds, can be drawn in full while the camera moves.
constexpr qint64 kFluentTime = 30;

} // namespace

GlCanvas::GlCanvas(GraphicsCanvas* canvas, QWidget* parent)
    : QOpenGLWidget(parent), m_richTime(kFluentTime), m_link(canvas, this)
{
}

GlCanvas::~GlCanvas()
{
    drop();
}

// The base class draws immediately on each resize, while a layout goes through several sizes until everything
// has found its place; the frame is drawn when the window paints.
void GlCanvas::resizeEvent(QResizeEvent* event)
{
    m_resizing = true;
    QOpenGLWidget::resizeEvent(event);
    m_resizing = false;
    update();
}

void GlCanvas::paintEvent(QPaintEvent* event)
{
    if (m_resizing || m_isLost)
        return;
    // The platform asks for a reset as well, and then gives no context to draw with.
    if (m_renderer && !context()->isValid())
        renewSoon();
    else
        QOpenGLWidget::paintEvent(event);
}

void GlCanvas::initializeGL()
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

void GlCanvas::paintGL()
{
    if (!m_renderer || isLost())
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

// The widget's own framebuffer keeps the samples it was created with; the user's option takes effect from the
// next frame on.
void GlCanvas::prepareSmooth(const QSize& size)
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

// Asked before each frame: what was drawn into a lost context shows at the next one at the latest.
bool GlCanvas::isLost()
{
    if (Rendra::driverWasReset())
        renewSoon();
    else
        m_losses = 0;
    return m_isLost;
}

// Going out of the window and back gives the widget another context, for which all is made anew.
void GlCanvas::renewSoon()
{
    constexpr int kMostLosses = 3;
    m_isLost = true;
    if (++m_losses > kMostLosses) {
        Application::get()->inform(localized(
            "GraphicsLost", "The graphics driver keeps failing. Save your work and restart the program."));
        return;
    }
    QTimer::singleShot(0, this, [this] {
        QWidget* const parent = parentWidget();
        const QRect place = geometry();
        const bool focused = hasFocus();
        drop();
        setParent(nullptr);
        m_isLost = false;
        setParent(parent);
        setGeometry(place);
        lower(); // under what lies over the canvas
        show();
        if (focused)
            setFocus();
    });
}

void GlCanvas::drop()
{
    if (!m_renderer)
        return;
    makeCurrent();
    if (QOpenGLContext::currentContext() == context()) {
        m_smooth.reset();
        m_renderer.reset();
    } else {
        // What a lost context holds goes with it.
        std::ignore = m_smooth.release();
        std::ignore = m_renderer.release();
    }
    doneCurrent();
}

} // namespace Vu
