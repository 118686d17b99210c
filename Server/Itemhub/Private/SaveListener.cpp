#include "Server/Itemhub/Private/SaveListener.h"

#include "Server/Base/Exception.h"
#include "Server/DataModel/Document.h"
#include "Server/Itemhub/ItemhubUtilities.h"
#include "Server/Itemhub/Private/UploadQueue.h"

#include <tuple>

namespace Vs::Itemhub {

SaveListener::SaveListener()
{
    m_subscriptions.add(DocumentEventSource::get(), this);
}

void SaveListener::label(const boost::filesystem::path& file, const std::string& label)
{
    m_labels[file.lexically_normal()] = label;
}

void SaveListener::documentSaved(DocumentEvent* event)
{
    queue(event->document());
}

void SaveListener::documentUpdated(DocumentEvent* event)
{
    queue(event->document());
}

void SaveListener::touch(const Document* document)
{
    if (document && document->isOnDisk())
        std::ignore = WorkFiles::get().touch(document->path());
}

void SaveListener::queue(const Document* document)
{
    if (!document || !document->isOnDisk())
        return;
    const std::optional<WorkFile> work = WorkFiles::get().find(document->path());
    if (!work || !work->isChanged())
        return;
    // On a save, the first event finds a different content.
    FileStamp& queued = m_queued[work->file];
    const FileStamp now = FileStamp::of(work->file);
    if (queued == now)
        return;
    const auto label = m_labels.find(work->file);
    try {
        UploadQueue::get().add(*work, label == m_labels.end() ? std::string() : label->second, false);
        queued = now;
    } catch (const Exception& error) {
        // The file itself is saved; the next sign-in finds it.
        ItemhubUtilities::get()->fireErrorMessage(error.message());
    }
    if (label != m_labels.end())
        m_labels.erase(label);
}

} // namespace Vs::Itemhub
