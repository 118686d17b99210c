#include "Server/Itemhub/Private/Upload.h"

#include "Server/Base/Exception.h"
#include "Server/Itemhub/Private/SignIn.h"
#include "Server/Itemhub/Private/Transport.h"
#include "Server/Itemhub/Private/WorkFiles.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>

namespace Vs::Itemhub {
namespace {

using Kind = Web::ItemhubException::Kind;

/// How often the service may forget an upload before that counts as a failure.
constexpr int kMostAttempts = 3;
/// How often somebody else may get a version in first.
constexpr int kMostOvertakings = 5;

WorkFile workOf(const QueueEntry& entry)
{
    if (auto work = WorkFiles::get().find(entry.document))
        return *work;
    throw Exception("The record of \"" + entry.document.string() + "\" is missing or damaged");
}

/// Whether starting over may help.
bool isForgotten(const Web::ItemhubException& error)
{
    return error.kind() == Kind::NotFound || error.kind() == Kind::Conflict ||
           error.kind() == Kind::BadRequest;
}

} // namespace

Upload::Upload(QueueEntry& entry, ItemStore& store, std::string account, const Watch& watch)
    : m_entry(entry), m_store(store), m_account(std::move(account)), m_watch(watch)
{
}

std::int64_t Upload::run()
{
    if (m_entry.sha256.empty())
        hash();
    if (!isWanted()) {
        WorkFiles::get().change(m_entry.document, [this](WorkFile& work) { work.stamp = m_entry.stamp; });
        return 0;
    }
    if (m_entry.isPosted) {
        if (const auto made = madeBefore())
            return finish(*made);
    }
    for (int attempt = 1;; ++attempt) {
        try {
            if (!m_entry.isPosted) {
                sendContent();
                prepareRequest();
            }
            return finish(post());
        } catch (const Web::ItemhubException& error) {
            if (!isForgotten(error) || attempt == kMostAttempts)
                throw;
            if (m_entry.isPosted) {
                if (const auto made = madeBefore())
                    return finish(*made);
            }
            beginAnew();
        }
    }
}

bool Upload::isWanted()
{
    return !m_entry.isFound || workOf(m_entry).sha256 != m_entry.sha256;
}

void Upload::hash()
{
    boost::system::error_code error;
    m_entry.sha256 = ItemTransport::get().sha256(m_entry.link.string(), m_watch);
    m_entry.size = boost::filesystem::file_size(m_entry.link, error);
    if (error)
        throw Exception("\"" + m_entry.link.string() + "\" cannot be read: " + error.message());
    m_entry.write();
}

void Upload::sendContent()
{
    std::uint64_t there = 0;
    if (!m_entry.upload.empty()) {
        try {
            there = m_store.arrived(m_entry.upload, m_watch);
        } catch (const Web::ItemhubException& error) {
            if (error.kind() != Kind::NotFound)
                throw;
            m_entry.upload.clear();
        }
    }
    if (m_entry.upload.empty()) {
        m_entry.upload = m_store.beginUpload(m_entry.size, m_entry.sha256, m_watch);
        m_entry.write();
    }
    // An empty file has arrived once it is announced.
    if (there < m_entry.size)
        sendFrom(there);
}

void Upload::sendFrom(std::uint64_t there)
try {
    m_store.upload(m_entry.upload, m_entry.link.string(), there, m_watch);
} catch (const Web::ItemhubException& error) {
    if (error.kind() != Kind::Conflict)
        throw;
    // An earlier request that nobody here waits for any more may still have delivered some of it.
    const std::uint64_t now = m_store.arrived(m_entry.upload, m_watch);
    if (now <= there)
        throw;
    m_store.upload(m_entry.upload, m_entry.link.string(), now, m_watch);
}

void Upload::prepareRequest()
{
    const WorkFile work = workOf(m_entry);
    m_entry.attachmentId = work.attachmentId;
    m_entry.madeFrom = work.version;
    m_entry.isPosted = true;
    m_entry.write();
}

NewVersion Upload::newVersion(const std::string& docType) const
{
    return {.itemId = m_entry.itemId,
            .attachmentId = m_entry.attachmentId,
            .name = m_entry.document.filename().string(),
            .docType = docType,
            .upload = m_entry.upload,
            .label = m_entry.label,
            .madeFrom = m_entry.madeFrom,
            .key = m_entry.key};
}

MadeVersion Upload::post()
{
    try {
        return m_store.addVersion(newVersion(workOf(m_entry).docType), m_watch);
    } catch (const Web::ItemhubException& error) {
        if (error.kind() != Kind::Outdated)
            throw;
        // A request that the service has carried out and forgotten is refused because of its own version.
        if (isOurs(error.latest()))
            return {m_entry.attachmentId, error.latest()};
        if (!m_entry.onTop)
            throw;
        return postOnTop(error.latest());
    }
}

MadeVersion Upload::postOnTop(const Web::Version& latest)
{
    Web::Version newest = latest;
    for (int overtakings = 0;; ++overtakings) {
        if (newest.number <= m_entry.madeFrom)
            throw Web::PayloadException(
                "The service calls a version outdated that is made from its newest one");
        m_entry.madeFrom = newest.number;
        m_entry.key = SignIn::newKey();
        m_entry.write();
        try {
            return m_store.addVersion(newVersion({}), m_watch);
        } catch (const Web::ItemhubException& error) {
            if (error.kind() != Kind::Outdated || overtakings == kMostOvertakings)
                throw;
            newest = error.latest();
        }
    }
}

bool Upload::isOurs(const Web::Version& version) const
{
    return version.number > 0 && version.sha256 == m_entry.sha256 && version.madeFrom == m_entry.madeFrom &&
           version.author == m_account && version.label == m_entry.label;
}

std::optional<MadeVersion> Upload::madeBefore()
{
    std::vector<std::int64_t> attachments;
    if (m_entry.attachmentId != 0) {
        attachments.push_back(m_entry.attachmentId);
    } else {
        for (const Web::Attachment& attachment : m_store.attachments(m_entry.itemId, m_watch))
            if (attachment.name() == m_entry.document.filename().string())
                attachments.push_back(attachment.id());
    }
    for (const std::int64_t attachment : attachments) {
        const std::vector<Web::Version> versions = m_store.versions(attachment, m_watch);
        const auto found = std::find_if(versions.begin(), versions.end(),
                                        [this](const Web::Version& version) { return isOurs(version); });
        if (found != versions.end())
            return MadeVersion{attachment, *found};
    }
    return std::nullopt;
}

// The content may have been changed from outside since it was hashed, which is the other reason for a
// refusal.
void Upload::beginAnew()
{
    m_entry.upload.clear();
    m_entry.isPosted = false;
    m_entry.key = SignIn::newKey();
    hash();
}

std::int64_t Upload::finish(const MadeVersion& made)
{
    WorkFiles::get().change(m_entry.document, [&](WorkFile& work) {
        work.attachmentId = made.attachmentId;
        work.version = made.version.number;
        work.sha256 = made.version.sha256;
        work.stamp = m_entry.stamp;
    });
    return made.version.number;
}

} // namespace Vs::Itemhub
