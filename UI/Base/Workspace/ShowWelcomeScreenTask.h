#pragma once

#include "Server/Base/Task.h"

namespace Vu {

/// Tells the workspace event sites that the home screen has been painted. Does nothing without a window.
class ShowWelcomeScreenTask : public Vs::Implements<ShowWelcomeScreenTask, Vs::Task>
{
public:
    ShowWelcomeScreenTask() : Implements(1) {}
    bool run() override;
};

} // namespace Vu
