#include "Server/DataModel/Private/ProgressText.h"

#include "Server/DataModel/Private/Texts.h"

#include <boost/filesystem/path.hpp>

namespace Vs::ProgressText {

using DataModel::localizedFormat;

namespace {

std::wstring nameOf(const std::wstring& path)
{
    return boost::filesystem::path(path).filename().wstring();
}

} // namespace

std::wstring opening(const std::wstring& path)
{
    return localizedFormat("ProgressOpening", "Opening %1%", nameOf(path));
}

std::wstring openingFiles(size_t count)
{
    return localizedFormat("ProgressOpeningFiles", "Opening %1% files", std::to_wstring(count));
}

std::wstring saving(const std::wstring& path)
{
    return localizedFormat("ProgressSaving", "Saving %1%", nameOf(path));
}

std::wstring writing(const std::wstring& path)
{
    return localizedFormat("ProgressWriting", "Writing %1%", nameOf(path));
}

std::wstring changing(const std::wstring& name)
{
    return localizedFormat("ProgressChanging", "Changing \"%1%\"", name);
}

std::wstring measuring()
{
    return DataModel::localized("ProgressMeasuring", "Measuring");
}

std::wstring drawing()
{
    return DataModel::localized("ProgressDrawing", "Finding the visible lines");
}

std::wstring stoppedDrawing(bool cancelled)
{
    return cancelled ? DataModel::localized("DrawingCancelled", "The drawing was cancelled.")
                     : DataModel::localized("DrawingFailed",
                                            "There isn't enough memory to find the visible lines of this "
                                            "model. Hide what the drawing need not show, and try again.");
}

std::wstring nothingToDraw()
{
    return DataModel::localized("DrawingEmpty", "Nothing that could be drawn is visible.");
}

std::wstring stoppedMeasuring(bool cancelled)
{
    return cancelled ? DataModel::localized("MeasureCancelled", "it was cancelled.")
                     : DataModel::localized("MeasureTooHard", "the geometry kernel did not finish.");
}

std::wstring stoppedMeshing(EditFault why)
{
    if (why == EditFault::Crashed)
        return DataModel::localized("MeshingCrashed", "the geometry kernel crashed on its shape");
    return why == EditFault::Cancelled
               ? DataModel::localized("MeshingCancelled", "it was cancelled")
               : DataModel::localized("MeshingTooHard", "the geometry kernel did not finish with its shape");
}

std::wstring step(const std::string& english)
{
    // The catalogue's header stands under the empty text.
    if (english.empty())
        return {};
    return DataModel::localized(english.c_str(), english.c_str());
}

} // namespace Vs::ProgressText
