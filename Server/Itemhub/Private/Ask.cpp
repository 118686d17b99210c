#include "Server/Itemhub/Private/Ask.h"

#include "Server/Base/Progress.h"
#include "Server/Base/Require.h"
#include "Server/Itemhub/Private/Session.h"

#include <atomic>
#include <exception>
#include <future>
#include <memory>

namespace Vs::Itemhub {
namespace {

/// How often the main thread processes the window's events while it waits.
constexpr std::chrono::milliseconds kLook{20};

double fraction(std::uint64_t done, std::uint64_t total)
{
    return total > 0 ? static_cast<double>(done) / static_cast<double>(total) : 0;
}

} // namespace

bool MainThreadTurn::ask(const std::function<bool()>& question)
{
    // Shared, since the main thread may still be in it when the answer has arrived.
    const auto task = std::make_shared<std::packaged_task<bool()>>(question);
    std::future<bool> answer = task->get_future();
    {
        const std::lock_guard lock(m_mutex);
        m_question = [task] { (*task)(); };
    }
    return answer.get();
}

void MainThreadTurn::answer()
{
    std::function<void()> question;
    {
        const std::lock_guard lock(m_mutex);
        question.swap(m_question);
    }
    if (question)
        question();
}

void runBeside(const std::wstring& title, const std::function<void(const Watch&)>& work, MainThreadTurn* turn)
{
    if (!Detail::onMainThread())
        return work({});
    std::atomic<bool> cancelled = false;
    std::atomic<std::uint64_t> done = 0, total = 0;
    const Watch watch{[&](std::uint64_t now, std::uint64_t all) {
        done = now;
        total = all;
        return !cancelled && !Progress::cancelled();
    }};
    ProgressScope scope(title);
    std::future<void> result = std::async(std::launch::async, [&] { work(watch); });
    while (result.wait_for(kLook) != std::future_status::ready) {
        if (!scope.update(fraction(done, total)))
            cancelled = true;
        if (turn)
            turn->answer();
    }
    result.get();
}

void askStore(const std::wstring& title, const std::function<void(ItemStore&, const Watch&)>& action)
{
    const std::shared_ptr<ItemStore> store = Session::get().needed();
    try {
        runBeside(title, [&](const Watch& watch) { action(*store, watch); });
    } catch (const Web::ConnectionException&) {
        Session::get().answered(store.get(), false);
        throw;
    } catch (const ItemStore::Cancelled&) {
        throw;
    } catch (...) {
        Session::get().answered(store.get(), true);
        throw;
    }
    Session::get().answered(store.get(), true);
}

} // namespace Vs::Itemhub
