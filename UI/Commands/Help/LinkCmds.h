#pragma once

#include "UI/Commands/Help/HelpMenu.h"

namespace Vu::Commands {

class HelpCmd;

/// Opens the manual.
class HelpCmdDef : public CommandRowDefinition<HelpCmdDef, HelpCmd>
{
public:
    static const CommandRow kRow;
};

class HelpCmd : public Vs::Implements<HelpCmd, HelpMenuCmd>
{
public:
    using Implements::Implements;

protected:
    void onExecute(Vs::Status& status) override;
};

class FeedbackCmd;

// Hidden if the edition of the program has no address for it.

/// Starts an e-mail to the makers of the program.
class FeedbackCmdDef : public CommandRowDefinition<FeedbackCmdDef, FeedbackCmd>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsVisible(CommandContext* context) const override;
};

class FeedbackCmd : public Vs::Implements<FeedbackCmd, HelpMenuCmd>
{
public:
    using Implements::Implements;

protected:
    void onExecute(Vs::Status& status) override;
};

class JoinDiscussionCmd;

/// Opens the users' discussion pages.
class JoinDiscussionCmdDef : public CommandRowDefinition<JoinDiscussionCmdDef, JoinDiscussionCmd>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsVisible(CommandContext* context) const override;
};

class JoinDiscussionCmd : public Vs::Implements<JoinDiscussionCmd, HelpMenuCmd>
{
public:
    using Implements::Implements;

protected:
    void onExecute(Vs::Status& status) override;
};

class VideosCmd;

/// Opens the address it is given, one of a list of videos, or else that of the product's videos.
class VideosCmdDef : public CommandRowDefinition<VideosCmdDef, VideosCmd>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsVisible(CommandContext* context) const override;
};

class VideosCmd : public Vs::Implements<VideosCmd, HelpMenuCmd>
{
public:
    using Implements::Implements;

protected:
    void onExecute(Vs::Status& status) override;
};

class SuggestboxCmd;

/// Opens the portal for suggestions through OpenWebBrowserCmd. Does nothing if the edition has none.
class SuggestboxCmdDef : public CommandRowDefinition<SuggestboxCmdDef, SuggestboxCmd>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsVisible(CommandContext* context) const override;
};

class SuggestboxCmd : public Vs::Implements<SuggestboxCmd, HelpMenuCmd>
{
public:
    using Implements::Implements;

protected:
    void onExecute(Vs::Status& status) override;
};

class OpenWebBrowserCmd;

/// Opens the given web address.
class OpenWebBrowserCmdDef : public CommandRowDefinition<OpenWebBrowserCmdDef, OpenWebBrowserCmd>
{
public:
    static const CommandRow kRow;
    static const Vs::UniqueString* addressArgumentName();
};

class OpenWebBrowserCmd : public Vs::Implements<OpenWebBrowserCmd, HelpMenuCmd>
{
public:
    using Implements::Implements;

protected:
    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
