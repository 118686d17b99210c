#pragma once

#include "Server/Base/Object.h"
#include "Server/Base/Progress.h"

#include <memory>

namespace Vu {

/// Shows the progress of long work in the window's status bar, with a button that cancels. While work runs
/// the window is kept alive, but starts no command. Without a window it only keeps Ctrl-C working.
class ProgressBar : public Vs::Implements<ProgressBar>, public Vs::ProgressSink
{
public:
    static ProgressBar* get();

    /// Switched off, nothing is shown any more, nor can it be cancelled: for good if the program ends, else
    /// up to the end of the event.
    void enable(bool value);
    bool enabled() const { return m_enabled; }

    /// Whether the window waits for work; commands started by the user are refused meanwhile.
    bool busy() const { return m_depth > 0; }

    void begin(const std::wstring& title) override;
    bool update(double fraction, const std::wstring& step) override;
    void end() override;

private:
    ProgressBar();
    ~ProgressBar() override;

    struct Data;
    std::unique_ptr<Data> m_data;
    bool m_enabled = true;
    int m_depth = 0;
};

} // namespace Vu
