#pragma once

#include "Server/Itemhub/ItemStore.h"

#include <functional>
#include <string>
#include <utility>

namespace Vs::Itemhub {

/// Does something that waits for the network. On the main thread it runs beside, while the window lives and
/// shows progress under the title, and Esc cancels; elsewhere it runs here. What it throws comes out here,
/// Cancelled, too.
void runBeside(const std::wstring& title, const std::function<void(const Watch&)>& work);

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
