#pragma once

#include "UI/Application/HandOver.h"

#include <functional>
#include <memory>

namespace Quillet {

/// The window's side of `handOver`: a socket in the user's runtime folder, which nobody else can open. Among
/// several programs the one that was active last receives the files. Main thread only.
class HandOverReceiver
{
public:
    using Take = std::function<void(const HandedOver&)>;

    /// Calls `take` in the main loop for whatever is handed over. If no socket can be created, that is
    /// logged, and nothing is received.
    explicit HandOverReceiver(Take take);
    ~HandOverReceiver();
    HandOverReceiver(const HandOverReceiver&) = delete;
    HandOverReceiver& operator=(const HandOverReceiver&) = delete;

    /// Opens the files in the active window, beside the document shown, has the links followed, and brings
    /// the window to the front.
    static void openInWindow(const HandedOver& files);

private:
    struct Data;
    std::unique_ptr<Data> m_data;
};

} // namespace Quillet
