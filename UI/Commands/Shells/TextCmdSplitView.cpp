#include "Server/Base/NumberText.h"
#include "Server/Base/Strings.h"
#include "Server/DataModel/AssetType.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "UI/Base/Command/TextRows.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/SplitViewMgr.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Shells/AssetShell.h"
#include "UI/Commands/Shells/SharedWorkflows.h"

#include <optional>
#include <stdexcept>
#include <vector>

namespace Vu::Commands {
namespace {

using Vs::TextCommandParameters;
using Vs::TextCommandResult;

// clang-format off
constexpr const wchar_t* kArea = L"SplitView";
constexpr DirectTextRow kCancelInOtherView = {kArea, L"CancelCommandInOtherView", L"Cancel the command when picking in an inactive view to activate it.", "", false, true};
constexpr DirectTextRow kNewDoc            = {kArea, L"NewDoc", L"<AssetTypeID> Create new document in second canvas.", "", false, true};
constexpr DirectTextRow kNextAsset         = {kArea, L"NextAsset", L"Open an existing asset in the active view.", "", false, true};
constexpr DirectTextRow kShareCamera       = {kArea, L"ShareCamera", L"Share the camera of the active view with all others", "", false, true};
constexpr DirectTextRow kCopyCamera        = {kArea, L"CopyCamera", L"Copy the camera of the active view to all others (once)", "", false, true};
constexpr DirectTextRow kActivate          = {kArea, L"Activate", L"<number> Make the view the active one, counted from 1 in the order of the layout.", "%d", false, true};
constexpr DirectTextRow kViewCount         = {kArea, L"ViewCount", L"Display the number of visible views", "", false, true};
constexpr DirectTextRow kDefaultLayout     = {kArea, L"DefaultLayout", L"Default Layout.", "", false, true};
constexpr DirectTextRow kResetLayout       = {kArea, L"ResetLayout", L"<GraphicsCanvasesID> Reset Layout.", "", false, true};
// clang-format on

/// Cancels nothing: the shell runs the line when a pick goes over to the view of another session, and a
/// recording keeps that as a line.
class TextCmdCancelInOtherView : public DirectTextCommand<kCancelInOtherView>
{
public:
    TextCommandResult execute(const TextCommandParameters&) override { return {0, {}}; }
};

class TextCmdNewDoc : public DirectTextCommand<kNewDoc>
{
public:
    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        Vs::AssetType* type = parameters.parameters() > 0
                                  ? Vs::AssetTypeMgr::get()->assetType(Vs::Strings::narrow(parameters[0]))
                                  : nullptr;
        if (!type)
            return {1, L"Invalid Asset Type"};
        Vs::Status status;
        Vs::Document* document = Vs::DocumentMgr::get()->create(type, status);
        if (!document)
            return answerOf(status);
        AssetSession* session = SessionMgr::get()->assetSession(document->activeAsset());
        AssetShell* shell = SharedWorkflows::activeAssetShell();
        if (session && shell) {
            shell->add(session);
            shell->currentAssetSession(session, false, false);
        }
        return {0, {}};
    }
};

/// Unlike the command, it starts over after the last asset.
class TextCmdNextAsset : public DirectTextCommand<kNextAsset>
{
public:
    TextCommandResult execute(const TextCommandParameters&) override
    {
        AssetShell* shell = SharedWorkflows::activeAssetShell();
        if (!shell)
            return {0, {}};
        AssetSession* session = shell->nextAssetSession();
        if (!session && shell->assetSessions().empty())
            throw std::runtime_error("invalid vector<T> subscript");
        shell->currentAssetSession(session ? session : shell->assetSessions().front(), false, false);
        return {0, {}};
    }
};

class TextCmdShareCamera : public DirectTextCommand<kShareCamera>
{
public:
    TextCommandResult execute(const TextCommandParameters&) override
    {
        SplitViewMgr::get()->shareCamera();
        return {0, {}};
    }
};

class TextCmdCopyCamera : public DirectTextCommand<kCopyCamera>
{
public:
    TextCommandResult execute(const TextCommandParameters&) override
    {
        SplitViewMgr::get()->copyCamera();
        return {0, {}};
    }
};

class TextCmdActivate : public DirectTextCommand<kActivate>
{
public:
    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        std::vector<GraphicsCanvas*> canvases;
        GraphicsCanvas::allCanvases(canvases);
        const auto number =
            parameters.parameters() > 0 ? Vs::readNumber<size_t>(parameters[0]) : std::optional<size_t>();
        if (!number || *number < 1 || *number > canvases.size() || !canvases[*number - 1]->view())
            return {1,
                    localizedFormat("NoSuchView", "There is no such view: the number must be from 1 to %1%.",
                                    canvases.size())};
        SplitViewMgr::get()->activeCanvas(canvases[*number - 1]);
        return {0, {}};
    }
};

class TextCmdViewCount : public DirectTextCommand<kViewCount>
{
public:
    TextCommandResult execute(const TextCommandParameters&) override
    {
        return {0, L"The number of visible views is " + std::to_wstring(SplitViewMgr::get()->visibleViews()) +
                       L'\n'};
    }
};

class TextCmdDefaultLayout : public DirectTextCommand<kDefaultLayout>
{
public:
    TextCommandResult execute(const TextCommandParameters&) override
    {
        SplitViewMgr::get()->updateArrangement({});
        return {0, {}};
    }
};

class TextCmdResetLayout : public DirectTextCommand<kResetLayout>
{
public:
    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        SplitViewMgr::get()->updateArrangement(parameters.parameters() > 0 ? parameters[0] : std::wstring());
        return {0, {}};
    }
};

TextCmdCancelInOtherView theCancelInOtherView;
TextCmdNewDoc theNewDoc;
TextCmdNextAsset theNextAsset;
TextCmdShareCamera theShareCamera;
TextCmdCopyCamera theCopyCamera;
TextCmdActivate theActivate;
TextCmdViewCount theViewCount;
TextCmdDefaultLayout theDefaultLayout;
TextCmdResetLayout theResetLayout;

} // namespace
} // namespace Vu::Commands
