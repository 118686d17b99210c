#pragma once

#include "Server/Body/BodyMesh.h"
#include "Server/DataModel/Selection/ObjectPath.h"
#include "Server/Geometry/GkMatrix3d.h"
#include "UI/Base/Validation/ReferenceCheck.h"

#include <string>
#include <string_view>
#include <vector>

namespace Vs {
class Asset;
class Component;
class Status;
} // namespace Vs

namespace Vu::Design {

/// The subject of a check: a component of a model and everything below it, in tree order.
class CheckedObjects
{
public:
    struct Occurrence
    {
        const Vs::Component* component;
        GkMatrix3d placement; ///< In the asset's coordinates.
    };

    struct Choice
    {
        bool visibleOnly = false; ///< Without anything hidden, or below something hidden.
        bool eachBody = false;    ///< Values for each body separately, not for all together.
        bool exact = false;       ///< The tolerance is the accuracy of measuring itself.
    };

    /// An empty text means the whole model. The components must not change while this lives. Throws
    /// Vs::Exception if there is no such component.
    CheckedObjects(Vs::Asset& asset, std::wstring_view path, const Choice& choice);

    /// Each throws Vs::Exception, with the reason, if there is nothing to check.
    std::vector<CheckedValue> volumes() const;
    std::vector<CheckedValue> areas() const;
    std::vector<CheckedValue> bounds() const;
    std::vector<CheckedValue> counts() const;
    /// The centre of mass of all solids together.
    std::vector<CheckedValue> centres() const;
    /// How many solids, faces and edges the bodies have.
    std::vector<CheckedValue> parts() const;
    /// How many edges have just one face, or more than two; and how many bodies aren't closed. Both are 0 for
    /// a model that can be manufactured.
    std::vector<CheckedValue> freeEdges() const;
    /// The colours set on components, or on their bodies.
    std::vector<CheckedValue> colours() const;

private:
    void collect(const Vs::Component& component, const GkMatrix3d& placement, bool isTop);
    std::vector<CheckedValue> measures(int type, const wchar_t* name, const wchar_t* unit) const;
    std::wstring nameOf(const wchar_t* value, const Occurrence& occurrence) const;

    Vs::Asset& m_asset;
    const Choice m_choice;
    std::vector<Occurrence> m_components; ///< Without the root.
    std::vector<Occurrence> m_bodies;     ///< Those of them that show one.
};

/// "#rrggbbaa" of linear light.
[[nodiscard]] std::wstring colourText(const Vs::Colour& colour);

} // namespace Vu::Design
