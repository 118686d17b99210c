#include "Server/Translate/VrmlMarks.h"

#include "Server/Translate/Reading.h"
#include "Server/Translate/VrmlInlines.h"

#include <gp.hxx>
#include <gp_Ax1.hxx>
#include <gp_Trsf.hxx>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <utility>

namespace Vs::Translate {

namespace {

/// Scales that nobody writes, far enough apart to be distinguished in spite of rounding.
constexpr double kFirstMark = 7.0e11, kMarkStep = 1.0e6;

double markOf(size_t number)
{
    return kFirstMark + kMarkStep * static_cast<double>(number);
}

/// The numbers of one field, and where they are.
template <size_t count>
struct Field
{
    std::array<double, count> numbers;
    size_t begin = 0, end = 0;
};

/// A node "Transform", as far as its text describes its placement.
struct Transform
{
    bool is = false; ///< Otherwise another node, or a list.
    Field<3> translation{{0, 0, 0}}, centre{{0, 0, 0}}, scale{{1, 1, 1}};
    Field<4> rotation{{0, 0, 1, 0}}, orientation{{0, 0, 1, 0}};

    bool isUneven() const
    {
        const auto& [x, y, z] = scale.numbers;
        const double most = std::max({std::abs(x), std::abs(y), std::abs(z)});
        return x != 0 && y != 0 && z != 0 && std::max(std::abs(x - y), std::abs(y - z)) > 1e-6 * most;
    }

    gp_GTrsf motion() const
    {
        gp_GTrsf stretch;
        for (int i = 0; i < 3; ++i)
            stretch.SetValue(i + 1, i + 1, scale.numbers[static_cast<size_t>(i)]);
        const gp_Trsf oriented = turned(orientation);
        return affine(moved(translation, 1) * moved(centre, 1) * turned(rotation) * oriented) * stretch *
               affine(oriented.Inverted() * moved(centre, -1));
    }

private:
    static gp_Trsf moved(const Field<3>& field, double sign)
    {
        gp_Trsf motion;
        motion.SetTranslation(gp_Vec(field.numbers[0], field.numbers[1], field.numbers[2]) * sign);
        return motion;
    }

    static gp_Trsf turned(const Field<4>& field)
    {
        gp_Trsf motion;
        const gp_Vec axis(field.numbers[0], field.numbers[1], field.numbers[2]);
        if (axis.Magnitude() > gp::Resolution())
            motion.SetRotation(gp_Ax1(gp::Origin(), gp_Dir(axis)), field.numbers[3]);
        return motion;
    }
};

/// The words of a text with their positions, skipping comments and strings.
class Words
{
public:
    explicit Words(std::string_view text) : m_text(text) {}

    /// Empty at the end. A brace or a bracket is a word by itself.
    std::string_view next()
    {
        skip();
        const size_t begin = m_at;
        if (m_at < m_text.size() && isBracket(m_text[m_at]))
            ++m_at;
        else
            while (m_at < m_text.size() && !isBlank(m_text[m_at]) && !isBracket(m_text[m_at]) &&
                   m_text[m_at] != '#' && m_text[m_at] != '"')
                ++m_at;
        return m_text.substr(begin, m_at - begin);
    }

    /// False, without consuming a word, if no such numbers follow.
    template <size_t count>
    bool read(Field<count>& field)
    {
        const size_t before = m_at;
        Field<count> read;
        for (size_t i = 0; i < count; ++i) {
            const std::string_view word = next();
            if (i == 0)
                read.begin = m_at - word.size();
            const auto [end, error] =
                std::from_chars(word.data(), word.data() + word.size(), read.numbers[i]);
            if (error != std::errc() || end != word.data() + word.size() || !std::isfinite(read.numbers[i])) {
                m_at = before;
                return false;
            }
        }
        read.end = m_at;
        field = read;
        return true;
    }

private:
    static bool isBlank(char c) { return c == ',' || static_cast<unsigned char>(c) <= ' '; }
    static bool isBracket(char c) { return c == '{' || c == '}' || c == '[' || c == ']'; }

    void skip()
    {
        for (; m_at < m_text.size(); ++m_at) {
            if (m_text[m_at] == '#')
                m_at = std::min(m_text.find('\n', m_at), m_text.size() - 1);
            else if (m_text[m_at] == '"')
                skipString();
            else if (!isBlank(m_text[m_at]))
                return;
        }
    }

    void skipString()
    {
        for (++m_at; m_at < m_text.size() && m_text[m_at] != '"'; ++m_at)
            if (m_text[m_at] == '\\')
                ++m_at;
    }

    std::string_view m_text;
    size_t m_at = 0;
};

void readField(std::string_view name, Words& words, Transform& transform)
{
    if (name == "translation")
        words.read(transform.translation);
    else if (name == "center")
        words.read(transform.centre);
    else if (name == "scale")
        words.read(transform.scale);
    else if (name == "rotation")
        words.read(transform.rotation);
    else if (name == "scaleOrientation")
        words.read(transform.orientation);
}

/// What the kernel should read as something else.
struct Place
{
    size_t begin, end;
    VrmlMark mark;
};

/// A node or a list that has been opened.
struct Open
{
    Transform transform;
    std::optional<size_t> inlined; ///< Where the name is, for a node that inlines a file.
};

void close(const Open& node, std::string_view text, std::vector<Place>& places)
{
    if (node.inlined) {
        VrmlInlineNode found = vrmlInlineAt(text, *node.inlined);
        if (!found.urls.empty())
            places.push_back(
                {*node.inlined, std::min(found.end + 1, text.size()), {{}, std::move(found.urls)}});
    } else if (node.transform.is && node.transform.isUneven()) {
        places.push_back(
            {node.transform.scale.begin, node.transform.scale.end, {node.transform.motion(), {}}});
    }
}

std::vector<Place> placesIn(std::string_view text)
{
    std::vector<Open> open;
    std::vector<Place> places;
    Words words(text);
    std::string_view before;
    for (std::string_view word = words.next(); !word.empty(); before = word, word = words.next()) {
        if (word == "{" || word == "[") {
            Open node;
            node.transform.is = word == "{" && before == "Transform";
            if (word == "{" && before == "Inline")
                node.inlined = static_cast<size_t>(before.data() - text.data());
            open.push_back(node);
            // A group has its braces, and its children brackets.
            checkLimits(open.size() / 2, 1);
        } else if (open.empty())
            continue;
        else if (word == "}" || word == "]") {
            close(open.back(), text, places);
            open.pop_back();
        } else if (open.back().transform.is) {
            readField(word, words, open.back().transform);
        }
    }
    std::ranges::sort(places, {}, &Place::begin);
    return places;
}

} // namespace

gp_GTrsf affine(const gp_Trsf& motion)
{
    return {motion.VectorialPart(), motion.TranslationPart()};
}

const VrmlMark* VrmlMarks::marked(double scale) const
{
    const double number = std::round((scale - kFirstMark) / kMarkStep);
    if (!(number >= 0 && number < static_cast<double>(marks.size())))
        return nullptr;
    const auto index = static_cast<size_t>(number);
    return std::abs(scale - markOf(index)) < 1 ? &marks[index] : nullptr;
}

VrmlMarks vrmlMarks(std::string_view text)
{
    VrmlMarks marks;
    size_t copied = 0;
    for (Place& place : placesIn(text)) {
        const std::string number = std::to_string(static_cast<long long>(markOf(marks.marks.size())));
        std::string scale = number;
        scale.append(1, ' ').append(number).append(1, ' ').append(number);
        marks.text += text.substr(copied, place.begin - copied);
        marks.text += place.mark.urls.empty() ? scale : "Transform { scale " + scale + " }";
        // Line breaks stay, since messages count lines.
        for (const char c : text.substr(place.begin, place.end - place.begin))
            if (c == '\n')
                marks.text += c;
        copied = place.end;
        marks.marks.push_back(std::move(place.mark));
    }
    if (!marks.marks.empty())
        marks.text += text.substr(copied);
    return marks;
}

} // namespace Vs::Translate
