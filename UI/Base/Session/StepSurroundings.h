#pragma once

#include "Server/DataModel/Selection/SelectionSet.h"
#include "Server/Scene/CameraParameters.h"
#include "UI/Base/Command/CommandObserver.h"

#include <vector>

namespace Vs {
class Asset;
class TransactionNode;
} // namespace Vs

namespace Vu {

class AssetSession;

/// Keeps with each step that a command makes what was selected in the session, and where the cameras of its
/// view stood, before the command and after it; so that undo and redo can bring that back. Only while the
/// user's option `undoSelectionAndCamera` is on: steps made while it was off have nothing to restore. Main
/// thread only.
class StepSurroundings : public ICommandObserver
{
public:
    /// Has the one that there is see all commands.
    static void install();
    /// After an undo, or a redo: selects what was selected before, or after, the step that was taken last,
    /// as far as it is still there, and looks from where the view was seen. Does nothing if the option is
    /// off, or nothing was kept with the step.
    static void bringBack(AssetSession& session, bool undone);

    void before(const CommandRun& run) override;
    void after(const CommandRun& run) override;

private:
    struct Surroundings
    {
        std::vector<Vs::StrongRef<Vs::Selection>> selected;
        std::vector<Vs::Scene::CameraParameters> cameras;
    };
    class Kept;
    /// A command that is on its way.
    struct Begun
    {
        const CommandMgr* manager;
        const CommandDefinition* definition;
        const Vs::Asset* asset;
        const Vs::TransactionNode *lastDone, *lastUndone; ///< To tell a new step from one that was walked.
        Surroundings before;
    };

    static Surroundings of(AssetSession& session);

    std::vector<Begun> m_begun;
};

} // namespace Vu
