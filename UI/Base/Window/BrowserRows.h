#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Vs {
class Asset;
class Component;
} // namespace Vs

namespace Vu {

/// The rows that the browser has for an asset's components, of those branches that were looked at. Rows are
/// told when they come and go, and hold no component: one that is gone from the asset still has its row until
/// then.
class BrowserRows
{
public:
    struct Row
    {
        Row* parent;
        std::string id;     ///< Component::id.
        bool known = false; ///< Whether the rows below are there.
        std::vector<std::unique_ptr<Row>> children;
    };
    /// A run of rows below one parent.
    struct Run
    {
        size_t first;
        std::vector<std::string> ids;
    };

    /// Forgets all rows but the root's. Null for no asset.
    void asset(const Vs::Asset* asset);

    /// Of the asset; only while there is one.
    Row& root() { return *m_root; }
    /// Null if there is no row, though there may be a component.
    Row* find(const std::string& id) const;
    /// Looks into the branches that lead to the component. Null if there is none.
    Row* reveal(const std::string& id);
    /// Null if it is gone.
    const Vs::Component* component(const Row& row) const;

    /// How many rows are below; looks into the branch.
    size_t count(Row& row);
    /// The same without looking into it.
    bool hasChildren(const Row& row) const;
    size_t position(const Row& row) const;

    /// Which runs of rows are to go, or to come, for components of these ids, all below that parent. The
    /// later ones come first where rows go, so that each is right when those before it are done. A branch
    /// that was not looked into counts as empty before.
    std::vector<Run> gone(Row& parent, const std::vector<std::string>& ids);
    std::vector<Run> come(Row& parent, const std::vector<std::string>& ids);
    void erase(Row& parent, const Run& run);
    void insert(Row& parent, const Run& run);

private:
    void learn(Row& row);
    void forget(const Row& row);
    size_t place(const Row& parent, const std::string& id) const;

    const Vs::Asset* m_asset = nullptr;
    std::unique_ptr<Row> m_root;
    std::unordered_map<std::string_view, Row*> m_byId; ///< By Row::id.
};

} // namespace Vu
