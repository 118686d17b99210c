#pragma once

#include "UI/Base/Command/CommandBase.h"

namespace Vu {

/// A one-shot command: `onBegin`, `onExecute`, `onEnd`, and it is gone. It ends with reason Commit if the
/// status it leaves is ok, and with Cancel otherwise. While it runs it isn't the manager's active command:
/// that is the interactive one beneath, if any.
class SimpleCommand : public Vs::Implements<SimpleCommand, CommandBase>
{
public:
    using Implements::Implements;

    void onBegin() override;
    void onEnd(ETerminationReason reason) override;
    virtual void onExecute(Vs::Status& status) = 0;
};

} // namespace Vu
