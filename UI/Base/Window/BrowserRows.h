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

/// The browser's rows for an asset's components, for the branches that were expanded so far. Rows come and go
/// by explicit notification and hold no component: a component that has left the asset keeps its row until
/// then. A filter leaves rows for only some of the components.
class BrowserRows
{
public:
    struct Row
    {
        Row* parent;
        std::string id;     ///< Component::id.
        bool known = false; ///< Whether the rows below were read.
        std::vector<std::unique_ptr<Row>> children;
    };
    /// A run of rows below one parent.
    struct Run
    {
        size_t first;
        std::vector<std::string> ids;
    };

    /// Drops all rows but the root's, and the filter. Null for no asset.
    void asset(const Vs::Asset* asset);
    /// Keeps the components whose names contain all of the words, ignoring case, with everything they contain
    /// and everything that contains them; without words, all components. Drops all rows but the root's.
    void filter(const std::vector<std::wstring>& words);
    bool isFiltered() const { return m_isFiltered; }
    /// Ids of the first components whose own names pass the filter, in tree order, at most so many.
    std::vector<std::string> firstFound(size_t most) const;

    /// Of the asset; only while there is one.
    Row& root() { return *m_root; }
    /// Null if there is no row, even if there is a component.
    Row* find(const std::string& id) const;
    /// Reads the branches that lead to the component. Null if there is none.
    Row* reveal(const std::string& id);
    /// Null if it is gone.
    const Vs::Component* component(const Row& row) const;

    /// How many rows are below; reads the branch.
    size_t count(Row& row);
    /// The same without reading it.
    bool hasChildren(const Row& row) const;
    size_t position(const Row& row) const;

    /// Which runs of rows must be removed or inserted for components with these ids, all below that parent.
    /// For removals the later runs come first, so that each is valid once those before it are done. A branch
    /// that hasn't been read counts as empty before.
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
    /// The children that the filter keeps, for each component that doesn't keep all of them.
    std::unordered_map<const Vs::Component*, std::vector<uint32_t>> m_shown;
    std::vector<const Vs::Component*> m_found; ///< Whose own names pass, in tree order.
};

} // namespace Vu
