#include "UI/Base/Window/BrowserRows.h"

#include "Server/Component/ComponentIds.h"
#include "Server/DataModel/Asset.h"

#include <algorithm>
#include <cwctype>
#include <iterator>
#include <tuple>

namespace Vu {

namespace {

std::vector<std::string> sorted(std::vector<std::string> ids)
{
    std::sort(ids.begin(), ids.end(), [](const std::string& a, const std::string& b) {
        return Vs::lastNumber(a) < Vs::lastNumber(b);
    });
    return ids;
}

wchar_t lowered(wchar_t letter)
{
    constexpr wchar_t kBetween = L'a' - L'A';
    if (letter < 0x80)
        return letter >= L'A' && letter <= L'Z' ? letter + kBetween : letter;
    return static_cast<wchar_t>(std::towlower(static_cast<wint_t>(letter)));
}

/// Without copying either text: a tree has a million of them.
bool contains(std::wstring_view text, std::wstring_view wanted)
{
    return std::search(text.begin(), text.end(), wanted.begin(), wanted.end(),
                       [](wchar_t a, wchar_t b) { return lowered(a) == b; }) != text.end();
}

std::vector<std::wstring> lowered(std::vector<std::wstring> words)
{
    for (std::wstring& word : words)
        for (wchar_t& letter : word)
            letter = lowered(letter);
    return words;
}

} // namespace

/// Walks the tree once for a filter.
class BrowserRows::Look
{
public:
    Look(BrowserRows& rows, const std::vector<std::wstring>& words) : m_rows(rows), m_words(words) {}

    /// Records what is left below; false if there is nothing.
    bool below(const Vs::Component& parent, bool isInFound)
    {
        std::vector<uint32_t> shown;
        for (uint32_t row = 0; row < parent.children.size(); ++row) {
            const Vs::Component& child = *parent.children[row];
            const bool isFound = passes(child.name);
            if (isFound)
                m_rows.m_found.push_back(&child);
            const bool isShown = isInFound || isFound;
            if ((!child.children.empty() && below(child, isShown)) || isShown)
                shown.push_back(row);
        }
        const bool isAny = !shown.empty();
        if (shown.size() < parent.children.size())
            m_rows.m_shown.emplace(&parent, std::move(shown));
        return isAny;
    }

private:
    /// Many parts of the same name are next to each other.
    bool passes(const std::wstring& name)
    {
        if (&name != m_last) {
            m_passes = std::ranges::all_of(m_words, [&](const auto& word) { return contains(name, word); });
            m_last = &name;
        }
        return m_passes;
    }

    BrowserRows& m_rows;
    const std::vector<std::wstring>& m_words;
    const std::wstring* m_last = nullptr;
    bool m_passes = false;
};

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
    Look(*this, wanted).below(*m_asset->components(), false);
}

/// Calls `use` with the children that the filter keeps, until it returns false. Some may have been removed
/// already without the filter knowing yet.
template <class Use>
void BrowserRows::eachShown(const Vs::Component& parent, Use use) const
{
    const auto some = m_shown.find(&parent);
    if (some == m_shown.end())
        std::ignore = std::ranges::all_of(parent.children, [&](const auto& child) { return use(*child); });
    else
        std::ignore = std::ranges::all_of(some->second, [&](uint32_t row) {
            return row >= parent.children.size() || use(*parent.children[row]);
        });
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
    all.ids.reserve(shown->children.size());
    eachShown(*shown, [&](const Vs::Component& child) {
        all.ids.push_back(child.id);
        return true;
    });
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
    bool isAny = false;
    if (shown)
        eachShown(*shown, [&](const Vs::Component&) { return !(isAny = true); });
    return isAny;
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
        // Its last children are gone; whoever asked whether it has any must be told.
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
    rows.reserve(run.ids.size());
    if (run.ids.size() > m_byId.size()) // Otherwise adding thousands would rehash the table again and again.
        m_byId.reserve(m_byId.size() + run.ids.size());
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
