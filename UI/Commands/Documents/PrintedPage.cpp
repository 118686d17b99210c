#include "UI/Commands/Documents/PrintedPage.h"

#include "Server/Base/Status.h"
#include "Server/Base/Strings.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/Measure/ModelLines.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/OffscreenRenderer.h"
#include "Server/Scene/ViewFragment.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Commands/Documents/CaptureView.h"
#include "UI/Commands/Documents/DrawingPage.h"
#include "UI/Commands/Localized.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace Vu::Commands {

std::optional<VectorPage> PrintedPage::make(const PrintWish& wish, Vs::Status& status)
{
    const Paper* paper = findPaper(wish.paper);
    if (!paper) {
        std::wstring all;
        for (const Paper& known : papers())
            all += (all.empty() ? L"" : L", ") + std::wstring(known.name);
        status.addError(
            localizedFormat("PrintNoPaper", "\"%1%\" is not a paper. There are: %2%.", wish.paper, all));
        return std::nullopt;
    }
    VectorPage page;
    page.title = m_session.asset()->document()->displayName();
    page.width = wish.portrait ? paper->shortSide : paper->longSide;
    page.height = wish.portrait ? paper->longSide : paper->shortSide;
    return wish.what == PrintWish::What::Drawing ? drawing(wish, page, status)
                                                 : picture(wish, std::move(page), status);
}

// It has the shape of the view, so that as much is seen as on the screen.
std::optional<VectorPage> PrintedPage::picture(const PrintWish& wish, VectorPage page, Vs::Status& status)
{
    constexpr double kMillimetresPerInch = 25.4;
    ImageOptions options;
    takeWindowSize(m_view, options);
    const double aspect = double(std::max(1u, options.width)) / std::max(1u, options.height);
    const GraphicsCanvas* canvas = Application::headless() ? nullptr : m_view.canvas();
    const double logicalWidth = canvas ? double(std::max(1, canvas->width())) : double(options.width);
    VectorPage::Picture placed;
    const double across = page.width - 2 * wish.margin, down = page.height - 2 * wish.margin;
    placed.width = std::min(across, down * aspect);
    placed.height = placed.width / aspect;
    placed.place = {(page.width - placed.width) / 2, (page.height - placed.height) / 2};
    const double longest = std::max(placed.width, placed.height) / kMillimetresPerInch * wish.dotsPerInch;
    const double dots = wish.dotsPerInch / kMillimetresPerInch * std::min(1.0, kLargestAntiAliased / longest);
    options.width = std::max(1u, uint32_t(std::round(placed.width * dots)));
    options.height = std::max(1u, uint32_t(std::round(placed.height * dots)));
    options.pixelRatio = float(double(options.width) / logicalWidth);
    options.asShown = wish.what == PrintWish::What::View;
    options.transparentBackground = !options.asShown;
    const auto image = std::make_shared<Vs::Scene::Image>();
    if (!captureView(m_view, *image, options, status))
        return std::nullopt;
    placed.image = image;
    page.pictures.push_back(std::move(placed));
    return page;
}

std::optional<VectorPage> PrintedPage::drawing(const PrintWish& wish, const VectorPage& sheet,
                                               Vs::Status& status)
{
    const std::optional<double> scale = readScale(wish.scale);
    if (!wish.scale.empty() && !scale) {
        tellNoScale(wish.scale, status);
        return std::nullopt;
    }
    std::optional<Vs::LineDrawing>& lines = m_lines[wish.hidden ? 1 : 0];
    try {
        if (!lines) {
            const Vs::Scene::Camera& camera = *m_view.modelFragment()->camera();
            lines = Vs::modelLines(*m_session.asset(), (camera.target() - camera.position()).normal(),
                                   camera.up(), wish.hidden);
        }
    } catch (const std::runtime_error& error) {
        status.addError(Vs::Strings::widen(error.what()));
        return std::nullopt;
    }
    tellLeftOut(*lines, status);
    const std::wstring paper = findPaper(wish.paper)->name;
    auto page = drawingPage(*lines, factsOf(*m_session.asset()->document()), scale,
                            DrawingSheet{paper, sheet.width, sheet.height});
    if (!page)
        status.addError(localizedFormat("DrawingTooLarge",
                                        "At the scale %1% the drawing doesn't fit on a sheet of size %2%.",
                                        wish.scale, paper));
    return page;
}

} // namespace Vu::Commands
