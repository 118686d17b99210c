#include "UI/Commands/Adaptations/QT/Shell/SamplesSection.h"

#include "Server/Base/TextCommandMgr.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Session/Sample.h"
#include "UI/Base/Window/QtIcon.h"
#include "UI/Commands/Adaptations/QT/Shell/Tile.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"

namespace Vu::Commands {
namespace {

/// After the click.
void runLater(const std::wstring& line)
{
    Application::get()->deferredTasks()->post([line] {
        const Vs::TextCommandResult result =
            Vs::TextCommandMgr::get()->executeCommandWithoutOutput(line, true);
        if (result.first != 0)
            Application::get()->inform(result.second);
    });
}

} // namespace

SamplesSection::SamplesSection(QWidget* parent)
    : TileSection(QString::fromStdWString(localized("HomeSamples", "Samples")), parent)
{
    setObjectName(QStringLiteral("samples"));
    std::vector<Tile*> tiles;
    for (const Sample* sample : Sample::all()) {
        const Sample::Description description = sample->description();
        auto* tile =
            new Tile(QString::fromStdWString(description.title), iconOf(Resources::RecentFile()), this);
        tile->place(QString::fromStdWString(description.note));
        tile->picture(pngFromFile(description.picture));
        connect(tile, &Tile::clicked, this, [line = sample->line()] { runLater(line); });
        tiles.push_back(tile);
    }
    arrange(tiles);
    setVisible(!tiles.empty());
}

} // namespace Vu::Commands
