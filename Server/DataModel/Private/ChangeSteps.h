#pragma once

#include "Server/DataModel/Model/ChangeHistory.h"

#include <string>

namespace Vs {
class Asset;
}

/// What Transaction and SteppedTransaction share: brings an asset up to date with its history, and tells its
/// event sites.
namespace Vs::ChangeSteps {

/// Opens a change with `start`. Throws std::runtime_error if the document can't be edited.
void begin(Asset* asset, const std::wstring& name,
           void (ChangeHistory::*start)(const std::wstring&, const std::wstring&));
/// Tells of components; nothing if none has changed.
void tellComponents(Asset* asset);
/// Tells of values that were put back; of new ones Asset::setting has told.
void tellBack(Asset* asset, ChangeHistory::Extent extent);
void markChanged(Asset* asset, ChangeHistory::Extent extent);
/// Says that a step was committed, undone or redone, when all else has been told of it.
void stepDone(Asset* asset);
/// Who hears of that; null for nobody.
void listener(void (*stepped)(Asset*));
/// Undoes or redoes. False if there is nothing to do.
bool step(Asset* asset, ChangeHistory::Extent (ChangeHistory::*direction)());

} // namespace Vs::ChangeSteps
