#pragma once

#include "Server/Skyvault/CloudEvents.h"
#include "UI/Base/Session/RecentPaths.h"
#include "UI/Base/Workspace/WorkspaceEvents.h"
#include "UI/Commands/Adaptations/QT/Shell/TileSection.h"

#include <map>
#include <set>

class QLineEdit;

namespace Vu::Commands {

/// Recently used files of every kind, the pinned ones first; a field beside the heading filters them by words
/// in their name or folder. A missing file stays as a faint tile that can be removed; files are checked after
/// the window's first frame.
class RecentSection : public TileSection,
                      private RecentPathsEventSite,
                      private WorkspaceEventSite,
                      private Vs::CloudEventSite
{
public:
    explicit RecentSection(QWidget* parent);
    ~RecentSection() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void recentPathsChanged() override { fill(); }
    void workspaceWelcome(WorkspaceEvent*) override { lookAgain(); }
    void cloudSessionChanged(Vs::CloudEvent*) override { askDrive(); }
    void cloudFileStateChanged(Vs::CloudEvent* event) override;
    void fill();
    void lookAgain();
    void askDrive();
    void look(const std::wstring& path);
    Tile* tileOf(const RecentPaths::Entry& entry);
    void showMenu(Tile& tile, const std::wstring& path);
    bool passes(const std::wstring& path) const;

    QLineEdit* m_filter;
    std::map<std::wstring, Tile*> m_tiles;
    std::set<std::wstring> m_asked; ///< Still unanswered: a disk may never respond.
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu::Commands
