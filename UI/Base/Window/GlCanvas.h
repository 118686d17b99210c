#pragma once

#include "UI/Base/Window/CanvasLink.h"

#include <QOpenGLWidget>

#include <memory>

class QOpenGLFramebufferObject;

namespace Rendra {
class Renderer;
}

namespace Vu {

/// A canvas that is drawn by OpenGL in the window itself.
class GlCanvas : public QOpenGLWidget
{
public:
    GlCanvas(GraphicsCanvas* canvas, QWidget* parent);
    ~GlCanvas() override;

protected:
    bool event(QEvent* event) override { return m_link.handle(event) || QOpenGLWidget::event(event); }
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void initializeGL() override;
    void paintGL() override;

private:
    void prepareSmooth(const QSize& size);
    void drop();
    bool isLost();
    void renewSoon();

    std::unique_ptr<Rendra::Renderer> m_renderer;
    std::unique_ptr<QOpenGLFramebufferObject> m_smooth; ///< Null if edges are not anti-aliased.
    int m_samples = 1;
    bool m_resizing = false;
    bool m_isLost = false; ///< The context; another one comes at the end of the event.
    int m_losses = 0;      ///< Since the last frame that was drawn.
    qint64 m_richTime;     ///< Milliseconds of the last full frame.
    CanvasLink m_link;
};

} // namespace Vu
