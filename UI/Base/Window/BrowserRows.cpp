#include "UI/Base/Window/BrowserRows.h"

#include "Server/Component/ComponentIds.h"
#include "Server/DataModel/Asset.h"

#include <algorithm>
#include <cwctype>
#include <iterator>

namespace Vu {

namespace {

std::vector<std::string> sorted(std::vector<std::string> ids)
{
    std::sort(ids.begin(), ids.end(), [](const std::string& a, const std::string& b) {
        return Vs::lastNumber(a) < Vs::lastNumber(b);
    });
    return ids;
}

/// Without a copy of either text: a tree has a hundred thousand of them.
bool contains(const std::wstring& text, const std::wstring& lowered)
{
    return std::search(text.begin(), text.end(), lowered.begin(), lowered.end(), [](wchar_t a, wchar_t b) {
               return std::towlower(static_cast<wint_t>(a)) == static_cast<wint_t>(b);
           }) != text.end();
}

std::vector<std::wstring> lowered(std::vector<std::wstring> words)
{
    for (std::wstring& word : words)
        for (wchar_t& letter : word)
            letter = static_cast<wchar_t>(std::towlower(static_cast<wint_t>(letter)));
    return words;
}

} // namespace

void BrowserRows::asset(const Vs::Asset* asset)
{
    m_asset = asset;
    filter({});
}

void BrowserRows::filter(const std::vector<std::wstring>& words)
{
    m_byId.clear();
    m_root.reset();
    m_shown.clear();
    m_found.clear();
    m_isFiltered = m_asset && !words.empty();
    if (!m_asset)
        return;
    m_root = std::make_unique<Row>(nullptr, m_asset->components()->id);
    m_byId[m_root->id] = m_root.get();
    if (!m_isFiltered)
        return;
    const std::vector<std::wstring> wanted = lowered(words);
    for (const auto& child : m_asset->components()->children)
        collect(*child, wanted, false);
    m_shown.insert(m_asset->components());
}

/// Notes what is left of a branch; false if that is nothing.
bool BrowserRows::collect(const Vs::Component& component, const std::vector<std::wstring>& words,
                          bool isInFound)
{
    const bool isFound =
        std::ranges::all_of(words, [&](const std::wstring& word) { return contains(component.name, word); });
    if (isFound)
        m_found.push_back(&component);
    bool isShown = isInFound || isFound;
    for (const auto& child : component.children)
        isShown |= collect(*child, words, isInFound || isFound);
    if (isShown)
        m_shown.insert(&component);
    return isShown;
}

std::vector<std::string> BrowserRows::firstFound(size_t most) const
{
    std::vector<std::string> ids;
    for (size_t i = 0; i < std::min(most, m_found.size()); ++i)
        ids.push_back(m_found[i]->id);
    return ids;
}

BrowserRows::Row* BrowserRows::find(const std::string& id) const
{
    const auto found = m_byId.find(id);
    return found == m_byId.end() ? nullptr : found->second;
}

BrowserRows::Row* BrowserRows::reveal(const std::string& id)
{
    if (Row* row = find(id))
        return row;
    if (!m_asset || !m_asset->findComponent(id))
        return nullptr;
    Row* parent = reveal(Vs::parentId(id));
    if (parent)
        learn(*parent);
    return find(id);
}

const Vs::Component* BrowserRows::component(const Row& row) const
{
    return &row == m_root.get() ? m_asset->components() : m_asset->findComponent(row.id);
}

void BrowserRows::learn(Row& row)
{
    const Vs::Component* shown = row.known ? nullptr : component(row);
    row.known = true;
    if (!shown)
        return;
    Run all{0, {}};
    for (const auto& child : shown->children)
        if (shows(*child))
            all.ids.push_back(child->id);
    insert(row, all);
}

size_t BrowserRows::count(Row& row)
{
    learn(row);
    return row.children.size();
}

bool BrowserRows::hasChildren(const Row& row) const
{
    if (row.known)
        return !row.children.empty();
    const Vs::Component* shown = component(row);
    return shown && std::ranges::any_of(shown->children, [this](const auto& child) { return shows(*child); });
}

size_t BrowserRows::place(const Row& parent, const std::string& id) const
{
    const auto found = std::partition_point(parent.children.begin(), parent.children.end(),
                                            [own = Vs::lastNumber(id)](const std::unique_ptr<Row>& child) {
                                                return Vs::lastNumber(child->id) < own;
                                            });
    return static_cast<size_t>(found - parent.children.begin());
}

size_t BrowserRows::position(const Row& row) const
{
    return row.parent ? place(*row.parent, row.id) : 0;
}

std::vector<BrowserRows::Run> BrowserRows::gone(Row& parent, const std::vector<std::string>& ids)
{
    std::vector<Run> runs;
    if (!parent.known) {
        if (hasChildren(parent))
            return runs;
        // Its last children are gone; who asked whether it has any must hear of it.
        parent.known = true;
        insert(parent, {0, sorted(ids)});
    }
    for (const std::string& id : sorted(ids)) {
        const Row* row = find(id);
        const size_t at = row ? place(parent, id) : 0;
        if (!row)
            continue;
        if (runs.empty() || runs.back().first + runs.back().ids.size() != at)
            runs.push_back({at, {}});
        runs.back().ids.push_back(id);
    }
    std::reverse(runs.begin(), runs.end());
    return runs;
}

std::vector<BrowserRows::Run> BrowserRows::come(Row& parent, const std::vector<std::string>& ids)
{
    std::vector<Run> runs;
    std::vector<std::string> all = ids;
    if (const Vs::Component* shown = parent.known ? nullptr : component(parent)) {
        parent.known = true;
        all.clear();
        for (const auto& child : shown->children)
            all.push_back(child->id);
    }
    size_t before = 0;
    for (const std::string& id : sorted(std::move(all))) {
        if (find(id))
            continue;
        const size_t at = place(parent, id) + before;
        if (runs.empty() || runs.back().first + runs.back().ids.size() != at)
            runs.push_back({at, {}});
        runs.back().ids.push_back(id);
        ++before;
    }
    return runs;
}

void BrowserRows::erase(Row& parent, const Run& run)
{
    const auto first = parent.children.begin() + static_cast<std::ptrdiff_t>(run.first);
    const auto last = first + static_cast<std::ptrdiff_t>(run.ids.size());
    std::for_each(first, last, [&](const std::unique_ptr<Row>& row) { forget(*row); });
    parent.children.erase(first, last);
}

void BrowserRows::insert(Row& parent, const Run& run)
{
    std::vector<std::unique_ptr<Row>> rows;
    for (const std::string& id : run.ids) {
        rows.push_back(std::make_unique<Row>(&parent, id));
        m_byId[rows.back()->id] = rows.back().get();
    }
    parent.children.insert(parent.children.begin() + static_cast<std::ptrdiff_t>(run.first),
                           std::make_move_iterator(rows.begin()), std::make_move_iterator(rows.end()));
}

void BrowserRows::forget(const Row& row)
{
    for (const std::unique_ptr<Row>& child : row.children)
        forget(*child);
    m_byId.erase(row.id);
}

} // namespace Vu
