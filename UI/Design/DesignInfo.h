#pragma once

#include <QJsonObject>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace Vs {
class Asset;
}

namespace Vu::Design {

/// What a model holds, in numbers and as a tree, with lengths in mm.
struct DesignInfo
{
    /// A component, or several beside each other that are the same but for their places.
    struct Node
    {
        std::wstring name;
        size_t count = 1;
        std::vector<Node> children;
    };

    std::wstring name, file; ///< Of the document, and where it came from; no file for one that was made here.
    Node structure;          ///< Of the model as a whole, which has no name of its own.
    size_t assemblies = 0, parts = 0, differentParts = 0, hidden = 0;
    size_t triangles = 0; ///< Of the different parts together.
    /// Of a box around it all along the axes; nothing where there are no triangles to see.
    std::optional<std::vector<double>> size;
    std::optional<double> volume, area; ///< Nothing where a part has none, or can't be measured.
    bool isExact = true;                ///< Else some of the numbers are those of triangles.
    std::optional<double> density;      ///< In g/cm³.

    /// In grams.
    [[nodiscard]] std::optional<double> mass() const;
    [[nodiscard]] std::wstring text() const;
    [[nodiscard]] QJsonObject json() const;
};

[[nodiscard]] DesignInfo infoOf(const Vs::Asset& asset);

} // namespace Vu::Design
