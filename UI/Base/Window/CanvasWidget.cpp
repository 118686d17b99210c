#include "UI/Base/Window/CanvasWidget.h"

#include "Server/Scene/OffscreenRenderer.h"
#include "Server/Scene/Rendra/DriverGuard.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/Private/CanvasPicture.h"
#include "UI/Base/Window/BandWidget.h"
#include "UI/Base/Window/CanvasAccess.h"
#include "UI/Base/Window/CanvasLink.h"
#include "UI/Base/Window/CoveredParts.h"
#include "UI/Base/Window/FocusFrame.h"
#include "UI/Base/Window/GlCanvas.h"
#include "UI/Base/Window/KeyboardHold.h"
#include "UI/Base/Window/QtDisplay.h"

#include <QApplication>
#include <QOpenGLContext>
#include <QPainter>
#include <QPointer>

#include <memory>
#include <optional>
#include <tuple>

namespace Vu {
namespace {

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
        auto context = std::make_unique<QOpenGLContext>();
        bool fits = false;
        const bool alive = Rendra::survives(
            [&] { fits = context->create() && context->format().version() >= qMakePair(3, 3); });
        if (!alive)
            std::ignore = context.release(); // What it holds can't be given back any more.
        return alive && fits;
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
    CanvasLink::settleAll(window);
}

} // namespace Vu
