#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

namespace Vs {
class Document;
}

namespace Vu::Commands {

class RevertDocumentCmd;

/// Reads the document's file again, its native one or the foreign one that it comes from. Takes the argument
/// "DocumentSession", by default the context's document. A person who starts it by hand is asked first where
/// something isn't saved.
class RevertDocumentCmdDef : public CommandRowDefinition<RevertDocumentCmdDef, RevertDocumentCmd>
{
public:
    static const CommandRow kRow;
    static void createCommandDef();

protected:
    bool onIsApplicable(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext* context) override;
};

/// The document is made anew, and shown with the camera and the selection as they were, so far as there still
/// is what was selected. Where the file can't be read everything stays as it was. What wasn't saved is left
/// as a recovery file.
class RevertDocumentCmd : public Vs::Implements<RevertDocumentCmd, SimpleCommand>
{
public:
    RevertDocumentCmd(RevertDocumentCmdDef* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
};

class SaveDocumentCopyCmd;

/// Writes the document to another file, which the path argument or the user names, and goes on with its own.
class SaveDocumentCopyCmdDef : public CommandRowDefinition<SaveDocumentCopyCmdDef, SaveDocumentCopyCmd>
{
public:
    static const CommandRow kRow;
    static void createCommandDef();

protected:
    bool onIsApplicable(CommandContext* context) const override;
};

class SaveDocumentCopyCmd : public Vs::Implements<SaveDocumentCopyCmd, SimpleCommand>
{
public:
    SaveDocumentCopyCmd(SaveDocumentCopyCmdDef* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
};

class SaveAllDocumentsCmd;

/// Saves all documents that were changed, each as SaveDocumentCmd does. One that fails doesn't keep the
/// others from being saved.
class SaveAllDocumentsCmdDef : public CommandRowDefinition<SaveAllDocumentsCmdDef, SaveAllDocumentsCmd>
{
public:
    static const CommandRow kRow;
    static void createCommandDef();

protected:
    bool onIsApplicable(CommandContext* context) const override;
};

class SaveAllDocumentsCmd : public Vs::Implements<SaveAllDocumentsCmd, SimpleCommand>
{
public:
    SaveAllDocumentsCmd(SaveAllDocumentsCmdDef* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
