#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <vector>

namespace Vs {

/// Parts that nothing shows any more, whose bodies are kept for an undo that restores them: the most recent
/// ones, as long as their meshes don't take too much memory.
class BodiesLetGo
{
public:
    /// Adds a part whose mesh takes that many bytes. Returns those that are now too many.
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
