#include "UI/Design/Edit/EditInputs.h"

#include "Server/DataModel/Selection/SelectedPaths.h"
#include "Server/DataModel/Selection/SelectionFilter.h"
#include "UI/Base/Command/Info.h"

#include <map>

namespace Vu::Design {
namespace {

/// The record with that key and title, which lives as long as anything may ask for it.
Info* infoOf(const std::wstring& key, const std::wstring& title)
{
    static auto* const infos = new std::map<std::pair<std::wstring, std::wstring>, Info>;
    return &infos->try_emplace({key, title}, key, title, nullptr).first->second;
}

const Vs::SelectionFilter* filterOf(std::initializer_list<Vs::ESelectionType> kinds)
{
    using Filter = Vs::CompositeSelectionFilter;
    static auto* const known = new std::map<unsigned, Filter>;
    unsigned mask = 0;
    for (const Vs::ESelectionType kind : kinds)
        mask |= static_cast<unsigned>(kind);
    const auto [found, fresh] = known->try_emplace(mask, Filter::ELogic::Any);
    if (fresh) {
        Vs::MeasureMgr::get()->initialize();
        for (const Vs::ESelectionType kind : kinds)
            for (const Vs::SelectionFilter* filter : Vs::MeasureMgr::get()->filters(kind))
                found->second.add(filter);
    }
    return &found->second;
}

} // namespace

SelectionCommandInput* EditInputs::things(const wchar_t* key, const std::wstring& title,
                                          std::initializer_list<Vs::ESelectionType> kinds, bool one)
{
    auto* input = SelectionCommandInput::make(m_set, m_number++, infoOf(key, title));
    input->requiredFilter(filterOf(kinds));
    input->requiredQuantity(one, 1);
    return input;
}

RealValueCommandInput* EditInputs::length(const wchar_t* key, const std::wstring& title, double value)
{
    auto* input = RealValueCommandInput::make(m_set, m_number++, infoOf(key, title),
                                              Vs::Units::Unit::display(Vs::Units::Quantity::Length));
    input->value(value);
    return input;
}

RealValueCommandInput* EditInputs::angle(const wchar_t* key, const std::wstring& title, double value)
{
    auto* input = RealValueCommandInput::make(m_set, m_number++, infoOf(key, title),
                                              Vs::Units::Unit::display(Vs::Units::Quantity::Angle));
    input->value(value);
    return input;
}

IntegerValueCommandInput* EditInputs::count(const wchar_t* key, const std::wstring& title, int value)
{
    auto* input = IntegerValueCommandInput::make(m_set, m_number++, infoOf(key, title));
    input->value(value);
    return input;
}

ColourCommandInput* EditInputs::colour(const wchar_t* key, const std::wstring& title)
{
    return ColourCommandInput::make(m_set, m_number++, infoOf(key, title));
}

BoolValueCommandInput* EditInputs::choice(const wchar_t* key, const std::wstring& title, bool value)
{
    auto* input = BoolValueCommandInput::make(m_set, m_number++, infoOf(key, title));
    input->value(value);
    return input;
}

ListCommandInput* EditInputs::list(const wchar_t* key, const std::wstring& title,
                                   std::initializer_list<Item> items)
{
    auto* input = ListCommandInput::make(m_set, m_number++, infoOf(key, title));
    std::vector<Info*> infos;
    for (const Item& item : items)
        infos.push_back(infoOf(item.key, item.title));
    input->control()->items(infos);
    input->control()->selectedItem(infos.front(), false);
    return input;
}

std::vector<Vs::ObjectPath> pathsOf(const SelectionCommandInput& input)
{
    return Vs::pathsIn(input.selectionSet());
}

std::vector<std::string> componentsOf(const SelectionCommandInput& input)
{
    std::vector<std::string> components;
    for (const Vs::ObjectPath& path : pathsOf(input))
        components.push_back(path.component);
    return components;
}

} // namespace Vu::Design
