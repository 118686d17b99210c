#pragma once

#include "Server/Base/Event.h"

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace Vs {
class Document;
class ImageSetResource;
} // namespace Vs

namespace Vu {

/// Something in the feed of a document.
struct FeedEntry
{
    enum class Kind {
        Step,    ///< Something that was done, and can be undone.
        Present, ///< The step that led to the document's present state.
        Undone,  ///< A step that was undone, and can be redone.
        Comment  ///< Anything that isn't a step.
    };

    /// The epoch for an entry whose time nobody knows, which is listed below all others.
    std::chrono::system_clock::time_point time;
    Kind kind = Kind::Comment;
    std::wstring title;  ///< What was done or said, in one line.
    std::wstring origin; ///< Which command did it, or who said it. May be empty.
    const Vs::ImageSetResource* icon = nullptr;
    /// What a double click does, and what a menu calls that; null for nothing. Runs after the present event.
    std::function<void()> action;
    std::wstring actionTitle;
};

/// Brings entries to the feed: the history of changes is one, a service that knows comments can be another.
/// Main thread only.
class FeedSource
{
public:
    virtual ~FeedSource() = default;
    /// Appends its entries for the document, in any order. Called whenever the feed is redrawn: a source that
    /// has to ask elsewhere caches the answers, and calls DesignFeed::changed when it has more.
    virtual void addEntries(Vs::Document& document, std::vector<FeedEntry>& entries) = 0;
};

class FeedEventSite : public Vs::EventSite
{
public:
    /// The entries may have changed; whoever shows them asks again. Fired often: coalesce.
    virtual void feedChanged() = 0;
};

/// The feed of a document: what all sources know about it. Main thread only.
class DesignFeed : public Vs::EventSource<FeedEventSite>
{
public:
    static DesignFeed* get();

    /// Not owned; must exist until it is removed.
    void add(FeedSource* source);
    void remove(FeedSource* source);
    /// For sources.
    void changed();

    /// The newest first. Steps keep their order, with undone ones above the present state; other entries are
    /// placed between them by time.
    [[nodiscard]] std::vector<FeedEntry> entries(Vs::Document& document) const;

private:
    DesignFeed();

    std::vector<FeedSource*> m_sources;
};

} // namespace Vu
