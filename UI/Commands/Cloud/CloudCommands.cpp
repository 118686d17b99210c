#include "UI/Commands/Cloud/CloudCommands.h"

#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentType.h"
#include "Server/Skyvault/MeshportAuth.h"
#include "Server/Skyvault/SkyvaultUtilities.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Commands/Documents/CloseDocumentCmd.h"

namespace Vu::Commands {

Info cloudInfo(const CommandRow& row)
{
    Info info = makeInfo(row);
    if (info.name().ends_with(L' '))
        info.changeAppearance(info.name() + Vs::SkyvaultUtilities::getCloud_TM(), info.icon());
    return info;
}

bool cloudIsEnabled()
{
    return !Vs::MeshportAuth::globalInstance()->cloudDisabled();
}

bool cloudLogin()
{
    return Vs::MeshportAuth::globalInstance()->login(Vs::CloudLoginDialog::LogIn);
}

std::wstring cloudFilter(const Vs::Document& document)
{
    const Vs::DocumentType& type = *document.documentType();
    return type.name() + L" (*" + type.extension() + L")";
}

} // namespace Vu::Commands
