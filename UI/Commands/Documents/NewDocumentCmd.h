#pragma once

#include "Server/DataModel/AssetEvents.h"
#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"
#include "UI/Commands/Documents/AssetTypeList.h"

#include <string>

namespace Vs {
class Document;
}

namespace Vu::Commands {

class NewDocumentCmd;

/// The list of asset types; choosing one creates a document of it. Used instead of NewSingleDocumentCmdDef
/// when there is a choice.
class NewDocumentCmdDef : public CommandRowDefinition<NewDocumentCmdDef, NewDocumentCmd, CommandDefinition,
                                                      IListControlHandler, Vs::AssetEventSite>
{
public:
    static const CommandRow kRow;

    NewDocumentCmdDef();
    ~NewDocumentCmdDef() override;

    /// "AssetType": the identifier of the asset type, a UniqueStringObject.
    static const Vs::UniqueString* assetTypeArgumentName();
    /// "Uuid": the identifier that the document had when it was recorded.
    static const Vs::UniqueString* uuidArgumentName();

    void onListSelectionChanged(Info* item) override;
    void assetTypeRegistered(Vs::AssetTypeEvent* event) override;
    void assetTypeUnregistered(Vs::AssetTypeEvent* event) override;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    InputControl* onInputControl() override;

private:
    AssetTypeList m_types;
};

/// Creates a document of the type that the context names, and shows it in place of the current one, which is
/// closed without asking.
class NewDocumentCmd : public Vs::Implements<NewDocumentCmd, SimpleCommand>
{
public:
    NewDocumentCmd(NewDocumentCmdDef* definition, CommandContext* context);
    /// Null without an error if there is no such type; null with the reasons if the document can't be
    /// created.
    static Vs::Document* CreateNewDocument(Vs::Status& status, const std::string& assetTypeId);
    /// Shows a new document in place of the current one.
    static void ActivateAsset(Vs::Document* document);
    /// A document that is going to be saved at `path`, shown. Null if it can't be created.
    static Vs::Document* NewFile(const std::wstring& path, Vs::Status& status,
                                 const std::string& assetTypeId);

protected:
    void onExecute(Vs::Status& status) override;
};

/// The button that creates a document of the first asset type, and is named after it. Used instead of
/// NewDocumentCmdDef when there is no choice.
class NewSingleDocumentCmdDef
    : public RowDefinition<NewSingleDocumentCmdDef, CommandDefinition, Vs::AssetEventSite>
{
public:
    static const CommandRow kRow;

    NewSingleDocumentCmdDef();
    ~NewSingleDocumentCmdDef() override;

    static const Vs::UniqueString* assetTypeArgumentName();
    static const Vs::UniqueString* uuidArgumentName();

protected:
    bool onIsApplicable(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext* context) override;
    void onUpdateInputControl(CommandContext* context) override;
};

/// Creates a document of the first asset type and shows it beside the open ones.
class NewSingleDocumentCmd : public Vs::Implements<NewSingleDocumentCmd, SimpleCommand>
{
protected:
    friend class NewSingleDocumentCmdDef;
    NewSingleDocumentCmd(NewSingleDocumentCmdDef* definition, CommandContext* context);

    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
