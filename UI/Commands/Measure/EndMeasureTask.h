#pragma once

#include "Server/Base/Task.h"

namespace Vu {
class CommandBase;
}

/// Ends a passive measure command and delivers its value, outside of the event that produced it. Known to the
/// queue by its bare name.
class EndMeasureTask : public Vs::Implements<EndMeasureTask, Vs::Task>
{
public:
    /// The command isn't owned; it removes the task from the queue if it ends first.
    EndMeasureTask(double value, Vu::CommandBase* command) : m_value(value), m_command(command) {}

    bool run() override;

private:
    double m_value;
    Vu::CommandBase* m_command;
};
