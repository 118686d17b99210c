#include "Server/Skyvault/Private/Nodes.h"

#include "Server/Base/Exception.h"
#include "Server/Skyvault/Private/Session.h"
#include "Server/Skyvault/Private/Texts.h"
#include "Server/Skyvault/SkyvaultUtilities.h"

#include <QDateTime>

namespace Vs::Cloud {
namespace {

std::string timeText(std::chrono::system_clock::time_point time)
{
    const auto milliseconds =
        std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch()).count();
    return QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::UTC)
        .toString(QString::fromStdString(SkyvaultNodeData::timeFormat()))
        .toStdString();
}

const std::string& kindOf(const std::string& id, bool isFolder)
{
    if (!isFolder)
        return SkyvaultNodeData::fileKind();
    return id == "/" ? SkyvaultNodeData::rootKind() : SkyvaultNodeData::folderKind();
}

} // namespace

SkyvaultNodeData nodeOf(const DriveEntry& entry)
{
    SkyvaultNodeData node(entry.path, kindOf(entry.path, entry.isFolder));
    node.etag(entry.etag);
    node.size(entry.size);
    if (entry.modified.time_since_epoch().count() != 0)
        node.modified(timeText(entry.modified));
    return node;
}

SkyvaultNodeData nodeOf(const CacheRow& row)
{
    SkyvaultNodeData node(row.path, SkyvaultNodeData::fileKind());
    node.etag(row.etag);
    node.size(row.size);
    if (row.localTime != 0)
        node.modified(timeText(std::chrono::system_clock::time_point(
            std::chrono::duration_cast<std::chrono::system_clock::duration>(
                std::chrono::nanoseconds(row.localTime)))));
    return node;
}

SkyvaultNodeData knownFolder(const Cache::Path& root, const std::string& id)
{
    SkyvaultNodeData folder(id, kindOf(id, true));
    std::vector<SkyvaultNodeData> children;
    for (const std::string& path : Cache::get().foldersIn(root, id))
        children.emplace_back(path, SkyvaultNodeData::folderKind());
    for (const CacheRow& row : Cache::get().inFolder(root, id))
        children.push_back(nodeOf(row));
    folder.children(std::move(children));
    return folder;
}

DriveResult readFolder(const std::string& id, bool make, SkyvaultNodeData& node)
{
    std::vector<DriveEntry> entries;
    DriveResult result =
        Session::get().run(localized("CloudReadingFolder", "Reading a folder of the cloud drive"),
                           [&](Drive& drive, const DriveWatch& watch) {
                               DriveResult listed = drive.list(id, entries, watch);
                               if (listed.state != CloudErrorState::NotFound || !make)
                                   return listed;
                               listed = drive.makeFolders(id);
                               return listed.isOk() ? drive.list(id, entries, watch) : listed;
                           });
    // What is here is useful after a cancellation, too.
    if (result.state == CloudErrorState::Unreachable || result.state == CloudErrorState::Cancelled) {
        try {
            node = knownFolder(SkyvaultUtilities::currentCachePath(nullptr), id);
        } catch (const Exception& error) {
            return {CloudErrorState::CacheFailed, error.what()};
        }
    }
    if (!result.isOk())
        return result;
    node = SkyvaultNodeData(id, kindOf(id, true));
    std::vector<SkyvaultNodeData> children;
    children.reserve(entries.size());
    for (const DriveEntry& entry : entries)
        children.push_back(nodeOf(entry));
    node.children(std::move(children));
    return result;
}

DriveResult readNode(const std::string& id, DriveEntry& entry)
{
    return Session::get().run(localized("CloudLookingAtFile", "Asking the cloud drive about a file"),
                              [&](Drive& drive, const DriveWatch&) { return drive.find(id, entry); });
}

} // namespace Vs::Cloud
