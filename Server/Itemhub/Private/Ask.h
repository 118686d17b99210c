#pragma once

#include "Server/Itemhub/ItemStore.h"

#include <functional>
#include <mutex>
#include <string>
#include <utility>

namespace Vs::Itemhub {

/// What work beside the main thread asks of it.
class MainThreadTurn
{
public:
    /// For the work: waits until the main thread has done it, and gives its answer; what it throws comes out
    /// here.
    bool ask(const std::function<bool()>& question);
    /// For the main thread: does what is asked, if anything is.
    void answer();

private:
    std::mutex m_mutex;
    std::function<void()> m_question;
};

/// Does something that waits for the network. On the main thread it runs beside, while the window lives and
/// shows progress under the title, and Esc cancels; elsewhere it runs here. What it throws comes out here,
/// Cancelled, too. What the work asks by `turn`, which may be null, is done meanwhile; on the main thread
/// only.
void runBeside(const std::wstring& title, const std::function<void(const Watch&)>& work,
               MainThreadTurn* turn = nullptr);

/// Asks the store of the session, and notes whether it answered. NotSignedIn without a session. `action`
/// takes the store and a watch.
void askStore(const std::wstring& title, const std::function<void(ItemStore&, const Watch&)>& action);

/// The same for what answers with something: nothing (a default value) if the person cancelled.
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
