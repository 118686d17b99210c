#include "Server/Base/TextCommand.h"

namespace Vu::Commands {
namespace {

struct AreaRow
{
    const wchar_t* name;
    const wchar_t* description;
    bool forTranscripts;
};

// clang-format off
constexpr AreaRow kVuCommands  = {L"VuCommands",  L"Text commands that do common command in VuCommands used for transcript purposes", true};
constexpr AreaRow kAsset       = {L"Asset",       L"Commands that create, view, close assets using the UI", false};
constexpr AreaRow kCamera      = {L"Camera",      L"Text commands to manipulate the current camera", true};
constexpr AreaRow kDocument    = {L"Document",    L"Commands that open, save etc documents using the UI", false};
constexpr AreaRow kNamedView   = {L"NamedView",   L"Commands that add, update etc named views", false};
constexpr AreaRow kSleeper     = {L"Sleeper",     L"Text commands that sleep some time", true};
constexpr AreaRow kSplitView   = {L"SplitView",   L"Text commands that control split view behavior", true};
constexpr AreaRow kPerformance = {L"Performance", L"Text commands related to performance validation.", true};
// clang-format on

template <const AreaRow& kRow>
class SubjectArea : public Vs::PythonEntry<SubjectArea<kRow>, Vs::TextCommandSubjectArea>
{
public:
    SubjectArea()
        : Vs::PythonEntry<SubjectArea<kRow>, Vs::TextCommandSubjectArea>(kRow.name, kRow.description,
                                                                         kRow.forTranscripts)
    {
    }

    /// Surplus parameters are ignored here, as old transcripts expect.
    Vs::TextCommandSubjectArea::Checks checks() const override
    {
        return Vs::TextCommandSubjectArea::Checks::Flags;
    }
};

SubjectArea<kVuCommands> TextCommandSubjectAreaVuCommands;
SubjectArea<kAsset> TextCommandSubjectAreaAsset;
SubjectArea<kCamera> TextCommandSubjectAreaCamera;
SubjectArea<kDocument> TextCommandSubjectAreaDocument;
SubjectArea<kNamedView> TextCommandSubjectAreaNamedView;
SubjectArea<kSleeper> TextCommandSubjectAreaSleeper;
SubjectArea<kSplitView> TextCommandSubjectAreaSplitView;
SubjectArea<kPerformance> TextCommandSubjectAreaPerformance;

} // namespace
} // namespace Vu::Commands
