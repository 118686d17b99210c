#pragma once

#include "Server/Base/Task.h"

namespace Vu {

/// Brings the start page up to date and in front once the home screen has been painted. Does nothing without
/// a window.
class ShowWelcomeScreenTask : public Vs::Implements<ShowWelcomeScreenTask, Vs::Task>
{
public:
    ShowWelcomeScreenTask() : Implements(1) {}
    bool run() override;
};

} // namespace Vu
