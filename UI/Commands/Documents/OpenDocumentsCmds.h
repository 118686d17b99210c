#pragma once

#include "Server/DataModel/DocumentEvents.h"
#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Base/Session/DocumentOrder.h"
#include "UI/Base/Session/SessionEvents.h"
#include "UI/Commands/CommandRow.h"
#include "UI/Commands/OwnedList.h"

#include <optional>
#include <string>

namespace Vs {
class Document;
}

namespace Vu::Commands {

/// Shows an open document once the current event is over, as choosing it in a list does; a document with
/// nothing to show stays as it is.
void switchTo(Vs::Document* document);

/// The list of the open documents, the current one marked; choosing one shows it. Derived classes list the
/// documents of one type only.
class CurrentlyOpenDocumentsCmdDef
    : public Vs::Implements<CurrentlyOpenDocumentsCmdDef, CommandDefinition, IListControlHandler,
                            SessionEventSite, Vs::DocumentEventSite, DocumentOrderSite>
{
public:
    static const CommandRow kRow;
    static Info* info();

    explicit CurrentlyOpenDocumentsCmdDef(Info* info = CurrentlyOpenDocumentsCmdDef::info());

    /// Lists what is open now, if there is a control.
    void updateListControl();

    void onListSelectionChanged(Info* item) override;
    void sessionPostActivateForAsset(SessionEvent*) override { updateListControl(); }
    void documentCreated(Vs::DocumentEvent*) override { updateListControl(); }
    void documentOpened(Vs::DocumentEvent*) override { updateListControl(); }
    void documentSaved(Vs::DocumentEvent*) override { updateListControl(); }
    void documentUpdated(Vs::DocumentEvent*) override { updateListControl(); }
    void documentActiveAssetChanged(Vs::DocumentEvent*) override { updateListControl(); }
    void documentClosed(Vs::DocumentEvent* event) override;
    void documentOrderChanged() override { updateListControl(); }

protected:
    bool onIsApplicable(CommandContext* context) const override;
    bool onIsVisible(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext* context) override;
    InputControl* onInputControl() override;

    /// From now on only documents of this type are listed.
    void filter(const char* documentType) { m_filter = documentType; }
    bool hasOpenDocuments() const;
    /// Whether the current document passes the filter.
    bool isDocumentOfCurrentType() const;
    /// The last document of the filter's type (DocumentOrder), or the first of all without a filter; null if
    /// there is none.
    Vs::Document* currentDocumentFiltered() const;
    /// The command that shows the document; null if it has nothing to show.
    static CommandBase* createCommandForSwitchingDocument(Vs::Document* document, CommandContext* context);

private:
    bool passes(const Vs::Document& document) const;

    std::optional<std::string> m_filter;
    OwnedList m_list;
    Vs::Subscriptions m_subscriptions;
};

/// Updates the list.
class CurrentlyOpenDocumentsCmd : public Vs::Implements<CurrentlyOpenDocumentsCmd, SimpleCommand>
{
protected:
    friend class CurrentlyOpenDocumentsCmdDef;
    CurrentlyOpenDocumentsCmd(CurrentlyOpenDocumentsCmdDef* definition, CommandContext* context);

    void onExecute(Vs::Status& status) override;
};

class CycleOpenDocumentsCmd;

/// Moves on to the next open document, wrapping from the last to the first.
class CycleOpenDocumentsCmdDef : public CommandRowDefinition<CycleOpenDocumentsCmdDef, CycleOpenDocumentsCmd>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
};

class CycleOpenDocumentsCmd : public Vs::Implements<CycleOpenDocumentsCmd, SimpleCommand>
{
public:
    CycleOpenDocumentsCmd(CycleOpenDocumentsCmdDef* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
