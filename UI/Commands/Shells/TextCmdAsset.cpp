#include "Server/Base/Strings.h"
#include "Server/Base/TranscriptMgr.h"
#include "Server/DataModel/AllAssets.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/AssetType.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/SegmentFinder.h"
#include "UI/Base/Command/TextRows.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/Workspace/Workspace.h"
#include "UI/Commands/Documents/ExportCmd.h"
#include "UI/Commands/Shells/AssetCmds.h"
#include "UI/Commands/Shells/AssetShell.h"
#include "UI/Commands/Shells/FindShell.h"
#include "UI/Commands/Shells/InsertAssetCmd.h"

namespace Vu::Commands {
namespace {

using Vs::TextCommandParameters;
using Vs::TextCommandResult;

constexpr const wchar_t* kNoActiveAsset = L"There is no active asset to use";

// clang-format off
constexpr const wchar_t* kArea = L"Asset";
constexpr DirectTextRow kCreate    = {kArea, L"Create", L"<AssetTypeId> [<DocumentPath>] [/Hidden] Creates a new asset inside the given or active document"};
constexpr DirectTextRow kClose     = {kArea, L"Close", L"Closes the active asset"};
constexpr DirectTextRow kList      = {kArea, L"List", L"List all names of asset in program"};
constexpr DirectTextRow kExport    = {kArea, L"Export", L"<filename> Export the active asset as *.sat, *.step or other translator supported file types."};
constexpr DirectTextRow kPath      = {kArea, L"Path", L"Gets a path (<document path> <asset name>) for the active asset"};
constexpr DirectTextRow kActivate  = {kArea, L"Activate", L"<asset name> [<document path>] Activates the passed asset in the passed or current document"};
constexpr DirectTextRow kTesting   = {kArea, L"UseForTesting", L"[/Stop] Use (or stop using) the current asset for some simple test commands"};
constexpr DirectTextRow kMarkDirty = {kArea, L"MarkDirty", L"Dirty the current asset"};
constexpr DirectTextRow kMarkSmudge= {kArea, L"MarkSmudge", L"Smudge the current asset"};
constexpr DirectTextRow kListDirty = {kArea, L"ListDirty", L"Lists the dirty/smudge flags on the current asset"};
// clang-format on

Vs::Asset* activeAsset()
{
    AssetSession* session = SessionMgr::get()->activeAssetSession();
    return session ? session->asset() : nullptr;
}

class TextCmdAssetCreate : public DirectTextCommand<kCreate>
{
public:
    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        if (parameters.parameters() == 0)
            return {1, L"No asset type specified as parameter"};
        Vs::AssetType* type = Vs::AssetTypeMgr::get()->assetType(Vs::Strings::narrow(parameters[0]));
        if (!type)
            return {1, L"Invalid asset type identifier specified as parameter; see AssetMgt.AssetTypes for "
                       L"more info"};
        SessionMgr* sessions = SessionMgr::get();
        DocumentSession* session =
            parameters.parameters() > 1
                ? sessions->documentSession(Vs::DocumentMgr::get()->document(parameters[1]))
                : sessions->activeDocumentSession();
        if (!session)
            return {1, L"There is no document UI associated with the given path"};
        CommandContext context = CommandContext::activeContext();
        context.addArgument(InsertAssetCmdDef::assetTypeArgumentName(), type);
        context.addArgument(InsertAssetCmdDef::documentSessionArgumentName(), session);
        context.addArgument(InsertAssetCmdDef::hiddenArgumentName(), parameters.hasFlag(L"Hidden"));
        return runDefinition(InsertAssetCmdDef::info()->key(), context, parameters);
    }
};

class TextCmdAssetClose : public DirectTextCommand<kClose>
{
public:
    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        Vs::Asset* closing = activeAsset();
        if (!closing)
            return {1, L"There is no active asset to close"};
        Vs::Document* document = closing->document();
        for (unsigned i = 0; i < document->assets(); ++i)
            if (document->asset(i) != closing) {
                document->activeAsset(document->asset(i));
                break;
            }
        return runDefinition(CloseAssetCmdDef::info()->key(), CommandContext::activeContext(), parameters);
    }
};

std::wstring lineOf(const Vs::Asset& asset)
{
    std::wstring line = L"\nAsset name: " + asset.name();
    line += asset.isVisible() ? L"\tHidden: false" : L"\tHidden: true";
    if (const Vs::Asset* parent = asset.parent())
        line += L"  Parent: " + parent->name();
    if (asset.refdAssets() > 0) {
        line += L"\trefdAssets:  ";
        for (unsigned i = 0; i < asset.refdAssets(); ++i)
            line += (i > 0 ? L" " : L"") + asset.refdAsset(i)->name();
    }
    return line;
}

std::wstring listOf(const Vs::Document& document)
{
    std::wstring list = L"All the assets in memory are:\nActive asset name is: ";
    if (const Vs::Asset* active = document.activeAsset())
        list += active->name();
    list += L"\tDocument name: " + document.displayName();
    for (const Vs::Asset* asset : Vs::allAssets(document))
        list += lineOf(*asset);
    return list;
}

class TextCmdAssetList : public DirectTextCommand<kList>
{
public:
    TextCommandResult execute(const TextCommandParameters&) override
    {
        std::wstring list;
        bool any = false;
        for (const Vs::Document* document : SessionMgr::get()->openDocuments()) {
            any = any || document->assets() + document->hiddenAssets() > 0;
            list += (list.empty() ? L"" : L"\n") + listOf(*document);
        }
        if (!any)
            return {1, L"There is no asset in memory."};
        return {0, list};
    }
};

class TextCmdAssetExport : public DirectTextCommand<kExport>
{
public:
    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        if (parameters.parameters() == 0)
            return {1, L"No filename specific as parameter"};
        if (!activeAsset())
            return {1, L"There is no active asset to export"};
        CommandContext context = CommandContext::emptyContext();
        context.addArgument(CommandContext::pathArgumentName(),
                            Vs::TranscriptMgr::get()->locate(parameters[0]));
        return runDefinition(ExportCmdDef::info()->key(), context, parameters);
    }
};

class TextCmdAssetPath : public DirectTextCommand<kPath>
{
public:
    TextCommandResult execute(const TextCommandParameters&) override
    {
        const Vs::Asset* asset = activeAsset();
        if (!asset)
            return {0, {}};
        const Vs::Document* document = asset->document();
        const std::wstring path = document->path().empty() ? document->bestPath() : document->path();
        return {0, asset->name() + L" " + Vs::Strings::quote(path)};
    }
};

class TextCmdAssetActivate : public DirectTextCommand<kActivate>
{
public:
    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        if (parameters.parameters() == 0)
            return {1, L"No parameters specifed; you need to specify the asset name and optionally a path or "
                       L"filename (if you don't use another asset in the current document)"};
        Vs::Document* document = nullptr;
        if (parameters.parameters() > 1) {
            document = Vs::DocumentMgr::get()->bestDocument(parameters[1]);
            if (!document || SessionMgr::get()->isLeaving(document))
                return {1, L"No document matches the specified path or filename or name"};
            if (!SessionMgr::get()->documentSession(document))
                return {1, L"There is no UI associated with the document"};
        } else {
            DocumentSession* session = SessionMgr::get()->activeDocumentSession();
            document = session ? session->document() : nullptr;
            if (!document)
                return {1, L"There is no active document displayed"};
        }
        Vs::Asset* asset = document->bestAsset(parameters[0]);
        if (!asset)
            return {1, L"No asset inside the document matches the specified asset name; use DocumentMgt.List "
                       L"/Assets for more info"};
        // An asset without a session isn't shown now; the next opening of the document will show it.
        AssetSession* session = SessionMgr::get()->assetSession(asset);
        if (!session)
            document->activeAsset(asset);
        else
            show(session);
        return {0, {}};
    }

private:
    static void show(AssetSession* session)
    {
        CommandContext context = CommandContext::activeContext();
        Workspace* workspace = context.workspace();
        AssetShell* shell = workspace ? findShell<AssetShell>(workspace->shellManager()) : nullptr;
        if (!shell)
            return;
        if (!shell->has(session))
            shell->add(session);
        shell->currentAssetSession(session, true, true);
        workspace->shellManager()->activeShell(shell);
    }
};

class TextCmdAssetUseForTesting : public DirectTextCommand<kTesting>
{
public:
    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        const bool stop = parameters.hasFlag(L"Stop");
        Vs::Asset* asset = stop ? nullptr : activeAsset();
        if (!stop && !asset)
            return {1, kNoActiveAsset};
        Vs::SegmentFinder::useExistingAsset(asset);
        return {0, {}};
    }
};

class TextCmdAssetMarkDirty : public DirectTextCommand<kMarkDirty>
{
public:
    TextCommandResult execute(const TextCommandParameters&) override
    {
        Vs::Asset* asset = activeAsset();
        if (!asset)
            return {1, kNoActiveAsset};
        asset->markDirty();
        return {0, {}};
    }
};

class TextCmdAssetMarkSmudge : public DirectTextCommand<kMarkSmudge>
{
public:
    TextCommandResult execute(const TextCommandParameters&) override
    {
        Vs::Asset* asset = activeAsset();
        if (!asset)
            return {1, kNoActiveAsset};
        asset->markSmudge();
        return {0, {}};
    }
};

class TextCmdAssetListDirty : public DirectTextCommand<kListDirty>
{
public:
    TextCommandResult execute(const TextCommandParameters&) override
    {
        const Vs::Asset* asset = activeAsset();
        if (!asset)
            return {1, kNoActiveAsset};
        const wchar_t* state = asset->isDirty(false) ? L"dirty" : asset->isSmudge() ? L"smudged" : L"clean";
        return {0, asset->name() + L" is " + state};
    }
};

TextCmdAssetCreate theCreate;
TextCmdAssetClose theClose;
TextCmdAssetList theList;
TextCmdAssetExport theExport;
TextCmdAssetPath thePath;
TextCmdAssetActivate theActivate;
TextCmdAssetUseForTesting theUseForTesting;
TextCmdAssetMarkDirty theMarkDirty;
TextCmdAssetMarkSmudge theMarkSmudge;
TextCmdAssetListDirty theListDirty;

} // namespace
} // namespace Vu::Commands
