#include "UI/Design/Edit/EditInputs.h"

#include "Server/Base/Status.h"
#include "Server/Base/TextLine.h"
#include "Server/DataModel/Selection/SelectionFilter.h"
#include "UI/Base/Command/Info.h"
#include "UI/Design/Localized.h"

#include <map>

namespace Vu::Design {
namespace {

/// The record of that key and title, which is there as long as anything may ask for it.
Info* infoOf(const std::wstring& key, const std::wstring& title)
{
    static auto* const infos = new std::map<std::pair<std::wstring, std::wstring>, Info>;
    return &infos->try_emplace({key, title}, key, title, nullptr).first->second;
}

const Vs::SelectionFilter* filterOf(Vs::ESelectionType kind)
{
    Vs::MeasureMgr* manager = Vs::MeasureMgr::get();
    manager->initialize();
    const auto filters = manager->filters(kind);
    return filters.empty() ? nullptr : filters.front();
}

} // namespace

SelectionCommandInput* EditInputs::things(const wchar_t* key, const std::wstring& title,
                                          Vs::ESelectionType kind, bool one)
{
    auto* input = SelectionCommandInput::make(m_set, m_number++, infoOf(key, title));
    input->requiredFilter(filterOf(kind));
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
    std::vector<Vs::ObjectPath> paths;
    for (const auto& selection : input.selectionSet().selections())
        if (const auto* logical = Vs::cast<Vs::LogicalSelection>(selection.get()))
            paths.push_back(logical->path());
    return paths;
}

std::vector<std::string> componentsOf(const SelectionCommandInput& input)
{
    std::vector<std::string> components;
    for (const Vs::ObjectPath& path : pathsOf(input))
        components.push_back(path.component);
    return components;
}

bool takePaths(SelectionCommandInput& input, Vs::Asset& asset, const std::wstring& text, Vs::Status& status)
{
    std::vector<Vs::StrongRef<Vs::Selection>> named;
    Vs::TextLine words(text);
    for (std::wstring word; words.skipBlanks();) {
        words.next(word);
        const auto path = Vs::ObjectPath::find(asset, word, status);
        if (!path)
            return false;
        named.emplace_back(new Vs::LogicalSelection(&asset, *path, nullptr));
    }
    input.clear();
    for (size_t i = 0; i < named.size(); ++i)
        if (!input.add(named[i])) {
            status.addError(localizedFormat("EditWrongKind", "\"%1%\" is not what \"%2%\" takes.", text,
                                            input.info()->name()));
            return false;
        }
    return true;
}

} // namespace Vu::Design
