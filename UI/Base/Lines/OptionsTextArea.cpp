// The subject area "Options": the contents of the preferences dialog as lines, and the tour of the window.

#include "Server/Base/Status.h"
#include "Server/Base/TextCommand.h"
#include "Server/Base/TextCommandHelp.h"
#include "Server/DataModel/ApplicationEditionService.h"
#include "UI/Base/Command/TextRows.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/Preferences.h"
#include "UI/Base/Program/Tour.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <boost/algorithm/string/predicate.hpp>

namespace Vu {
namespace {

using Vs::TextCommandParameters;
using Vs::TextCommandResult;

constexpr const wchar_t* kArea = L"Options";

constexpr AreaRow kOptionsAreaRow = {kArea, L"The user's preferences"};

TextCommandResult noSuchOption(const std::wstring& id)
{
    std::vector<std::wstring> ids;
    for (const Preference& preference : Preferences::all())
        ids.push_back(preference.id());
    const std::wstring nearest = Vs::nearestName(id, ids);
    return {1, L"There is no option \"" + id + L"\"" +
                   (nearest.empty() ? L"; see Options.List." : L". Did you mean " + nearest + L"?")};
}

class TextCmdOptionsList : public Vs::PythonEntry<TextCmdOptionsList, Vs::TextCommand>
{
public:
    TextCmdOptionsList()
        : PythonEntry(kArea, L"List",
                      L"[<text>] Lists the user's preferences with their values: all, or those whose name or "
                      L"title contains the text.",
                      "%s", true, true)
    {
    }

    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        const std::wstring wanted = parameters.parameters() > 0 ? parameters[0] : L"";
        std::wstring lines;
        for (const Preference& preference : Preferences::all())
            if (boost::icontains(preference.id(), wanted) || boost::icontains(preference.title(), wanted))
                lines += (lines.empty() ? L"" : L"\n") + preference.id() + L" = " + preference.text() +
                         L"  (" + preference.title() + L')';
        return {0, lines};
    }
};

class TextCmdOptionsGet : public Vs::PythonEntry<TextCmdOptionsGet, Vs::TextCommand>
{
public:
    TextCmdOptionsGet()
        : PythonEntry(kArea, L"Get", L"<option> Prints the value of one of the user's preferences.", "%s",
                      true, true)
    {
    }

    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        if (parameters.parameters() == 0)
            return {1, L"No option specified as parameter; see Options.List"};
        const Preference* preference = Preferences::find(parameters[0]);
        return preference ? TextCommandResult{0, preference->text()} : noSuchOption(parameters[0]);
    }
};

class TextCmdOptionsSet : public Vs::PythonEntry<TextCmdOptionsSet, Vs::TextCommand>
{
public:
    TextCmdOptionsSet()
        : PythonEntry(
              kArea, L"Set",
              L"<option> [<value>] Sets one of the user's preferences; without a value to its default.",
              "%s%s", true, true)
    {
    }

    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        if (parameters.parameters() == 0)
            return {1, L"No option specified as parameter; see Options.List"};
        const Preference* preference = Preferences::find(parameters[0]);
        if (!preference)
            return noSuchOption(parameters[0]);
        if (parameters.parameters() == 1) {
            preference->reset();
            return {0, {}};
        }
        const std::wstring refusal = preference->setText(parameters[1]);
        return {refusal.empty() ? 0u : 1u, refusal.empty() ? refusal : preference->id() + L": " + refusal};
    }
};

class TextCmdOptionsTourGuide : public Vs::PythonEntry<TextCmdOptionsTourGuide, Vs::TextCommand>
{
public:
    TextCmdOptionsTourGuide()
        : PythonEntry(kArea, L"TourGuide",
                      L"Leads through the parts of the window; without a window, prints what the tour says.",
                      "", true, true)
    {
    }

    TextCommandResult execute(const TextCommandParameters&) override
    {
        const auto* edition = Application::get()->service<Vs::Services::ApplicationEditionService>();
        const std::wstring path = edition ? edition->tourGuideXmlPath() : std::wstring();
        if (path.empty())
            return {1, L"This edition of the program has no tour."};
        Vs::Status status;
        const std::vector<TourStep> steps = readTour(path, status);
        if (status.isError())
            return {1, status.toString()};
        WorkspaceWindow* window = WorkspaceWindow::activeWorkspaceWindow();
        if (window && window->shown() && !Application::testing())
            return window->showTour(steps)
                       ? TextCommandResult{0, {}}
                       : TextCommandResult{1, L"Nothing that the tour describes is shown now."};
        std::wstring lines;
        for (const TourStep& step : steps)
            lines += (lines.empty() ? L"" : L"\n") + step.title + L": " + step.text;
        return {0, lines};
    }
};

const SubjectArea<kOptionsAreaRow> kOptionsArea;
TextCmdOptionsList kList;
TextCmdOptionsGet kGet;
TextCmdOptionsSet kSet;
TextCmdOptionsTourGuide kTourGuide;

} // namespace
} // namespace Vu
