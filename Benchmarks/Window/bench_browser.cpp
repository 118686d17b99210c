// What a letter costs in the filter of the browser, over so many components (10,000 and 100,000 by default):
// from the key to the painted rows, beside a plain look for the letters in all names; and what it costs in
// the search palette, which looks for commands, while they are open.
//
//     bench_browser PROFILE [COMPONENTS...]

#include "Benchmarks/InProgram.h"
#include "Benchmarks/Measure.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandMgr.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/Window/BrowserPanel.h"
#include "UI/Base/Window/SearchPalette.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTreeView>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace {

using Benchmarks::milliseconds;

template <class Work>
double timed(Work work)
{
    const double begin = milliseconds();
    work();
    return milliseconds() - begin;
}

/// A file with assemblies of 100 bolts, brackets and plates each, all of one triangle.
std::filesystem::path write(const std::filesystem::path& folder, int parts)
{
    constexpr int kInAssembly = 100;
    constexpr const char* kNames[] = {"bolt", "bracket", "plate"};
    const float corners[] = {0, 0, 0, 1, 0, 0, 0, 1, 0};
    const QByteArray bytes(reinterpret_cast<const char*>(corners), sizeof corners);
    const int assemblies = parts / kInAssembly;
    const std::filesystem::path file = folder / ("parts" + std::to_string(parts) + ".gltf");
    std::ofstream out(file);
    out << R"({"asset":{"version":"2.0"},"scene":0,"scenes":[{"nodes":[)";
    for (int i = 0; i < assemblies; ++i)
        out << (i ? "," : "") << i;
    out << R"(]}],"buffers":[{"byteLength":36,"uri":"data:application/octet-stream;base64,)"
        << bytes.toBase64().constData() << R"("}],"bufferViews":[{"buffer":0,"byteLength":36}],)"
        << R"("accessors":[{"bufferView":0,"componentType":5126,"count":3,"type":"VEC3",)"
        << R"("min":[0,0,0],"max":[1,1,0]}],"meshes":[{"primitives":[{"attributes":{"POSITION":0}}]}],"nodes":[)";
    for (int i = 0; i < assemblies; ++i) {
        out << (i ? "," : "") << R"({"name":"assembly )" << i << R"(","children":[)";
        for (int k = 0; k < kInAssembly; ++k)
            out << (k ? "," : "") << assemblies + i * kInAssembly + k;
        out << "]}";
    }
    for (int i = 0; i < assemblies * kInAssembly; ++i)
        out << R"(,{"name":")" << kNames[i % 3] << ' ' << i << R"(","mesh":0,"translation":[)" << i % 100
            << ',' << i / 100 << ",0]}";
    out << "]}";
    return file;
}

Vs::Asset* make(const std::filesystem::path& folder, int parts)
{
    const std::wstring line = L"Document.Open " + Vs::Strings::quote(write(folder, parts).wstring());
    const Vs::TextCommandResult answer = Vs::TextCommandMgr::get()->executeCommandWithoutOutput(line);
    if (answer.first != 0) {
        std::fprintf(stderr, "bench_browser: %s\n", Vs::Strings::narrow(answer.second).c_str());
        std::exit(1);
    }
    Vu::Application::get()->flushDeferredTasks();
    return Vu::SessionMgr::get()->activeAssetSession()->asset();
}

size_t plainLook(const Vs::Component& component, const std::wstring& text)
{
    size_t found = component.name.text().find(text) != std::wstring::npos;
    for (const auto& child : component.children)
        found += plainLook(*child, text);
    return found;
}

double letter(QLineEdit* edit, QTreeView* list, char typed)
{
    return timed([&] {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(QLatin1Char(typed)));
        QApplication::sendEvent(edit, &press);
        list->viewport()->repaint();
    });
}

std::vector<double> paletteLetters(const std::string& word)
{
    QWidget window;
    window.resize(1280, 800);
    window.show();
    Vu::SearchPalette::toggle(&window, {[](Vu::CommandDefinition&) {}, [](const QString&) {}});
    QApplication::processEvents();
    std::vector<double> times;
    for (const char typed : word)
        times.push_back(letter(window.findChild<QLineEdit*>(QStringLiteral("searchText")),
                               window.findChild<QTreeView*>(QStringLiteral("searchFound")), typed));
    return times;
}

void measure(const std::filesystem::path& folder, int parts)
{
    const Vs::Asset* asset = make(folder, parts);
    Vu::BrowserPanel panel(nullptr);
    panel.resize(300, 800);
    panel.QWidget::show();
    QApplication::processEvents();
    std::vector<double> plain, shown;
    for (const std::string word : {"bracket 7", "plate", "BOLT 123", "assembly 9", "zzz"}) {
        for (size_t i = 1; i <= word.size(); ++i) {
            const std::wstring text = Vs::Strings::widen(word.substr(0, i));
            plain.push_back(timed([&] { plainLook(*asset->components(), text); }));
            shown.push_back(letter(panel.filter(), panel.tree(), word[i - 1]));
        }
        shown.push_back(timed([&] {
            panel.filter()->clear();
            panel.tree()->viewport()->repaint();
        }));
    }
    std::printf("%10d %12.2f %12.2f %12.2f %12.1f %12.2f\n", parts, Benchmarks::median(shown),
                std::ranges::max(shown), Benchmarks::median(plain),
                Benchmarks::median(shown) / Benchmarks::median(plain),
                Benchmarks::median(paletteLetters("visibility")));
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2)
        return 2;
    const std::filesystem::path folder = argv[1]; // Qt takes arguments out of the list.
    std::vector<int> counts;
    for (int i = 2; i < argc; ++i)
        counts.push_back(std::atoi(argv[i]));
    if (counts.empty())
        counts = {10000, 100000};
    Benchmarks::inProgram(folder.c_str(), argc, argv, true, [&] {
        Vu::WorkspaceMgr::get()->create(); // Without one, nothing is shown.
        std::printf("%10s %12s %12s %12s %12s %12s\n", "rows", "letter ms", "at most ms", "plain ms",
                    "times plain", "palette ms");
        for (const int parts : counts)
            measure(folder, parts);
    });
}
