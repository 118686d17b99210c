#pragma once

namespace Vs::Scene {

/// What this machine supports for anti-aliasing, whatever the user chose: the number of samples per pixel (1
/// for none, also where nothing can be drawn) and their quality. Before the first picture, the first query
/// creates the context that pictures are drawn with.
void GetMSAASettings(int& level, int& quality);
/// Set by the renderer to what its driver supports. Any thread.
void OfferMSAA(int samples);

} // namespace Vs::Scene
