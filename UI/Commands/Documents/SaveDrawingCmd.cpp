#include "UI/Commands/Documents/SaveDrawingCmd.h"

#include "Server/Base/Strings.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/Measure/ModelLines.h"
#include "Server/Scene/Camera.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/FileDialog.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Commands/Camera/ActiveView.h"
#include "UI/Commands/Documents/DrawingPage.h"
#include "UI/Commands/Documents/FileNameFor.h"
#include "UI/Commands/Resources.h"

#include <boost/algorithm/string/case_conv.hpp>

#include <stdexcept>

namespace Vu::Commands {

// clang-format off
constinit const CommandRow SaveDrawingCmdDef::kRow = {
    .key = L"SaveDrawingCommand", .title = "Save Drawing...", .icon = &Resources::SaveDrawing, .arguments = {L"Path", L"Scale", L"Hidden"}};
// clang-format on

namespace {

std::wstring withDrawingSuffix(const std::wstring& path)
{
    const std::wstring lower = boost::algorithm::to_lower_copy(path);
    return lower.ends_with(L".svg") || lower.ends_with(L".pdf") ? path : path + L".pdf";
}

} // namespace

const Vs::UniqueString* SaveDrawingCmdDef::scaleArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Scale", true);
    return name;
}

const Vs::UniqueString* SaveDrawingCmdDef::hiddenArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Hidden", true);
    return name;
}

bool SaveDrawingCmdDef::onIsApplicable(CommandContext* context) const
{
    return hasAssetSession(context);
}

SaveDrawingCmd::SaveDrawingCmd(SaveDrawingCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

void SaveDrawingCmd::onExecute(Vs::Status& status)
{
    const AssetSession* session = commandContext()->assetSession();
    const Vs::Scene::Camera* camera = settledCamera();
    std::wstring path = session ? fileNameFor(session->asset()->document(), L".pdf") : std::wstring();
    if (!FileDialog::getTranscriptableFilenameForSaveAs(
            localized("DrawingFilesFilter", "PDF files (*.pdf);;SVG files (*.svg)"),
            localized("SaveDrawingCaption", "Save Drawing"), path, commandContext())) {
        FileDialog::tellMissing(status);
        return;
    }
    if (!session || !camera)
        return;
    const std::wstring said = scaleSaid(*commandContext(), SaveDrawingCmdDef::scaleArgumentName());
    const std::optional<double> scale = readScale(said);
    if (!said.empty() && !scale) {
        tellNoScale(said, status);
        return;
    }
    int hidden = 0;
    commandContext()->argument(SaveDrawingCmdDef::hiddenArgumentName(), CommandContext::EArgType::Int,
                               &hidden);
    try {
        const Vs::LineDrawing drawing = Vs::modelLines(
            *session->asset(), (camera->target() - camera->position()).normal(), camera->up(), hidden != 0);
        const auto page = drawingPage(drawing, factsOf(*session->asset()->document()), scale);
        if (!page) {
            status.addError(localizedFormat(
                "DrawingTooLarge", "At the scale %1% the drawing doesn't fit on a sheet of size %2%.", said,
                L"A0"));
            return;
        }
        Application::get()->needGui();
        tellLeftOut(drawing, status);
        writePage(*page, withDrawingSuffix(path), status);
    } catch (const std::runtime_error& error) {
        status.addError(Vs::Strings::widen(error.what()));
    }
}

} // namespace Vu::Commands
