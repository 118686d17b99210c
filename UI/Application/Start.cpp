#include "UI/Application/Start.h"

#include "Server/AddInMgr/AddInMgr.h"
#include "Server/Base/Exception.h"
#include "Server/Base/OwnFiles.h"
#include "Server/Base/PathInfo.h"
#include "Server/Base/PythonManager.h"
#include "Server/Base/StringTable.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandMgr.h"
#include "Server/Base/Warning.h"
#include "Server/DataModel/DocumentLocks.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Session/AutoSaving.h"

#include <boost/algorithm/string/replace.hpp>
#include <boost/filesystem/operations.hpp>

#include <cstdio>
#include <exception>

namespace Quillet {

void complain(const std::string& message)
{
    std::fprintf(stderr, "quillet: %s\n", Vs::Strings::forTerminal(message).c_str());
}

bool takeProfile(const boost::filesystem::path& folder)
{
    if (folder.empty())
        return true;
    const boost::filesystem::path absolute = Vs::PathInfo::absolute(folder);
    boost::system::error_code ignored;
    try {
        // An existing folder may be shared with others for other purposes: only what is inside is closed to
        // them.
        if (!boost::filesystem::is_directory(absolute, ignored))
            Vs::OwnFiles::makeFolder(absolute);
    } catch (const Vs::Exception& error) {
        complain("The profile folder " + absolute.string() + " cannot be used. " + error.what());
        return false;
    }
    Vs::PathInfo::profileDirectory(absolute);
    return true;
}

void takeLanguage(bool headless)
{
    const std::wstring wanted = Vu::UIBaseOptionGroup::get()->language();
    if (!headless && wanted != L"system")
        Vs::StringTable::language(Vs::Strings::narrow(wanted));
}

bool loadAddIns(bool& whole)
{
    Vs::Status status;
    {
        const Vs::WarningHandler handler([&](const std::wstring& text) { status.addError(text); });
        Vs::AddInMgr::get()->loadAddIns(status);
    }
    whole = !status.isError();
    if (!whole)
        complain(
            boost::algorithm::replace_all_copy(Vs::Strings::narrow(status.toString()), "\n", "\nquillet: "));
    try {
        Vu::CommandDefinitionMgr::get()->validate();
        Vs::TextCommandMgr::get()->validate();
    } catch (const std::exception& fault) {
        complain(fault.what());
        return false;
    }
    return true;
}

void end()
{
    Vs::PythonManager::get()->shutdown();
    Vu::AutoSaving::end();
    Vs::DocumentLocks::get()->end();
    Vu::Application::get()->shutDown();
    Vs::AddInMgr::get()->unloadAddIns();
}

} // namespace Quillet
