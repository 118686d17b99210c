#pragma once

#include <boost/filesystem/path.hpp>

namespace Vs {

/// Whether the disk of the file answers within a few seconds, if only that there is no such file. A share of
/// a server that is gone keeps whoever asks it for as long as it is gone: a thread is left with it then.
[[nodiscard]] bool diskAnswers(const boost::filesystem::path& file);

} // namespace Vs
