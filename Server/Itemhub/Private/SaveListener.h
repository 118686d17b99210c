#pragma once

#include "Server/DataModel/DocumentEvents.h"
#include "Server/Itemhub/Private/WorkFiles.h"

#include <boost/filesystem/path.hpp>

#include <map>
#include <string>

namespace Vs::Itemhub {

/// Queues every save of an item's document before the save returns, and notes which of their files are in
/// use. Main thread only.
class SaveListener : public DocumentEventSite
{
public:
    SaveListener();

    /// For the next save of the file.
    void label(const boost::filesystem::path& file, const std::string& label);

    void documentOpened(DocumentEvent* event) override { touch(event->document()); }
    void documentOpenedInBackground(DocumentEvent* event) override { touch(event->document()); }
    void documentClosed(DocumentEvent* event) override { touch(event->document()); }
    void documentSaved(DocumentEvent* event) override;
    /// The only notification of a save under another name.
    void documentUpdated(DocumentEvent* event) override;

private:
    static void touch(const Document* document);
    void queue(const Document* document);

    std::map<boost::filesystem::path, std::string> m_labels;
    std::map<boost::filesystem::path, FileStamp> m_queued; ///< What was last queued.
    Subscriptions m_subscriptions;
};

} // namespace Vs::Itemhub
