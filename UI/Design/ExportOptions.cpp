#include "UI/Design/ExportOptions.h"

#include "Server/Base/NumberText.h"
#include "Server/Base/SiblingLibrary.h"
#include "Server/Base/Strings.h"
#include "Server/Body/Body.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Selection/SelectedPaths.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Server/Types/LengthUnit.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/FileDialog.h"
#include "UI/Base/Session/ActiveAssetUtils.h"
#include "UI/Design/ExportDesignCmd.h"
#include "UI/Design/Localized.h"

#include <boost/algorithm/string/join.hpp>
#include <boost/algorithm/string/predicate.hpp>
#include <boost/algorithm/string/split.hpp>
#include <boost/filesystem/path.hpp>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <set>

namespace Vu::Design {
namespace {

using Definition = VeloraExportCmdDef;

constexpr Vs::TranslatorRefinement kCoarse = {30.0f, 0.01f};
constexpr Vs::TranslatorRefinement kFine = {8.0f, 0.0002f};

ExportOptionsAsker installedAsker = nullptr;

/// The arguments that are whole numbers, used as zero or non-zero.
struct FlagRow
{
    bool ExportOptions::*flag;
    const Vs::UniqueString* (*key)();
};
constexpr FlagRow kFlags[] = {
    {&ExportOptions::combine, &Definition::combineArgumentName},
    {&ExportOptions::displayUnit, &Definition::displayUnitArgumentName},
    {&ExportOptions::hiddenToo, &Definition::hiddenTooArgumentName},
    {&ExportOptions::selectedOnly, &Definition::selectedOnlyArgumentName},
    {&ExportOptions::separate, &Definition::separateArgumentName},
    {&ExportOptions::asText, &Definition::asTextArgumentName},
};

bool readUpAxis(const std::wstring& text, Vs::UpAxis& axis)
{
    axis = boost::iequals(text, L"y")   ? Vs::UpAxis::Y
           : boost::iequals(text, L"z") ? Vs::UpAxis::Z
                                        : Vs::UpAxis::Usual;
    return text.empty() || axis != Vs::UpAxis::Usual;
}

std::wstring unitKeys()
{
    std::vector<std::wstring> keys;
    for (const Vs::LengthUnit& unit : Vs::LengthUnit::all())
        keys.push_back(Vs::Strings::widen(unit.key));
    return boost::join(keys, L", ");
}

template <class Take>
void eachWanted(const Vs::Component& component, const ExportOptions& options,
                const std::vector<std::string>& selected, bool isIn, const Take& take)
{
    if (!component.visible && !options.hiddenToo)
        return;
    const bool isWanted = isIn || std::ranges::find(selected, component.id) != selected.end();
    if (isWanted && component.body)
        take(component);
    for (const auto& child : component.children)
        eachWanted(*child, options, selected, isWanted, take);
}

template <class Take>
void eachWanted(const Vs::Asset& asset, const ExportOptions& options, const Take& take)
{
    const std::vector<std::string> selected =
        options.selectedOnly ? selectedComponents() : std::vector<std::string>();
    eachWanted(*asset.components(), options, selected, !options.selectedOnly, take);
}

/// A name from a file may be anything.
std::wstring asFileName(std::wstring name)
{
    std::replace_if(
        name.begin(), name.end(), [](wchar_t c) { return c < L' ' || c == L'/' || c == L'\\'; }, L'_');
    constexpr size_t kLongest = 60;
    return name.substr(0, kLongest);
}

} // namespace

bool readRefinement(const std::wstring& text, Vs::TranslatorRefinement& refinement, Vs::Status& status)
{
    if (boost::iequals(text, L"coarse") || boost::iequals(text, L"fine")) {
        refinement = boost::iequals(text, L"fine") ? kFine : kCoarse;
        return true;
    }
    float* const numbers[] = {&refinement.normalDeviation, &refinement.surfaceDeviation,
                              &refinement.maximumAspectRatio, &refinement.maximumEdgeLength};
    std::vector<std::wstring> words;
    if (!text.empty())
        boost::split(words, text, [](wchar_t c) { return c == L','; });
    bool right = words.size() <= std::size(numbers);
    for (size_t i = 0; right && i < words.size(); ++i) {
        *numbers[i] = Vs::readNumber<float>(words[i]).value_or(0);
        right = *numbers[i] > 0;
    }
    if (!right)
        status.addError(localizedFormat(
            "RefinementWrong",
            "\"%1%\" is not a refinement; write coarse, fine, or up to four positive numbers: degrees, "
            "fraction "
            "of the diagonal, how many times longer than high a triangle may be, longest side in per cent of "
            "the diagonal.",
            text));
    return right;
}

ExportOptions ExportOptions::read(CommandContext& context, Vs::Status& status)
{
    ExportOptions options;
    for (const FlagRow& row : kFlags) {
        int value = 0;
        context.argument(row.key(), CommandContext::EArgType::Int, &value);
        options.*row.flag = value != 0;
    }
    options.refinement = context.argumentAsString(Definition::refinementArgumentName());
    Vs::TranslatorRefinement refinement;
    readRefinement(options.refinement, refinement, status);
    const std::wstring unit = context.argumentAsString(Definition::unitArgumentName());
    options.unit = Vs::Strings::narrow(unit);
    if (!unit.empty() && !Vs::LengthUnit::find(options.unit))
        status.addError(
            localizedFormat("ExportUnitWrong", "\"%1%\" is not one of these units: %2%.", unit, unitKeys()));
    const std::wstring axis = context.argumentAsString(Definition::upAxisArgumentName());
    if (!readUpAxis(axis, options.upAxis))
        status.addError(
            localizedFormat("ExportAxisWrong", "\"%1%\" is not an axis; there are y and z.", axis));
    return options;
}

void ExportOptions::write(CommandContext& context) const
{
    for (const FlagRow& row : kFlags)
        if (this->*row.flag)
            context.addArgument(row.key(), 1);
    if (!refinement.empty())
        context.addArgument(Definition::refinementArgumentName(), refinement);
    if (!unit.empty())
        context.addArgument(Definition::unitArgumentName(), Vs::Strings::widen(unit));
    if (upAxis != Vs::UpAxis::Usual)
        context.addArgument(Definition::upAxisArgumentName(),
                            std::wstring(upAxis == Vs::UpAxis::Y ? L"y" : L"z"));
}

std::wstring ExportOptions::refusal(const Vs::Translator& translator) const
{
    const Vs::TranslatorChoices choices = translator.saveChoices();
    if (asText && !choices.text)
        return localizedFormat("ExportNoText",
                               "%1% have one form only; there is no choice of text or binary.",
                               translator.name());
    if (upAxis != Vs::UpAxis::Usual && !choices.upAxis)
        return localizedFormat("ExportNoAxis", "%1% have no choice of the axis that points upwards.",
                               translator.name());
    if (!unit.empty() && !choices.unit)
        return localizedFormat("ExportNoUnit", "%1% have no choice of the unit.", translator.name());
    if (selectedOnly && selectedComponents().empty())
        return localized("ExportNothingSelected", "Nothing that can be exported is selected.");
    return {};
}

void ExportOptions::apply(Vs::TranslatorSaveOptions& options) const
{
    Vs::Status checked;
    readRefinement(refinement, options.refinement(), checked);
    options.combineSolids() = combine;
    options.exportInDisplayUnit() = displayUnit;
    options.unit() = unit;
    options.asText() = asText;
    options.upAxis() = upAxis;
    options.visibleOnly() = !hiddenToo;
    if (selectedOnly)
        options.components() = selectedComponents();
}

std::vector<std::string> selectedComponents()
{
    std::vector<std::string> ids;
    if (Vs::SelectionMgr* manager = ActiveAssetUtils::selectionManager())
        for (const Vs::ObjectPath& path : Vs::pathsIn(manager->selectionSet()))
            ids.push_back(path.component);
    return ids;
}

std::vector<ExportedPart> partsToExport(const Vs::Asset& asset, const ExportOptions& options)
{
    std::vector<ExportedPart> parts;
    eachWanted(asset, options, [&](const Vs::Component& component) {
        parts.push_back(
            {component.id, component.name.empty() ? component.body->name() : component.name.text()});
    });
    return parts;
}

std::vector<std::wstring> filesOfParts(const std::wstring& path, const std::vector<ExportedPart>& parts)
{
    const boost::filesystem::path whole(path);
    const std::wstring stem = (whole.parent_path() / whole.stem()).wstring();
    std::set<std::wstring> taken;
    std::vector<std::wstring> files;
    for (const ExportedPart& part : parts) {
        const std::wstring name = stem + L'-' + asFileName(part.name);
        std::wstring file = name + whole.extension().wstring();
        // A part's name may equal the numbered form of another name.
        for (int number = 2; !taken.insert(file).second; ++number)
            file = name + L'-' + std::to_wstring(number) + whole.extension().wstring();
        files.push_back(file);
    }
    return files;
}

bool askExportOptions(Vs::Asset& asset, const Vs::Translator& translator, const std::wstring& path,
                      ExportOptions& options)
{
    // Loaded for the first export by hand, not with the window.
    if (Application::get()->mainWidget() && FileDialog::canAsk())
        static const Vs::SiblingLibrary widgets("libVuDesignQT10.so");
    return !installedAsker || installedAsker(asset, translator, path, options);
}

void exportOptionsAsker(ExportOptionsAsker asker)
{
    installedAsker = asker;
}

} // namespace Vu::Design
