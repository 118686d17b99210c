#pragma once

class QPainter;

namespace Vu {

struct VectorPage;

/// Paints the page with its upper left corner at the painter's origin.
void paintPage(const VectorPage& page, QPainter& painter, double dotsPerMillimetre);

} // namespace Vu
