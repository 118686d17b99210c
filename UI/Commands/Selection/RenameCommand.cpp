#include "UI/Commands/Selection/RenameCommand.h"

#include "Server/DataModel/Selection/RenameRequest.h"
#include "UI/Commands/Selection/SelectedObjects.h"

namespace Vu::Commands {

constinit const CommandRow RenameCommandDef::kRow = {
    .key = L"RenameCommand", .title = "Rename", .arguments = {L"NewName"}};

const Vs::UniqueString* RenameCommandDef::newNameArgument()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("NewName", true);
    return name;
}

void RenameCommand::onExecute(Vs::Status&)
{
    const std::wstring name = commandContext()->argumentAsString(RenameCommandDef::newNameArgument());
    std::vector<Vs::ObjectPath> paths;
    for (const auto& object : selectedObjects(selectionManager()))
        paths.push_back(object->path());
    Vs::Status own;
    Vs::Request* request = Vs::RenameRequest::make(commandContext()->asset(), paths, name);
    executeRequest(request, false, {}, own);
    request->destroy();
}

} // namespace Vu::Commands
