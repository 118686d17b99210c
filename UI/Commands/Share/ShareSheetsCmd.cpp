#include "UI/Commands/Share/ShareSheetsCmd.h"

#include "Server/Base/PathInfo.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/Scene/OffscreenRenderer.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/Sharing.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SceneUtilities.h"
#include "UI/Base/View/PrintedImageResource.h"
#include "UI/Commands/Documents/CaptureView.h"
#include "UI/Commands/Documents/FileNameFor.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"
#include "UI/Commands/Share/ShareWays.h"

#include <algorithm>
#include <tuple>

namespace Vu::Commands {

// clang-format off
constinit const CommandRow ShareSheetsCmdDef::kRow = {
    .key = L"ShareSheetsCommand", .title = "Share Picture", .icon = &Resources::SharePicture,
    .groups = {&CommandGroup::BaseGroup}, .readonly = true, .arguments = {L"CmdId", L"Path"}};
// clang-format on

namespace {

const ShareWay* wayNamed(const std::wstring& name)
{
    const auto ways = shareWays();
    const auto found = std::ranges::find_if(ways, [&](const ShareWay& way) { return way.row.key == name; });
    return found == ways.end() ? nullptr : &*found;
}

std::wstring allNames()
{
    std::wstring names;
    for (const ShareWay& way : shareWays())
        names += (names.empty() ? L"" : L", ") + std::wstring(way.row.key);
    return names;
}

ImageOptions optionsFor(const GraphicsView& view)
{
    ImageOptions options;
    takeWindowSize(view, options);
    return options;
}

void copy(const GraphicsView& view, Vs::Status& status)
{
    Vs::Scene::Image image;
    if (!captureView(view, image, optionsFor(view), status))
        return;
    copyPicture(image, status);
    if (!status.isError())
        Application::get()->inform(localized("PictureCopied", "The picture is on the clipboard."));
}

} // namespace

ShareSheetsCmdDef::ShareSheetsCmdDef() = default;
ShareSheetsCmdDef::~ShareSheetsCmdDef() = default;

const Vs::UniqueString* ShareSheetsCmdDef::cmdIdArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("CmdId", true);
    return name;
}

bool ShareSheetsCmdDef::onIsApplicable(CommandContext* context) const
{
    return hasAssetSession(context);
}

CommandBase* ShareSheetsCmdDef::onCreateCommand(CommandContext* context)
{
    return new ShareSheetsCmd(this, context);
}

InputControl* ShareSheetsCmdDef::onInputControl()
{
    if (!m_list) {
        for (const ShareWay& way : shareWays())
            m_items.push_back(makeInfo(way.row));
        m_list.reset(ListControl::make(info(), this));
    }
    return m_list.get();
}

// Offers what there is for the document that is shown now.
void ShareSheetsCmdDef::onUpdateInputControl(CommandContext* context)
{
    RowDefinition::onUpdateInputControl(context);
    if (!m_list || !hasAssetSession(context))
        return;
    const Vs::Document& document = *context->assetSession()->asset()->document();
    std::vector<Info*> offered;
    for (size_t i = 0; i < m_items.size(); ++i)
        if (const ShareWay& way = shareWays()[i]; !way.isOffered || way.isOffered(document))
            offered.push_back(&m_items[i]);
    if (offered != m_list->items())
        m_list->items(std::move(offered));
}

void ShareSheetsCmdDef::onListSelectionChanged(Info* item)
{
    CommandContext context = CommandContext::activeContext();
    if (!item || !isAvailable(&context))
        return;
    // The same way may be chosen again.
    m_list->selectedItem(nullptr, false);
    context.addArgument(cmdIdArgumentName(), item->key());
    std::ignore = executeCommand(context);
}

ShareSheetsCmd::ShareSheetsCmd(ShareSheetsCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
}

void ShareSheetsCmd::onExecute(Vs::Status& status)
{
    const std::wstring name = commandContext()->argumentAsString(ShareSheetsCmdDef::cmdIdArgumentName());
    const ShareWay* way = wayNamed(name);
    if (!way) {
        status.addError(localizedFormat("ShareUnknownWay",
                                        "A picture can't be shared by \"%1%\". CmdId must be one of %2%.",
                                        name, allNames()));
        return;
    }
    GraphicsView* view = SceneUtilities::getActiveAssetGraphicView();
    if (!view || !assetSession()) {
        status.addError(localized("NoViewToCapture", "There is no view to make a picture of."));
        return;
    }
    if (!way->give) {
        copy(*view, status);
        return;
    }
    Vs::Document& document = *assetSession()->asset()->document();
    std::wstring path = commandContext()->argumentAsString(CommandContext::pathArgumentName());
    path = path.empty() ? freePicturePath(way->folder(), fileNameFor(&document, {})).wstring()
                        : Vs::PathInfo::absolute(withImageSuffix(path)).wstring();
    const ImageOptions options = optionsFor(*view);
    PrintedImageResource picture(path, options.resolution);
    if (captureView(*view, picture, options, status))
        way->give(path, document, status);
}

} // namespace Vu::Commands
