#pragma once

#include "UI/Commands/Itemhub/ItemhubCommands.h"

namespace Vu::Commands {

class ItemhubOpenAttachmentCmd;

/// Opens an attachment of an item as a document.
class ItemhubOpenAttachmentCmdDef
    : public ItemhubDefinition<ItemhubOpenAttachmentCmdDef, ItemhubOpenAttachmentCmd>
{
public:
    static const CommandRow kRow;
    static Info* info();

    ItemhubOpenAttachmentCmdDef();

    /// "fileUri": the attachment's address, with or without ".xml" at its end.
    static const Vs::UniqueString* fileUri();
};

class ItemhubOpenAttachmentCmd : public TimedCommand<ItemhubOpenAttachmentCmd>
{
public:
    using TimedCommand::TimedCommand;
    static Vs::Metrics::TimeMetric* metric();

protected:
    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
