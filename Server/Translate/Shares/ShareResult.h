#pragma once

#include <TopoDS_Shape.hxx>

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Vs::Translate::Shares {

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
