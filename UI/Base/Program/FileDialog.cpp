#include "UI/Base/Program/FileDialog.h"

#include "Server/Base/PathInfo.h"
#include "Server/Base/Status.h"
#include "Server/Base/TranscriptMgr.h"
#include "Server/DataModel/Recovery/AutoSaveController.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/Presence.h"
#include "UI/Base/Program/Private/Answers.h"
#include "UI/Base/Program/Private/Display.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"

#include <QStringList>

#include <boost/filesystem/operations.hpp>

namespace Vu {
namespace {

std::wstring missing()
{
    return localized("FileNameMissing",
                     "There is no file name: none was given, and nobody is there to ask for it.");
}

FileDialog::Responder& installedResponder()
{
    static FileDialog::Responder responder;
    return responder;
}

/// Whether a file lies where nobody works, so that no dialog starts there.
bool isPrivate(const boost::filesystem::path& file)
{
    return Vs::AutoSaveController::isInRecoveryFolder(file.wstring());
}

bool askUser(const FileDialog::Request& request, std::vector<std::wstring>& names)
{
    const std::wstring folder = UIBaseOptionGroup::get()->lastDirectory();
    std::wstring start = request.initialPath;
    if (!folder.empty() && start.find(L'/') == std::wstring::npos)
        start = folder + L'/' + start;
    names = Display::get()->askFileNames(request, start, Application::get()->mainWidget());
    return !names.empty();
}

/// The option that keeps the folder of the last answer.
constexpr const char* kLastDirectory = "lastDirectory";

bool ask(const FileDialog::Request& request, std::vector<std::wstring>& names,
         const char* folderOption = kLastDirectory)
{
    names.clear();
    bool answered = false;
    if (Answers::take(Answers::Kind::Files, names)) {
        for (std::wstring& name : names)
            name = Vs::TranscriptMgr::get()->locate(name);
        return !names.empty();
    }
    if (installedResponder()) {
        answered = installedResponder()(request, names) && !names.empty();
    } else if (!FileDialog::canAsk()) {
        Application::get()->inform(missing());
    } else {
        answered = askUser(request, names);
    }
    if (answered && !isPrivate(names.front()))
        UIBaseOptionGroup::get()->setValue(
            folderOption, Vs::PathInfo::absolute(names.front()).lexically_normal().parent_path().wstring());
    return answered;
}

/// Asks for what no argument of the command will say.
bool askAndNote(const FileDialog::Request& request, std::vector<std::wstring>& names)
{
    const bool answered = ask(request, names);
    std::vector<std::wstring> noted = names;
    for (std::wstring& name : noted)
        name = Vs::TranscriptMgr::get()->portable(name);
    Answers::given(Answers::Kind::Files, std::move(noted));
    return answered;
}

bool askForOne(const FileDialog::Request& request, std::wstring& name)
{
    std::vector<std::wstring> names;
    if (!askAndNote(request, names))
        return false;
    name = names.front();
    return true;
}

/// Takes the name that the caller of a command gave; otherwise asks, and leaves the answer in the context,
/// from which a recording takes it.
bool transcriptable(const FileDialog::Request& request, std::wstring& name, CommandContext* context,
                    const char* folderOption = kLastDirectory)
{
    if (context) {
        const std::wstring given = context->argumentAsString(CommandContext::pathArgumentName());
        if (!given.empty()) {
            name = given;
            return true;
        }
    }
    std::vector<std::wstring> names;
    if (!(context ? ask(request, names, folderOption) : askAndNote(request, names)))
        return false;
    name = names.front();
    if (context)
        context->addArgument(CommandContext::pathArgumentName(), name);
    return true;
}

} // namespace

bool FileDialog::getFilenamesForOpen(const std::wstring& filter, std::vector<std::wstring>& names,
                                     const std::wstring& initialPath)
{
    return askAndNote({filter, localized("FileDialogOpen", "Open"), initialPath, true, true}, names);
}

bool FileDialog::getFilenameForOpen(const std::wstring& filter, std::wstring& name,
                                    const std::wstring& initialPath)
{
    return askForOne({filter, localized("FileDialogOpen", "Open"), initialPath, true, false}, name);
}

bool FileDialog::getFilenameForSave(const std::wstring& filter, std::wstring& name)
{
    return askForOne({filter, localized("FileDialogSaveAs", "Save As"), {}, false, false, true}, name);
}

bool FileDialog::getFilenameForSaveAs(const std::wstring& filter, const std::wstring& caption,
                                      std::wstring& name, const std::wstring& initialPath)
{
    boost::filesystem::path proposal(name);
    if (!initialPath.empty())
        proposal = boost::filesystem::path(initialPath) / proposal.filename();
    else if (isPrivate(proposal))
        proposal = proposal.filename();
    return askForOne({filter, caption, proposal.wstring(), false, false}, name);
}

bool FileDialog::getTranscriptableFilename(const std::wstring& filter, std::wstring& name,
                                           CommandContext* context, bool forOpen,
                                           const std::wstring& initialPath)
{
    return transcriptable(
        {filter, forOpen ? localized("FileDialogOpen", "Open") : localized("FileDialogSaveAs", "Save As"),
         initialPath, forOpen, false},
        name, context);
}

bool FileDialog::getTranscriptableFilenameForSaveAs(const std::wstring& filter, const std::wstring& caption,
                                                    std::wstring& name, CommandContext* context)
{
    return transcriptable({filter, caption, name, false, false}, name, context);
}

bool FileDialog::getSpecialFilenameForOpen(const std::wstring& filter, std::wstring& name,
                                           CommandContext* context, const std::wstring& folder,
                                           const std::string& key, const std::wstring& caption)
{
    const std::string option = kLastDirectory + key;
    const std::wstring start = UIBaseOptionGroup::get()->value(option.c_str(), folder);
    return transcriptable({filter, caption, start, true, false}, name, context, option.c_str());
}

bool FileDialog::getFilenameForExport(const std::wstring& filter, const std::wstring& caption,
                                      std::wstring& name, const std::wstring& initialPath,
                                      const std::wstring& entry)
{
    return askForOne({filter, caption, initialPath.empty() ? name : initialPath, false, false, false, entry},
                     name);
}

bool FileDialog::canAsk()
{
    return installedResponder() || somebodyIsThere();
}

void FileDialog::tellMissing(Vs::Status& status)
{
    if (!canAsk())
        status.addError(missing());
}

void FileDialog::responder(Responder responder)
{
    installedResponder() = std::move(responder);
}

std::wstring FileDialogRules::dialogFilter(const std::wstring& filter)
{
    // Entries are separated by ";;", patterns by a single ";" or a blank; a ";" beside a bracket is
    // decoration.
    std::wstring patterns;
    bool inside = false;
    for (size_t i = 0; i < filter.size(); ++i) {
        const wchar_t sign = filter[i];
        if (sign == L'(')
            inside = true;
        else if (sign == L')')
            inside = false;
        patterns += inside && sign == L';' ? L' ' : sign;
    }
    std::wstring result;
    for (const QString& part :
         QString::fromStdWString(patterns).split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const QString entry = part.simplified()
                                  .replace(QLatin1String("( "), QLatin1String("("))
                                  .replace(QLatin1String(" )"), QLatin1String(")"));
        if (!entry.isEmpty())
            result += (result.empty() ? L"" : L";;") + entry.toStdWString();
    }
    return result;
}

std::wstring FileDialogRules::withSuffix(const std::wstring& name, const std::wstring& filter)
{
    const size_t slash = name.rfind(L'/');
    const std::wstring file = slash == std::wstring::npos ? name : name.substr(slash + 1);
    const size_t star = filter.find(L"*.");
    if (file.empty() || file.find(L'.') != std::wstring::npos || star == std::wstring::npos)
        return name;
    const std::wstring suffix = filter.substr(star + 1, filter.find_first_of(L" ;)", star) - star - 1);
    return suffix == L".*" ? name : name + suffix;
}

} // namespace Vu
