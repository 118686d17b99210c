#include "UI/Commands/Itemhub/ItemhubFeed.h"

#include "Server/Base/Strings.h"
#include "Server/DataModel/Document.h"
#include "Server/Itemhub/ItemhubUtilities.h"
#include "UI/Base/Session/DocumentRemark.h"
#include "UI/Commands/Itemhub/ItemhubThreads.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"

#include <QDateTime>

#include <algorithm>
#include <string>

namespace Vu::Commands {
namespace {

using Vs::ItemhubUtilities;
using Vs::Strings::widen;

/// Its lifetime is the add-in's; answers may come later.
ItemhubFeed* s_installed = nullptr;

/// What a thread brings: texts are made of it on the main thread, which knows the user's language.
struct Happened
{
    std::string caption; ///< Of the item.
    std::vector<ItemhubUtilities::Version> versions;
    std::vector<ItemhubUtilities::Comment> comments;
};

Happened askFor(std::int64_t id)
{
    ItemhubUtilities* service = ItemhubUtilities::get();
    const auto item = service->getItemById(static_cast<int>(id));
    Happened happened;
    happened.caption = item.caption();
    const auto attachments = service->getItemAttachments({}, item);
    if (!attachments.empty())
        happened.versions = service->getVersions(attachments.front());
    happened.comments = service->getComments(item);
    return happened;
}

std::chrono::system_clock::time_point timeOf(const std::string& text)
{
    const QDateTime time = QDateTime::fromString(QString::fromStdString(text), Qt::ISODateWithMs);
    return std::chrono::system_clock::time_point(
        std::chrono::milliseconds(time.isValid() ? time.toMSecsSinceEpoch() : 0));
}

/// On one line, whatever was written.
std::wstring inOneLine(std::wstring text)
{
    std::ranges::replace_if(
        text, [](wchar_t letter) { return letter < L' '; }, L' ');
    return text;
}

std::vector<FeedEntry> entriesOf(const Happened& happened)
{
    std::vector<FeedEntry> entries;
    for (const auto& version : happened.versions)
        entries.push_back({.time = timeOf(version.createdAt),
                           .title = version.label.empty()
                                        ? localizedFormat("ItemhubFeedVersion", "Version %1%", version.number)
                                        : localizedFormat("ItemhubFeedLabelled", "Version %1%: %2%",
                                                          version.number, inOneLine(widen(version.label))),
                           .origin = widen(version.author),
                           .icon = Resources::CloudSave()});
    for (const auto& comment : happened.comments)
        entries.push_back({.time = timeOf(comment.createdAt),
                           .title = inOneLine(widen(comment.body)),
                           .origin = widen(comment.author),
                           .icon = Resources::Feedback()});
    return entries;
}

std::map<std::int64_t, std::wstring> labelsOf(const std::vector<ItemhubUtilities::Version>& versions)
{
    std::map<std::int64_t, std::wstring> labels;
    for (const auto& version : versions)
        labels[version.number] = inOneLine(widen(version.label));
    return labels;
}

} // namespace

ItemhubFeed::ItemhubFeed() : m_facts([this](const Vs::Document& document) { return factsOf(document); })
{
    s_installed = this;
    DesignFeed::get()->add(this);
    m_subscriptions.add(Vs::ItemhubEventSource::get(), this);
}

ItemhubFeed::~ItemhubFeed()
{
    m_subscriptions.clear();
    DesignFeed::get()->remove(this);
    s_installed = nullptr;
}

void ItemhubFeed::addEntries(Vs::Document& document, std::vector<FeedEntry>& entries)
{
    const ItemhubUtilities* service = ItemhubUtilities::get();
    const auto item = document.path().empty() ? std::nullopt : service->itemOf(document.path());
    if (!item || !service->isAuthenticated())
        return;
    ask(item->itemId);
    const std::vector<FeedEntry>& known = m_known[item->itemId].entries;
    entries.insert(entries.end(), known.begin(), known.end());
}

/// What was learnt stays until there is something newer.
void ItemhubFeed::ask(std::int64_t item)
{
    Known& known = m_known[item];
    if (known.isCurrent || known.isAsked)
        return;
    known.isAsked = known.isCurrent = true;
    ItemhubThreads::run([item]() -> std::function<void()> {
        try {
            return [item, happened = askFor(item)] {
                if (s_installed)
                    s_installed->answered(item, {entriesOf(happened), inOneLine(widen(happened.caption)),
                                                 labelsOf(happened.versions)});
            };
        } catch (const std::exception&) {
            // The next event about the item asks again.
            return [item] {
                if (s_installed)
                    s_installed->m_known[item].isAsked = false;
            };
        }
    });
}

void ItemhubFeed::answered(std::int64_t item, Known known)
{
    known.isCurrent = m_known[item].isCurrent;
    m_known[item] = std::move(known);
    DesignFeed::get()->changed();
    Vs::Event event;
    DocumentRemarkSource::get()->fireDocumentRemarksChanged(&event);
}

/// The version that its file is based on is known at once; the service's name for it, when it has answered.
std::vector<DocumentFacts::Fact> ItemhubFeed::factsOf(const Vs::Document& document)
{
    const ItemhubUtilities* service = ItemhubUtilities::get();
    const auto item = document.path().empty() ? std::nullopt : service->itemOf(document.path());
    if (!item)
        return {};
    if (service->isAuthenticated())
        ask(item->itemId);
    const Known& known = m_known[item->itemId];
    std::wstring name = std::to_wstring(item->itemId);
    if (!known.caption.empty())
        name += L", " + known.caption;
    std::vector<DocumentFacts::Fact> facts{{localized("ItemhubFactItem", "Item"), name}};
    if (item->version == 0)
        return facts;
    const std::int64_t newest = known.labels.empty() ? item->version : known.labels.rbegin()->first;
    facts.push_back({localized("ItemhubFactVersion", "Version"),
                     newest > item->version ? localizedFormat("ItemhubFactOlder", "%1%, the newest is %2%",
                                                              item->version, newest)
                                            : std::to_wstring(item->version)});
    if (const auto label = known.labels.find(item->version);
        label != known.labels.end() && !label->second.empty())
        facts.push_back({localized("ItemhubFactLabel", "Label"), label->second});
    return facts;
}

void ItemhubFeed::sessionChanged(Vs::ItemhubEvent*)
{
    for (auto& [item, known] : m_known) {
        known.entries.clear();
        known.labels.clear();
        known.caption.clear();
        known.isCurrent = false;
    }
    DesignFeed::get()->changed();
}

void ItemhubFeed::itemChanged(Vs::ItemhubItemEvent* event)
{
    const auto known = m_known.find(event->itemId());
    if (known == m_known.end())
        return;
    known->second.isCurrent = false;
    DesignFeed::get()->changed();
}

} // namespace Vu::Commands
