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

// What the edition of the program has no address for isn't shown.

/// Begins a mail to those who make the program.
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

/// Opens the place where users talk with one another.
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

/// Opens the address that it was given, one of a list of videos, or else that of the product's videos.
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

/// Opens the portal for suggestions by way of OpenWebBrowserCmd. Does nothing where the edition has none.
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

/// Opens the web address that it is given.
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
