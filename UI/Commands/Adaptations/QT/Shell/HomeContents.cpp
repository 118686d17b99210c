// The contents named in the home screen's layout: each kind is created here.

#include "UI/Base/Program/AreaContents.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Commands/Adaptations/QT/AutoSave/RecoveredSection.h"
#include "UI/Commands/Adaptations/QT/Shell/HomeBody.h"
#include "UI/Commands/Adaptations/QT/Shell/HomeList.h"
#include "UI/Commands/Adaptations/QT/Shell/OpenSection.h"
#include "UI/Commands/Adaptations/QT/Shell/RecentSection.h"
#include "UI/Commands/Adaptations/QT/Shell/SamplesSection.h"
#include "UI/Commands/Adaptations/QT/Shell/ScriptsList.h"
#include "UI/Commands/Adaptations/QT/Shell/ShellButton.h"
#include "UI/Commands/Localized.h"

#include <QApplication>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>

namespace Vu::Commands {
namespace {

constexpr int kSideMargin = 40;
constexpr int kLogoSize = 44;

QWidget* makeTitle(QWidget* parent)
{
    auto* row = new QWidget(parent);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(kSideMargin, kSideMargin / 2, kSideMargin, kSideMargin / 2);
    layout->setSpacing(kSideMargin / 3);
    const QPixmap picture = QApplication::windowIcon().pixmap(kLogoSize, kLogoSize);
    if (!picture.isNull()) {
        auto* logo = PlainText::label(row);
        logo->setPixmap(picture);
        layout->addWidget(logo);
    }
    auto* name = PlainText::label(row, QStringLiteral("Quillet"));
    QFont font = name->font();
    font.setPointSizeF(font.pointSizeF() * 2.2);
    font.setBold(true);
    name->setFont(font);
    layout->addWidget(name);
    layout->addStretch(1);
    addShellButtons(*layout, row, true);
    return row;
}

QWidget* makeSeparator(QWidget* parent)
{
    auto* holder = new QWidget(parent);
    auto* layout = new QHBoxLayout(holder);
    layout->setContentsMargins(kSideMargin, 0, kSideMargin, 0);
    auto* line = new QFrame(holder);
    line->setObjectName(QStringLiteral("homeSeparator"));
    line->setFixedHeight(1);
    layout->addWidget(line);
    return holder;
}

const AreaContents kTitle("HomeTitle", makeTitle);
const AreaContents kButtons("HomeButtons", makeShellButtons);
const AreaContents kSeparator("HomeSeparator", makeSeparator);
const AreaContents kBody("HomeBody", [](QWidget* parent) { return new HomeBody(parent); });
const AreaContents kLearn("HomeLearn", [](QWidget* parent) { return new LearnList(parent); });
const AreaContents kScripts("HomeScripts", [](QWidget* parent) { return new ScriptsList(parent); });
const AreaContents kSamples("HomeSamples", [](QWidget* parent) { return new SamplesSection(parent); });
const AreaContents kRecovered("HomeRecovered", [](QWidget* parent) { return new RecoveredSection(parent); });
const AreaContents kOpenDocuments("HomeOpenDocuments",
                                  [](QWidget* parent) { return new OpenSection(parent); });
const AreaContents kRecentDocuments("HomeRecentDocuments",
                                    [](QWidget* parent) { return new RecentSection(parent); });

} // namespace
} // namespace Vu::Commands
