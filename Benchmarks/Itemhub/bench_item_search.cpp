// How long a person waits from the first letter in the search bar to the first results in the panel, painted,
// beside the same search without a window. Benchmarks/item_search.py starts the service.
//
//     bench_item_search PROFILE ADDRESS TOKEN WORD...

#include "Benchmarks/InProgram.h"
#include "Benchmarks/Measure.h"
#include "Server/Base/Strings.h"
#include "Server/Itemhub/ItemhubUtilities.h"
#include "UI/Commands/Adaptations/QT/Itemhub/ItemhubSearchHandler.h"
#include "UI/Commands/Adaptations/QT/Itemhub/QTSearchBar.h"
#include "UI/Commands/Adaptations/QT/Itemhub/QTSearchResultPanel.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QVBoxLayout>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

using namespace Vu::Commands;
using Benchmarks::median;

void type(QLineEdit& edit, QChar letter)
{
    QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(letter));
    QApplication::sendEvent(&edit, &press);
}

/// From the key to the panel with results, painted.
double firstLetter(QTSearchBar& bar, const std::string& word)
{
    bar.edit()->clear();
    while (bar.handler() && bar.handler()->isSearching())
        Vu::Application::get()->processEvents();
    const double begin = Benchmarks::milliseconds();
    type(*bar.edit(), QLatin1Char(word.front()));
    while (bar.panel()->results().isEmpty())
        Vu::Application::get()->processEvents();
    bar.panel()->repaint();
    return Benchmarks::milliseconds() - begin;
}

/// A whole word, a letter every 60 ms, from the last letter on.
double lastLetter(QTSearchBar& bar, const std::string& word)
{
    bar.edit()->clear();
    double begin = 0;
    for (const char letter : word) {
        const double next = Benchmarks::milliseconds() + 60;
        begin = Benchmarks::milliseconds();
        type(*bar.edit(), QLatin1Char(letter));
        while (letter != word.back() && Benchmarks::milliseconds() < next)
            Vu::Application::get()->processEvents();
    }
    while (bar.handler()->isSearching() || bar.panel()->results().isEmpty())
        Vu::Application::get()->processEvents();
    bar.panel()->repaint();
    return Benchmarks::milliseconds() - begin;
}

void measure(const std::vector<std::string>& words)
{
    QWidget window;
    auto* column = new QVBoxLayout(&window);
    auto* bar = new QTSearchBar(QStringLiteral("Search"), &window);
    column->addWidget(bar);
    column->addStretch(1);
    window.resize(600, 600);
    window.show();
    std::vector<double> bare, first, last;
    for (const std::string& word : words) {
        const double begin = Benchmarks::milliseconds();
        static_cast<void>(Vs::ItemhubUtilities::get()->search(Vs::Strings::widen(word.substr(0, 1))));
        bare.push_back(Benchmarks::milliseconds() - begin);
        first.push_back(firstLetter(*bar, word));
        last.push_back(lastLetter(*bar, word));
    }
    std::printf("{\"search\": %.2f, \"first\": %.2f, \"last\": %.2f, \"slowest\": %.2f}\n", median(bare),
                median(first), median(last), std::ranges::max(first));
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 5)
        return 2;
    int result = 1;
    Benchmarks::inProgram(argv[1], argc, argv, true, [&] {
        Vs::Itemhub::Access access;
        access.address = argv[2];
        access.token = argv[3];
        try {
            if (!Vs::ItemhubUtilities::get()->signIn(access, false))
                return;
            measure({argv + 4, argv + argc});
            result = 0;
        } catch (const std::exception& failure) {
            std::fprintf(stderr, "%s\n", failure.what());
        }
    });
    return result;
}
