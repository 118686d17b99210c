#include "UI/Commands/Documents/ExportCmd.h"

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Translator.h"
#include "Server/DataModel/TranslatorFileRecognizer.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/Exported.h"
#include "UI/Base/Program/FileDialog.h"
#include "UI/Base/Program/MessageBox.h"
#include "UI/Base/Program/UIInternalOptionGroup.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Commands/Documents/FileNameFor.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"
#include "UI/Commands/Usage.h"
#include "UI/Commands/WaitCursor.h"

#include <algorithm>
#include <vector>

namespace Vu::Commands {

// clang-format off
constinit const CommandRow ExportCmdDef::kRow = {
    .key = L"ExportCommand", .title = "Export...", .icon = &Resources::Export,
    .groups = {&CommandGroup::BaseGroup, &CommandGroup::DebugGroup}, .arguments = {L"Path", L"CombineObjects", L"Tesselletion"}};

constinit const CommandRow ExportAsCmdDef::kRow = {
    .key = L"ExportAsCommand", .title = "Export As...", .icon = &Resources::Export,
    .groups = {&CommandGroup::BaseGroup, &CommandGroup::DebugGroup}, .arguments = {L"Path", L"CombineObjects", L"Tesselletion"}};

/// What each value of "Tesselletion" means to the translator; any other resets it.
struct RefinementRow
{
    int tessellation;
    Vs::TranslatorRefinement refinement;
};

constexpr RefinementRow kRefinements[] = {
    //   normal  surface        aspect  edge
    {1, {30.0f,  0x1.2e6ea8p-6f, 21.5f, 0x1.c335d4p+5f}},
    {2, {15.0f,  0x1.e19fc2p-8f, 21.5f, 0x1.c335d4p+5f}},
};
// clang-format on

namespace {

bool canExport(CommandContext* context)
{
    AssetSession* session = context->assetSession();
    Vs::Asset* asset = session ? session->asset() : nullptr;
    if (!asset || !asset->assetType())
        return false;
    Vs::TranslatorFileRecognizer recognizer(asset->assetTypeIdentifier(), true);
    recognizer.recognize();
    return recognizer.hasAvailableTranslator();
}

/// Null after an error if there is none.
Vs::Asset* assetToExport(Vs::Status& status)
{
    AssetSession* session = SessionMgr::get()->activeAssetSession();
    Vs::Asset* asset = session ? session->asset() : nullptr;
    if (asset && asset->assetType())
        return asset;
    status.addError(localized("NothingToExport", "There is no active asset to export"));
    return nullptr;
}

/// Tells the user in a box. The error in the status is for a line of text, which must not count as
/// successful; it is marked as shown.
void refuse(const std::wstring& message, Vs::Status& status)
{
    MessageBox::warning(message);
    status.addError(message);
    status.reported(true);
}

/// The translator for `name`, or null after a refusal.
Vs::Translator* translatorFor(const std::wstring& name, const Vs::TranslatorFileRecognizer& recognizer,
                              Vs::Status& status)
{
    static constexpr const wchar_t* kSuffixes[] = {L".dwg", L".dxf", L".sat", L".step", L".stp", L".stl"};
    const size_t slash = name.rfind(L'/');
    const std::wstring file = slash == std::wstring::npos ? name : name.substr(slash + 1);
    const size_t dot = file.rfind(L'.');
    const std::wstring suffix = dot == std::wstring::npos ? std::wstring() : file.substr(dot);
    if (std::find(std::begin(kSuffixes), std::end(kSuffixes), suffix) == std::end(kSuffixes)) {
        refuse(L"Failed to export the asset. At present, we just support save an asset as *.stl", status);
        return nullptr;
    }
    Vs::Translator* translator = recognizer.translator(name);
    if (!translator)
        refuse(localizedFormat("NoMatchedTranslator",
                               "No matched translator is found with the suffix of file name: \"%1%\"", name),
               status);
    return translator;
}

/// What "Export As..." offers, in this order. Not every kind need be one that a translator writes.
struct ExportKind
{
    const wchar_t* entry;
    std::vector<std::wstring> suffixes;
};

const ExportKind kExportKinds[] = {
    {L"SAT File (*.sat)", {L".sat"}},
    {L"STEP File (*.stp *.step)", {L".stp", L".step"}},
};

constexpr const char* kLastSuffixOption = "ExportAsCmd_suffix";

/// The kind that was written last, or else the first that can be written.
const ExportKind& kindToPropose(const Vs::TranslatorFileRecognizer& recognizer)
{
    const std::wstring last = UIInternalOptionGroup::get()->value(kLastSuffixOption, std::wstring());
    const ExportKind* proposed = nullptr;
    for (const ExportKind& kind : kExportKinds) {
        if (!recognizer.translator(L"x" + kind.suffixes.front()))
            continue;
        const bool isLast =
            std::find(kind.suffixes.begin(), kind.suffixes.end(), last) != kind.suffixes.end();
        if (!proposed || isLast)
            proposed = &kind;
    }
    return proposed ? *proposed : kExportKinds[0];
}

void rememberKind(const std::wstring& name)
{
    if (!Application::headless())
        UIInternalOptionGroup::get()->setValue(kLastSuffixOption, name.substr(name.rfind(L'.')));
}

void applyTessellation(Vs::TranslatorSaveOptions& options, int tessellation)
{
    options.resetRefinement();
    for (const RefinementRow& row : kRefinements)
        if (row.tessellation == tessellation)
            options.refinement() = row.refinement;
}

} // namespace

const Vs::UniqueString* ExportCmdDef::combineObjectsArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("CombineObjects", true);
    return name;
}

const Vs::UniqueString* ExportCmdDef::tessellationArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Tesselletion", true);
    return name;
}

bool ExportCmdDef::onIsApplicable(CommandContext* context) const
{
    return canExport(context);
}

bool ExportCmdDef::onIsVisible(CommandContext* context) const
{
    return canExport(context);
}

ExportCmd::ExportCmd(ExportCmdDef* definition, CommandContext* context) : Implements(definition, context)
{
    repeatable(false);
}

void ExportCmd::onExecute(Vs::Status& status)
{
    Vs::Asset* asset = assetToExport(status);
    if (!asset)
        return;
    Vs::TranslatorFileRecognizer recognizer(asset->assetTypeIdentifier(), true);
    recognizer.recognize();
    int combine = 0;
    int tessellation = 3;
    commandContext()->argument(ExportCmdDef::combineObjectsArgumentName(), CommandContext::EArgType::Int,
                               &combine);
    commandContext()->argument(ExportCmdDef::tessellationArgumentName(), CommandContext::EArgType::Int,
                               &tessellation);
    std::wstring name = fileNameFor(asset->document(), L".stl");
    if (!FileDialog::getTranscriptableFilenameForSaveAs(
            L"STL Files (*.stl)", localized("ExportSTLCaption", "Export to STL"), name, commandContext())) {
        FileDialog::tellMissing(status);
        return;
    }
    Vs::Translator* translator = translatorFor(name, recognizer, status);
    m_refused = !translator;
    if (!translator)
        return;
    const std::unique_ptr<Vs::TranslatorSaveOptions> options = translator->createSaveOptions();
    options->fileName(name);
    options->exportInDisplayUnit() = false;
    options->combineSolids() = combine != 0;
    applyTessellation(*options, tessellation);
    Vs::TranslatorContext context;
    const WaitCursor wait;
    const bool saved = translator->save(*options, context, status);
    if (saved)
        tellExported(name);
    else if (status.isOk())
        status.addError(localizedFormat("ExportCancelled", "Writing \"%1%\" was cancelled.", name));
    options->exportInDisplayUnit() = true;
    options->combineSolids() = false;
    options->resetRefinement();
}

void ExportCmd::onEnd(ETerminationReason reason)
{
    SimpleCommand::onEnd(reason);
    sendUsage(m_refused ? ETerminationReason::Commit : reason, "Quillet.ExportCmd");
}

bool ExportAsCmdDef::onIsApplicable(CommandContext* context) const
{
    return canExport(context);
}

bool ExportAsCmdDef::onIsVisible(CommandContext* context) const
{
    return canExport(context);
}

ExportAsCmd::ExportAsCmd(ExportAsCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

void ExportAsCmd::onExecute(Vs::Status& status)
{
    Vs::Asset* asset = assetToExport(status);
    if (!asset)
        return;
    Vs::TranslatorFileRecognizer recognizer(asset->assetTypeIdentifier(), true);
    recognizer.recognize();
    const ExportKind& kind = kindToPropose(recognizer);
    std::wstring name = fileNameFor(asset->document(), kind.suffixes.front());
    std::wstring filter;
    for (const ExportKind& each : kExportKinds)
        filter += (filter.empty() ? L"" : L";;") + std::wstring(each.entry);
    if (!FileDialog::getFilenameForExport(filter, localized("ExportCaption", "Export As"), name, L"",
                                          kind.entry)) {
        FileDialog::tellMissing(status);
        return;
    }
    Vs::Translator* translator = translatorFor(name, recognizer, status);
    m_refused = !translator;
    if (!translator)
        return;
    const std::unique_ptr<Vs::TranslatorSaveOptions> options = translator->createSaveOptions();
    options->fileName(name);
    Vs::TranslatorContext context;
    bool saved = false;
    {
        const WaitCursor wait;
        saved = translator->save(*options, context, status);
    }
    if (!saved) {
        m_refused = true;
        const std::wstring message = localizedFormat(
            "TranslatorFailedToExport", "Translator failed to export the asset as file: \"%1%\"", name);
        MessageBox::warning(message);
        if (status.isOk())
            status.addError(message);
        status.reported(true);
        return;
    }
    rememberKind(name);
    tellExported(name);
}

void ExportAsCmd::onEnd(ETerminationReason reason)
{
    SimpleCommand::onEnd(reason);
    sendUsage(m_refused ? ETerminationReason::Commit : reason, "Quillet.ExportAsCmd");
}

} // namespace Vu::Commands
