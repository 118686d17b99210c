#include "UI/Base/Session/RecentDocumentMgr.h"

#include "Server/Base/OptionGroup.h"
#include "Server/Base/PathInfo.h"
#include "Server/DataModel/Recovery/AutoSaveController.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>

namespace Vu {
namespace {

constexpr const char* kPaths = "paths";
constexpr const char* kCloudPaths = "cloudPaths";

Vs::OptionGroup& store()
{
    static auto* const group = new Vs::OptionGroup("RecentDocuments");
    return *group;
}

/// The list is read where another folder is the current one.
std::wstring fromRoot(const std::wstring& path)
{
    boost::filesystem::path whole;
    for (const boost::filesystem::path& part : Vs::PathInfo::absolute(path))
        if (part != ".")
            whole /= part;
    return whole.wstring();
}

} // namespace

RecentDocumentMgr* RecentDocumentMgr::get()
{
    static auto* const manager = new RecentDocumentMgr;
    return manager;
}

void RecentDocumentMgr::read()
{
    if (m_read)
        return;
    m_read = true;
    const std::vector<std::wstring> cloud = store().value(kCloudPaths, std::vector<std::wstring>());
    for (const std::wstring& path : store().value(kPaths, std::vector<std::wstring>()))
        if (!path.empty() && m_documents.size() < kMaximum)
            m_documents.push_back(std::make_unique<RecentDocument>(
                path, std::find(cloud.begin(), cloud.end(), path) != cloud.end()));
}

void RecentDocumentMgr::write()
{
    std::vector<std::wstring> paths, cloud;
    for (const auto& document : m_documents) {
        paths.push_back(document->path());
        if (document->isCloud())
            cloud.push_back(document->path());
    }
    store().setValue(kPaths, paths);
    store().setValue(kCloudPaths, cloud);
    forEach([](RecentDocumentEventSite* site) { site->recentDocumentsChanged(); });
}

void RecentDocumentMgr::add(const std::wstring& given, bool isCloud)
{
    // A recovery file is no place where somebody works, and goes by itself.
    if (given.empty() || Vs::AutoSaveController::isRecoveryFile(given))
        return;
    const std::wstring path = fromRoot(given);
    read();
    std::erase_if(m_documents, [&](const auto& document) { return document->path() == path; });
    m_documents.insert(m_documents.begin(), std::make_unique<RecentDocument>(path, isCloud));
    if (m_documents.size() > kMaximum)
        m_documents.resize(kMaximum);
    forEach([&](RecentDocumentEventSite* site) { site->recentDocumentAdded(path); });
    write();
}

std::vector<RecentDocument*> RecentDocumentMgr::newestFirst(int maximum)
{
    read();
    std::vector<RecentDocument*> documents;
    for (size_t i = 0; i < m_documents.size() && static_cast<int>(i) < maximum; ++i)
        documents.push_back(m_documents[i].get());
    return documents;
}

void RecentDocumentMgr::recentDocuments(std::vector<RecentDocument*>& documents, int maximum)
{
    const std::vector<RecentDocument*> newest = newestFirst(maximum);
    documents.insert(documents.end(), newest.rbegin(), newest.rend());
}

void RecentDocumentMgr::remove(const std::wstring& path)
{
    read();
    if (std::erase_if(m_documents, [&](const auto& document) { return document->path() == path; }) == 0)
        return;
    forEach([&](RecentDocumentEventSite* site) { site->recentDocumentRemoved(path); });
    write();
}

void RecentDocumentMgr::clearRecent()
{
    m_read = true;
    m_documents.clear();
    forEach([](RecentDocumentEventSite* site) { site->recentDocumentsCleared(); });
    write();
}

} // namespace Vu
