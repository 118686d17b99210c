#pragma once

#include "Server/Base/Task.h"

namespace Vu {
class CommandBase;
}

/// Ends a passive measure command and hands its value on, outside of the event that gave it. Known to the
/// queue by its bare name.
class EndMeasureTask : public Vs::Implements<EndMeasureTask, Vs::Task>
{
public:
    /// The command isn't owned; it takes the task out of the queue if it ends before.
    EndMeasureTask(double value, Vu::CommandBase* command) : m_value(value), m_command(command) {}

    bool run() override;

private:
    double m_value;
    Vu::CommandBase* m_command;
};
