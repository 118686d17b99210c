#pragma once

#include <cstdint>
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
/// then. A filter leaves rows for some of the components alone.
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

    /// Forgets all rows but the root's, and the filter. Null for no asset.
    void asset(const Vs::Asset* asset);
    /// Leaves the components whose names have all of the words, in whatever case, with all that they hold and
    /// all that holds them; without words, all components. Forgets all rows but the root's.
    void filter(const std::vector<std::wstring>& words);
    bool isFiltered() const { return m_isFiltered; }
    /// Ids of the first components whose own names pass the filter, in the order of the tree, at most so
    /// many.
    std::vector<std::string> firstFound(size_t most) const;

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
    class Look;
    template <class Use>
    void eachShown(const Vs::Component& parent, Use use) const;
    void learn(Row& row);
    void forget(const Row& row);
    size_t place(const Row& parent, const std::string& id) const;

    const Vs::Asset* m_asset = nullptr;
    std::unique_ptr<Row> m_root;
    std::unordered_map<std::string_view, Row*> m_byId; ///< By Row::id.
    bool m_isFiltered = false;
    /// Which of its children the filter leaves, of each component whose children it doesn't leave all.
    std::unordered_map<const Vs::Component*, std::vector<uint32_t>> m_shown;
    std::vector<const Vs::Component*> m_found; ///< Whose own names pass, in the order of the tree.
};

} // namespace Vu
