#pragma once

#include <string>

namespace Vs {
class Document;
}

namespace Vu {

/// Has recovery files written while the program runs (Vs::AutoSaveController): in idle moments of the main
/// loop or, in a run without a window, between two lines. Main thread only.
class AutoSaving
{
public:
    /// For a run in which documents are worked on; once.
    static void begin();
    /// Looks in idle moments for what earlier runs left, and informs the user. Only in a window.
    static void lookForFiles();
    /// Runs the lines behind a recovery file again in the document that was opened from it.
    static void replaySteps(const std::wstring& recoveryFile, Vs::Document* document);
    /// To be called before the documents are closed. What was recovered and neither saved nor declined stays
    /// for the next run.
    static void end();
};

} // namespace Vu
