#pragma once

namespace Vu {

/// Has recovery files written while the program runs (Vs::AutoSaveController): in the idle moments of the
/// main loop, or in a run without a window between two lines. Main thread only.
class AutoSaving
{
public:
    /// For a run in which documents are worked on; once.
    static void begin();
    /// Has what earlier runs left looked for in idle moments, and the user told of it. Only in a window.
    static void lookForFiles();
    /// Before the documents go. What was recovered and neither saved nor declined stays for the next run.
    static void end();
};

} // namespace Vu
