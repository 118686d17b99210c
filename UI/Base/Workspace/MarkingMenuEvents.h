#pragma once

#include <utility>

namespace Vu {

/// From where a context menu is opened, for the definitions that are asked whether it lists them
/// (CommandDefinition::addToContextMenu). Main thread only.
class MarkingMenuEventSource
{
public:
    enum class ESource {
        Canvas = 0,  ///< Also while no menu is opened.
        Browser = 1, ///< The tree beside the canvas.
    };

    static MarkingMenuEventSource* get()
    {
        // Never destroyed: its sites may be statics.
        static auto* const source = new MarkingMenuEventSource;
        return source;
    }
    ESource currentEventSource() const { return m_source; }

    /// Held by whoever puts a menu together.
    class [[nodiscard]] Opening
    {
    public:
        explicit Opening(ESource source) : m_before(std::exchange(get()->m_source, source)) {}
        ~Opening() { get()->m_source = m_before; }
        Opening(const Opening&) = delete;
        Opening& operator=(const Opening&) = delete;

    private:
        ESource m_before;
    };

private:
    MarkingMenuEventSource() = default;
    ESource m_source = ESource::Canvas;
};

} // namespace Vu
