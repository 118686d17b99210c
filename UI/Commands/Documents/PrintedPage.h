#pragma once

#include "Server/DataModel/Measure/LineDrawing.h"
#include "UI/Base/Program/Printing.h"

#include <optional>

namespace Vu {
class AssetSession;
class GraphicsView;
} // namespace Vu

namespace Vu::Commands {

/// Makes the pages that are printed of a view. Lines that were found once are kept, since they take long.
class PrintedPage
{
public:
    PrintedPage(GraphicsView& view, const AssetSession& session) : m_view(view), m_session(session) {}

    /// As a PageMaker.
    std::optional<VectorPage> make(const PrintWish& wish, Vs::Status& status);

private:
    std::optional<VectorPage> picture(const PrintWish& wish, VectorPage page, Vs::Status& status);
    std::optional<VectorPage> drawing(const PrintWish& wish, const VectorPage& page, Vs::Status& status);

    GraphicsView& m_view;
    const AssetSession& m_session;
    std::optional<Vs::LineDrawing> m_lines[2]; ///< Without and with hidden ones.
};

} // namespace Vu::Commands
