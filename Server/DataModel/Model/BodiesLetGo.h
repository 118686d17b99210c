#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <vector>

namespace Vs {

/// The parts that nothing shows any more, whose bodies are kept for an undo that brings them back: the last
/// ones, as long as their meshes don't take too much.
class BodiesLetGo
{
public:
    /// A part whose mesh takes so many bytes. Gives those that are too many now.
    std::vector<std::string> add(const std::string& part, size_t bytes);

private:
    struct Part
    {
        std::string entry;
        size_t bytes;
    };

    std::deque<Part> m_parts;
    size_t m_bytes = 0;
};

} // namespace Vs
