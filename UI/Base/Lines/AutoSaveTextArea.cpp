// The subject area "AutoSave"; its lines belong to the add-in that shows recovery files.

#include "Server/Base/TextCommand.h"
#include "UI/Base/Command/TextRows.h"

namespace Vu {
namespace {

constexpr AreaRow kAutoSaveAreaRow = {L"AutoSave", L"Text commands for files that were saved automatically",
                                      false, AreaRow::Checks::Nothing};

const SubjectArea<kAutoSaveAreaRow> kAutoSaveArea;

} // namespace
} // namespace Vu
