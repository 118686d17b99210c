#pragma once

#include "Server/DataModel/DocumentEvents.h"
#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Base/Session/RecentDocumentMgr.h"
#include "UI/Commands/CommandRow.h"
#include "UI/Commands/OwnedList.h"

#include <vector>

namespace Vu::Commands {

class RecentDocumentsCmd;

/// The list of recently used documents, the newest on top, and an entry that clears it. Choosing a document
/// opens it.
class RecentDocumentsCmdDef
    : public CommandRowDefinition<RecentDocumentsCmdDef, RecentDocumentsCmd, CommandDefinition,
                                  IListControlHandler, Vs::DocumentEventSite>,
      private RecentDocumentEventSite
{
public:
    static const CommandRow kRow;

    RecentDocumentsCmdDef();

    void onListSelectionChanged(Info* item) override;
    void documentClosed(Vs::DocumentEvent* event) override;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    InputControl* onInputControl() override;

private:
    void recentDocumentsChanged() override { refresh(); }
    void refresh();
    void updateListControl(const std::vector<RecentDocument*>& documents);
    bool isDocPathInListControl(const std::wstring& path) const { return m_list.has(path); }

    OwnedList m_list;
    Vs::Subscriptions m_subscriptions;
};

/// Does nothing: the list is the command.
class RecentDocumentsCmd : public Vs::Implements<RecentDocumentsCmd, SimpleCommand>
{
public:
    RecentDocumentsCmd(RecentDocumentsCmdDef* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status&) override {}
};

} // namespace Vu::Commands
