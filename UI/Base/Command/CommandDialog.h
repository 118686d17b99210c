#pragma once

namespace Vu {

/// The panel of a running command, from the command's point of view. It shows the inputs as long as the
/// command is the topmost one that has a panel; a command that wants none (CommandBase::usesCommandDialog)
/// and one without inputs show nothing. Main thread only.
class CommandDialog
{
public:
    /// Whether the panel is shown when it is its turn. Default true.
    bool shown() const { return m_shown; }
    void show(bool value);
    /// On which side of the view the panel comes up, so that it doesn't hide what the command is about.
    /// Default left.
    bool atRight() const { return m_atRight; }
    void atRight(bool value) { m_atRight = value; }

private:
    bool m_shown = true;
    bool m_atRight = false;
};

} // namespace Vu
