#include "UI/Commands/Documents/CaptureView.h"

#include "Server/Base/ResourceMgr.h"
#include "Server/Base/Status.h"
#include "Server/Base/Task.h"
#include "Server/Scene/GraphicsOptionGroup.h"
#include "Server/Scene/OffscreenRenderer.h"
#include "Server/Scene/ViewFragment.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/Sharing.h"
#include "UI/Base/Session/SceneUtilities.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace Vu::Commands {
namespace {

/// The size of a view that no canvas shows, as in a run without a window.
constexpr uint32_t kDefaultWidth = 1920;
constexpr uint32_t kDefaultHeight = 1080;

/// Puts back the graphics options that an image changes, and the ground plane of the view that was made with
/// one of them.
class GraphicsOptionsGuard
{
public:
    explicit GraphicsOptionsGuard(const GraphicsView& view)
        : m_model(view.modelFragment()),
          m_drawnPlane(m_model && m_model->renderParams()->groundPlaneEnabled())
    {
    }
    ~GraphicsOptionsGuard()
    {
        m_options.reset();
        if (m_model)
            m_model->renderParams()->groundPlaneEnabled(m_drawnPlane);
    }
    GraphicsOptionsGuard(const GraphicsOptionsGuard&) = delete;
    GraphicsOptionsGuard& operator=(const GraphicsOptionsGuard&) = delete;

    void setFor(const ImageOptions& options)
    {
        m_group->MSAA(rendersAntiAliased(options));
        m_group->transparentBackground(options.transparentBackground);
        if (options.asShown)
            return;
        m_group->displayGroundPlane(false);
        m_group->displayDome(false);
        m_group->showLayoutGrid(false);
        m_group->showGridRefNumbers(false);
        if (m_model)
            m_model->renderParams()->groundPlaneEnabled(false);
    }

private:
    Vs::Scene::GraphicsOptionGroup* m_group = Vs::Scene::GraphicsOptionGroup::get();
    Vs::Scene::ViewFragment* m_model; ///< Null in a view without a model.
    bool m_drawnPlane;
    std::optional<Vs::OptionGroup::Interlude> m_options{std::in_place, *m_group};
};

/// Once the options of graphics are set.
Vs::Scene::ImageOptions drawnOptions(const GraphicsView& view, const ImageOptions& options)
{
    Vs::Scene::ImageOptions drawn = Vs::Scene::ImageOptions::current();
    drawn.marks = options.asShown;
    if (options.pixelRatio > 0)
        drawn.pixelRatio = options.pixelRatio;
    else if (const GraphicsCanvas* canvas = view.canvas(); canvas && options.asShown)
        drawn.pixelRatio = float(canvas->pixelWidth()) / float(std::max(1, canvas->width()));
    return drawn;
}

} // namespace

void takeWindowSize(const GraphicsView& view, ImageOptions& options)
{
    const GraphicsCanvas* canvas = Application::headless() ? nullptr : view.canvas();
    options.width = canvas ? static_cast<uint32_t>(canvas->pixelWidth()) : kDefaultWidth;
    options.height = canvas ? static_cast<uint32_t>(canvas->pixelHeight()) : kDefaultHeight;
}

bool captureView(GraphicsView& view, Vs::ImageResource& file, const ImageOptions& options, Vs::Status& status)
{
    GraphicsOptionsGuard graphics(view);
    graphics.setFor(options);
    return view.renderImage(&file, options.width, options.height, drawnOptions(view, options), status);
}

bool captureView(const GraphicsView& view, Vs::Scene::Image& image, const ImageOptions& options,
                 Vs::Status& status)
{
    GraphicsOptionsGuard graphics(view);
    graphics.setFor(options);
    return view.renderImage(image, options.width, options.height, drawnOptions(view, options), status);
}

void copyActiveViewLater()
{
    if (Application::headless())
        return;
    Application::get()->deferredTasks()->post([] {
        const GraphicsView* view = SceneUtilities::getActiveAssetGraphicView();
        if (!view)
            return;
        ImageOptions options;
        takeWindowSize(*view, options);
        Vs::Scene::Image image;
        Vs::Status unheard; // the parts are on the clipboard in any case
        if (captureView(*view, image, options, unheard))
            copyPicture(image, unheard);
    });
}

} // namespace Vu::Commands
