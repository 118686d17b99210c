#include "UI/Base/Command/SimpleCommand.h"

namespace Vu {

void SimpleCommand::onBegin() {}

void SimpleCommand::onEnd(ETerminationReason) {}

} // namespace Vu
