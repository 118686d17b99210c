// The subject area "Selection": what is selected in the active model, for transcripts and scripts.

#include "Server/Base/Status.h"
#include "Server/Base/TextCommand.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "Server/DataModel/Selection/SelectedPaths.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Command/TextRows.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SessionMgr.h"

#include <boost/algorithm/string/join.hpp>

namespace Vu {
namespace {

using Vs::TextCommandParameters;
using Vs::TextCommandResult;
using Selections = std::vector<Vs::StrongRef<Vs::Selection>>;

constexpr const wchar_t* kArea = L"Selection";

constexpr AreaRow kSelectionAreaRow = {kArea, L"Commands that change the selection in the active model",
                                       true};

/// What a line does with the objects it names.
using Change = void (*)(Vs::SelectionSet& selected, const Selections& named);

void select(Vs::SelectionSet& selected, const Selections& named)
{
    selected.replace(named);
}

void add(Vs::SelectionSet& selected, const Selections& named)
{
    selected.add(named);
}

void remove(Vs::SelectionSet& selected, const Selections& named)
{
    selected.remove(named);
}

void clear(Vs::SelectionSet& selected, const Selections&)
{
    selected.clear();
}

void list(Vs::SelectionSet&, const Selections&) {}

struct SelectionRow
{
    const wchar_t* name;
    const wchar_t* help;
    Change change;
    bool tells = false;
};

// clang-format off
constexpr SelectionRow kSelect = {L"Select", L"<path> [<path> ...] Selects these objects and nothing else. A path is like Plate:1/Bolt:2/Body1/Edge3", &select};
constexpr SelectionRow kAdd    = {L"Add",    L"<path> [<path> ...] Selects these objects as well", &add};
constexpr SelectionRow kRemove = {L"Remove", L"<path> [<path> ...] Takes these objects out of the selection", &remove};
constexpr SelectionRow kClear  = {L"Clear",  L"Selects nothing", &clear};
constexpr SelectionRow kList   = {L"List",   L"Lists the paths of what is selected", &list, true};
// clang-format on

template <const SelectionRow& kRow>
class TextCmdSelection : public Vs::PythonEntry<TextCmdSelection<kRow>, Vs::TextCommand>
{
public:
    TextCmdSelection()
        : Vs::PythonEntry<TextCmdSelection<kRow>, Vs::TextCommand>(kArea, kRow.name, kRow.help, "", true,
                                                                   true)
    {
    }

    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        const AssetSession* session = SessionMgr::get()->activeAssetSession();
        if (!session)
            return {1, localized("SelectionNoModel", "There is no active model to select in.")};
        const bool takesPaths = *kRow.help == L'<';
        if ((parameters.parameters() > 0) != takesPaths)
            return {1, std::wstring(L"Usage: ") + kArea + L"." + kRow.name + L" " + kRow.help};
        Vs::Status status;
        Selections named;
        for (unsigned i = 0; i < parameters.parameters(); ++i) {
            const auto path = Vs::findPath(*session->asset(), parameters[i], status);
            if (!path || !Vs::resolvePath(*path, *session->asset(), status))
                return {1, status.toString()};
            named.emplace_back(new Vs::LogicalSelection(session->asset(), *path, nullptr));
        }
        Vs::SelectionSet& selected = session->selectionManager()->selectionSet();
        kRow.change(selected, named);
        if (!kRow.tells)
            return {0, {}};
        return {0, boost::algorithm::join(Vs::pathTextsIn(selected, *session->asset()), L"\n")};
    }
};

/// Whether undo and redo restore the selection and the camera, which are not part of the model.
class TextCmdSelectionUndo : public Vs::PythonEntry<TextCmdSelectionUndo, Vs::TextCommand>
{
public:
    TextCmdSelectionUndo()
        : PythonEntry(kArea, L"Undo",
                      L"[on|off] Shows whether undo and redo also bring back what was selected and where the "
                      L"camera was, or has them do so from now on or not",
                      "", true, true)
    {
    }

    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        auto& option = UIBaseOptionGroup::get()->undoSelectionAndCamera;
        const bool on = parameters.parameters() == 1 && parameters[0] == L"on";
        if (parameters.parameters() > 1 || (parameters.parameters() == 1 && !on && parameters[0] != L"off"))
            return {1, std::wstring(L"Usage: ") + kArea + L"." + name() + L" " + help()};
        if (parameters.parameters() == 1)
            option(on);
        return {0, option() ? L"on" : L"off"};
    }
};

const SubjectArea<kSelectionAreaRow> kSelectionArea;
TextCmdSelection<kSelect> theSelect;
TextCmdSelection<kAdd> theAdd;
TextCmdSelection<kRemove> theRemove;
TextCmdSelection<kClear> theClear;
TextCmdSelection<kList> theList;
TextCmdSelectionUndo theUndo;

} // namespace
} // namespace Vu
