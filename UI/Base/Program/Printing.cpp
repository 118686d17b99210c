#include "UI/Base/Program/Printing.h"

#include "Server/Base/SiblingLibrary.h"
#include "Server/Base/Status.h"
#include "Server/Base/Strings.h"
#include "UI/Base/Program/Application.h"

#include <boost/algorithm/string/predicate.hpp>

#include <algorithm>
#include <stdexcept>

namespace Vu {

namespace {

/// Qt's print support brings the client of the print service along, which a run without printing doesn't
/// load.
const Vs::SiblingLibrary& library()
{
    static const Vs::SiblingLibrary opened("libVuPrint10.so");
    return opened;
}

} // namespace

const std::vector<Paper>& papers()
{
    static const std::vector<Paper> all = {
        {L"A4", 210, 297},  {L"A3", 297, 420},         {L"A2", 420, 594},        {L"A1", 594, 841},
        {L"A0", 841, 1189}, {L"Letter", 215.9, 279.4}, {L"Legal", 215.9, 355.6}, {L"Tabloid", 279.4, 431.8}};
    return all;
}

const Paper* findPaper(const std::wstring& name)
{
    const auto found = std::ranges::find_if(
        papers(), [&](const Paper& paper) { return boost::algorithm::iequals(paper.name, name); });
    return found != papers().end() ? &*found : nullptr;
}

std::vector<std::wstring> printers()
{
    using List = void (*)(std::vector<std::wstring> & names);
    std::vector<std::wstring> names;
    library().function<List>("quilletListPrinters")(names);
    return names;
}

bool printPage(const VectorPage& page, const std::wstring& printer, Vs::Status& status)
{
    using Print = bool (*)(const VectorPage& page, const std::wstring& printer, Vs::Status& status);
    return library().function<Print>("quilletPrintPage")(page, printer, status);
}

bool askPrint(PrintWish& wish, std::wstring& printer, const PageMaker& maker, Vs::Status& status)
{
    using Ask = bool (*)(PrintWish & wish, std::wstring & printer, const PageMaker& maker, Vs::Status& status,
                         QWidget* parent);
    return library().function<Ask>("quilletAskPrint")(wish, printer, maker, status,
                                                      Application::get()->mainWidget());
}

} // namespace Vu
