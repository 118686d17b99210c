#include "UI/Base/Command/UsageEvents.h"

namespace vuGA {

boost::signals2::signal<void(const std::string&)> gaCommandEvent;

} // namespace vuGA
