#pragma once

#include "UI/Base/Session/RecentPaths.h"
#include "UI/Commands/Adaptations/QT/Shell/HomeList.h"

#include <vector>

namespace Vu::Commands {

/// Commands that run scripts and record transcripts, and the recently used ones to run again.
class ScriptsList : public HomeList, private RecentPathsEventSite
{
public:
    explicit ScriptsList(QWidget* parent);
    ~ScriptsList() override;

protected:
    bool eventFilter(QObject* row, QEvent* event) override;

private:
    void recentPathsChanged() override { fill(); }
    void fill();

    std::vector<std::pair<QToolButton*, std::wstring>> m_used;
};

} // namespace Vu::Commands
