#include "UI/Base/View/GraphicsView.h"

#include "Server/Base/PathInfo.h"
#include "Server/Base/Require.h"
#include "Server/Base/ResourceMgr.h"
#include "Server/Base/Strings.h"
#include "Server/Scene/OffscreenRenderer.h"
#include "Server/Scene/Outermost.h"
#include "Server/Scene/Projection.h"
#include "Server/Scene/SceneAssetAdapter.h"
#include "Server/Scene/ViewFragment.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/Private/PictureFile.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/MouseEvents.h"
#include "UI/Base/View/MouseOverlay.h"
#include "UI/Base/View/PrintedImageResource.h"
#include "UI/Base/View/Private/FreeArea.h"
#include "UI/Base/View/SplitViewMgr.h"
#include "UI/Base/View/TransitionMgr.h"
#include "UI/Base/View/ViewMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <boost/algorithm/string/case_conv.hpp>
#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <system_error>
#include <unistd.h>

namespace Vu {
namespace {

std::string imageFormat(const std::wstring& path)
{
    const std::wstring suffix = boost::algorithm::to_lower_copy(path.substr(path.rfind(L'.') + 1));
    if (suffix == L"jpg" || suffix == L"jpeg")
        return "jpg";
    if (suffix == L"tif" || suffix == L"tiff")
        return "tiff";
    return "png";
}

/// Reports at once what would otherwise only show when a large picture is drawn.
bool folderTakesFiles(const std::wstring& path, Vs::Status& status)
{
    const boost::filesystem::path folder =
        Vs::PathInfo::absolute(boost::filesystem::path(path)).parent_path();
    if (::access(folder.c_str(), W_OK | X_OK) == 0)
        return true;
    status.addError(L"The picture " + path + L" cannot be written: " +
                    Vs::Strings::widen(std::generic_category().message(errno)));
    return false;
}

bool isOfModel(const Vs::Scene::ViewFragment* fragment)
{
    return fragment->data()->supportSelectBackground();
}

} // namespace

/// What the camera of a fragment frames: what the fragment shows, in what the canvas leaves free.
class GraphicsView::Subject : public Vs::Scene::CameraSubject
{
public:
    Subject(const GraphicsView* view, const Vs::Scene::ViewFragment* fragment)
        : m_view(view), m_fragment(fragment)
    {
    }

    Room roomFor(double aspect) const override
    {
        const GraphicsCanvas* canvas = m_view->canvas();
        if (!canvas || !canvas->existingWidget() || canvas->width() <= 0 || canvas->height() <= 0)
            return {};
        const double width = canvas->width(), height = canvas->height();
        const CanvasRect free = freeArea(width, height, canvas->covered(), aspect);
        return {width,
                height,
                free.left - width / 2,
                height / 2 - free.bottom,
                free.right - width / 2,
                height / 2 - free.top};
    }

    bool outermost(const BBox& box, const GkVector3d& direction, GkPoint3d& point) const override
    {
        const BBox own = m_fragment->viewFragmentNode()->boundingBox();
        const auto isSame = [](const GkPoint3d& a, const GkPoint3d& b) { return a.distanceTo(b) == 0; };
        if (own.isEmpty() || !isSame(own.low(), box.low()) || !isSame(own.high(), box.high()))
            return false;
        const auto found = Vs::Scene::outermostPoint(*m_fragment->viewFragmentNode(), direction);
        point = found.value_or(point);
        return found.has_value();
    }

private:
    const GraphicsView* m_view;
    const Vs::Scene::ViewFragment* m_fragment;
};

GraphicsView::GraphicsView() = default;

GraphicsView::~GraphicsView()
{
    SplitViewMgr::get()->forget(this);
    if (m_canvas)
        m_canvas->view(nullptr, false, false);
}

void GraphicsView::addFragment(Vs::StrongRef<Vs::Scene::ViewFragment> fragment)
{
    Vs::require(fragment.get() != nullptr, "a fragment that is shown is there");
    // What lies over a model may be seen by its camera, which frames the model all the same.
    const bool isOver = std::ranges::any_of(
        m_fragments, [&](Vs::Scene::ViewFragment* other) { return other->camera() == fragment->camera(); });
    m_fragments.push_back(fragment.get());
    m_subjects.push_back(std::make_shared<Subject>(this, fragment.get()));
    if (!isOver)
        fragment->camera()->subject(m_subjects.back());
    m_owned.push_back(std::move(fragment));
    m_seen.push_back(0);
    contentChanged();
}

void GraphicsView::removeFragment(const Vs::Scene::ViewFragment* fragment)
{
    const auto found = std::find(m_fragments.begin(), m_fragments.end(), fragment);
    if (found == m_fragments.end())
        return;
    const auto index = found - m_fragments.begin();
    m_fragments.erase(found);
    m_seen.erase(m_seen.begin() + index);
    m_subjects.erase(m_subjects.begin() + index);
    m_owned.erase(m_owned.begin() + index);
    contentChanged();
}

void GraphicsView::contentChanged()
{
    if (m_canvas)
        m_canvas->invalidate();
}

Vs::Scene::ViewFragment* GraphicsView::modelFragment() const
{
    const auto found = std::find_if(m_fragments.begin(), m_fragments.end(), isOfModel);
    return found == m_fragments.end() ? nullptr : *found;
}

std::vector<Vs::Scene::ViewFragment*> GraphicsView::modelFragments() const
{
    std::vector<Vs::Scene::ViewFragment*> fragments;
    for (Vs::Scene::ViewFragment* fragment : m_fragments)
        if (isOfModel(fragment))
            fragments.push_back(fragment);
    return fragments;
}

bool GraphicsView::waitsForContent() const
{
    return std::any_of(m_fragments.begin(), m_fragments.end(), [](const Vs::Scene::ViewFragment* fragment) {
        const Vs::Scene::SceneAssetAdapter* adapter = fragment->data()->sceneAssetAdapter();
        return adapter && adapter->waitsForMeshes();
    });
}

void GraphicsView::frame()
{
    // The first parts are framed at once, and all of them when the last one is there.
    m_fitPending = waitsForContent();
    for (Vs::Scene::ViewFragment* fragment : modelFragments()) {
        const BBox bounds = fragment->bounds();
        if (bounds.isEmpty())
            m_fitPending = true;
        else
            fragment->camera()->fit(bounds);
    }
    if (const Vs::Scene::ViewFragment* fragment = modelFragment())
        m_fitRevision = fragment->camera()->revision();
}

void GraphicsView::frameFirst()
{
    frame();
    // A window has yet to give the canvas its place and to lay its bars over it: the first picture tells.
    const WorkspaceWindow* window = WorkspaceWindow::activeWorkspaceWindow();
    m_fitPending = m_fitPending || (window && window->shown());
}

void GraphicsView::settleLayout() const
{
    WorkspaceWindow* window = m_canvas ? WorkspaceWindow::activeWorkspaceWindow() : nullptr;
    if (window)
        window->settleLayout();
}

void GraphicsView::fit()
{
    settleLayout();
    frame();
}

void GraphicsView::settleFit()
{
    const Vs::Scene::ViewFragment* model = m_fitPending ? modelFragment() : nullptr;
    if (!model || model->camera()->revision() != m_fitRevision || TransitionMgr::get()->playing())
        return;
    // The next picture has yet to see what is new.
    for (Vs::Scene::ViewFragment* fragment : m_fragments) {
        uint64_t seen = 0;
        fragment->update(seen);
    }
    fit();
}

bool GraphicsView::update()
{
    // A camera that was moved since is where the user wants it.
    const Vs::Scene::ViewFragment* model = modelFragment();
    const bool pending = m_fitPending && model && model->camera()->revision() == m_fitRevision;
    m_fitPending = pending;
    bool changed = false;
    for (size_t i = 0; i < m_fragments.size(); ++i)
        changed = m_fragments[i]->update(m_seen[i]) || changed;
    if (pending && changed && !TransitionMgr::get()->playing())
        frame();
    return changed;
}

void GraphicsView::restartHighlighting() const
{
    if (m_canvas)
        Application::get()->deferredTasks()->post(
            [canvas = m_canvas] { MouseEventSource::get()->repeatMove(canvas); });
}

GraphicsView* GraphicsView::another(GraphicsView* preferred)
{
    if (!m_manager)
        return nullptr;
    if (preferred && preferred->m_manager == m_manager)
        return preferred;
    for (View* each : m_manager->views())
        if (auto* view = Vs::cast<GraphicsView>(each); view && !view->m_canvas)
            return view;
    GraphicsView* made = makeAnother();
    if (made)
        made->m_shownBefore = m_shownBefore; // It begins with a camera that is fitted.
    return made;
}

void GraphicsView::copyCamera(const GraphicsView& from)
{
    if (&from != this && !m_fragments.empty() && !from.m_fragments.empty())
        m_fragments.front()->camera()->copyFrom(*from.m_fragments.front()->camera());
}

bool GraphicsView::renderImage(Vs::ImageResource* image, uint32_t width, uint32_t height, Vs::Status& status)
{
    return renderImage(image, width, height, Vs::Scene::ImageOptions::current(), status);
}

bool GraphicsView::renderImage(Vs::ImageResource* image, uint32_t width, uint32_t height,
                               const Vs::Scene::ImageOptions& options, Vs::Status& status)
{
    const std::wstring path = image->localPath();
    Vs::Scene::Image pixels;
    if (!folderTakesFiles(path, status) || !Vs::Scene::OffscreenRenderer::get()->render(
                                               modelFragments(), width, height, options, pixels, status))
        return false;
    PictureFormat format{.name = imageFormat(path)};
    format.keepsTransparency = options.transparentBackground && format.name != "jpg";
    if (const auto* printed = Vs::cast<PrintedImageResource>(image))
        format.dotsPerInch = printed->dotsPerInch();
    return writePicture(pixels, path, format, status);
}

bool GraphicsView::renderImage(Vs::ImageResource* image, uint32_t width, uint32_t height)
{
    Vs::Status status;
    return renderImage(image, width, height, status);
}

bool GraphicsView::renderImage(Vs::Scene::Image& image, uint32_t width, uint32_t height,
                               const Vs::Scene::ImageOptions& options, Vs::Status& status) const
{
    return Vs::Scene::OffscreenRenderer::get()->render(modelFragments(), width, height, options, image,
                                                       status);
}

GkPoint3d GraphicsView::windowToWorld(const Vs::Point2& place) const
{
    const Vs::Scene::ViewFragment* fragment = modelFragment();
    if (!fragment)
        return {};
    const Vs::Scene::Camera& camera = *fragment->camera();
    const Vs::Scene::Projection projection(camera, canvasWidth(), canvasHeight());
    return projection.screenToWorld({double(place.x), canvasHeight() - place.y, camera.distance()});
}

std::optional<Vs::Point2> GraphicsView::worldToWindow(const GkPoint3d& point) const
{
    const Vs::Scene::ViewFragment* fragment = modelFragment();
    if (!fragment)
        return std::nullopt;
    const Vs::Scene::Projection projection(*fragment->camera(), canvasWidth(), canvasHeight());
    const GkPoint3d seen = projection.worldToScreen(point);
    if ((projection.perspective() && seen.z <= 0) || !std::isfinite(seen.x) || !std::isfinite(seen.y))
        return std::nullopt;
    static constexpr double kFarthest = 1e6;
    const auto pixel = [](double value) {
        return static_cast<int>(std::lround(std::clamp(value, -kFarthest, kFarthest)));
    };
    return Vs::Point2{pixel(seen.x), pixel(canvasHeight() - seen.y)};
}

double GraphicsView::canvasWidth() const
{
    return m_canvas ? m_canvas->width() : 1;
}

double GraphicsView::canvasHeight() const
{
    return m_canvas ? m_canvas->height() : 1;
}

} // namespace Vu
