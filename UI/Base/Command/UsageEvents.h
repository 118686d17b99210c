#pragma once

#include <boost/signals2/signal.hpp>

#include <string>

namespace vuGA {

/// The process-wide signal that carries usage keys, such as "Quillet.SaveDocumentCmd". Nothing listens unless
/// the user agreed to reports. Main thread only.
extern boost::signals2::signal<void(const std::string&)> gaCommandEvent;

} // namespace vuGA
