#pragma once

namespace Vs::Scene {

/// What this machine offers for smooth edges, whatever the user chose: the number of samples to a pixel (1
/// for none, also where nothing can be drawn) and their quality. Before the first picture, the first question
/// makes the context that pictures are drawn with.
void GetMSAASettings(int& level, int& quality);
/// What draws says here what its driver offers. Any thread.
void OfferMSAA(int samples);

} // namespace Vs::Scene
