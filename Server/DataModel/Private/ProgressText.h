#pragma once

#include "Server/DataModel/Edit/ModelEdit.h"

#include <string>

/// What a progress display shows of this library's work, in the user's language. Main thread.
namespace Vs::ProgressText {

std::wstring opening(const std::wstring& path);
std::wstring openingFiles(size_t count);
/// A native file.
std::wstring saving(const std::wstring& path);
/// A foreign one.
std::wstring writing(const std::wstring& path);
/// A component whose shape is being changed.
std::wstring changing(const std::wstring& name);
std::wstring measuring();
/// The lines that are seen of a model, why there are none (the person cancelled, or memory is short), and
/// that nothing is there to be seen.
std::wstring drawing();
std::wstring stoppedDrawing(bool cancelled);
std::wstring nothingToDraw();
/// Why a measurement has no result: the person cancelled it, or it was given up.
std::wstring stoppedMeasuring(bool cancelled);
/// Why a body has no mesh: the same, or the kernel broke down.
std::wstring stoppedMeshing(EditFault why);

/// The step that a worker tells of, which it knows in English only.
std::wstring step(const std::string& english);

} // namespace Vs::ProgressText
