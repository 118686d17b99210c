// The subject area "AutoSave", whose lines stand with the add-in that shows recovery files.

#include "Server/Base/TextCommand.h"

namespace Vu {
namespace {

class AutoSaveArea : public Vs::PythonEntry<AutoSaveArea, Vs::TextCommandSubjectArea>
{
public:
    AutoSaveArea() : PythonEntry(L"AutoSave", L"Text commands for files that were saved automatically", false)
    {
    }
};

const AutoSaveArea kAutoSaveArea;

} // namespace
} // namespace Vu
