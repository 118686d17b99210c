#pragma once

#include "Server/Base/Status.h"

namespace Vs {
class Document;
}

namespace Vu::Design {

/// A new document with one empty design, not shown yet. Null with the reason.
Vs::Document* createDesign(Vs::Status& status);

/// Shows the document's active asset in the asset shell and frames it. Other documents stay open.
void showDesign(Vs::Document* document, Vs::Status& status);

} // namespace Vu::Design
