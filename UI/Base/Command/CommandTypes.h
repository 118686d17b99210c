#pragma once

namespace Vu {

/// How a command, or a step of one, ended.
enum class ETerminationReason {
    Commit = 0, ///< What the command did is kept.
    Cancel = 1, ///< What the command did is given up: by the user, by a failure, or by a command that took
                ///< its place.
};

/// What the start of a command means for the active one.
enum class ECommandType {
    Exclusive = 0, ///< Ends the active command, unless the stacking behaviour keeps it. The default.
    Nested = 1,    ///< Leaves the active command alive: it runs inside it.
};

/// How a command affects the stack of those already running.
enum class EStackingBehavior {
    OverCategory = 0, ///< Stacks over the active command, in the place of one of its own category; started in
                      ///< the canvas, only of one that was started there too.
    OverNothing = 1,  ///< Ends every running command, whatever the command's type says.
    ByType = 2,       ///< As the command's type says. The default.
};

/// Whether a running command can undo or redo its own steps, and who controls the transaction then.
enum class EMidCommandUndoRedoContext {
    None = 0,               ///< No step can be undone inside the command.
    Step = 1,               ///< A step of the command itself.
    Outer = 2,              ///< Steps exist, but the whole command is undone.
    ControllingStep = 3,    ///< A step, and the current transaction is the controlling one.
    ControllingCurrent = 4, ///< The current transaction is the controlling one.
};

/// The route by which a command was called.
enum class ECommandAccessPoint {
    Unknown = 0,
    Toolbar = 1,
    ApplicationMenu = 2,
    Menu = 3, ///< An entry of a drop-down menu.
    ContextMenu = 4,
    Recovery = 5,
    Canvas = 6, ///< A mouse button or a double click in the canvas.
    HotKey = 7,
    TextLine = 8,
    Transcript = 9,
    Script = 10,
    Command = 11, ///< Another command, or an entry of a list of documents.
    Repeat = 12,
};

/// What happens to the selection when the command names a set other than the user's.
enum class EAlternateSelectionSetBehavior {
    UseSelection = 0, ///< The user's selection is used. The default.
    Replace = 1,      ///< The other set replaces the selection while the command runs.
    Ignore = 2,       ///< The command starts as if nothing were selected.
};

} // namespace Vu
