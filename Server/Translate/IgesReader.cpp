#include "Server/Translate/IgesReader.h"

#include "Server/Translate/MappedFile.h"

#include <IGESCAFControl_Reader.hxx>

#include <algorithm>
#include <cctype>
#include <charconv>

namespace Vs::Translate {

namespace {

// A line ends with its section's letter and its number in the section, seven digits wide. Counted from the
// end, because text that isn't plain ASCII shifts the columns.
constexpr size_t kLineTail = 8;

struct Section
{
    char letter;
    const char* name;
    long lines = 0;
};

long numberIn(std::string_view text)
{
    while (!text.empty() && text.front() == ' ')
        text.remove_prefix(1);
    long number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

// The last line says how many lines each section has. The kernel doesn't check: it takes what is there, as if
// that were everything.
void checkComplete(std::string_view text)
{
    Section sections[] = {{'S', "start"}, {'G', "global"}, {'D', "directory"}, {'P', "parameter"}};
    // The other two forms of the format, compressed and binary, start with another letter.
    if (text.size() > 72 && text[72] != 'S')
        return;
    while (!text.empty()) {
        std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(text.size(), line.size() + 1));
        while (!line.empty() && std::isspace(static_cast<unsigned char>(line.back())))
            line.remove_suffix(1);
        if (line.size() < kLineTail)
            continue;
        const char letter = line[line.size() - kLineTail];
        for (Section& section : sections)
            section.lines += section.letter == letter;
        if (letter != 'T')
            continue;
        // Four fields of a letter and seven digits, in the order of the sections.
        for (size_t i = 0; i < std::size(sections); ++i) {
            const Section& section = sections[i];
            const long told = line.size() < (i + 1) * kLineTail || line[i * kLineTail] != section.letter
                                  ? 0
                                  : numberIn(line.substr(i * kLineTail + 1, kLineTail - 1));
            if (section.lines < told)
                throw Unreadable("is cut off: of the " + std::to_string(told) + " lines of its " +
                                 section.name + " section, " + std::to_string(told - section.lines) +
                                 " are missing");
        }
        return;
    }
    throw Unreadable("is cut off: the line that ends an IGES file is missing");
}

} // namespace

Reading readIges(const std::string& path, Reporter& reporter)
{
    Reading reading;
    reading.model = std::make_unique<Kernel::XdeModel>();
    const auto reader = std::make_shared<IGESCAFControl_Reader>();
    reader->SetColorMode(true);
    reader->SetNameMode(true);
    reader->SetLayerMode(true);
    reader->SetReadVisible(true);
    reporter.stage("reading the file", 0.0, 0.3);
    checkComplete(MappedFile(path).bytes());
    if (reader->ReadFile(path.c_str()) != IFSelect_RetDone)
        throw Unreadable("isn't a valid IGES file: its text can't be understood");
    reporter.stage("transferring the shapes", 0.3, 0.65);
    Handle(TDocStd_Document) document = reading.model->document();
    const Handle(KernelProgress) progress = new KernelProgress(reporter);
    if (!reader->Transfer(document, progress->Start()))
        throw Unreadable("holds no shapes that can be read");
    return reading;
}

} // namespace Vs::Translate
