#include "UI/Design/ExportDesignCmd.h"

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Translator.h"
#include "Server/DataModel/TranslatorFileRecognizer.h"
#include "UI/Base/Command/CommandGroup.h"
#include "UI/Base/Command/Info.h"
#include "UI/Base/Program/FileDialog.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Design/Localized.h"

#include <boost/algorithm/string/split.hpp>
#include <boost/lexical_cast/try_lexical_convert.hpp>

#include <cmath>
#include <iterator>

namespace Vu::Design {
namespace {

int integer(CommandContext* context, const Vs::UniqueString* key)
{
    int value = 0;
    context->argument(key, CommandContext::EArgType::Int, &value);
    return value;
}

bool readRefinement(const std::wstring& text, Vs::TranslatorRefinement& refinement, Vs::Status& status)
{
    float* const numbers[] = {&refinement.normalDeviation, &refinement.surfaceDeviation,
                              &refinement.maximumAspectRatio, &refinement.maximumEdgeLength};
    std::vector<std::wstring> words;
    if (!text.empty())
        boost::split(words, text, [](wchar_t c) { return c == L','; });
    bool right = words.size() <= std::size(numbers);
    for (size_t i = 0; right && i < words.size(); ++i)
        right = boost::conversion::try_lexical_convert(words[i], *numbers[i]) && std::isfinite(*numbers[i]) &&
                *numbers[i] > 0;
    if (!right)
        status.addError(localizedFormat(
            "RefinementWrong",
            "\"%1%\" is not a refinement; write up to four positive numbers: degrees, fraction of the "
            "diagonal, "
            "how many times longer than high a triangle may be, longest side in per cent of the diagonal.",
            text));
    return right;
}

} // namespace

Info* VeloraExportCmdDef::info()
{
    static Info info(kKey, localized("VeloraExportCommand", "Export Design..."), nullptr);
    return &info;
}

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

VeloraExportCmdDef::VeloraExportCmdDef() : Implements(info())
{
    joinCommandGroup(CommandGroup::DocumentGroup());
    readonly(true);
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
    CommandContext* context = commandContext();
    Vs::Asset* asset = context->asset();
    if (!asset) {
        status.addError(localized("NoDesignToExport", "There is no active design to export."));
        return;
    }
    Vs::TranslatorFileRecognizer recognizer(asset->assetTypeIdentifier(), true);
    recognizer.recognize();
    std::wstring path;
    if (!FileDialog::getTranscriptableFilenameForSaveAs(
            recognizer.fileFilter(), localized("ExportDesignCaption", "Export Design"), path, context)) {
        FileDialog::tellMissing(status);
        return;
    }
    Vs::Translator* translator = recognizer.translator(path);
    if (!translator) {
        status.addError(
            localizedFormat("NoTranslatorForExport",
                            "\"%1%\": no translator writes this kind of file. These are written: %2%", path,
                            recognizer.fileExtensions()));
        return;
    }
    const std::unique_ptr<Vs::TranslatorSaveOptions> options = translator->createSaveOptions();
    options->fileName(path);
    options->combineSolids() = integer(context, VeloraExportCmdDef::combineArgumentName()) != 0;
    options->exportInDisplayUnit() = integer(context, VeloraExportCmdDef::displayUnitArgumentName()) != 0;
    if (!readRefinement(context->argumentAsString(VeloraExportCmdDef::refinementArgumentName()),
                        options->refinement(), status))
        return;
    Vs::TranslatorContext translatorContext;
    translatorContext.identifier(translator->identifier());
    translatorContext.asset(asset);
    if (!translator->save(*options, translatorContext, status) && status.isOk())
        status.addError(localizedFormat("ExportCancelled", "Writing \"%1%\" was cancelled.", path));
}

} // namespace Vu::Design
