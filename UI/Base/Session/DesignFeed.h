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
        Step,    ///< Something that was done, and can be taken back.
        Present, ///< The step after which the document is as it is now.
        Undone,  ///< A step that was taken back, and can be done again.
        Comment  ///< Anything that isn't a step.
    };

    /// The beginning of time for an entry whose time nobody knows, which stands below all others.
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
    /// Appends its entries for the document, in any order. Called whenever the feed is drawn anew: a source
    /// that has to ask elsewhere keeps what it got, and tells DesignFeed::changed when it has more.
    virtual void addEntries(Vs::Document& document, std::vector<FeedEntry>& entries) = 0;
};

class FeedEventSite : public Vs::EventSite
{
public:
    /// There may be other entries; whoever shows them asks anew. Fired often: coalesce.
    virtual void feedChanged() = 0;
};

/// The feed of a document: what all sources know about it. Main thread only.
class DesignFeed : public Vs::EventSource<FeedEventSite>
{
public:
    static DesignFeed* get();

    /// Not owned; must stay until it is removed.
    void add(FeedSource* source);
    void remove(FeedSource* source);
    /// For sources.
    void changed();

    /// The newest first. Steps stand in their order, also those that were undone, above the present state;
    /// other entries go between them by their time.
    [[nodiscard]] std::vector<FeedEntry> entries(Vs::Document& document) const;

private:
    DesignFeed();

    std::vector<FeedSource*> m_sources;
};

} // namespace Vu
