#pragma once

#include "UI/Base/Program/VectorPage.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace Vs {
class Status;
}

namespace Vu {

/// What is to be printed, and how.
struct PrintWish
{
    /// The view as it is shown, the model alone, or a line drawing at scale.
    enum class What { View, Model, Drawing };

    What what = What::View;
    std::wstring paper = L"A4"; ///< One of `papers()`.
    bool portrait = false;
    double margin = 10; ///< Around a picture, in millimetres.
    std::wstring scale; ///< Of a drawing, such as "1:2"; empty for a usual one that fits.
    bool hidden = false;
    int dotsPerInch = 300; ///< Of a picture.
};

inline constexpr int kWidestPrintMargin = 50; ///< Millimetres.

struct Paper
{
    const wchar_t* name;
    double shortSide, longSide; ///< In millimetres.
};
const std::vector<Paper>& papers();
/// The case of letters doesn't matter; null for an unknown one.
const Paper* findPaper(const std::wstring& name);

/// Makes the page of a wish; nothing, with the reason in the status, if it can't.
using PageMaker = std::function<std::optional<VectorPage>(const PrintWish& wish, Vs::Status& status)>;

/// The names of the printers that the system knows, its usual one first. Needs the GUI, as do those below.
std::vector<std::wstring> printers();

/// False, with the reason in the status, if the printer doesn't take the page.
bool printPage(const VectorPage& page, const std::wstring& printer, Vs::Status& status);

/// Asks with a preview what is to be printed where, starting from `wish`. A page for a printer is printed
/// when it returns; `printer` is empty if the page is to be written to a file, for which the dialog doesn't
/// ask. False if the user cancelled, or with the reason in the status.
bool askPrint(PrintWish& wish, std::wstring& printer, const PageMaker& maker, Vs::Status& status);

} // namespace Vu
