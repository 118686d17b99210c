#pragma once

#include "Server/Base/Object.h"
#include "Server/Base/Task.h"

#include <memory>
#include <string>
#include <vector>

class QWidget;

namespace Vu {

/// The running program: its task queues, its main loop, its services. One for the process; main thread only.
///
/// A run that is not asked for pixels makes no widget and no connection to a display: Qt's application object
/// comes into being at `needGui()`, which whatever shows something calls first.
class Application : public Vs::Implements<Application>
{
public:
    static Application* get();

    /// Must be called once, first thing in main. `arguments` are what Qt looks at (argv as it came); they
    /// must stay valid. Headless runs use Qt's offscreen platform.
    static void initialize(int& count, char** arguments, bool headless);
    static bool headless();

    /// Whether this is a test run: nothing then asks or greets a person.
    static bool testing();
    static void testing(bool value);

    /// Makes Qt's application object if there is none yet, and sets up the palette and the style sheets.
    void needGui();
    /// Has a library that stands beside the add-ins opened with the first window, or now if there is one: the
    /// widgets of an add-in, which register themselves. What shows no window doesn't load them.
    void addWindowPart(std::string library);

    /// Work for the end of the current event. `run()` empties the queue whenever the loop turns; a run
    /// without a loop calls `flushDeferredTasks()` between lines.
    Vs::Tasks* deferredTasks();
    /// Work for when there is nothing else to do; a task that asks to run again comes about 60 times a
    /// second.
    Vs::Tasks* idleTasks();
    void flushDeferredTasks();
    /// One round of both queues and of Qt's pending events, if Qt runs.
    void processEvents();
    /// For ProgressBar: what was queued while work ran may run now.
    void resumeTasks() { wakeUp(); }

    /// Runs the main loop until `exit`. Returns the exit code, 0 unless an error ended it.
    int run();
    /// Ends the main loop at the end of the current event. With `closeDocuments`, `shutDown` closes the
    /// documents that are still open without asking, since the caller has asked. Without, the user is asked
    /// about those that have changed, which may keep the program running, and they are left as they are.
    void exit(bool closeDocuments);
    bool exiting() const { return m_exiting; }
    /// Closes all workspaces and takes Qt's application object down; the last thing in main, before add-ins
    /// are unloaded.
    void shutDown();

    /// Name, version and licence; `extended` adds what the program is built on. Headless, the text is a
    /// message.
    void showAboutBox(bool extended);
    /// The dialog with what the user may set; headless, the line that lists it.
    void showPreferences();

    /// The service of interface T that was added last, or null:
    /// `Application::get()->service<Vs::Services::ApplicationEditionService>()`.
    template <class T>
    T* service() const
    {
        for (auto candidate = m_services.rbegin(); candidate != m_services.rend(); ++candidate)
            if (T* found = Vs::cast<T>(candidate->get()))
                return found;
        return nullptr;
    }
    void addService(std::unique_ptr<Vs::Object> service) { m_services.push_back(std::move(service)); }
    void removeService(const Vs::Object* service)
    {
        std::erase_if(m_services, [&](const auto& candidate) { return candidate.get() == service; });
    }

    /// The parent for dialogs: the active workspace window's widget; null as long as no window is shown.
    QWidget* mainWidget() const;

    /// Shows a message that needs no answer: in the window's status bar and alert list, and on the text
    /// output's error side. Never blocks.
    void inform(const std::wstring& message);

private:
    Application();
    ~Application() override;
    void wakeUp();
    void runDeferred();
    void runIdle();
    template <class Action>
    void guarded(Action&& action);

    struct Data;
    std::unique_ptr<Data> m_data;
    std::vector<std::unique_ptr<Vs::Object>> m_services;
    std::vector<std::string> m_windowParts;
    bool m_exiting = false;
};

} // namespace Vu
