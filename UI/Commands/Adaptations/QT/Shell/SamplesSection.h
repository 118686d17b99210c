#pragma once

#include "UI/Commands/Adaptations/QT/Shell/TileSection.h"

namespace Vu::Commands {

/// The models that come with the program. A press opens one in a new document.
class SamplesSection : public TileSection
{
public:
    explicit SamplesSection(QWidget* parent);
};

} // namespace Vu::Commands
