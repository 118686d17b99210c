#pragma once

#include "UI/Base/Program/Printing.h"

class QPrinter;
class QWidget;

namespace Vu {

/// Prints the page on a printer with the settings that it has; its paper becomes that of the page. False,
/// with the reason in the status, if the printer doesn't take it.
bool printOn(QPrinter& printer, const VectorPage& page, Vs::Status& status);

} // namespace Vu

// What UI/Base/Program/Printing.h calls. In a library of its own, VuPrint10, which is opened with the first
// page.
extern "C" {
void quilletListPrinters(std::vector<std::wstring>& names);
bool quilletPrintPage(const Vu::VectorPage& page, const std::wstring& printer, Vs::Status& status);
bool quilletAskPrint(Vu::PrintWish& wish, std::wstring& printer, const Vu::PageMaker& maker,
                     Vs::Status& status, QWidget* parent);
}
