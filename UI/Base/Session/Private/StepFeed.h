#pragma once

#include "UI/Base/Session/DesignFeed.h"

namespace Vu {

/// The steps of a document's model as entries of its feed. Those of the model that the user works on can be
/// gone back to.
class StepFeed : public FeedSource
{
public:
    void addEntries(Vs::Document& document, std::vector<FeedEntry>& entries) override;
};

} // namespace Vu
