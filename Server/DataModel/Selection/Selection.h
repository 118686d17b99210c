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

/// Something that is, or can be, selected. Immutable.
class Selection : public Implements<Selection, SharedObject>
{
public:
    /// Whether both select the same thing, wherever it was picked.
    [[nodiscard]] virtual bool isEqualTo(const Selection& other) const { return this == &other; }
    /// Equal for equal ones, so that sets of thousands quickly find what they don't contain.
    virtual size_t hash() const { return 0; }
};

/// An object of a model, named by a place in the scene or a text.
class LogicalSelection : public Implements<LogicalSelection, Selection>
{
public:
    /// `picked` is what the scene knows about the place; null if it wasn't picked in a canvas.
    LogicalSelection(Asset* asset, ObjectPath path, StrongRef<Selection> picked)
        : m_asset(asset), m_path(std::move(path)), m_picked(std::move(picked))
    {
    }
    /// A component.
    LogicalSelection(Asset* asset, std::string componentId, StrongRef<Selection> picked)
        : LogicalSelection(asset, ObjectPath{.component = std::move(componentId)}, std::move(picked))
    {
    }

    /// Not owned; only for comparison, as it may be closed by now.
    Asset* asset() const { return m_asset; }
    const ObjectPath& path() const { return m_path; }
    const std::string& componentId() const { return m_path.component; }
    Selection* picked() const { return m_picked.get(); }

    /// The object itself, to be asked what can be done with it (DataModel::IDeletable), valid as long as the
    /// asset is open. Null if it is gone, belongs to another asset, or is a part of a component.
    [[nodiscard]] virtual StrongRef<SharedObject> leaf(Asset& asset) const;

    /// The box around the object, hidden or not, in the asset's coordinates. False, with `box` unchanged, if
    /// the object is gone, belongs to another asset, or has no box that is known without the exact shape,
    /// such as a vertex.
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

/// Several things selected as one; groups may contain groups.
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
