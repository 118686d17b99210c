#include "Server/DataModel/Native/FileCheck.h"

#include "Server/DataModel/FileChecks.h"
#include "Server/DataModel/Model/ModelFile.h"
#include "Server/DataModel/Model/PlainFile.h"
#include "Server/DataModel/Native/Package.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <linux/ioprio.h>
#include <mutex>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

namespace Vs::Native {

struct FileCheck::Work
{
    std::shared_ptr<const FileMapping> file;
    std::vector<Part> parts;
    Tell tell; // of the main thread alone
    std::atomic<bool> ended = false;
    std::vector<std::wstring> damaged;

    bool isSound(const Package& package, const Part& part)
    {
        try {
            package.check(part.entry, [this] { return !ended; });
            // The package may have been written when its content was damaged already.
            if (part.model && !ended)
                file->unneeded(part.model->kernelData());
            return true;
        } catch (const std::runtime_error&) {
            return false;
        }
    }

    // By the file, if it is still there, since a disk that can't be read any more then gives an error;
    // reading a mapping of it would end the program.
    std::unique_ptr<Package> open() const
    {
        const int descriptor = file->reopen();
        return descriptor < 0 ? std::make_unique<Package>(file)
                              : std::make_unique<Package>(std::make_unique<PlainFile>(descriptor));
    }

    void run()
    {
        try {
            const auto package = open();
            for (const Part& part : parts)
                if (!ended && !isSound(*package, part))
                    damaged.push_back(part.what);
        } catch (const std::runtime_error&) {
            // It was sound as a package when it was opened; another program has written into it since.
        }
    }
};

namespace {

void askForLittle()
{
    constexpr int kLeastShare = 19;
    const pid_t thread = gettid();
    setpriority(PRIO_PROCESS, static_cast<id_t>(thread), kLeastShare);
    syscall(SYS_ioprio_set, IOPRIO_WHO_PROCESS, thread, IOPRIO_PRIO_VALUE(IOPRIO_CLASS_IDLE, 0));
}

// What was just opened is about to be drawn, which needs the disk and all processors.
constexpr std::chrono::seconds kAfterOpening(2);

/// The one thread, from the first file to the end of the program.
class Checker
{
public:
    static Checker& get()
    {
        // What it uses must still exist when it ends.
        static_cast<void>(FileChecks::results());
        static Checker checker;
        return checker;
    }
    /// Null before the first file, and when the program ends.
    static Checker* known() { return s_known; }

    void add(std::shared_ptr<FileCheck::Work> work)
    {
        const std::lock_guard lock(m_mutex);
        m_waiting.push_back(std::move(work));
        if (!m_thread.joinable())
            m_thread = std::thread([this] { run(); });
        m_changed.notify_all();
    }
    /// Lets go of a file that was closed, which others may be waiting for.
    void forget(const std::shared_ptr<FileCheck::Work>& work)
    {
        const std::lock_guard lock(m_mutex);
        std::erase(m_waiting, work);
        m_changed.notify_all();
    }
    void waitForAll()
    {
        std::unique_lock lock(m_mutex);
        m_hurry = true;
        m_changed.notify_all();
        m_changed.wait(lock, [this] { return m_waiting.empty() && !m_running; });
        m_hurry = false;
    }

private:
    Checker() { s_known = this; }
    ~Checker()
    {
        s_known = nullptr;
        {
            const std::lock_guard lock(m_mutex);
            m_over = true;
            m_waiting.clear();
            if (m_running)
                m_running->ended = true;
            m_changed.notify_all();
        }
        if (m_thread.joinable())
            m_thread.join();
    }

    void run()
    {
        askForLittle();
        std::unique_lock lock(m_mutex);
        for (;;) {
            m_changed.wait(lock, [this] { return m_over || !m_waiting.empty(); });
            m_changed.wait_for(lock, kAfterOpening, [this] { return m_over || m_hurry; });
            if (m_over)
                return;
            if (m_waiting.empty())
                continue;
            m_running = std::move(m_waiting.front());
            m_waiting.pop_front();
            lock.unlock();
            m_running->run();
            if (!m_running->damaged.empty())
                FileChecks::results().post([work = m_running] {
                    if (!work->ended)
                        work->tell(work->damaged);
                });
            lock.lock();
            m_running.reset();
            m_changed.notify_all();
        }
    }

    static inline Checker* s_known = nullptr; // of the main thread alone

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<std::shared_ptr<FileCheck::Work>> m_waiting;
    std::shared_ptr<FileCheck::Work> m_running;
    bool m_over = false, m_hurry = false;
    std::thread m_thread;
};

} // namespace

FileCheck::FileCheck(std::shared_ptr<const FileMapping> file, std::vector<Part> parts, Tell tell)
    : m_work(std::make_shared<Work>())
{
    m_work->file = std::move(file);
    m_work->parts = std::move(parts);
    m_work->tell = std::move(tell);
    if (!m_work->parts.empty())
        Checker::get().add(m_work);
}

FileCheck::~FileCheck()
{
    m_work->ended = true;
    if (Checker* checker = Checker::known())
        checker->forget(m_work);
}

void FileCheck::waitForAll()
{
    Checker::get().waitForAll();
}

} // namespace Vs::Native
