#include "UI/Base/Window/BrowserRows.h"

#include "Server/Component/ComponentIds.h"
#include "Server/DataModel/Asset.h"

#include <algorithm>
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

} // namespace

void BrowserRows::asset(const Vs::Asset* asset)
{
    m_byId.clear();
    m_root.reset();
    m_asset = asset;
    if (!asset)
        return;
    m_root = std::make_unique<Row>(nullptr, asset->components()->id);
    m_byId[m_root->id] = m_root.get();
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
    return shown && !shown->children.empty();
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
