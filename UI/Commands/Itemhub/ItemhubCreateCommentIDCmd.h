#pragma once

#include "UI/Commands/Itemhub/ItemhubCommands.h"

namespace Vu::Commands {

class ItemhubCreateCommentIDCmd;

/// Links a post of the service to the open design, by a comment on the cloud drive.
class ItemhubCreateCommentIDCmdDef
    : public ItemhubDefinition<ItemhubCreateCommentIDCmdDef, ItemhubCreateCommentIDCmd>
{
public:
    static const CommandRow kRow;
    static Info* info();

    ItemhubCreateCommentIDCmdDef();

    /// "postID", "postTitle", "postUrl".
    static const Vs::UniqueString* postID();
    static const Vs::UniqueString* postTitle();
    static const Vs::UniqueString* postUrl();
};

class ItemhubCreateCommentIDCmd : public TimedCommand<ItemhubCreateCommentIDCmd>
{
public:
    using TimedCommand::TimedCommand;
    static Vs::Metrics::TimeMetric* metric();

    /// How the comment refers to a post: by a link, its title, or its number.
    [[nodiscard]] static std::wstring bodyFor(const std::wstring& postID, const std::wstring& title,
                                              const std::wstring& url);

protected:
    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
