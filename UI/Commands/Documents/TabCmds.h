#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

#include <vector>

namespace Vs {
class Document;
}

// What the tabs of the window do with the open documents, and the commands that belong to them.

namespace Vu::Commands {

/// The documents that have a tab: those of which the active workspace's asset shell lists a session, in the
/// order of the tabs (DocumentOrder).
[[nodiscard]] std::vector<Vs::Document*> documentsWithTabs();

/// Closes an open document behind the current event, as a person does who sees the others as tabs: it asks
/// about changes as every close does, and where the document was the one that shows, its neighbour does then.
/// The last one leads to the home screen.
void closeTab(Vs::Document* document);

class NewTabCmd;

/// Makes a document of the first kind and shows it. What is open stays open.
class NewTabCmdDef : public CommandRowDefinition<NewTabCmdDef, NewTabCmd>
{
public:
    static const CommandRow kRow;
    /// "Uuid": of the document that a recording has made.
    static const Vs::UniqueString* uuidArgumentName();

    /// Makes the one definition of this class at the first call. It isn't among the add-in's members.
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

/// Moves to the open document in front of the one that shows, from the first one to the last:
/// CycleOpenDocumentsCmdDef's other direction.
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
