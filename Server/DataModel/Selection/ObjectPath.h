#pragma once

#include <cstdint>
#include <string>

namespace Vs {

/// Names one object of an asset, from the root of the component tree to the leaf: an occurrence of a
/// component, its body, or a solid, face, edge or vertex of that body. A small value that keeps nothing
/// alive: it stays valid through undo, saving and changes elsewhere, and turns out stale when its object is
/// gone.
///
/// As text it consists of the steps from the root separated by slashes: `Plate:1/Bolt:2/Body1/Face3`. The
/// number after a component's name counts the siblings of that name; it can be omitted if there is only one.
/// So can `Body1` before a solid, face, edge or vertex. A name that contains a slash, a quote or a backslash
/// is enclosed in double quotes, with a backslash before each quote and backslash in it.
struct ObjectPath
{
    enum class Leaf { Component, Body, Face, Edge, Vertex, Solid };

    std::string component; ///< Component::id of the occurrence.
    Leaf leaf = Leaf::Component;
    /// Which solid, face, edge or vertex of the body, from 0; texts count from 1. Faces and edges are in the
    /// order of BodyMesh::faces and BodyMesh::edgeStarts, solids and vertices in that of the exact shape.
    uint32_t index = 0;

    friend bool operator==(const ObjectPath&, const ObjectPath&) = default;

    bool isPartOfBody() const { return leaf > Leaf::Body; }
    /// Whether it is measured as something that encloses a volume.
    bool isWhole() const { return leaf <= Leaf::Body || leaf == Leaf::Solid; }
    /// Whether it names a place inside the component tree, so that there is something above it; false for the
    /// root, and for a path that names nothing.
    bool isQualifiedAndPoppable() const { return !component.empty(); }
};

} // namespace Vs
