#pragma once

#include <string>
#include <vector>

namespace Vs {
class Status;
}

namespace Vu {

/// One stop of the tour through the window.
struct TourStep
{
    std::string contents; ///< The contents key of the area that is lit.
    std::wstring title;
    std::wstring text;
};

/// Reads `<tour><step contents="..." title="..." titleKey="..." text="..." textKey="..."/>...</tour>`; the
/// keys are those of the texts in the user's language. A step without contents is an error and left out.
[[nodiscard]] std::vector<TourStep> readTour(const std::wstring& path, Vs::Status& status);

} // namespace Vu
