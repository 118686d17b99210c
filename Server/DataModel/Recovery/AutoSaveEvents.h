#pragma once

#include "Server/Base/Event.h"

#include <string>

namespace Vs {

class AutoSaveEvent : public Implements<AutoSaveEvent, Event>
{
public:
    AutoSaveEvent(std::wstring file, std::wstring message)
        : Implements(Timing::After), m_file(std::move(file)), m_message(std::move(message))
    {
    }
    /// The recovery file concerned; empty if there is none.
    const std::wstring& file() const { return m_file; }
    /// A whole sentence for the user; empty if there is nothing to say.
    const std::wstring& message() const { return m_message; }

private:
    std::wstring m_file, m_message;
};

/// Events about recovery files. Each operation does nothing unless overridden.
class AutoSaveEventSite : public EventSite
{
public:
    /// The files of earlier runs have been looked at.
    virtual void autoSavedRecoveryFilesFound(AutoSaveEvent*) {}
    /// A file is no longer offered: an open document has it, it was copied, or the user doesn't want it.
    virtual void autoSavedRecoveryFileDeleted(AutoSaveEvent*) {}
    /// A file should have been removed, but its content isn't anywhere else: it stays and is offered again.
    virtual void autoSavedRecoveryFileKept(AutoSaveEvent*) {}
    /// A file and the previous one are damaged; they were moved away, and the event says where.
    virtual void autoSavedRecoveryFileDamaged(AutoSaveEvent*) {}
    /// A document was closed without asking about its changes: its file is offered.
    virtual void autoSavedDocumentLeft(AutoSaveEvent*) {}
    /// Changes can't be kept from now on. Reported once, until autoSaveWorksAgain.
    virtual void autoSaveFailed(AutoSaveEvent*) {}
    virtual void autoSaveWorksAgain(AutoSaveEvent*) {}
};

class AutoSaveEventSource : public EventSource<AutoSaveEventSite>
{
public:
    static AutoSaveEventSource* get()
    {
        static auto* const source = new AutoSaveEventSource;
        return source;
    }

    void fireAutoSavedRecoveryFilesFound(AutoSaveEvent* event)
    {
        fire(&AutoSaveEventSite::autoSavedRecoveryFilesFound, event);
    }
    void fireAutoSavedRecoveryFileDeleted(AutoSaveEvent* event)
    {
        fire(&AutoSaveEventSite::autoSavedRecoveryFileDeleted, event);
    }
    void fireAutoSavedRecoveryFileKept(AutoSaveEvent* event)
    {
        fire(&AutoSaveEventSite::autoSavedRecoveryFileKept, event);
    }
    void fireAutoSavedRecoveryFileDamaged(AutoSaveEvent* event)
    {
        fire(&AutoSaveEventSite::autoSavedRecoveryFileDamaged, event);
    }
    void fireAutoSavedDocumentLeft(AutoSaveEvent* event)
    {
        fire(&AutoSaveEventSite::autoSavedDocumentLeft, event);
    }
    void fireAutoSaveFailed(AutoSaveEvent* event) { fire(&AutoSaveEventSite::autoSaveFailed, event); }
    void fireAutoSaveWorksAgain(AutoSaveEvent* event) { fire(&AutoSaveEventSite::autoSaveWorksAgain, event); }
};

} // namespace Vs
