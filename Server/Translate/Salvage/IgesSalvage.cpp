#include "Server/Translate/Salvage/IgesSalvage.h"

#include "Server/DataModel/Exchange/LostFaces.h"
#include "Server/Translate/Salvage/IgesEntities.h"
#include "Server/Translate/Salvage/IgesGlobal.h"

#include <algorithm>
#include <cstdio>
#include <map>

namespace Vs::Translate::Salvage {

namespace {

constexpr size_t kTextColumns = 64, kColumns = 72;

/// Writes the sections, each line with its letter and number.
class Writer
{
public:
    void start() { add(m_start, "", 'S'); }
    void global(const std::string& text)
    {
        for (size_t at = 0; at < text.size(); at += kColumns)
            add(m_global, text.substr(at, kColumns), 'G');
    }
    void entity(const IgesEntities& entities, const IgesEntity& entity);
    /// In the place of one that was set aside, so that the others keep their numbers.
    void nothing();
    /// The number of the next entity.
    uint32_t next() const { return m_directory.lines + 1; }
    std::string file();

private:
    struct Section
    {
        std::string text;
        uint32_t lines = 0;
    };
    static void add(Section& section, const std::string& data, char letter);
    uint32_t parameters(const std::vector<std::string_view>& values);
    void directory(const std::vector<std::string>& first, const std::vector<std::string>& second);

    Section m_start, m_global, m_directory, m_parameters;
};

void Writer::add(Section& section, const std::string& data, char letter)
{
    char tail[16];
    std::snprintf(tail, sizeof tail, "%c%07u\n", letter, ++section.lines);
    section.text += data;
    section.text.append(kColumns - data.size(), ' ');
    section.text += tail;
}

/// Divided between values, or within a text that is longer than a line. Returns the number of lines.
uint32_t Writer::parameters(const std::vector<std::string_view>& values)
{
    const uint32_t before = m_parameters.lines;
    char owner[16];
    std::snprintf(owner, sizeof owner, "%8u", next());
    std::string line;
    const auto flush = [&] {
        line.resize(kTextColumns, ' ');
        add(m_parameters, line + owner, 'P');
        line.clear();
    };
    for (size_t i = 0; i < values.size(); ++i) {
        std::string value(values[i]);
        value += i + 1 == values.size() ? ';' : ',';
        if (line.size() + value.size() > kTextColumns && !line.empty())
            flush();
        for (; value.size() > kTextColumns; value.erase(0, kTextColumns)) {
            line = value.substr(0, kTextColumns);
            flush();
        }
        line += value;
    }
    flush();
    return m_parameters.lines - before;
}

void Writer::directory(const std::vector<std::string>& first, const std::vector<std::string>& second)
{
    for (const auto* fields : {&first, &second}) {
        std::string line;
        for (const std::string& field : *fields) {
            line.append(8 - std::min<size_t>(8, field.size()), ' ');
            line += field.substr(0, 8);
        }
        add(m_directory, line, 'D');
    }
}

void Writer::nothing()
{
    const std::string begin = std::to_string(m_parameters.lines + 1);
    const uint32_t lines = parameters({"0"});
    directory({"0", begin, "0", "0", "0", "0", "0", "0", "00010000"},
              {"0", "0", "0", std::to_string(lines), "0", "", "", "", "0"});
}

/// A reference that isn't needed, if it leads to what it must.
std::string ifRole(const IgesEntities& entities, std::optional<int> number, IgesRole role, bool isNegative)
{
    const int target = isNegative ? -number.value_or(0) : number.value_or(0);
    if (target <= 0) // Not a reference.
        return std::to_string(std::clamp(number.value_or(0), 0, 9'999'999));
    const IgesEntity* const entity = entities.find(uint32_t(target));
    return entity && entity->found.roles.test(size_t(role)) ? std::to_string(*number) : "0";
}

std::string statusOf(const IgesRecord::Directory& directory)
{
    std::string status = directory.status;
    std::ranges::replace(status, ' ', '0');
    const bool isSound =
        status.size() == 8 && std::ranges::all_of(status, [](char c) { return c >= '0' && c <= '6'; });
    return isSound ? status : "00000000";
}

void Writer::entity(const IgesEntities& entities, const IgesEntity& entity)
{
    const IgesRecord& record = *entity.record;
    const IgesRecord::Directory& told = (entity.heirOf ? entity.heirOf->record : &record)->directory;
    const std::string type = std::to_string(record.type), begin = std::to_string(m_parameters.lines + 1);
    std::vector<char> isLeftOut(entity.found.size);
    std::vector<std::string> made{type};
    const IgesList& list = entity.found.list;
    size_t members = 0;
    for (size_t i = 0; i < entity.found.links.size(); ++i) {
        const IgesLink& link = entity.found.links[i];
        members += link.mayMiss && !entity.isGone[i];
        for (size_t k = 0; entity.isGone[i] && link.mayMiss && k < list.each; ++k)
            if (link.place + k < isLeftOut.size())
                isLeftOut[link.place + k] = 1;
        if (entity.isGone[i] && link.isAlternative)
            isLeftOut[link.place] = 2;
    }
    std::vector<uint32_t> properties;
    for (const uint32_t number : (entity.heirOf ? *entity.heirOf : entity).found.properties)
        if (const IgesEntity* const property = entities.find(number);
            property && property->found.roles.test(size_t(IgesRole::Property)))
            properties.push_back(number);
    made.push_back(std::to_string(members));
    made.push_back(std::to_string(properties.size()));
    for (const uint32_t number : properties)
        made.push_back(std::to_string(number));
    std::vector<std::string_view> values{made[0]};
    for (size_t i = 0; i < entity.found.size; ++i)
        if (isLeftOut[i] != 1)
            values.push_back(isLeftOut[i] == 2                  ? std::string_view("0")
                             : list.each > 0 && i == list.count ? std::string_view(made[1])
                                                                : record.values[i].text);
    if (!properties.empty()) {
        values.push_back("0");
        values.insert(values.end(), made.begin() + 2, made.end());
    }
    const uint32_t lines = parameters(values);
    directory({type, begin, "0", ifRole(entities, told.font, IgesRole::Count, true),
               ifRole(entities, told.level, IgesRole::Levels, true), "0",
               std::to_string(told.matrix.value_or(0)), "0", statusOf(told)},
              {type, "0", ifRole(entities, told.colour, IgesRole::Colour, true), std::to_string(lines),
               std::to_string(record.directory.form.value_or(0)), "", "", told.label,
               std::to_string(std::clamp(told.subscript.value_or(0), 0, 9'999'999))});
}

std::string Writer::file()
{
    char end[64];
    std::snprintf(end, sizeof end, "S%7uG%7uD%7uP%7u", m_start.lines, m_global.lines, m_directory.lines,
                  m_parameters.lines);
    Section last;
    add(last, end, 'T');
    return m_start.text + m_global.text + m_directory.text + m_parameters.text + last.text;
}

std::string counted(size_t count, const char* what)
{
    return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

bool isFace(const IgesEntity& entity)
{
    return isFaceType(entity.record->type);
}

/// Of each part with a name, and of the rest together.
std::vector<std::string> lostFaces(const IgesEntities& entities)
{
    constexpr size_t kMostParts = 20;
    std::map<std::string, Exchange::LostFaces> parts;
    size_t lost = 0, all = 0;
    for (const IgesEntity& entity : entities.all()) {
        if (!isFace(entity))
            continue;
        std::string name = entities.partOf(entity);
        Exchange::LostFaces& part = parts[name];
        part.part = std::move(name);
        part.lost += !entity.isSound;
        ++part.all;
        lost += !entity.isSound;
        ++all;
    }
    std::erase_if(parts, [](const auto& each) { return each.second.lost == 0; });
    std::vector<std::string> losses;
    if (parts.size() > kMostParts || (parts.size() == 1 && parts.begin()->first.empty()))
        losses.push_back(std::to_string(lost) + " of " + counted(all, "face"));
    else
        for (const auto& [name, part] : parts)
            losses.push_back(part.text());
    return losses;
}

std::vector<std::string> lossesOf(const IgesEntities& entities)
{
    constexpr int kPlacement = 408;
    std::vector<std::string> losses = lostFaces(entities);
    const auto isLost = [](const IgesEntity& each) {
        return each.record->type == kPlacement && !each.isSound;
    };
    if (const auto lost = std::ranges::count_if(entities.all(), isLost); lost > 0)
        losses.push_back(counted(size_t(lost), "placement"));
    return losses;
}

std::string fileOf(const IgesEntities& entities, const IgesGlobal& global)
{
    Writer writer;
    writer.start();
    writer.global(global.text);
    bool isEmpty = true;
    for (const IgesEntity& entity : entities.all()) {
        if (!entity.isSound)
            continue;
        while (writer.next() < entity.record->number)
            writer.nothing();
        writer.entity(entities, entity);
        isEmpty = false;
    }
    return isEmpty ? std::string() : writer.file();
}

} // namespace

std::vector<uint32_t> facesOfIges(std::string_view file)
{
    const IgesRecords records(file);
    const IgesEntities entities(records);
    std::vector<uint32_t> faces;
    for (const IgesEntity& entity : entities.all())
        if (entity.isSound && isFace(entity))
            faces.push_back(entity.record->number);
    return faces;
}

SalvagedIges salvageIges(std::string_view file, const std::unordered_set<uint32_t>& without)
{
    const IgesRecords records(file);
    const IgesEntities entities(records, without);
    const IgesGlobal global(records);
    SalvagedIges result;
    result.isInOrder = records.isInOrder;
    result.wasDamaged = !without.empty() || entities.wasDamaged() || !records.isInOrder || !global.isSound;
    for (const IgesEntity& entity : entities.all()) {
        result.faces += isFace(entity);
        result.soundFaces += isFace(entity) && entity.isSound;
    }
    if (result.wasDamaged)
        result.text = fileOf(entities, global);
    const std::vector<std::string> losses = lossesOf(entities);
    for (const std::string& loss : losses) {
        result.losses += (result.losses.empty() ? "" : " and ") + loss;
        result.warnings.push_back("lacks " + loss);
    }
    if (global.lostUnit)
        result.warnings.push_back("doesn't say any more what its unit is: millimetres are assumed");
    return result;
}

} // namespace Vs::Translate::Salvage
