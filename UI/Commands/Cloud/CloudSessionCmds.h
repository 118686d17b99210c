#pragma once

#include "UI/Commands/Cloud/CloudCommands.h"

namespace Vu::Commands {

class CloudCmd;
class CloudLoginCmd;
class CloudLogoutCmd;
class CloudManageCmd;
class CloudListFilesCmd;
class CloudUploadCmd;

/// The head of a menu of the cloud drive's commands.
class CloudCmdDef : public CloudDefinition<CloudCmdDef, CloudCmd>
{
public:
    static const CommandRow kRow;
};

class CloudCmd : public TimedCommand<CloudCmd>
{
public:
    using TimedCommand::TimedCommand;
    static Vs::Metrics::TimeMetric* metric();

protected:
    void onExecute(Vs::Status&) override {}
};

/// Signs in. With both arguments the command ends at once: nobody signs in with a password given in a line.
class CloudLoginCmdDef : public CloudDefinition<CloudLoginCmdDef, CloudLoginCmd>
{
public:
    static const CommandRow kRow;

    /// "CLOUD_LOGIN_USER" and "CLOUD_LOGIN_PASSWORD".
    static const Vs::UniqueString* userArgumentName();
    static const Vs::UniqueString* passwordArgumentName();

protected:
    bool onIsApplicable(CommandContext* context) const override;
};

class CloudLoginCmd : public TimedCommand<CloudLoginCmd>
{
public:
    using TimedCommand::TimedCommand;
    static Vs::Metrics::TimeMetric* metric();

protected:
    void onExecute(Vs::Status& status) override;
};

class CloudLogoutCmdDef : public CloudDefinition<CloudLogoutCmdDef, CloudLogoutCmd>
{
public:
    static const CommandRow kRow;

    /// Keeps the titles in step with the session: that of the account's command, and for a name also this
    /// one, which stays until the next sign-in.
    void updateInfo(const std::wstring& user);

protected:
    bool onIsApplicable(CommandContext* context) const override;
};

class CloudLogoutCmd : public TimedCommand<CloudLogoutCmd>
{
public:
    using TimedCommand::TimedCommand;
    static Vs::Metrics::TimeMetric* metric();

protected:
    void onExecute(Vs::Status& status) override;
};

/// Opens the drive's web page.
class CloudManageCmdDef : public CloudDefinition<CloudManageCmdDef, CloudManageCmd>
{
public:
    static const CommandRow kRow;
};

class CloudManageCmd : public TimedCommand<CloudManageCmd>
{
public:
    using TimedCommand::TimedCommand;
    static Vs::Metrics::TimeMetric* metric();

protected:
    void onExecute(Vs::Status& status) override;
};

/// For tests: asks for no activities, and prints nothing.
class CloudListFilesCmdDef : public CloudDefinition<CloudListFilesCmdDef, CloudListFilesCmd>
{
public:
    static const CommandRow kRow;
};

class CloudListFilesCmd : public TimedCommand<CloudListFilesCmd>
{
public:
    using TimedCommand::TimedCommand;
    static Vs::Metrics::TimeMetric* metric();

protected:
    void onExecute(Vs::Status& status) override;
};

/// For tests: does all that comes before an upload.
class CloudUploadCmdDef : public CloudDefinition<CloudUploadCmdDef, CloudUploadCmd>
{
public:
    static const CommandRow kRow;
};

class CloudUploadCmd : public TimedCommand<CloudUploadCmd>
{
public:
    using TimedCommand::TimedCommand;
    static Vs::Metrics::TimeMetric* metric();

protected:
    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
