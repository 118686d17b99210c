#include "Server/DataModel/Selection/SelectionCategory.h"

#include "Server/DataModel/Private/Texts.h"
#include "Server/DataModel/Selection/Private/SelectionOptionGroup.h"

#include <algorithm>

namespace Vs {

namespace {

using DataModel::localized;

std::unique_ptr<SelectionCategory> category(int order, const wchar_t* id, std::wstring name)
{
    return std::make_unique<SelectionCategory>(order, id, std::move(name));
}

} // namespace

void SelectionCategory::enable(bool on, bool kept)
{
    m_enabled = on;
    if (!kept)
        return;
    std::vector<std::wstring> disabled = SelectionOptionGroup::get()->disabledCategories();
    std::erase(disabled, m_id);
    if (!on)
        disabled.push_back(m_id);
    SelectionOptionGroup::get()->disabledCategories(disabled);
}

void EnumerableSelectionFilter::getSortedSelectionCategories(
    const std::vector<const SelectionFilter*>& filters, std::vector<SelectionCategory*>& categories)
{
    for (const SelectionFilter* filter : filters)
        if (const auto* enumerable = cast<EnumerableSelectionFilter>(filter)) {
            const auto own = enumerable->selectionCategories();
            categories.insert(categories.end(), own.begin(), own.end());
        }
    std::stable_sort(categories.begin(), categories.end(),
                     [](const auto* a, const auto* b) { return a->order() < b->order(); });
}

ObjectKindFilter::ObjectKindFilter(bool restored)
{
    m_categories.push_back(category(1, L"Vertices", localized("CategoryVertices", "Vertices")));
    m_categories.push_back(category(2, L"Edges", localized("CategoryEdges", "Edges")));
    m_categories.push_back(category(3, L"Faces", localized("CategoryFaces", "Faces")));
    m_categories.push_back(category(4, L"Solids", localized("CategorySolids", "Solids")));
    m_categories.push_back(category(5, L"Bodies", localized("CategoryBodies", "Bodies")));
    m_categories.push_back(category(6, L"Components", localized("CategoryComponents", "Components")));
    categoryOf(ObjectPath::Leaf::Solid).m_enabled = false;
    if (!restored)
        return;
    const std::vector<std::wstring> disabled = SelectionOptionGroup::get()->disabledCategories();
    for (const auto& each : m_categories)
        each->m_enabled = std::find(disabled.begin(), disabled.end(), each->id()) == disabled.end();
}

SelectionCategory& ObjectKindFilter::categoryOf(ObjectPath::Leaf kind) const
{
    using Leaf = ObjectPath::Leaf;
    constexpr Leaf kKinds[] = {Leaf::Vertex, Leaf::Edge, Leaf::Face,
                               Leaf::Solid,  Leaf::Body, Leaf::Component};
    return *m_categories[static_cast<size_t>(std::find(std::begin(kKinds), std::end(kKinds), kind) -
                                             std::begin(kKinds))];
}

bool ObjectKindFilter::accepts(const Selection& selection) const
{
    const auto* object = cast<LogicalSelection>(&selection);
    return !object || mayAccept(object->path().leaf);
}

std::vector<SelectionCategory*> ObjectKindFilter::selectionCategories() const
{
    std::vector<SelectionCategory*> all;
    for (const auto& each : m_categories)
        all.push_back(each.get());
    return all;
}

} // namespace Vs
