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

/// The path argument names a document that has no path yet; one that has keeps its own. The command ends
/// without an error whatever becomes of the save: a message tells why it failed, and the document stays
/// dirty.
class SaveDocumentCmd : public Vs::Implements<SaveDocumentCmd, SimpleCommand>
{
public:
    SaveDocumentCmd(SaveDocumentCmdDef* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
    void onEnd(ETerminationReason reason) override;
};

class SaveDocumentAsCmd;

/// Writes a document, local or not, to a new local path, which the path argument or the user names.
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

/// Hears why saves fail while it lives. SaveDocumentCmd shows its message only where nobody around it
/// listens: whoever does, tells the reason in a way of its own.
class SaveFailures : private Vs::DocumentEventSite
{
public:
    SaveFailures();
    ~SaveFailures() override;
    SaveFailures(const SaveFailures&) = delete;
    SaveFailures& operator=(const SaveFailures&) = delete;

    /// Empty as long as nothing failed.
    const std::wstring& reason() const { return m_reason; }
    /// Whether the user knows it already.
    bool reported() const { return m_reported; }
    /// Whether this is the only one that listens.
    bool alone() const { return s_listening == 1; }

private:
    void documentSaveFailed(Vs::DocumentFailureEvent* event) override;

    std::wstring m_reason;
    bool m_reported = false;
    static int s_listening;
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu::Commands
