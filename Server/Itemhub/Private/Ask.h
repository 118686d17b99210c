#pragma once

#include "Server/Itemhub/ItemStore.h"

#include <functional>
#include <mutex>
#include <string>
#include <utility>

namespace Vs::Itemhub {

/// Calls to the main thread from work that runs beside it.
class MainThreadTurn
{
public:
    /// For the work: runs it on the main thread, waits, and returns the result; rethrows exceptions here.
    bool ask(const std::function<bool()>& question);
    /// For the main thread: runs what was requested, if anything.
    void answer();

private:
    std::mutex m_mutex;
    std::function<void()> m_question;
};

/// Runs something that waits for the network. On the main thread it runs on another thread, while the
/// window stays responsive and shows progress with the title, and Esc cancels; elsewhere it runs here.
/// Exceptions, including Cancelled, are rethrown here. Calls through `turn`, which may be null, are served
/// meanwhile, on the main thread only.
void runBeside(const std::wstring& title, const std::function<void(const Watch&)>& work,
               MainThreadTurn* turn = nullptr);

/// Sends a request to the session's store, and notes whether it responded. NotSignedIn without a session.
/// `action` takes the store and a watch.
void askStore(const std::wstring& title, const std::function<void(ItemStore&, const Watch&)>& action);

/// The same for a request with a result: a default value if the user cancelled.
template <class Action>
auto ask(const std::wstring& title, Action&& action)
{
    decltype(action(std::declval<ItemStore&>(), std::declval<const Watch&>())) answer{};
    try {
        askStore(title, [&](ItemStore& store, const Watch& watch) { answer = action(store, watch); });
    } catch (const ItemStore::Cancelled&) {
        answer = {};
    }
    return answer;
}

} // namespace Vs::Itemhub
