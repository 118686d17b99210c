#pragma once

namespace Vu {

/// The panel of a running command, seen from the command. It shows the inputs as long as the command is the
/// topmost one that has a panel; a command that wants none (CommandBase::usesCommandDialog) and one without
/// inputs show nothing. Main thread only.
class CommandDialog
{
public:
    /// Whether the panel shows when it is its turn. Default true.
    bool shown() const { return m_shown; }
    void show(bool value);

private:
    bool m_shown = true;
};

} // namespace Vu
