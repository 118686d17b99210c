#pragma once

#include "UI/Base/Session/RecentDocumentMgr.h"
#include "UI/Base/Workspace/WorkspaceEvents.h"
#include "UI/Commands/Adaptations/QT/Shell/TileSection.h"

namespace Vu::Commands {

/// The documents that were used last. One that is gone stays as a faint tile that can be taken away; looking
/// at the files happens behind the first picture of the window.
class RecentSection : public TileSection, private RecentDocumentEventSite, private WorkspaceEventSite
{
public:
    explicit RecentSection(QWidget* parent);
    ~RecentSection() override;

private:
    void recentDocumentsChanged() override { fill(); }
    void workspaceWelcome(WorkspaceEvent*) override { lookAgain(); }
    void fill();
    void lookAgain();

    std::vector<std::wstring> m_paths; ///< One of each tile.
};

} // namespace Vu::Commands
