#pragma once

#include "Server/Skyvault/CloudEvents.h"
#include "UI/Base/Session/RecentPaths.h"
#include "UI/Base/Workspace/WorkspaceEvents.h"
#include "UI/Commands/Adaptations/QT/Shell/TileSection.h"

#include <map>
#include <set>

class QLineEdit;

namespace Vu::Commands {

/// The files that were used last, of every kind, the pinned ones first; a field beside the heading leaves
/// those that have its words in their name or folder. One that is gone stays as a faint tile that can be
/// taken away; looking at the files happens behind the first picture of the window.
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
    std::set<std::wstring> m_asked; ///< Whose answers are still to come: a disk may never give one.
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu::Commands
