#include "UI/Design/OpenCmds.h"

#include "Server/Base/DiskAnswer.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/Edit/EditRequest.h"
#include "Server/DataModel/Transaction.h"
#include "Server/DataModel/Translator.h"
#include "Server/DataModel/TranslatorFileRecognizer.h"
#include "UI/Base/Command/CommandGroup.h"
#include "UI/Base/Program/FileDialog.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/DamageNotice.h"
#include "UI/Base/Session/RecentDocumentMgr.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Design/Localized.h"
#include "UI/Design/NativeComponents.h"
#include "UI/Design/Resources.h"
#include "UI/Design/ShowDesign.h"

#include <memory>
#include <set>

namespace Vu::Design {
namespace {

/// The path that the context gives, or that the user chooses. False if there is none.
bool askForFile(const Vs::TranslatorFileRecognizer& recognizer, CommandContext* context, std::wstring& path,
                Vs::Status& status)
{
    if (FileDialog::getTranscriptableFilename(recognizer.fileFilter(), path, context, true, L"")) {
        if (path.empty() || Vs::diskAnswers(path))
            return !path.empty();
        status.addError(localizedFormat(
            "OpenNoAnswer", "\"%1%\" can't be opened: the disk on which it lies doesn't answer.", path));
        return false;
    }
    FileDialog::tellMissing(status);
    return false;
}

/// Moves what `work` adds at the top of the model into a component; one step.
template <class Work>
void addInto(Vs::Asset& asset, const std::string& parent, const std::wstring& name, Work&& work,
             Vs::Status& status)
{
    struct Destroy
    {
        void operator()(Vs::Request* request) const { request->destroy(); }
    };
    std::set<std::string> before;
    for (const auto& child : asset.components()->children)
        before.insert(child->id);
    Vs::Transaction transaction(&asset, name);
    work();
    Vs::NestEdit nest{{}, parent};
    for (const auto& child : asset.components()->children)
        if (!before.contains(child->id))
            nest.components.push_back(child->id);
    const std::unique_ptr<Vs::EditRequest, Destroy> request(Vs::EditRequest::make(&asset, name, nest));
    if (status.isOk() && request->execute(&asset, status))
        transaction.commit();
}

/// Reads the file into a new document, or into the context's asset. A cancelled translator adds no error, but
/// the caller must not take the file for opened.
void translate(Vs::Translator* translator, const std::wstring& path, bool isStrict,
               Vs::TranslatorContext& context, Vs::Status& status)
{
    const std::unique_ptr<Vs::TranslatorOpenOptions> options = translator->createOpenOptions();
    options->fileName(path);
    options->isStrict(isStrict);
    context.identifier(translator->identifier());
    if (!translator->open(*options, context, status) && status.isOk())
        status.addError(localizedFormat("OpenCancelled", "Opening \"%1%\" was cancelled.", path));
}

} // namespace

constinit const CommandRow VeloraOpenDocumentCmdDef::kRow = {.key = L"VeloraOpenDocumentCommand",
                                                             .title = "Open in New Tab...",
                                                             .groups = {&CommandGroup::DocumentGroup},
                                                             .readonly = true,
                                                             .arguments = {L"Path", L"Strict"}};

const Vs::UniqueString* VeloraOpenDocumentCmdDef::strictArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Strict", true);
    return name;
}

bool VeloraOpenDocumentCmdDef::onIsApplicable(CommandContext*) const
{
    return true;
}

CommandBase* VeloraOpenDocumentCmdDef::onCreateCommand(CommandContext* context)
{
    return new VeloraOpenDocumentCmd(this, context);
}

VeloraOpenDocumentCmd::VeloraOpenDocumentCmd(VeloraOpenDocumentCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

void VeloraOpenDocumentCmd::onExecute(Vs::Status& status)
{
    Vs::TranslatorFileRecognizer recognizer("", false);
    recognizer.recognize();
    std::wstring path;
    if (!askForFile(recognizer, commandContext(), path, status))
        return;
    Vs::Document* document = nullptr;
    if (Vs::Translator* translator = recognizer.translator(path)) {
        Vs::TranslatorContext context;
        context.open(true);
        int isStrict = 0;
        commandContext()->argument(VeloraOpenDocumentCmdDef::strictArgumentName(),
                                   CommandContext::EArgType::Int, &isStrict);
        translate(translator, path, isStrict != 0, context, status);
        document = context.document();
        // One notification has all that a damaged file lacks.
        if (document && DamageNotice::hasTold(*document))
            status.reported(true);
    } else {
        SessionMgr::get()->finishLeaving(path);
        document = Vs::DocumentMgr::get()->open(path, status);
        if (document)
            RecentDocumentMgr::get()->add(path, document->isCloud());
    }
    if (document)
        showDesign(document, status);
}

constinit const CommandRow VeloraImportCmdDef::kRow = {
    .key = L"VeloraImportCommand",
    .title = "Import...",
    .icon = &Resources::Import,
    .groups = {&CommandGroup::DocumentGroup, &CommandGroup::BaseGroup},
    .arguments = {L"Path"}};

bool VeloraImportCmdDef::onIsApplicable(CommandContext* context) const
{
    return context->assetSession() != nullptr;
}

CommandBase* VeloraImportCmdDef::onCreateCommand(CommandContext* context)
{
    return new VeloraImportCmd(this, context);
}

VeloraImportCmd::VeloraImportCmd(VeloraImportCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

void VeloraImportCmd::onExecute(Vs::Status& status)
{
    Vs::Asset* asset = commandContext()->asset();
    if (!asset) {
        status.addError(localized("NoDesignToImportInto", "There is no active design to import into."));
        return;
    }
    Vs::TranslatorFileRecognizer recognizer("", false);
    recognizer.recognize();
    std::wstring path;
    if (!askForFile(recognizer, commandContext(), path, status))
        return;
    Vs::Translator* translator = recognizer.translator(path);
    if (!translator && isNativeFile(path)) {
        static_cast<void>(insertNativeFile(
            path, assetSession() ? assetSession()->editedComponent() : std::string(),
            [&](Vs::Request* request) { return executeRequest(request, false, {}, status); }, status));
        return;
    }
    if (!translator) {
        status.addError(
            localizedFormat("NoTranslatorForImport", "%1%: no translator reads this kind of file.", path));
        return;
    }
    Vs::TranslatorContext context;
    context.open(false);
    context.asset(asset);
    const std::string parent = assetSession() ? assetSession()->editedComponent() : std::string();
    if (parent.empty())
        translate(translator, path, false, context, status);
    else
        addInto(
            *asset, parent, commandDefinition()->info()->name(),
            [&] { translate(translator, path, false, context, status); }, status);
}

} // namespace Vu::Design
