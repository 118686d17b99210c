#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

namespace Vu::Commands {

/// Shows or hides the areas with these contents in the context's window. An area in a palette is shown and
/// hidden with it, and a collapsed one appears on or disappears from its collapse bar. For browser, feed and
/// properties, this also becomes the user's preference.
void areaVisibility(CommandContext& context, const Vs::UniqueString* contents, bool show);

/// A command that shows or hides the areas with one contents key, which the class of each area passes to the
/// constructor.
class AreaCmdDef : public Vs::Implements<AreaCmdDef, CommandDefinition>
{
public:
    const Vs::UniqueString* contentsOfArea() const { return m_contents; }

protected:
    using Implements::Implements;
    void contentsOfArea(const char* contents) { m_contents = Vs::UniqueString::find(contents, true); }

private:
    const Vs::UniqueString* m_contents = nullptr;
};

class ShowAreaCmdDef : public Vs::Implements<ShowAreaCmdDef, AreaCmdDef>
{
protected:
    using Implements::Implements;
    CommandBase* onCreateCommand(CommandContext* context) override;
};

class HideAreaCmdDef : public Vs::Implements<HideAreaCmdDef, AreaCmdDef>
{
protected:
    using Implements::Implements;
    CommandBase* onCreateCommand(CommandContext* context) override;
};

/// The active command continues meanwhile, and repeat ignores it.
class AreaCmd : public Vs::Implements<AreaCmd, SimpleCommand>
{
protected:
    AreaCmd(AreaCmdDef* definition, CommandContext* context);

    const Vs::UniqueString* contentsOfArea() const { return m_contents; }
    ECommandType onCommandType() const override { return ECommandType::Nested; }

private:
    const Vs::UniqueString* m_contents;
};

class ShowAreaCmd : public Vs::Implements<ShowAreaCmd, AreaCmd>
{
protected:
    friend class ShowAreaCmdDef;
    using Implements::Implements;
    void onExecute(Vs::Status& status) override;
};

class HideAreaCmd : public Vs::Implements<HideAreaCmd, AreaCmd>
{
protected:
    friend class HideAreaCmdDef;
    using Implements::Implements;
    void onExecute(Vs::Status& status) override;
};

/// Neither of the two is offered if the layout has no room for the browser, whatever the user's preference.
class ShowBrowserCmdDef : public RowDefinition<ShowBrowserCmdDef, ShowAreaCmdDef>
{
public:
    static const CommandRow kRow;
    ShowBrowserCmdDef() { contentsOfArea("BrowserWindow"); }

protected:
    bool onIsApplicable(CommandContext* context) const override;
};

class HideBrowserCmdDef : public RowDefinition<HideBrowserCmdDef, HideAreaCmdDef>
{
public:
    static const CommandRow kRow;
    HideBrowserCmdDef() { contentsOfArea("BrowserWindow"); }

protected:
    bool onIsApplicable(CommandContext* context) const override;
};

/// The feed is that of a document: both need one.
class ShowDesignFeedCmdDef : public RowDefinition<ShowDesignFeedCmdDef, ShowAreaCmdDef>
{
public:
    static const CommandRow kRow;
    ShowDesignFeedCmdDef() { contentsOfArea("DesignFeed"); }

protected:
    bool onIsApplicable(CommandContext* context) const override;
};

class HideDesignFeedCmdDef : public RowDefinition<HideDesignFeedCmdDef, HideAreaCmdDef>
{
public:
    static const CommandRow kRow;
    HideDesignFeedCmdDef() { contentsOfArea("DesignFeed"); }

protected:
    bool onIsApplicable(CommandContext* context) const override;
};

/// The panel with the properties of the selection: both need a document. They aren't among the add-in's
/// members.
class ShowPropertiesCmdDef : public RowDefinition<ShowPropertiesCmdDef, ShowAreaCmdDef>
{
public:
    static const CommandRow kRow;
    ShowPropertiesCmdDef() { contentsOfArea("Properties"); }
    /// Creates the only definition of this class at the first call.
    static void createCommandDef();

protected:
    bool onIsApplicable(CommandContext* context) const override;
};

class HidePropertiesCmdDef : public RowDefinition<HidePropertiesCmdDef, HideAreaCmdDef>
{
public:
    static const CommandRow kRow;
    HidePropertiesCmdDef() { contentsOfArea("Properties"); }
    /// As ShowPropertiesCmdDef's.
    static void createCommandDef();

protected:
    bool onIsApplicable(CommandContext* context) const override;
};

/// The panel of the scripts' debugger, which needs no document. They aren't among the add-in's members.
class ShowScriptPanelCmdDef : public RowDefinition<ShowScriptPanelCmdDef, ShowAreaCmdDef>
{
public:
    static const CommandRow kRow;
    ShowScriptPanelCmdDef() { contentsOfArea("ScriptPanel"); }
    /// Creates the only definition of this class at the first call.
    static void createCommandDef();

protected:
    bool onIsApplicable(CommandContext* context) const override;
};

class HideScriptPanelCmdDef : public RowDefinition<HideScriptPanelCmdDef, HideAreaCmdDef>
{
public:
    static const CommandRow kRow;
    HideScriptPanelCmdDef() { contentsOfArea("ScriptPanel"); }
    /// As ShowScriptPanelCmdDef's.
    static void createCommandDef();

protected:
    bool onIsApplicable(CommandContext* context) const override;
};

/// The command line.
class ShowTextCommandsCmdDef : public RowDefinition<ShowTextCommandsCmdDef, ShowAreaCmdDef>
{
public:
    static const CommandRow kRow;
    ShowTextCommandsCmdDef() { contentsOfArea("TextCommands"); }

protected:
    bool onIsApplicable(CommandContext* context) const override;
};

class HideTextCommandsCmdDef : public RowDefinition<HideTextCommandsCmdDef, HideAreaCmdDef>
{
public:
    static const CommandRow kRow;
    HideTextCommandsCmdDef() { contentsOfArea("TextCommands"); }

protected:
    bool onIsApplicable(CommandContext* context) const override;
};

} // namespace Vu::Commands
