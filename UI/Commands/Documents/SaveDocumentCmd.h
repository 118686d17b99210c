#pragma once

#include "Server/DataModel/DocumentEvents.h"
#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

#include <string>

namespace Vu::Commands {

class SaveDocumentCmd;

/// Writes a local document to its own path. Both definitions here take the arguments "DocumentSession" (by
/// default the context's document) and CommandContext::pathArgumentName().
class SaveDocumentCmdDef : public CommandRowDefinition<SaveDocumentCmdDef, SaveDocumentCmd>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    bool onIsVisible(CommandContext* context) const override;
};

/// The path argument applies to a document without a path; a document that has one keeps it. The command ends
/// without an error even if the save fails: a message says why, and the document stays dirty.
class SaveDocumentCmd : public Vs::Implements<SaveDocumentCmd, SimpleCommand>
{
public:
    SaveDocumentCmd(SaveDocumentCmdDef* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
    void onEnd(ETerminationReason reason) override;
};

class SaveDocumentAsCmd;

/// Writes a document, local or not, to a new local path, given by the path argument or the user.
class SaveDocumentAsCmdDef : public CommandRowDefinition<SaveDocumentAsCmdDef, SaveDocumentAsCmd>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    bool onIsVisible(CommandContext* context) const override;
};

class SaveDocumentAsCmd : public Vs::Implements<SaveDocumentAsCmd, SimpleCommand>
{
public:
    SaveDocumentAsCmd(SaveDocumentAsCmdDef* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
    void onEnd(ETerminationReason reason) override;
};

/// Collects the reasons of failed saves while it lives. SaveDocumentCmd shows its message only if nobody is
/// listening: a listener reports the reason in its own way.
class SaveFailures : private Vs::DocumentEventSite
{
public:
    SaveFailures();
    ~SaveFailures() override;
    SaveFailures(const SaveFailures&) = delete;
    SaveFailures& operator=(const SaveFailures&) = delete;

    /// Empty if nothing has failed.
    const std::wstring& reason() const { return m_reason; }
    /// Whether the user has been told already.
    bool reported() const { return m_reported; }
    /// Whether this is the only listener.
    bool alone() const { return s_listening == 1; }

private:
    void documentSaveFailed(Vs::DocumentFailureEvent* event) override;

    std::wstring m_reason;
    bool m_reported = false;
    static int s_listening;
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu::Commands
