#pragma once

#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

namespace Vs {
class Document;
}

namespace Vu {
class DocumentSession;
}

namespace Vu::Commands {

/// Closes one document by removing its sessions from the asset shell; the platform closes a document whose
/// last session is gone. Asks about dirty documents before a command is created at all.
class CloseDocumentCmdDef : public RowDefinition<CloseDocumentCmdDef>
{
public:
    static const CommandRow kRow;

    /// "DocumentSession": the session of the document to close.
    static const Vs::UniqueString* documentSessionArgumentName();
    /// "DocumentCloseSilently": 1 leaves the shell as it is after closing.
    static const Vs::UniqueString* documentCloseSilentlyName();

    /// The document to close in this context; null if there is none.
    static Vs::Document* docToClose(CommandContext* context);

protected:
    bool onIsApplicable(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext* context) override;
};

class CloseDocumentCmd : public Vs::Implements<CloseDocumentCmd, SimpleCommand>
{
public:
    /// Closes the document without asking. Always true.
    static bool closeDocument(CommandContext* context);

protected:
    friend class CloseDocumentCmdDef;
    CloseDocumentCmd(CloseDocumentCmdDef* definition, CommandContext* context);

    void onExecute(Vs::Status& status) override;
    ECommandType onCommandType() const override;
    EStackingBehavior onStackingBehavior() const override;
};

/// Closes the document that a window shows: it asks about it first, as closing the document does.
class WindowControllerCmdDef : public Vs::Implements<WindowControllerCmdDef, CommandDefinition>
{
protected:
    using Implements::Implements;

    bool onIsApplicable(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext* context) final;
    virtual CommandBase* onCreateController(CommandContext* context) = 0;
};

class WindowControllerCmd : public Vs::Implements<WindowControllerCmd, SimpleCommand>
{
protected:
    WindowControllerCmd(WindowControllerCmdDef* definition, CommandContext* context);

    ECommandType onCommandType() const override;
    EStackingBehavior onStackingBehavior() const override;
};

/// Closes the document of the active window.
class CloseWndCmdDef : public RowDefinition<CloseWndCmdDef, WindowControllerCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    CommandBase* onCreateController(CommandContext* context) override;
};

class CloseWndCmd : public Vs::Implements<CloseWndCmd, WindowControllerCmd>
{
protected:
    friend class CloseWndCmdDef;
    using Implements::Implements;

    void onExecute(Vs::Status& status) override;
};

/// The session of the argument "DocumentSession", or else the context's asset session; null if there is
/// neither.
[[nodiscard]] DocumentSession* documentSessionOf(const CommandContext& context);

/// Closes the document of a session that is being replaced by another one, without asking, even if it is
/// dirty.
void closeSilently(DocumentSession* session);

class CloseAllDocumentsCmdDef : public RowDefinition<CloseAllDocumentsCmdDef>
{
public:
    static const CommandRow kRow;

    static const Vs::UniqueString* documentSessionArgumentName();

protected:
    bool onIsApplicable(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext* context) override;
};

class CloseAllDocumentsCmd : public Vs::Implements<CloseAllDocumentsCmd, SimpleCommand>
{
public:
    /// Closes all documents, the newest first, without asking. Always true.
    static bool CloseAllDocuments(CommandContext* context);

protected:
    friend class CloseAllDocumentsCmdDef;
    CloseAllDocumentsCmd(CloseAllDocumentsCmdDef* definition, CommandContext* context);

    void onExecute(Vs::Status& status) override;
    ECommandType onCommandType() const override;
    EStackingBehavior onStackingBehavior() const override;
};

} // namespace Vu::Commands
