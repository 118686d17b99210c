#include "UI/Base/Program/Preferences.h"

#include "Server/Base/NumberText.h"
#include "Server/Base/StringTable.h"
#include "Server/Base/Strings.h"
#include "Server/DataModel/Recovery/AutoSaveOptionsGroup.h"
#include "Server/Scene/GraphicsOptionGroup.h"
#include "Server/Types/LengthUnit.h"
#include "Server/Types/Units/UnitDisplaySettings.h"
#include "Server/Types/UnitsOptionGroup.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Program/UnitName.h"

#include <boost/algorithm/string/join.hpp>
#include <boost/algorithm/string/predicate.hpp>

#include <algorithm>

namespace Vu {
namespace {

using Choices = std::vector<Preference::Choice>;
using Page = Preference::Page;

/// The option of a group's member: `option<&UIBaseOptionGroup::theme>`.
template <auto Member>
struct OptionOf;
template <class Group, class Type, Vs::Option<Type> Group::*Member>
struct OptionOf<Member>
{
    static Vs::Option<Type>& get() { return Group::get()->*Member; }
};

template <auto Member>
constexpr Preference::Toggle toggle()
{
    return {&OptionOf<Member>::get};
}

Choices languages()
{
    Choices choices = {{L"system", localized("LanguageOfSystem", "As the desktop")}};
    for (const std::string& code : Vs::StringTable::languages()) {
        const std::wstring value = Vs::Strings::widen(code);
        // Each by the name that its speakers give it.
        choices.push_back({value, code == "en" ? L"English" : code == "de" ? L"Deutsch" : value});
    }
    return choices;
}

Choices themes()
{
    return {{L"system", localized("ThemeOfSystem", "As the desktop")},
            {L"light", localized("ThemeLight", "Light")},
            {L"dark", localized("ThemeDark", "Dark")}};
}

Choices tangentEdges()
{
    return {{L"faint", localized("TangentEdgesFaint", "Faint")},
            {L"full", localized("TangentEdgesFull", "As others")},
            {L"none", localized("TangentEdgesNone", "None")}};
}

Choices meshQualities()
{
    return {{L"coarse", localized("MeshQualityCoarse", "Coarse")},
            {L"normal", localized("MeshQualityNormal", "Normal")},
            {L"fine", localized("MeshQualityFine", "Fine")}};
}

Choices lengthUnits()
{
    Choices choices;
    for (const Vs::LengthUnit& unit : Vs::LengthUnit::all())
        choices.push_back({Vs::Strings::widen(unit.key), unitName(unit)});
    return choices;
}

std::vector<Preference> makeAll()
{
    using UI = UIBaseOptionGroup;
    using Graphics = Vs::Scene::GraphicsOptionGroup;
    constexpr int kDecimals = Vs::Units::UnitDisplaySettings::kAllDecimals;
    // clang-format off
    return {
        {Page::General, L"UIBase.language", "PreferenceLanguage", "Language (takes effect at the next start)", Preference::TextChoice{&OptionOf<&UI::language>::get, &languages}},
        {Page::General, L"UIBase.theme", "PreferenceTheme", "Theme", Preference::TextChoice{&OptionOf<&UI::theme>::get, &themes}},
        {Page::General, L"UIBase.undoSelectionAndCamera", "PreferenceUndoSelection", "Undo brings back the selection and the camera", toggle<&UI::undoSelectionAndCamera>()},
        {Page::General, L"UIBase.analytics", "PreferenceAnalytics", "Count the usage of commands", toggle<&UI::analytics>()},
        {Page::Files, L"AutoSave.performAutoSave", "PreferenceAutoSave", "Keep unsaved work in recovery files", toggle<&Vs::AutoSaveOptionsGroup::performAutoSave>()},
        {Page::Files, L"MultiThread.openMultipleFiles", "PreferenceSeveralFiles", "Open several files at a time", toggle<&Vs::MultiThreadOptionGroup::openMultipleFiles>()},
        {Page::Files, L"MultiThread.multiThreadLoad", "PreferenceParallelLoad", "Load several files in parallel", toggle<&Vs::MultiThreadOptionGroup::multiThreadLoad>()},
        {Page::Units, L"Units.lengthUnit", "PreferenceLengthUnit", "Unit of length", Preference::TextChoice{&OptionOf<&Vs::UnitsOptionGroup::lengthUnit>::get, &lengthUnits}},
        {Page::Units, L"Units.generalPrecision", "PreferencePrecision", "Decimals", Preference::Count{&OptionOf<&Vs::UnitsOptionGroup::generalPrecision>::get, 0, kDecimals}},
        {Page::Navigation, L"UIBase.useContrainedOrbit", "PreferenceConstrainedOrbit", "Orbit keeps the vertical upright", toggle<&UI::useContrainedOrbit>()},
        {Page::Navigation, L"UIBase.cameraPivotEnabled", "PreferencePivot", "Orbit about a pivot", toggle<&UI::cameraPivotEnabled>()},
        {Page::Navigation, L"UIBase.pivotUnderPointer", "PreferencePivotUnderPointer", "The pivot is what lies under the pointer", toggle<&UI::pivotUnderPointer>()},
        {Page::Navigation, L"UIBase.reverseZoomDirection", "PreferenceReverseZoom", "Reverse the direction of zooming", toggle<&UI::reverseZoomDirection>()},
        {Page::Navigation, L"UIBase.animateCamera", "PreferenceAnimateCamera", "The camera glides to its new place", toggle<&UI::animateCamera>()},
        {Page::Display, L"Graphics.MSAA", "PreferenceSmoothEdges", "Smooth edges", toggle<&Graphics::MSAA>()},
        {Page::Display, L"Graphics.tangentEdges", "PreferenceTangentEdges", "Edges between faces that meet smoothly", Preference::TextChoice{&OptionOf<&Graphics::tangentEdges>::get, &tangentEdges}},
        {Page::Display, L"Graphics.meshQuality", "PreferenceMeshQuality", "Round faces near by", Preference::TextChoice{&OptionOf<&Graphics::meshQuality>::get, &meshQualities}},
        {Page::Display, L"Graphics.ambientOccludedEnabled", "PreferenceDarkCorners", "Darker corners", toggle<&Graphics::ambientOccludedEnabled>()},
        {Page::Display, L"Graphics.groundShadowEnabled", "PreferenceGroundShadow", "Shadow on the ground", toggle<&Graphics::groundShadowEnabled>()},
        {Page::Display, L"Graphics.groundReflectionEnabled", "PreferenceReflection", "Reflection in the ground", toggle<&Graphics::groundReflectionEnabled>()},
        {Page::Display, L"Graphics.displayDome", "PreferenceDome", "Shaded background", toggle<&Graphics::displayDome>()},
        {Page::Display, L"Graphics.displayGroundPlane", "PreferenceGround", "Ground plane", toggle<&Graphics::displayGroundPlane>()},
        {Page::Display, L"Graphics.showLayoutGrid", "PreferenceGrid", "Grid", toggle<&Graphics::showLayoutGrid>()},
        {Page::Display, L"Graphics.showAxisCross", "PreferenceAxisCross", "Axis cross", toggle<&Graphics::showAxisCross>()},
        {Page::Display, L"Graphics.showScaleBar", "PreferenceScaleBar", "Scale bar", toggle<&Graphics::showScaleBar>()},
        {Page::Display, L"Graphics.selectClosestItemOnly", "PreferenceSeenOnly", "Clicks select only what is visible", toggle<&Graphics::selectClosestItemOnly>()},
    };
    // clang-format on
}

std::wstring textOf(const Preference::Toggle& toggle)
{
    return toggle.option()() ? L"true" : L"false";
}

std::wstring textOf(const Preference::Count& count)
{
    return std::to_wstring(count.option()());
}

std::wstring textOf(const Preference::TextChoice& choice)
{
    return choice.option()();
}

std::wstring set(const Preference::Toggle& toggle, const std::wstring& text)
{
    const bool on = boost::iequals(text, L"true");
    if (!on && !boost::iequals(text, L"false"))
        return localizedFormat("PreferenceNoToggle", "\"%1%\" is neither true nor false.", text);
    toggle.option()(on);
    return {};
}

std::wstring set(const Preference::Count& count, const std::wstring& text)
{
    const auto value = Vs::readNumber<int>(text);
    if (!value || *value < count.least || *value > count.most)
        return localizedFormat("PreferenceNoCount", "\"%1%\" is not a whole number from %2% to %3%.", text,
                               count.least, count.most);
    count.option()(*value);
    return {};
}

std::wstring set(const Preference::TextChoice& choice, const std::wstring& text)
{
    std::vector<std::wstring> values;
    for (const Preference::Choice& each : choice.choices()) {
        if (boost::iequals(each.value, text)) {
            choice.option()(each.value);
            return {};
        }
        values.push_back(each.value);
    }
    return localizedFormat("PreferenceNoChoice", "\"%1%\" is not one of these: %2%.", text,
                           boost::join(values, L", "));
}

} // namespace

std::wstring Preference::title() const
{
    return localized(m_key, m_title);
}

std::wstring Preference::text() const
{
    return std::visit([](const auto& kind) { return textOf(kind); }, m_kind);
}

std::wstring Preference::setText(const std::wstring& text) const
{
    return std::visit([&](const auto& kind) { return set(kind, text); }, m_kind);
}

void Preference::reset() const
{
    std::visit([](const auto& kind) { kind.option()(kind.option().fallBack()); }, m_kind);
}

bool Preference::isDefault() const
{
    return std::visit([](const auto& kind) { return kind.option()() == kind.option().fallBack(); }, m_kind);
}

const std::vector<Preference>& Preferences::all()
{
    static const auto& rows = *new std::vector<Preference>(makeAll());
    return rows;
}

const Preference* Preferences::find(const std::wstring& id)
{
    const auto found = std::ranges::find_if(
        all(), [&](const Preference& preference) { return boost::iequals(preference.id(), id); });
    return found == all().end() ? nullptr : &*found;
}

namespace {

std::wstring& searchedText()
{
    static std::wstring text;
    return text;
}

} // namespace

void Preferences::show(const std::wstring& text)
{
    searchedText() = text;
    Application::get()->showPreferences();
    searchedText().clear();
}

const std::wstring& Preferences::searched()
{
    return searchedText();
}

std::wstring Preferences::titleOf(Preference::Page page)
{
    switch (page) {
    case Page::General:
        return localized("PreferencesGeneral", "General");
    case Page::Files:
        return localized("PreferencesFiles", "Files");
    case Page::Units:
        return localized("PreferencesUnits", "Units");
    case Page::Navigation:
        return localized("PreferencesNavigation", "Navigation");
    case Page::Display:
        return localized("PreferencesDisplay", "Display");
    }
    return {};
}

} // namespace Vu
