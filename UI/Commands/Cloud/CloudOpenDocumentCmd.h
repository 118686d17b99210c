#pragma once

#include "Server/Network/CloudErrorState.h"
#include "UI/Commands/Cloud/CloudCommands.h"

namespace Vs {
class SkyvaultNodeData;
}

namespace Vu::Commands {

class CloudOpenDocumentCmd;

/// Opens a document of the cloud drive, which the path argument (in the drive's cache) or the person names.
class CloudOpenDocumentCmdDef : public CloudDefinition<CloudOpenDocumentCmdDef, CloudOpenDocumentCmd>
{
public:
    static const CommandRow kRow;

    CloudOpenDocumentCmdDef();
};

class CloudOpenDocumentCmd : public TimedCommand<CloudOpenDocumentCmd>
{
public:
    using TimedCommand::TimedCommand;
    static Vs::Metrics::TimeMetric* metric();

protected:
    void onExecute(Vs::Status& status) override;

    /// Brings the file into the cache if need be and opens it from there. True when a document is open at the
    /// end.
    [[nodiscard]] bool openLogic(Vs::Status& status);

private:
    [[nodiscard]] bool choose(Vs::SkyvaultNodeData& node, std::wstring& path, Vs::Status& status);
};

} // namespace Vu::Commands
