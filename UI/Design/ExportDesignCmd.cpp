#include "UI/Design/ExportDesignCmd.h"

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Server/DataModel/Translator.h"
#include "Server/DataModel/TranslatorFileRecognizer.h"
#include "UI/Base/Command/CommandGroup.h"
#include "UI/Base/Program/Exported.h"
#include "UI/Base/Program/FileDialog.h"
#include "UI/Base/Program/MessageBox.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Design/Localized.h"
#include "UI/Design/Resources.h"

#include <boost/algorithm/string/replace.hpp>
#include <boost/filesystem/operations.hpp>

#include <algorithm>

namespace Vu::Design {
namespace {

std::wstring proposedName(const Vs::Document& document)
{
    std::wstring name = document.displayName();
    // A document's name may be anything; a file name isn't a path.
    std::replace(name.begin(), name.end(), L'/', L'_');
    constexpr const wchar_t* kSuffix = L".stp";
    // Enter must not overwrite the file that it was made from.
    const boost::filesystem::path source(document.importedFrom());
    if (source.filename() == name + kSuffix)
        name += localized("ExportProposed", " exported");
    return name + kSuffix;
}

/// ".stp, .step, .igs".
std::wstring writtenSuffixes(const Vs::TranslatorFileRecognizer& recognizer)
{
    return boost::replace_all_copy(recognizer.fileExtensions().erase(0, 1), L";*", L", ");
}

} // namespace

constinit const CommandRow VeloraExportCmdDef::kRow = {
    .key = L"VeloraExportCommand",
    .title = "Export Design...",
    .icon = &Resources::Export,
    .hotkey = "Ctrl+E",
    .groups = {&CommandGroup::DocumentGroup},
    .readonly = true,
    .arguments = {L"Path", L"CombineObjects", L"DisplayUnit", L"HiddenToo", L"SelectedOnly", L"Separate",
                  L"AsText", L"Unit", L"UpAxis", L"Refinement"}};

const Vs::UniqueString* VeloraExportCmdDef::combineArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("CombineObjects", true);
    return name;
}

const Vs::UniqueString* VeloraExportCmdDef::displayUnitArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("DisplayUnit", true);
    return name;
}

const Vs::UniqueString* VeloraExportCmdDef::refinementArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Refinement", true);
    return name;
}

const Vs::UniqueString* VeloraExportCmdDef::hiddenTooArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("HiddenToo", true);
    return name;
}

const Vs::UniqueString* VeloraExportCmdDef::selectedOnlyArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("SelectedOnly", true);
    return name;
}

const Vs::UniqueString* VeloraExportCmdDef::separateArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Separate", true);
    return name;
}

const Vs::UniqueString* VeloraExportCmdDef::asTextArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("AsText", true);
    return name;
}

const Vs::UniqueString* VeloraExportCmdDef::unitArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Unit", true);
    return name;
}

const Vs::UniqueString* VeloraExportCmdDef::upAxisArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("UpAxis", true);
    return name;
}

bool VeloraExportCmdDef::onIsApplicable(CommandContext* context) const
{
    return context->assetSession() != nullptr;
}

CommandBase* VeloraExportCmdDef::onCreateCommand(CommandContext* context)
{
    return new VeloraExportCmd(this, context);
}

VeloraExportCmd::VeloraExportCmd(VeloraExportCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

void VeloraExportCmd::onExecute(Vs::Status& status)
{
    Vs::Asset* asset = commandContext()->asset();
    if (!asset) {
        status.addError(localized("NoDesignToExport", "There is no active design to export."));
        return;
    }
    m_options = ExportOptions::read(*commandContext(), status);
    if (status.isError())
        return;
    // The menu of a part is about that part; the dialog shows it.
    if (commandContext()->commandAccessPoint() == ECommandAccessPoint::ContextMenu &&
        !selectionManager()->selectionSet().empty())
        m_options.selectedOnly = true;
    Vs::TranslatorFileRecognizer recognizer(asset->assetTypeIdentifier(), true);
    recognizer.recognize();
    if (!ask(*asset, recognizer, status))
        return;
    if (const std::wstring refusal = m_options.refusal(*m_translator); !refusal.empty()) {
        status.addError(refusal);
        return;
    }
    if (m_options.separate)
        writeParts(*asset, status);
    else if (write(*asset, m_path, {}, status))
        tellExported(m_path);
}

bool VeloraExportCmd::ask(Vs::Asset& asset, const Vs::TranslatorFileRecognizer& recognizer,
                          Vs::Status& status)
{
    CommandContext* context = commandContext();
    m_asked = context->argumentAsString(CommandContext::pathArgumentName()).empty();
    m_path = proposedName(*asset.document());
    if (!FileDialog::getTranscriptableFilenameForSaveAs(
            recognizer.fileFilter(), localized("ExportDesignCaption", "Export Design"), m_path, context)) {
        FileDialog::tellMissing(status);
        return false;
    }
    m_translator = recognizer.translator(m_path);
    if (!m_translator) {
        status.addError(
            localizedFormat("NoTranslatorForExport",
                            "\"%1%\": no translator writes this kind of file. These are written: %2%", m_path,
                            writtenSuffixes(recognizer)));
        return false;
    }
    if (!m_asked)
        return true;
    if (!askExportOptions(asset, *m_translator, m_path, m_options))
        return false;
    m_options.write(*context);
    return true;
}

// The file dialog has only asked about the one name that it knows.
bool VeloraExportCmd::mayReplace(const std::vector<std::wstring>& files) const
{
    const auto there = std::ranges::count_if(files, [](const std::wstring& file) {
        boost::system::error_code error;
        return boost::filesystem::exists(file, error);
    });
    if (there == 0 || !m_asked || !MessageBox::canAsk())
        return true;
    MessageBox box(localizedFormat("ExportReplaces", "%1% of the %2% files are there already. Replace them?",
                                   there, files.size()));
    box.icon(kWarningIcon);
    box.addButton(localized("ExportReplace", "Replace"));
    box.addButton(kCancelButton, true);
    return box.show() == 0;
}

void VeloraExportCmd::writeParts(Vs::Asset& asset, Vs::Status& status)
{
    const std::vector<ExportedPart> parts = partsToExport(asset, m_options);
    if (parts.empty()) {
        status.addError(localized("NoPartToExport", "There is no part to export."));
        return;
    }
    const std::vector<std::wstring> files = filesOfParts(m_path, parts);
    if (!mayReplace(files))
        return;
    for (size_t i = 0; i < parts.size(); ++i)
        if (!write(asset, files[i], {parts[i].id}, status))
            return;
    tellExported(m_path, files.size());
}

bool VeloraExportCmd::write(Vs::Asset& asset, const std::wstring& path,
                            const std::vector<std::string>& components, Vs::Status& status)
{
    const std::unique_ptr<Vs::TranslatorSaveOptions> options = m_translator->createSaveOptions();
    options->fileName(path);
    m_options.apply(*options);
    if (!components.empty())
        options->components() = components;
    Vs::TranslatorContext context;
    context.identifier(m_translator->identifier());
    context.asset(&asset);
    const bool written = m_translator->save(*options, context, status);
    if (!written && status.isOk())
        status.addError(localizedFormat("ExportCancelled", "Writing \"%1%\" was cancelled.", path));
    return written;
}

} // namespace Vu::Design
