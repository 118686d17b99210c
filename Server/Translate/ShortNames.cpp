#include "Server/Translate/ShortNames.h"

#include <TDF_ChildIDIterator.hxx>
#include <TDataStd_Name.hxx>

namespace Vs::Translate {

namespace {

// The kernel's own reader takes 16,000 bytes for one text, in which some characters need twelve.
constexpr int kLongest = 1200;

} // namespace

void shortenNames(Kernel::XdeModel& model)
{
    for (TDF_ChildIDIterator each(model.document()->Main(), TDataStd_Name::GetID(), true); each.More();
         each.Next()) {
        const auto name = Handle(TDataStd_Name)::DownCast(each.Value());
        if (name->Get().Length() <= kLongest)
            continue;
        TCollection_ExtendedString shorter = name->Get();
        shorter.Trunc(kLongest);
        name->Set(shorter);
    }
}

} // namespace Vs::Translate
