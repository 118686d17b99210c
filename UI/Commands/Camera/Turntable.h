#pragma once

#include "UI/Commands/Documents/ImageOptions.h"

#include <string>

namespace Vs {
class Status;
}

namespace Vu {
class GraphicsView;
}

namespace Vu::Commands {

/// The most pictures of one turn: a minute at sixty a second.
inline constexpr int kMostTurntablePictures = 3600;

/// Draws a view's model from all sides, as its camera sees it that goes once around the vertical through the
/// middle of the model, in equal steps. The camera is as before afterwards.
///
/// `path` is that of a film (.mp4, .webm or .gif), which the program ffmpeg makes, or of pictures (.png, .jpg
/// or .tif), which get a number each: "turn.png" gives "turn-0001.png" and so on. Returns how many pictures
/// there are; 0, with the reason in `status`, if something went wrong, and no film is left then.
int makeTurntable(GraphicsView& view, const std::wstring& path, int pictures, const ImageOptions& options,
                  Vs::Status& status);

} // namespace Vu::Commands
