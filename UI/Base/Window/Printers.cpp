#include "UI/Base/Window/Printers.h"

#include "Server/Base/Status.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Window/PagePainter.h"
#include "UI/Base/Window/PrintDialog.h"

#include <QPainter>
#include <QPrinter>
#include <QPrinterInfo>

namespace Vu {

bool printOn(QPrinter& printer, const VectorPage& page, Vs::Status& status)
{
    const bool wide = page.width > page.height;
    const QSizeF upright(wide ? page.height : page.width, wide ? page.width : page.height);
    printer.setPageSize(QPageSize(upright, QPageSize::Millimeter));
    printer.setPageOrientation(wide ? QPageLayout::Landscape : QPageLayout::Portrait);
    printer.setFullPage(true);
    printer.setDocName(QString::fromStdWString(page.title));
    constexpr double kMillimetresPerInch = 25.4;
    QPainter painter;
    bool printed = painter.begin(&printer);
    if (printed) {
        paintPage(page, painter, printer.resolution() / kMillimetresPerInch);
        printed = painter.end() && printer.printerState() != QPrinter::Error &&
                  printer.printerState() != QPrinter::Aborted;
    }
    if (!printed)
        status.addError(localizedFormat("PrinterRefused", "The printer \"%1%\" doesn't take the page.",
                                        printer.printerName().toStdWString()));
    return printed;
}

} // namespace Vu

extern "C" void quilletListPrinters(std::vector<std::wstring>& names)
{
    for (const QString& name : QPrinterInfo::availablePrinterNames())
        names.push_back(name.toStdWString());
    const std::wstring usual = QPrinterInfo::defaultPrinterName().toStdWString();
    std::ranges::stable_partition(names, [&](const std::wstring& name) { return name == usual; });
}

extern "C" bool quilletPrintPage(const Vu::VectorPage& page, const std::wstring& printer, Vs::Status& status)
{
    const QPrinterInfo found = QPrinterInfo::printerInfo(QString::fromStdWString(printer));
    if (!found.isNull()) {
        QPrinter opened(found, QPrinter::HighResolution);
        return Vu::printOn(opened, page, status);
    }
    std::wstring others;
    for (const QString& name : QPrinterInfo::availablePrinterNames())
        others += (others.empty() ? L"" : L", ") + name.toStdWString();
    status.addError(
        others.empty()
            ? Vu::localizedFormat("PrinterNone",
                                  "No printer is named \"%1%\", and none is set up on this system. You can "
                                  "print to a PDF file instead.",
                                  printer)
            : Vu::localizedFormat("PrinterUnknown", "No printer is named \"%1%\". Available printers: %2%.",
                                  printer, others));
    return false;
}

extern "C" bool quilletAskPrint(Vu::PrintWish& wish, std::wstring& printer, const Vu::PageMaker& maker,
                                Vs::Status& status, QWidget* parent)
{
    Vu::PrintDialog dialog(wish, maker, parent);
    if (dialog.exec() != QDialog::Accepted)
        return false;
    wish = dialog.wish();
    printer = dialog.printerName().toStdWString();
    return printer.empty() || dialog.print(status);
}
