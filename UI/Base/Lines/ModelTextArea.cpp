// The subject area "Model": properties of the active model as a whole, for scripts and checks.

#include "Server/Base/TextCommand.h"
#include "Server/DataModel/ModelDigest.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Command/TextRows.h"
#include "UI/Base/Session/ActiveAssetUtils.h"

#include <boost/format.hpp>

namespace Vu {

namespace {

constexpr const wchar_t* kArea = L"Model";

constexpr AreaRow kModelAreaRow = {kArea, L"Commands about the active model as a whole"};

class TextCmdModelDigest : public Vs::PythonEntry<TextCmdModelDigest, Vs::TextCommand>
{
public:
    TextCmdModelDigest()
        : PythonEntry(
              kArea, L"Digest",
              L"Gives a number of 16 digits that is the same for equal models: names, places, colours, "
              L"visibility, shapes and settings count",
              "", true, true)
    {
    }

    Vs::TextCommandResult execute(const Vs::TextCommandParameters&) override
    {
        const Vs::Asset* asset = ActiveAssetUtils::asset();
        if (!asset)
            return {1, localized("ModelNoModel", "There is no active model.")};
        return {0, (boost::wformat(L"%016x") % Vs::modelDigest(*asset)).str()};
    }
};

const SubjectArea<kModelAreaRow> theArea;
TextCmdModelDigest theDigest;

} // namespace

} // namespace Vu
