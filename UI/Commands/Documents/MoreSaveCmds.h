#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"
#include "UI/Commands/Measure/RunningMeasurement.h"

namespace Vs {
class Document;
}

namespace Vu::Commands {

class RevertDocumentCmd;

/// Reloads the document's file, its native one or the foreign one it was imported from. Takes the argument
/// "DocumentSession", by default the context's document. When started by hand, it first asks if there are
/// unsaved changes.
class RevertDocumentCmdDef : public CommandRowDefinition<RevertDocumentCmdDef, RevertDocumentCmd>
{
public:
    static const CommandRow kRow;
    static void createCommandDef();

protected:
    bool onIsApplicable(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext* context) override;
};

/// The document is recreated, and shown with the same camera and selection and measured as before, as far as
/// the things still exist. If the file can't be read, everything stays as it was. Unsaved changes are left as
/// a recovery file.
class RevertDocumentCmd : public Vs::Implements<RevertDocumentCmd, SimpleCommand>
{
public:
    RevertDocumentCmd(RevertDocumentCmdDef* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;

private:
    const RunningMeasurement m_measured; ///< From before this command, which ends it to make room.
};

class SaveDocumentCopyCmd;

/// Writes the document to another file, named by the path argument or the user, and keeps working with its
/// own.
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

/// Saves all changed documents, each as SaveDocumentCmd does. A failure doesn't keep the others from being
/// saved.
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
