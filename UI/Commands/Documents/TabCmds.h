#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

#include <vector>

namespace Vs {
class Document;
}

// What the window's tabs do with the open documents, and the commands for it.

namespace Vu::Commands {

/// The documents with a tab: those with a session in the active workspace's asset shell, in the order of the
/// tabs (DocumentOrder).
[[nodiscard]] std::vector<Vs::Document*> documentsWithTabs();

/// Closes an open document after the current event, as a user expects who sees the others as tabs: it asks
/// about changes as every close does, and if the document was the one shown, its neighbour is shown next.
/// After the last one comes the home screen.
void closeTab(Vs::Document* document);

class NewTabCmd;

/// Creates a document of the first kind and shows it. Open documents stay open.
class NewTabCmdDef : public CommandRowDefinition<NewTabCmdDef, NewTabCmd>
{
public:
    static const CommandRow kRow;
    /// "Uuid": the identifier of the document when it was recorded.
    static const Vs::UniqueString* uuidArgumentName();

    /// Creates the only definition of this class at the first call. It isn't among the add-in's members.
    static void createCommandDef();

protected:
    bool onIsApplicable(CommandContext* context) const override;
};

class NewTabCmd : public Vs::Implements<NewTabCmd, SimpleCommand>
{
public:
    NewTabCmd(NewTabCmdDef* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
};

class PreviousOpenDocumentCmd;

/// Moves to the previous open document, wrapping from the first to the last: the opposite of
/// CycleOpenDocumentsCmdDef.
class PreviousOpenDocumentCmdDef
    : public CommandRowDefinition<PreviousOpenDocumentCmdDef, PreviousOpenDocumentCmd>
{
public:
    static const CommandRow kRow;

    /// As NewTabCmdDef's.
    static void createCommandDef();
};

class PreviousOpenDocumentCmd : public Vs::Implements<PreviousOpenDocumentCmd, SimpleCommand>
{
public:
    PreviousOpenDocumentCmd(PreviousOpenDocumentCmdDef* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
