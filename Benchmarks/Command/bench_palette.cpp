// What a letter costs in the search palette: over all that the program can find, with a full list of lines
// that were run, from the key to the painted rows; beside the search alone, and beside a plain look for the
// letters in all titles.
//
//     bench_palette PROFILE [WORD...]

#include "Benchmarks/InProgram.h"
#include "Benchmarks/Measure.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Window/SearchIndex.h"
#include "UI/Base/Window/SearchPalette.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTreeView>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace {

using Benchmarks::milliseconds;

struct Times
{
    std::vector<double> all;
    double median() const { return Benchmarks::median(all); }
    double most() const { return std::ranges::max(all); }
};

template <class Work>
double timed(Work work)
{
    const double begin = milliseconds();
    work();
    return milliseconds() - begin;
}

std::vector<std::wstring> manyLines()
{
    std::vector<std::wstring> lines;
    for (int i = 0; i < 200; ++i)
        lines.push_back(L"Design.Box 40 20 " + std::to_wstring(i) +
                        L" 0,0,5 \"a part with quite a long name\"");
    return lines;
}

size_t plainLook(const Vu::SearchIndex& index, const QString& text)
{
    return static_cast<size_t>(std::ranges::count_if(index.entries(), [&](const Vu::SearchEntry& entry) {
        return entry.title.contains(text, Qt::CaseInsensitive);
    }));
}

double letter(QLineEdit& edit, QTreeView& list, QChar typed)
{
    return timed([&] {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(typed));
        QApplication::sendEvent(&edit, &press);
        list.viewport()->repaint();
    });
}

void measure(const std::vector<std::string>& words)
{
    Vu::UIBaseOptionGroup::get()->commandHistory(manyLines());
    Vu::SearchIndex index;
    const double made = timed([&] { index = Vu::SearchIndex::ofProgram(manyLines()); });
    QWidget window;
    window.resize(1280, 800);
    window.show();
    const double opened = timed([&] {
        Vu::SearchPalette::toggle(&window, {[](Vu::CommandDefinition&) {}, [](const QString&) {}});
        QApplication::processEvents();
    });
    auto* edit = window.findChild<QLineEdit*>(QStringLiteral("searchText"));
    auto* list = window.findChild<QTreeView*>(QStringLiteral("searchFound"));
    Times plain, search, shown;
    for (const std::string& word : words) {
        edit->clear();
        for (size_t i = 1; i <= word.size(); ++i) {
            const QString text = QString::fromStdString(word.substr(0, i));
            plain.all.push_back(timed([&] { plainLook(index, text); }));
            search.all.push_back(timed([&] { static_cast<void>(index.find(text)); }));
            shown.all.push_back(letter(*edit, *list, text.back()));
        }
    }
    std::printf("%zu entries, made in %.1f ms; opened in %.1f ms\n", index.entries().size(), made, opened);
    std::printf(
        "a letter: %.2f ms to the painted rows (at most %.2f), the search alone %.2f (at most %.2f)\n",
        shown.median(), shown.most(), search.median(), search.most());
    std::printf("the search is %.1f times a plain look through the titles (%.2f ms)\n",
                search.median() / plain.median(), plain.median());
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2)
        return 2;
    std::vector<std::string> words(argv + 2, argv + argc);
    if (words.empty())
        words = {"export",           "e",          "visibility", "design.box", "kante verrunden",
                 "show the toolbar", "a part with"};
    Benchmarks::inProgram(argv[1], argc, argv, true, [&] { measure(words); });
}
