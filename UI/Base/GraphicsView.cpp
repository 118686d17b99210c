#include "UI/Base/GraphicsView.h"

#include "Server/Base/ResourceMgr.h"
#include "Server/Scene/OffscreenRenderer.h"
#include "Server/Scene/SceneAssetAdapter.h"
#include "Server/Scene/ViewFragment.h"
#include "UI/Base/GraphicsCanvas.h"
#include "UI/Base/SplitViewMgr.h"
#include "UI/Base/TransitionMgr.h"
#include "UI/Base/UIBaseOptionGroup.h"

#include <QImage>
#include <QImageWriter>
#include <QSaveFile>

#include <algorithm>
#include <cmath>

namespace Vu {
namespace {

/// How much larger one notch of the wheel makes the model.
constexpr double kZoomOfOneNotch = 1.15;

QByteArray imageFormat(const QString& path)
{
    const QString suffix = path.section(QLatin1Char('.'), -1).toLower();
    if (suffix == QLatin1String("jpg") || suffix == QLatin1String("jpeg"))
        return "jpg";
    if (suffix == QLatin1String("tif") || suffix == QLatin1String("tiff"))
        return "tiff";
    return "png";
}

bool writeImage(const Vs::Scene::Image& image, const QString& path, bool keepsTransparency,
                Vs::Status& status)
{
    QImage picture(image.pixels.data(), static_cast<int>(image.width), static_cast<int>(image.height),
                   static_cast<qsizetype>(image.width) * 4, QImage::Format_RGBA8888);
    if (!keepsTransparency)
        picture = picture.convertToFormat(QImage::Format_RGB888);
    // Written beside the old picture and put in its place whole.
    QSaveFile file(path);
    QString reason;
    if (!file.open(QIODevice::WriteOnly)) {
        reason = file.errorString();
    } else {
        QImageWriter writer(&file, imageFormat(path));
        constexpr int kJpegQuality = 92;
        if (writer.format() == "jpg")
            writer.setQuality(kJpegQuality);
        if (!writer.write(picture))
            reason = writer.errorString();
        else if (!file.commit())
            reason = file.errorString();
    }
    if (reason.isEmpty())
        return true;
    status.addError(L"The picture " + path.toStdWString() + L" cannot be written: " + reason.toStdWString());
    return false;
}

} // namespace

GraphicsView::GraphicsView() = default;

GraphicsView::~GraphicsView()
{
    if (m_canvas)
        m_canvas->view(nullptr, false, false);
    SplitViewMgr::get()->forget(this);
}

void GraphicsView::addFragment(Vs::StrongRef<Vs::Scene::ViewFragment> fragment)
{
    m_fragments.push_back(fragment.get());
    m_owned.push_back(std::move(fragment));
    m_seen.push_back(0);
}

bool GraphicsView::waitsForContent() const
{
    return std::any_of(m_fragments.begin(), m_fragments.end(), [](const Vs::Scene::ViewFragment* fragment) {
        const Vs::Scene::SceneAssetAdapter* adapter = fragment->data()->sceneAssetAdapter();
        return adapter && adapter->waitsForMeshes();
    });
}

void GraphicsView::fit()
{
    // The first parts are framed at once, and all of them when the last one is there.
    m_fitPending = waitsForContent();
    for (Vs::Scene::ViewFragment* fragment : m_fragments) {
        const BBox bounds = fragment->bounds();
        if (bounds.isEmpty())
            m_fitPending = true;
        else
            fragment->camera()->fit(bounds);
    }
}

bool GraphicsView::update()
{
    const bool pending = m_fitPending;
    bool changed = false;
    for (size_t i = 0; i < m_fragments.size(); ++i)
        changed = m_fragments[i]->update(m_seen[i]) || changed;
    if (pending && changed && !TransitionMgr::get()->playing())
        fit();
    return changed;
}

void GraphicsView::copyCamera(const GraphicsView& from)
{
    if (&from != this && !m_fragments.empty() && !from.m_fragments.empty())
        m_fragments.front()->camera()->copyFrom(*from.m_fragments.front()->camera());
}

bool GraphicsView::renderImage(Vs::ImageResource* image, uint32_t width, uint32_t height, Vs::Status& status)
{
    const QString path = QString::fromStdWString(image->localPath());
    const Vs::Scene::ImageOptions options = Vs::Scene::ImageOptions::current();
    Vs::Scene::Image pixels;
    if (!Vs::Scene::OffscreenRenderer::get()->render(m_fragments, width, height, options, pixels, status))
        return false;
    const bool jpeg = imageFormat(path) == "jpg";
    return writeImage(pixels, path, options.transparentBackground && !jpeg, status);
}

bool GraphicsView::renderImage(Vs::ImageResource* image, uint32_t width, uint32_t height)
{
    Vs::Status status;
    return renderImage(image, width, height, status);
}

/// Millimetres at the target for one logical pixel.
double GraphicsView::pixelSize() const
{
    const Vs::Scene::Camera* camera = m_fragments.front()->camera();
    const double width = std::max(1, m_canvas ? m_canvas->width() : 1);
    const double height = std::max(1, m_canvas ? m_canvas->height() : 1);
    return std::max(camera->extentsWidth() / width, camera->extentsHeight() / height);
}

void GraphicsView::mouseDown(MouseEvent* event)
{
    if (m_fragments.empty())
        return;
    TransitionMgr::get()->finish();
    const bool shift = event->modifierMask() == kShiftModifier;
    if (event->button() == kRightButton || (event->button() == kMiddleButton && shift))
        m_drag = Drag::Orbit;
    else if (event->button() == kMiddleButton)
        m_drag = Drag::Pan;
    m_lastX = event->x();
    m_lastY = event->y();
}

void GraphicsView::mouseMove(MouseEvent* event)
{
    if (m_drag != Drag::None)
        dragTo(event->x(), event->y());
}

void GraphicsView::mouseDrag(MouseEvent* event)
{
    mouseMove(event);
}

void GraphicsView::mouseUp(MouseEvent*)
{
    m_drag = Drag::None;
}

void GraphicsView::dragTo(double x, double y)
{
    const double dx = x - m_lastX;
    const double dy = m_lastY - y; // Upwards.
    m_lastX = x;
    m_lastY = y;
    m_fitPending = false;
    Vs::Scene::Camera* camera = m_fragments.front()->camera();
    if (m_drag == Drag::Orbit) {
        camera->orbit(dx, dy);
    } else {
        const double size = pixelSize();
        camera->dolly(camera->right() * (-dx * size) + camera->screenUp() * (-dy * size));
    }
}

void GraphicsView::mouseDoubleClick(MouseEvent* event)
{
    m_drag = Drag::None;
    if (event->button() == kMiddleButton || event->modifierMask() == kAltModifier)
        fit();
}

void GraphicsView::mouseScroll(MouseEvent* event)
{
    if (m_fragments.empty() || event->delta() == 0)
        return;
    TransitionMgr::get()->finish();
    m_fitPending = false;
    const double steps = UIBaseOptionGroup::get()->reverseZoomDirection() ? -event->delta() : event->delta();
    const double factor = std::pow(kZoomOfOneNotch, steps);
    Vs::Scene::Camera* camera = m_fragments.front()->camera();
    // What lies under the pointer, in the plane of the target, stays there.
    const double size = pixelSize();
    const double across = m_canvas ? (event->x() - m_canvas->width() / 2.0) * size : 0;
    const double upwards = m_canvas ? (m_canvas->height() / 2.0 - event->y()) * size : 0;
    const double part = 1.0 - 1.0 / factor;
    const GkVector3d shift = camera->right() * (across * part) + camera->screenUp() * (upwards * part);
    camera->zoom(factor);
    camera->dolly(shift);
}

} // namespace Vu
