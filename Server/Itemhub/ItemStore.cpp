#include "Server/Itemhub/ItemStore.h"

namespace Vs::Itemhub {

ItemStore::~ItemStore() = default;

} // namespace Vs::Itemhub
