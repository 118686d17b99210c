#include "Server/Itemhub/Client/Redmine/Changes.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace Vs::Itemhub::Redmine {
namespace {

constexpr std::chrono::seconds kPause{5}; // Between two polls, so that many clients don't burden the server.
constexpr int kPage = 100;

std::int64_t secondsOf(const std::string& time)
{
    return QDateTime::fromString(QString::fromStdString(time), Qt::ISODate).toSecsSinceEpoch();
}

/// False if the wait was cancelled.
bool pause(std::chrono::steady_clock::time_point end, const Watch& watch)
{
    while (std::chrono::steady_clock::now() < end) {
        if (!watch.goesOn())
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return true;
}

} // namespace

Changes::Changes(Tracker& tracker, Reader& reader) : m_tracker(tracker), m_reader(reader) {}

ItemEvents Changes::events(std::int64_t after, int seconds, const Watch& watch)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
    for (ItemEvents found = since(after, watch);; found = since(found.next, watch)) {
        const auto now = std::chrono::steady_clock::now();
        if (after == 0 || !found.events.empty() || now >= end)
            return found;
        if (!pause(std::min(end, now + kPause), watch))
            throw ItemStore::Cancelled();
    }
}

ItemEvents Changes::since(std::int64_t after, const Watch& watch)
{
    const QString from = QDateTime::fromSecsSinceEpoch(after + 1, Qt::UTC).toString(Qt::ISODate);
    const auto [answer, time] = m_tracker.getWithTime("issues.json",
                                                      {{"updated_on", ">=" + from.toStdString()},
                                                       {"status_id", "*"},
                                                       {"sort", "updated_on"},
                                                       {"limit", after == 0 ? "1" : std::to_string(kPage)}},
                                                      "Asking what changed", watch);
    if (!time.isValid())
        throw Web::PayloadException(answer.action() + " failed: the answer doesn't tell the time");
    ItemEvents found;
    found.next = std::max<std::int64_t>(after, time.toSecsSinceEpoch() - 1);
    if (after == 0)
        return found;
    const QJsonArray issues = answer.list("issues");
    for (const auto& each : issues) {
        const JsonReader issue(each.toObject(), answer.action());
        if (secondsOf(issue.text("updated_on")) <= found.next)
            add(found.events, issue.id("id"), after, watch);
    }
    if (issues.size() == kPage)
        found.next = std::min(
            found.next, secondsOf(JsonReader(issues.last().toObject(), answer.action()).text("updated_on")));
    return found;
}

void Changes::add(std::vector<ItemEvent>& events, std::int64_t id, std::int64_t after, const Watch& watch)
{
    const Issue issue = m_reader.issue(id, "Reading the issue " + std::to_string(id), watch);
    ItemEvent event;
    event.serial = secondsOf(issue.values.changedAt);
    event.workspaceId = issue.values.workspaceId;
    event.itemId = id;
    event.at = issue.values.changedAt;
    const bool isNew = secondsOf(issue.values.createdAt) > after;
    event.kind = isNew ? "item.added" : "item.changed";
    event.account = isNew ? issue.values.createdBy : "";
    events.push_back(event);
    for (const File& file : issue.files) {
        if (secondsOf(file.attachedAt) <= after)
            continue;
        const std::vector<File> versions = issue.versionsOf(file.name);
        const auto place = std::find_if(versions.begin(), versions.end(),
                                        [&](const File& each) { return each.id == file.id; });
        event.kind = "version.added";
        event.attachmentId = attachmentId(id, versions.front().id);
        event.version = place - versions.begin() + 1;
        event.account = file.author;
        event.at = file.attachedAt;
        events.push_back(event);
    }
    event.attachmentId = event.version = 0;
    for (const Web::Comment& comment : issue.comments)
        if (secondsOf(comment.createdAt) > after) {
            event.kind = "comment.added";
            event.account = comment.author;
            event.at = comment.createdAt;
            events.push_back(event);
        }
}

} // namespace Vs::Itemhub::Redmine
