#pragma once

#include <TopoDS_Shape.hxx>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Vs::Translate::Shares {

/// A reader's result as stored in a file: numbers of entities, and shapes that only the kernel can read.
struct ShareBlock
{
    std::string_view numbers; ///< Four bytes each.
    std::string_view whole;   ///< Including its header.
    std::string_view rest;    ///< After the numbers.

    /// Extracts the next one from what was written; nothing at the end. Throws std::runtime_error if it is
    /// invalid.
    static std::optional<ShareBlock> take(std::string_view& bytes);
    /// The same with other numbers; nothing if one of them has no counterpart.
    [[nodiscard]] std::optional<std::string>
    renumbered(const std::function<std::optional<uint32_t>(uint32_t)>& other) const;
};

/// A reader's result.
struct ShareResult
{
    /// The shapes of entities by their numbers; null for an item that has none.
    std::vector<std::pair<uint32_t, TopoDS_Shape>> shapes;
    /// Those that have their triangles, each forming one body.
    std::vector<TopoDS_Shape> bodies;
    /// What was left out, as clauses that follow the file's name; at most 4 GB.
    std::vector<std::string> warnings;

    /// Appends it to a file. Throws std::runtime_error if there is no room for it.
    void write(int descriptor) const;
    /// Extracts the next one from what was written; false at the end. Throws Standard_Failure or
    /// std::runtime_error if it is invalid.
    static bool take(std::string_view& bytes, ShareResult& result);
};

} // namespace Vs::Translate::Shares
