#include "UI/Base/Command/TextRows.h"

namespace Vu::Commands {
namespace {

// Surplus parameters are ignored here, as old transcripts expect.
constexpr auto kFlags = AreaRow::Checks::Flags;

// clang-format off
constexpr AreaRow kVuCommands  = {L"VuCommands",  L"Text commands that do common command in VuCommands used for transcript purposes", true, kFlags};
constexpr AreaRow kAsset       = {L"Asset",       L"Commands that create, view, close assets using the UI", false, kFlags};
constexpr AreaRow kCamera      = {L"Camera",      L"Text commands to manipulate the current camera", true, kFlags};
constexpr AreaRow kDocument    = {L"Document",    L"Commands that open, save etc documents using the UI", false, kFlags};
constexpr AreaRow kNamedView   = {L"NamedView",   L"Commands that add, update etc named views", false, kFlags};
constexpr AreaRow kSleeper     = {L"Sleeper",     L"Text commands that sleep some time", true, kFlags};
constexpr AreaRow kSplitView   = {L"SplitView",   L"Text commands that control split view behavior", true, kFlags};
constexpr AreaRow kPerformance = {L"Performance", L"Text commands related to performance validation.", true, kFlags};
// clang-format on

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
