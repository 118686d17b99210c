#pragma once

#include "Server/Base/Object.h"
#include "Server/Base/StrongRef.h"
#include "Server/DataModel/Selection/ObjectPath.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

class BBox;

namespace Vs {

class Asset;

/// Something that is, or can be, selected. Never changed once it is made.
class Selection : public Implements<Selection, SharedObject>
{
public:
    /// Whether both select the same thing, wherever it was picked.
    [[nodiscard]] virtual bool isEqualTo(const Selection& other) const { return this == &other; }
    /// The same for all that are equal; so sets of thousands find soon what they don't hold.
    virtual size_t hash() const { return 0; }
};

/// An object of a model, as a place of the scene or a text named it.
class LogicalSelection : public Implements<LogicalSelection, Selection>
{
public:
    /// `picked` is what the scene knows of the place; null for what was not picked in a canvas.
    LogicalSelection(Asset* asset, ObjectPath path, StrongRef<Selection> picked)
        : m_asset(asset), m_path(std::move(path)), m_picked(std::move(picked))
    {
    }
    /// A component.
    LogicalSelection(Asset* asset, std::string componentId, StrongRef<Selection> picked)
        : LogicalSelection(asset, ObjectPath{.component = std::move(componentId)}, std::move(picked))
    {
    }

    /// Not owned; only to be compared, as it may be closed by now.
    Asset* asset() const { return m_asset; }
    const ObjectPath& path() const { return m_path; }
    const std::string& componentId() const { return m_path.component; }
    Selection* picked() const { return m_picked.get(); }

    /// The object itself, to be asked for what can be done with it (DataModel::IDeletable), and good as long
    /// as the asset is open. Null if it is gone, belongs to another asset, or is a part of a component.
    [[nodiscard]] virtual StrongRef<SharedObject> leaf(Asset& asset) const;

    /// The box around the object, hidden or not, in the asset's coordinates. False, with `box` as it was, if
    /// the object is gone, belongs to another asset, or has no box that is known without the exact shape, as
    /// a vertex.
    [[nodiscard]] virtual bool calculateBounds(const Asset& asset, BBox& box) const;

    [[nodiscard]] bool isEqualTo(const Selection& other) const override
    {
        const auto* logical = cast<LogicalSelection>(&other);
        return logical && logical->m_asset == m_asset && logical->m_path == m_path;
    }
    size_t hash() const override { return std::hash<std::string>()(m_path.component) + m_path.index; }

private:
    Asset* m_asset;
    ObjectPath m_path;
    StrongRef<Selection> m_picked;
};

/// Several things that are selected as one; groups may hold groups.
class GroupSelection : public Implements<GroupSelection, Selection>
{
public:
    explicit GroupSelection(std::vector<StrongRef<Selection>> members) : m_members(std::move(members)) {}
    const std::vector<StrongRef<Selection>>& members() const { return m_members; }
    /// Whether the group stands for one thing, rather than for its members. Default false.
    virtual bool isOneThing() const { return false; }

private:
    std::vector<StrongRef<Selection>> m_members;
};

} // namespace Vs
