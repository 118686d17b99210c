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

/// The contents of a model, in numbers and as a tree, with lengths in mm.
struct DesignInfo
{
    /// A component, or several siblings that differ only in their placement.
    struct Node
    {
        std::wstring name;
        size_t count = 1;
        std::vector<Node> children;
    };

    std::wstring name, file; ///< Of the document, and where it came from; no file for one created here.
    Node structure;          ///< Of the model as a whole, which has no name of its own.
    size_t assemblies = 0, parts = 0, differentParts = 0, hidden = 0;
    size_t triangles = 0; ///< Of the distinct parts together.
    /// Of the axis-aligned box around everything; nothing if there are no visible triangles.
    std::optional<std::vector<double>> size;
    std::optional<double> volume, area; ///< Nothing if a part has none, or can't be measured.
    bool isExact = true;                ///< Otherwise some of the numbers come from triangles.
    std::optional<double> density;      ///< In g/cm³.

    /// In grams.
    [[nodiscard]] std::optional<double> mass() const;
    [[nodiscard]] std::wstring text() const;
    [[nodiscard]] QJsonObject json() const;
};

[[nodiscard]] DesignInfo infoOf(const Vs::Asset& asset);

} // namespace Vu::Design
