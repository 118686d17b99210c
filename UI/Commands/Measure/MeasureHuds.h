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

/// The HUDs beside what is selected, which show the results that stand in the panel. Numbers are those of the
/// selections, from 1.
class MeasureHuds
{
public:
    MeasureHuds() = default;
    /// Hides them and empties them.
    ~MeasureHuds();
    MeasureHuds(const MeasureHuds&) = delete;
    MeasureHuds& operator=(const MeasureHuds&) = delete;

    /// Shows the inputs beside the object; nothing if it has no place.
    void show(int number, const Vs::StrongRef<Vs::LogicalSelection>& object,
              const std::vector<const CommandInputBase*>& inputs);
    /// Forgets the object as well.
    void remove(int number);
    /// Takes all of them off the screen for a while.
    void hide();
    /// Shows them where the objects are now.
    void place();

private:
    std::array<std::optional<GkPoint3d>, 3> m_places;
};

/// Where an object is seen to be measured: where it was clicked, else its own position; nothing if it has
/// none.
std::optional<GkPoint3d> placeOf(const Vs::StrongRef<Vs::LogicalSelection>& object);

} // namespace Vu::Commands
