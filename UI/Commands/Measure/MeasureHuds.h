#pragma once

#include "Server/DataModel/Selection/Selection.h"
#include "Server/Geometry/GkPoint3d.h"

#include <array>
#include <optional>
#include <vector>

namespace Vu {
class CommandInputBase;
} // namespace Vu

namespace Vu::Commands {

/// The HUDs beside the selected things, with the same results as the panel. Numbers are those of the
/// selections, from 1.
class MeasureHuds
{
public:
    MeasureHuds() = default;
    /// Hides and empties them.
    ~MeasureHuds();
    MeasureHuds(const MeasureHuds&) = delete;
    MeasureHuds& operator=(const MeasureHuds&) = delete;

    /// Shows the inputs beside the object; does nothing if it has no position.
    void show(int number, const Vs::StrongRef<Vs::LogicalSelection>& object,
              const std::vector<const CommandInputBase*>& inputs);
    /// Forgets the object as well.
    void remove(int number);
    /// Temporarily hides all of them.
    void hide();
    /// Shows them at the objects' present positions.
    void place();

private:
    std::array<std::optional<GkPoint3d>, 3> m_places;
};

/// Where an object's results are shown: where it was clicked, or else its own position; nothing if it has
/// none.
std::optional<GkPoint3d> placeOf(const Vs::StrongRef<Vs::LogicalSelection>& object);

} // namespace Vu::Commands
