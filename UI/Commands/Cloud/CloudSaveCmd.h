#pragma once

#include "Server/Network/CloudErrorState.h"
#include "Server/Skyvault/SkyvaultNodeData.h"
#include "UI/Commands/Cloud/CloudCommands.h"

#include <boost/filesystem/path.hpp>

namespace Vu::Commands {

class CloudSaveCmd;
class CloudSaveQATCmd;

/// Puts a document on the cloud drive. Both definitions here take the arguments "DocumentSession" (by default
/// the context's document) and CommandContext::pathArgumentName(), a path in the drive's cache.
class CloudSaveCmdDef : public CloudDefinition<CloudSaveCmdDef, CloudSaveCmd>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
};

/// The same for a document that is of the drive: what the Save key and the Save button run for one.
class CloudSaveQATCmdDef : public CloudDefinition<CloudSaveQATCmdDef, CloudSaveQATCmd>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    /// Its button replaces that of the other Save, which is hidden then.
    bool onIsVisible(CommandContext* context) const override;
};

class CloudSaveCmd : public TimedCommand<CloudSaveCmd>
{
public:
    using TimedCommand::TimedCommand;
    static Vs::Metrics::TimeMetric* metric();

    /// The whole command: writes the document to its place in the cache and uploads it from there. What fails
    /// before the upload leaves the drive as it was; what fails in it leaves the file in the cache.
    static void staticExecute(Vs::Status& status, CommandContext* context);

    /// Makes the folders of `target` here (`checkLocal`) and on the drive (`ensureCloud`), whose node is
    /// given back then.
    [[nodiscard]] static Vs::CloudErrorState
    Ensure(bool ensureCloud, bool checkLocal, boost::filesystem::path& target, Vs::SkyvaultNodeData& node);
    /// Uploads the document's file into the folder: as a new version where the folder has a file of that
    /// name.
    [[nodiscard]] static Vs::CloudErrorState
    UploadDocument(Vs::Document* document, Vs::SkyvaultNodeData* parent, Vs::SkyvaultNodeData* result);
    /// Offers a local copy after `error`. True if the person chose it and named a file; the document then is
    /// a local one. Nothing, and false, under replay.
    static bool CancelToLocalSaveOnError(const std::wstring& error, const std::wstring& path,
                                         CommandContext* context, Vs::Document* document);
    /// Nothing under replay.
    static void ShowErrorDialog(const std::wstring& text);

    /// Signs in; false after telling that nobody is signed in, with the offer of a local copy for a document
    /// of the cache.
    [[nodiscard]] static bool loginForSave(CommandContext* context, Vs::Document* document);
    /// Uploads what was written to `target`, and notifies whoever lists documents.
    static void uploadSaved(const boost::filesystem::path& target, Vs::SkyvaultNodeData& node,
                            CommandContext* context, Vs::Document* document);
    /// Asks whether to replace the file of that name.
    [[nodiscard]] static bool mayReplace(const std::wstring& name);

protected:
    void onExecute(Vs::Status& status) override;
};

class CloudSaveQATCmd : public TimedCommand<CloudSaveQATCmd>
{
public:
    using TimedCommand::TimedCommand;
    static Vs::Metrics::TimeMetric* metric();

protected:
    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
