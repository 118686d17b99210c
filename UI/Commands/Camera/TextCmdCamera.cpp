#include "Server/Base/NumberText.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/HitInfo.h"
#include "Server/Scene/ViewFragment.h"
#include "Server/Types/PointText.h"
#include "UI/Base/Command/TextRows.h"
#include "UI/Base/Session/SceneUtilities.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"
#include "UI/Commands/Camera/ActiveView.h"

#include <boost/format.hpp>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Vu::Commands {
namespace {

using Vs::TextCommandParameters;
using Vs::TextCommandResult;

GkPoint3d pointAt(const TextCommandParameters& parameters, unsigned i)
{
    const auto [x, y, z] = parameters.point(i);
    return {x, y, z};
}

// clang-format off
constexpr const wchar_t* kArea = L"Camera";
constexpr DirectTextRow kSet     = {kArea, L"Set",     L"Set various properties for the current camera", "%p3%p3%v%f%f%f%f%d", false};
constexpr DirectTextRow kDump    = {kArea, L"Dump",    L"Dump various properties for the current camera", "", false};
constexpr DirectTextRow kZoomIn  = {kArea, L"ZoomIn",  L"Zoom in camera with a <factor> or default factor like one mouse wheel event", "", false};
constexpr DirectTextRow kZoomOut = {kArea, L"ZoomOut", L"Zoom Out camera with a <factor> or default factor like one mouse wheel event", "", false};
// clang-format on

bool same(const GkVector3d& a, const GkVector3d& b)
{
    return a.x == b.x && a.y == b.y && a.z == b.z;
}

/// The possible complaints, each with its sentence.
using Faults = std::vector<std::pair<bool, std::wstring>>;

/// What makes no sense in a camera; each is corrected when a picture is made, and reported so that a script
/// finds its mistake.
Faults faultsOf(const Vs::Scene::Camera& camera)
{
    const GkVector3d along = camera.target() - camera.position();
    const bool there = along.isZeroLength({0, 0}), flat = camera.up().isZeroLength({0, 0});
    const bool perspective = camera.projection() == Vs::Scene::kPerspectiveProjection;
    return {
        {there, L"The position is at the target."},
        {flat, L"The up vector has no length."},
        {!there && !flat && along.isParallelTo(camera.up()), L"The up vector lies along the view direction."},
        {perspective && !(camera.clipNear() > 0), L"The near distance is not above zero."},
        {!(camera.clipNear() < camera.clipFar()), L"The near distance is not below the far one."},
        {!(camera.extentsWidth() > 0 && camera.extentsHeight() > 0), L"The extents are not above zero."},
    };
}

/// Which of the requested values the camera did not accept.
Faults refusalsOf(const Vs::Scene::Camera& camera, const TextCommandParameters& parameters)
{
    const auto isPoint = [&](unsigned at, const GkPoint3d& taken) {
        return same(pointAt(parameters, at).asVector(), taken.asVector());
    };
    const auto isNumber = [&](unsigned at, double taken) { return parameters.real(at) == taken; };
    const int projection = parameters.integer(7);
    return {
        {!isPoint(0, camera.position()) || !isPoint(1, camera.target()),
         L"The position or the target is too far away for a camera and was left as it was."},
        {!same(pointAt(parameters, 2).asVector(), camera.up()),
         L"The up vector is too long for a camera and was left as it was."},
        {!isNumber(3, camera.clipNear()) || !isNumber(4, camera.clipFar()),
         L"The near or the far distance is too large for a camera and was left as it was."},
        {!isNumber(5, camera.extentsWidth()) || !isNumber(6, camera.extentsHeight()),
         L"The width or the height is too large for a camera and was left as it was."},
        {projection != camera.projection(),
         L"There is no projection " + std::to_wstring(projection) + L"; 1 is parallel, 2 perspective."},
    };
}

/// Empty if the camera is as requested and valid. It never fails to give a picture, so these reports are for
/// correcting the script.
TextCommandResult answerFor(const Vs::Scene::Camera& camera, const TextCommandParameters& parameters)
{
    std::wstring text;
    for (const Faults& faults : {faultsOf(camera), refusalsOf(camera, parameters)})
        for (const auto& [present, sentence] : faults)
            if (present)
                text += (text.empty() ? L"" : L" ") + sentence;
    return {text.empty() ? 0u : 1u, text};
}

class TextCmdCameraSet : public DirectTextCommand<kSet>
{
public:
    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        if (parameters.parameters() != 8)
            return {1, L"Not enough parameters specified on command line."};
        Vs::Scene::Camera* camera = settledCamera();
        if (camera) {
            camera->position(pointAt(parameters, 0));
            camera->target(pointAt(parameters, 1));
            camera->up(pointAt(parameters, 2).asVector());
            camera->clipNear(parameters.real(3));
            camera->clipFar(parameters.real(4));
            camera->extentsWidth(parameters.real(5));
            camera->extentsHeight(parameters.real(6));
            camera->projection(parameters.integer(7));
        }
        WorkspaceWindow::invalidate(kInvalidateAll);
        return camera ? answerFor(*camera, parameters) : TextCommandResult{0, {}};
    }
};

class TextCmdCameraDump : public DirectTextCommand<kDump>
{
public:
    TextCommandResult execute(const TextCommandParameters&) override
    {
        const Vs::Scene::Camera* camera = settledCamera();
        if (!camera)
            return {0, {}};
        boost::wformat format(L"Camera: E%1% P%2% U%3% Near%4% Far%5% Width%6% Height%7% %8%");
        format % Vs::Types::Point3dToString(camera->position()) %
            Vs::Types::Point3dToString(camera->target()) % Vs::Types::Vector3dToString(camera->up()) %
            Vs::numberText(camera->clipNear()) % Vs::numberText(camera->clipFar()) %
            Vs::numberText(camera->extentsWidth()) % Vs::numberText(camera->extentsHeight()) %
            int(camera->projection());
        return {0, format.str()};
    }
};

/// How far ahead of the camera the model is in the middle of the view; nothing beside it.
std::optional<double> depthAhead(const GraphicsView& view, const Vs::Scene::Camera& camera)
{
    constexpr double kSize = 100; // Whatever the view's is, its middle is the same.
    const auto found = Vs::Scene::SceneSelection::findAll(
        view.viewNode(), view.modelFragment()->viewFragmentNode(), kSize, kSize, kSize / 2, kSize / 2, {});
    if (found.empty() || !found.front()->hitInfo())
        return std::nullopt;
    const Vs::Scene::RawHitInfo& hit = *found.front()->hitInfo();
    const GkPoint3d point = hit.localToWorldTransform() * hit.localHitPoint();
    return (point - camera.position()).dotProduct(camera.direction());
}

// With the target within a body, the camera would come out inside of that.
void stayBeforeModel(Vs::Scene::Camera& camera, double factor)
{
    const GraphicsView* view = SceneUtilities::getActiveAssetGraphicView();
    if (!view || !(factor > 1) || camera.projection() != Vs::Scene::kPerspectiveProjection)
        return;
    const double way = (camera.target() - camera.position()).length() * (1 - 1 / factor);
    const std::optional<double> ahead = depthAhead(*view, camera);
    if (ahead && way >= *ahead)
        camera.slideTarget(*ahead);
}

TextCommandResult zoom(const TextCommandParameters& parameters, double factor, const wchar_t* answer)
{
    if (parameters.parameters() > 0)
        factor = parameters.real(0);
    if (Vs::Scene::Camera* camera = settledCamera()) {
        stayBeforeModel(*camera, factor);
        const double width = camera->extentsWidth();
        camera->zoom(factor);
        WorkspaceWindow::invalidate(kInvalidateAll);
        if (!(factor > 0))
            return {1, L"The factor " + Vs::numberText(factor) +
                           L" is not above zero; the camera stays as it was."};
        if (factor != 1 && camera->extentsWidth() == width)
            return {1, L"The view can't be scaled by " + Vs::numberText(factor) +
                           L" any more; the camera stays as it was."};
    }
    return {0, answer};
}

class TextCmdCameraZoomIn : public DirectTextCommand<kZoomIn>
{
public:
    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        return zoom(parameters, 1.1, L"Zoom in.");
    }
};

class TextCmdCameraZoomOut : public DirectTextCommand<kZoomOut>
{
public:
    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        return zoom(parameters, 0.9, L"Zoom Out.");
    }
};

TextCmdCameraSet theSet;
TextCmdCameraDump theDump;
TextCmdCameraZoomIn theZoomIn;
TextCmdCameraZoomOut theZoomOut;

} // namespace
} // namespace Vu::Commands
