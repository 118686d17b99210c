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

/// What a reader hands back, as it lies in a file: numbers of entities, and shapes that only the kernel
/// reads.
struct ShareBlock
{
    std::string_view numbers; ///< Four bytes each.
    std::string_view whole;   ///< With its head.
    std::string_view rest;    ///< Behind the numbers.

    /// Takes the next one off what was written; nothing at the end. Throws std::runtime_error if it is none.
    static std::optional<ShareBlock> take(std::string_view& bytes);
    /// The same with other numbers; nothing if there is none for one of them.
    [[nodiscard]] std::optional<std::string>
    renumbered(const std::function<std::optional<uint32_t>(uint32_t)>& other) const;
};

/// What a reader hands back.
struct ShareResult
{
    /// The shapes of entities by their numbers; of an item that has none, null.
    std::vector<std::pair<uint32_t, TopoDS_Shape>> shapes;
    /// Those that have their triangles, each as it is one body.
    std::vector<TopoDS_Shape> bodies;
    /// What was left out, as clauses that go after the file's name; of at most 4 GB.
    std::vector<std::string> warnings;

    /// Appends it to a file. Throws std::runtime_error if that has no room for it.
    void write(int descriptor) const;
    /// Takes the next one off what was written; false at the end. Throws Standard_Failure or
    /// std::runtime_error if it is none.
    static bool take(std::string_view& bytes, ShareResult& result);
};

} // namespace Vs::Translate::Shares
