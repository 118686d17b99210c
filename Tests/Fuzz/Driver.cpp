// Runs a fuzz target without libFuzzer: the files of a folder as they stand, and then inputs that are made
// from them by chance.
//
//   fuzz_... FOLDER RUNS [SEED]
//
// The seed is printed; the same seed, as SEED or in the variable QUILLET_SEED, makes the same inputs.

#include "Tests/Fuzz/Fuzz.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

namespace {

using Random = std::mt19937_64;

std::string s_input; ///< The one that is tried.

std::vector<std::string> filesIn(const char* folder)
{
    std::vector<std::filesystem::path> paths;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        paths.push_back(entry.path());
    std::sort(paths.begin(), paths.end());
    std::vector<std::string> contents;
    for (const auto& path : paths) {
        std::ifstream stream(path, std::ios::binary);
        contents.emplace_back(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
    }
    return contents;
}

size_t below(Random& random, size_t limit)
{
    return limit > 0 ? random() % limit : 0;
}

/// One small change.
void change(std::string& text, const std::vector<std::string>& others, Random& random)
{
    using namespace std::string_view_literals; // The literal has a zero within.
    static constexpr std::string_view kSpecial = "\"\\/ \t\r\n\0#.,:;$${}()^*-+0e9\xff\xc3\xbc\xf0\x9f"sv;
    const size_t at = below(random, text.size() + 1);
    const std::string& other = others[below(random, others.size())];
    switch (below(random, 6)) {
    case 0:
        text.insert(at, 1, kSpecial[below(random, kSpecial.size())]);
        break;
    case 1:
        text.insert(at, 1, static_cast<char>(random()));
        break;
    case 2:
        text.erase(at, 1 + below(random, 8));
        break;
    case 3:
        text.insert(at, other, below(random, other.size() + 1), 1 + below(random, 16));
        break;
    case 4:
        text.insert(at, text.substr(at, 1 + below(random, 32)));
        break;
    default:
        if (at < text.size())
            text[at] = kSpecial[below(random, kSpecial.size())];
    }
}

void attempt(std::string input)
{
    s_input = std::move(input);
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(s_input.data()), s_input.size());
}

/// Keeps the input that brought the process down.
void onCrash(int signal)
{
    if (std::FILE* file = std::fopen("crash-input", "wb")) {
        std::fwrite(s_input.data(), 1, s_input.size(), file);
        std::fclose(file);
    }
    std::fputs("The input is in the file crash-input.\n", stderr);
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

} // namespace

int main(int count, char** arguments)
{
    if (count < 3) {
        std::fprintf(stderr, "Usage: %s FOLDER RUNS [SEED]\n", arguments[0]);
        return 2;
    }
    const long runs = std::atol(arguments[2]);
    const char* given = count > 3 ? arguments[3] : std::getenv("QUILLET_SEED");
    const uint64_t seed = given ? std::strtoull(given, nullptr, 10) : std::random_device()();
    std::printf("Seed %llu\n", static_cast<unsigned long long>(seed));
    std::fflush(stdout);
    for (const int signal : {SIGSEGV, SIGABRT, SIGFPE, SIGBUS, SIGILL})
        std::signal(signal, onCrash);

    const std::vector<std::string> corpus = filesIn(arguments[1]);
    if (corpus.empty()) {
        std::fprintf(stderr, "%s: There is no input to begin with.\n", arguments[1]);
        return 2;
    }
    for (const std::string& input : corpus)
        attempt(input);
    Random random(seed);
    for (long run = 0; run < runs; ++run) {
        std::string input = corpus[below(random, corpus.size())];
        for (size_t changes = 1 + below(random, 12); changes > 0; --changes)
            change(input, corpus, random);
        attempt(std::move(input));
    }
    return 0;
}
