#include "UI/Commands/Documents/PrintCmd.h"

#include "Server/Base/NumberText.h"
#include "Server/Base/Status.h"
#include "Server/DataModel/Asset.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/Exported.h"
#include "UI/Base/Program/FileDialog.h"
#include "UI/Base/Program/Presence.h"
#include "UI/Base/Program/UIInternalOptionGroup.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SceneUtilities.h"
#include "UI/Commands/Camera/ActiveView.h"
#include "UI/Commands/Documents/DrawingPage.h"
#include "UI/Commands/Documents/FileNameFor.h"
#include "UI/Commands/Documents/PrintedPage.h"
#include "UI/Commands/Documents/SaveDrawingCmd.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"

#include <boost/algorithm/string/predicate.hpp>

namespace Vu::Commands {

// clang-format off
constinit const CommandRow PrintCmdDef::kRow = {
    .key = L"PrintCommand", .title = "Print...", .icon = &Resources::Print, .hotkey = "Ctrl+P",
    .arguments = {L"Path", L"Printer", L"Print", L"Scale", L"Hidden", L"Paper", L"Portrait", L"Margin"}};
// clang-format on

namespace {

/// By PrintWish::What.
constexpr const wchar_t* kWhat[] = {L"View", L"Model", L"Drawing"};

// In the group of internal options: what was chosen last.
constexpr const char* kPaper = "print_paper";
constexpr const char* kPortrait = "print_portrait";

/// Takes what the context says. False, with the reason in the status, if that makes no sense.
bool takeArguments(const CommandContext& context, PrintWish& wish, Vs::Status& status)
{
    const std::wstring what = context.argumentAsString(PrintCmdDef::whatArgumentName());
    for (int i = 0; i < 3; ++i)
        if (boost::algorithm::iequals(what, kWhat[i]))
            wish.what = PrintWish::What(i);
    if (!what.empty() && !boost::algorithm::iequals(what, kWhat[int(wish.what)])) {
        status.addError(localizedFormat(
            "PrintUnknown", "\"%1%\" can't be printed; there are View, Model and Drawing.", what));
        return false;
    }
    if (const std::wstring paper = context.argumentAsString(PrintCmdDef::paperArgumentName()); !paper.empty())
        wish.paper = paper;
    wish.scale = scaleSaid(context, SaveDrawingCmdDef::scaleArgumentName());
    int flag = 0;
    if (context.argument(SaveDrawingCmdDef::hiddenArgumentName(), CommandContext::EArgType::Int, &flag))
        wish.hidden = flag != 0;
    if (context.argument(PrintCmdDef::portraitArgumentName(), CommandContext::EArgType::Int, &flag))
        wish.portrait = flag != 0;
    const std::wstring said = scaleSaid(context, PrintCmdDef::marginArgumentName());
    if (const auto margin = Vs::readNumber<double>(said);
        margin && *margin >= 0 && *margin <= kWidestPrintMargin)
        wish.margin = *margin;
    else if (!said.empty()) {
        status.addError(localizedFormat(
            "PrintMargin", "The margin must be a number of millimetres from 0 to %1%, not \"%2%\".",
            kWidestPrintMargin, said));
        return false;
    }
    return true;
}

/// What was chosen, for a recording.
void note(CommandContext& context, const PrintWish& wish, const std::wstring& printer)
{
    context.addArgument(PrintCmdDef::whatArgumentName(), kWhat[int(wish.what)]);
    context.addArgument(PrintCmdDef::paperArgumentName(), wish.paper);
    context.addArgument(PrintCmdDef::portraitArgumentName(), wish.portrait);
    if (wish.what != PrintWish::What::Drawing)
        context.addArgument(PrintCmdDef::marginArgumentName(), wish.margin);
    else if (!wish.scale.empty())
        context.addArgument(SaveDrawingCmdDef::scaleArgumentName(), wish.scale);
    if (wish.what == PrintWish::What::Drawing)
        context.addArgument(SaveDrawingCmdDef::hiddenArgumentName(), wish.hidden);
    if (!printer.empty())
        context.addArgument(PrintCmdDef::printerArgumentName(), printer);
}

std::wstring withPdfSuffix(const std::wstring& path)
{
    return boost::algorithm::iends_with(path, L".pdf") ? path : path + L".pdf";
}

} // namespace

const Vs::UniqueString* PrintCmdDef::printerArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Printer", true);
    return name;
}

const Vs::UniqueString* PrintCmdDef::whatArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Print", true);
    return name;
}

const Vs::UniqueString* PrintCmdDef::paperArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Paper", true);
    return name;
}

const Vs::UniqueString* PrintCmdDef::portraitArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Portrait", true);
    return name;
}

const Vs::UniqueString* PrintCmdDef::marginArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Margin", true);
    return name;
}

bool PrintCmdDef::onIsApplicable(CommandContext* context) const
{
    return hasAssetSession(context);
}

PrintCmd::PrintCmd(PrintCmdDef* definition, CommandContext* context) : Implements(definition, context)
{
    repeatable(false);
}

void PrintCmd::onExecute(Vs::Status& status)
{
    CommandContext& context = *commandContext();
    const AssetSession* session = context.assetSession();
    GraphicsView* view = settledCamera() ? SceneUtilities::getActiveAssetGraphicView() : nullptr;
    if (!session || !view) {
        status.addError(localized("NoViewToCapture", "There is no view to make a picture of."));
        return;
    }
    Application::get()->needGui();
    UIInternalOptionGroup* kept = UIInternalOptionGroup::get();
    std::wstring printer = context.argumentAsString(PrintCmdDef::printerArgumentName());
    const bool ask = printer.empty() && somebodyIsThere() &&
                     context.argumentAsString(CommandContext::pathArgumentName()).empty();
    PrintWish wish;
    if (ask) {
        if (const std::wstring paper = kept->value(kPaper, std::wstring()); findPaper(paper))
            wish.paper = paper;
        wish.portrait = kept->value(kPortrait, 0) != 0;
    }
    if (!takeArguments(context, wish, status))
        return;
    PrintedPage page(*view, *session);
    const PageMaker maker = [&](const PrintWish& wished, Vs::Status& told) {
        return page.make(wished, told);
    };
    if (ask) {
        if (!askPrint(wish, printer, maker, status))
            return;
        note(context, wish, printer);
        kept->setValue(kPaper, wish.paper);
        kept->setValue(kPortrait, int(wish.portrait));
        if (!printer.empty())
            return;
    }
    std::wstring path = fileNameFor(session->asset()->document(), L".pdf");
    if (printer.empty() && !FileDialog::getTranscriptableFilenameForSaveAs(
                               localized("PrintFilesFilter", "PDF files (*.pdf)"),
                               localized("PrintCaption", "Print into a PDF File"), path, &context)) {
        FileDialog::tellMissing(status);
        return;
    }
    const std::optional<VectorPage> made = maker(wish, status);
    if (!made)
        return;
    if (!printer.empty())
        printPage(*made, printer, status);
    else if (writePage(*made, withPdfSuffix(path), status) && ask)
        tellExported(withPdfSuffix(path));
}

} // namespace Vu::Commands
