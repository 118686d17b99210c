#include "Server/Translate/Salvage/Mender.h"

#include <algorithm>

namespace Vs::Translate::Salvage {

namespace {

/// One that says that both are shapes of the same thing, not how one is placed in the other.
bool isPlainRelationship(const Instance& instance)
{
    return instance.roles.test(size_t(Role::Relationship)) && instance.links.size() == 2;
}

/// The first text of a statement, without its quotes.
std::string firstText(std::string_view statement)
{
    const size_t begin = statement.find('\'');
    const size_t end = begin == statement.npos ? begin : statement.find('\'', begin + 1);
    return end == statement.npos ? std::string() : std::string(statement.substr(begin + 1, end - begin - 1));
}

std::string reference(uint32_t number)
{
    return '#' + std::to_string(number);
}

} // namespace

uint32_t Mender::add(const std::string& statement)
{
    m_added.push_back(reference(m_next) + '=' + statement + ";\n");
    return m_next++;
}

std::string Mender::listOf(const std::vector<uint32_t>& numbers)
{
    std::string list = "(";
    for (const uint32_t number : numbers)
        list += (list.size() > 1 ? "," : "") + reference(number);
    return list + ')';
}

void Mender::mend()
{
    m_next = m_instances.freeNumber();
    findSubstitutes();
    findLinkers();
    countFaces();
    mendSolids();
    gatherLooseFaces();
    gatherLooseShells();
    gatherLooseShapes();
    giveProducts();
}

/// The targets to which sound instances link with that role.
std::unordered_set<uint32_t> Mender::linkedBy(Role role) const
{
    std::unordered_set<uint32_t> linked;
    for (const Instance& instance : m_instances.all())
        if (instance.isSound && is(instance, role))
            for (const Link& link : instance.links)
                if (m_instances.holds(link))
                    linked.insert(link.target);
    return linked;
}

/// What tells whose shape it is.
void Mender::findLinkers()
{
    for (const Instance& instance : m_instances.all())
        if (instance.isSound && (is(instance, Role::Representation) || isPlainRelationship(instance) ||
                                 instance.entity == "SHAPE_DEFINITION_REPRESENTATION"))
            for (const Link& link : instance.links)
                m_linkers[link.target].push_back(&instance);
}

void Mender::countFaces()
{
    std::unordered_map<uint32_t, uint32_t> owners; // Of shells, sound or not.
    for (const Instance& instance : m_instances.all())
        for (const Link& link : instance.links)
            if (link.role == Role::Shell)
                owners[link.target] = instance.number;
    for (const Instance& instance : m_instances.all()) {
        m_hasShapes |= instance.isSound && is(instance, Role::Face);
        Loss loss;
        for (const Link& link : instance.links) {
            if (link.role != Role::Face)
                continue;
            ++loss.all;
            loss.lost += !instance.isSound || !m_instances.holds(link);
        }
        if (loss.all == 0)
            continue;
        m_ofShell[instance.number] = loss;
        if (loss.lost == 0)
            continue;
        const auto owner = owners.find(instance.number);
        Loss& ofPart = m_losses[partOf(owner == owners.end() ? instance.number : owner->second)];
        ofPart.lost += loss.lost;
        ofPart.all += loss.all;
    }
}

/// A solid whose shell has a hole no longer encloses anything.
void Mender::mendSolids()
{
    for (const Instance& instance : m_instances.all()) {
        if (!instance.isSound || instance.links.empty() || instance.links[0].role != Role::Shell)
            continue;
        const uint32_t outer = instance.links[0].target;
        for (const Link& link : instance.links) {
            const auto found = m_ofShell.find(link.target);
            if (link.role != Role::Shell || found == m_ofShell.end() || found->second.lost == 0)
                continue;
            const std::string name = '(' + std::string(1, '\'') + firstText(instance.text) + "',";
            if (is(instance, Role::Solid) && link.target == outer) {
                m_replaced[instance.number] = "SHELL_BASED_SURFACE_MODEL" + name + listOf({outer}) + ')';
                m_replaced.try_emplace(outer, std::string());
            } else if (is(instance, Role::Solid)) {
                // A void whose shell has a hole isn't one.
                m_replaced.try_emplace(instance.number,
                                       "MANIFOLD_SOLID_BREP" + name + reference(outer) + ')');
            }
        }
    }
    // A closed shell that isn't closed is renamed accordingly.
    for (auto& [number, statement] : m_replaced) {
        const Instance* shell = m_instances.find(number);
        if (!statement.empty() || !shell || shell->entity != "CLOSED_SHELL")
            continue;
        std::string text = printed(*shell);
        statement = "OPEN_SHELL" + text.substr(text.find('('));
    }
    std::erase_if(m_replaced, [](const auto& each) { return each.second.empty(); });
}

void Mender::gatherLooseFaces()
{
    const std::unordered_set<uint32_t> inShells = linkedBy(Role::Shell);
    std::vector<uint32_t> loose;
    for (const Instance& instance : m_instances.all())
        if (instance.isSound && is(instance, Role::Face) && !inShells.contains(instance.number))
            loose.push_back(instance.number);
    m_looseFaces = loose.size();
    if (!loose.empty())
        m_newShells.push_back(add("OPEN_SHELL('Salvaged'," + listOf(loose) + ')'));
}

void Mender::gatherLooseShells()
{
    std::unordered_set<uint32_t> used = linkedBy(Role::Solid);
    used.merge(linkedBy(Role::ShellModel));
    used.merge(linkedBy(Role::Shell)); // Through an oriented one.
    for (const Instance& instance : m_instances.all()) {
        if (!instance.isSound || !is(instance, Role::Shell) || used.contains(instance.number))
            continue;
        const bool isWhole = instance.entity == "CLOSED_SHELL" && m_ofShell[instance.number].lost == 0;
        if (isWhole)
            m_newShapes.push_back(add("MANIFOLD_SOLID_BREP('Salvaged'," + reference(instance.number) + ')'));
        else
            m_newShells.push_back(instance.number);
    }
    if (!m_newShells.empty())
        m_newShapes.push_back(add("SHELL_BASED_SURFACE_MODEL('Salvaged'," + listOf(m_newShells) + ')'));
}

/// A context for shapes: one from the file, which has its units.
uint32_t Mender::context()
{
    for (const Instance& instance : m_instances.all())
        if (instance.isSound && is(instance, Role::Context) &&
            instance.text.find("GLOBAL_UNIT_ASSIGNED_CONTEXT") != std::string_view::npos)
            return instance.number;
    m_lostUnits = true;
    const uint32_t length = add("(LENGTH_UNIT()NAMED_UNIT(*)SI_UNIT(.MILLI.,.METRE.))");
    const uint32_t angle = add("(NAMED_UNIT(*)PLANE_ANGLE_UNIT()SI_UNIT($,.RADIAN.))");
    const uint32_t solidAngle = add("(NAMED_UNIT(*)SI_UNIT($,.STERADIAN.)SOLID_ANGLE_UNIT())");
    return add("(GEOMETRIC_REPRESENTATION_CONTEXT(3)GLOBAL_UNIT_ASSIGNED_CONTEXT(" +
               listOf({length, angle, solidAngle}) + ")REPRESENTATION_CONTEXT('',''))");
}

void Mender::findSubstitutes()
{
    m_substitutes[Role::Context] = context();
    m_exponents[false] = add("DIMENSIONAL_EXPONENTS(0.,0.,0.,0.,0.,0.,0.)");
    m_exponents[true] = add("DIMENSIONAL_EXPONENTS(1.,0.,0.,0.,0.,0.,0.)");
    const uint32_t application = add("APPLICATION_CONTEXT('automotive design')");
    m_substitutes[Role::ProductContext] =
        add("PRODUCT_CONTEXT(''," + reference(application) + ",'mechanical')");
    m_substitutes[Role::DefinitionContext] =
        add("PRODUCT_DEFINITION_CONTEXT('part definition'," + reference(application) + ",'design')");
}

void Mender::gatherLooseShapes()
{
    const std::unordered_set<uint32_t> shown = linkedBy(Role::Representation);
    for (const Instance& instance : m_instances.all())
        if (instance.isSound && (is(instance, Role::Solid) || is(instance, Role::ShellModel)) &&
            !shown.contains(instance.number))
            m_newShapes.push_back(instance.number);
    if (!m_newShapes.empty())
        makeProduct(add("SHAPE_REPRESENTATION('Salvaged'," + listOf(m_newShapes) + ',' +
                        reference(m_substitutes.at(Role::Context)) + ')'));
}

void Mender::makeProduct(uint32_t representation)
{
    const uint32_t product =
        add("PRODUCT('Salvaged','Salvaged','',(" + reference(m_substitutes.at(Role::ProductContext)) + "))");
    const uint32_t formation = add("PRODUCT_DEFINITION_FORMATION('',''," + reference(product) + ')');
    const uint32_t definition = add("PRODUCT_DEFINITION('',''," + reference(formation) + ',' +
                                    reference(m_substitutes.at(Role::DefinitionContext)) + ')');
    const uint32_t property = add("PRODUCT_DEFINITION_SHAPE('',''," + reference(definition) + ')');
    add("SHAPE_DEFINITION_REPRESENTATION(" + reference(property) + ',' + reference(representation) + ')');
}

/// For shapes that no product leads to any more.
void Mender::giveProducts()
{
    std::unordered_set<uint32_t> reached;
    std::unordered_map<uint32_t, std::vector<uint32_t>> related;
    for (const Instance& instance : m_instances.all()) {
        if (!instance.isSound)
            continue;
        if (instance.entity == "SHAPE_DEFINITION_REPRESENTATION")
            reached.insert(instance.links[1].target);
        if (is(instance, Role::Map))
            reached.insert(instance.links[1].target);
        if (isPlainRelationship(instance)) {
            related[instance.links[0].target].push_back(instance.links[1].target);
            related[instance.links[1].target].push_back(instance.links[0].target);
        }
    }
    std::vector<uint32_t> open(reached.begin(), reached.end());
    while (!open.empty()) {
        const uint32_t one = open.back();
        open.pop_back();
        for (const uint32_t other : related[one])
            if (reached.insert(other).second)
                open.push_back(other);
    }
    for (const Instance& instance : m_instances.all()) {
        if (!instance.isSound || !is(instance, Role::Representation) || reached.contains(instance.number))
            continue;
        const bool hasShape =
            std::any_of(instance.links.begin(), instance.links.end(), [this](const Link& link) {
                const Instance* item = m_instances.holds(link) ? m_instances.find(link.target) : nullptr;
                return item && (is(*item, Role::Solid) || is(*item, Role::ShellModel));
            });
        if (hasShape)
            makeProduct(instance.number);
    }
}

/// The name of the part that shows the solid or surface: that of its product, or its own.
std::string Mender::partOf(uint32_t item) const
{
    const auto whoLinks = [this](uint32_t target, auto&& suits) -> const Instance* {
        const auto found = m_linkers.find(target);
        if (found != m_linkers.end())
            for (const Instance* instance : found->second)
                if (suits(*instance))
                    return instance;
        return nullptr;
    };
    const auto isRepresentation = [](const Instance& one) { return is(one, Role::Representation); };
    const auto shows = [](const Instance& one) { return one.entity == "SHAPE_DEFINITION_REPRESENTATION"; };
    const Instance* representation = whoLinks(item, isRepresentation);
    const Instance* shown = representation ? whoLinks(representation->number, shows) : nullptr;
    if (representation && !shown) {
        if (const Instance* relation = whoLinks(representation->number, isPlainRelationship))
            for (const Link& link : relation->links)
                if (!shown && link.target != representation->number)
                    shown = whoLinks(link.target, shows);
    }
    // From the property via definition and formation to the product.
    const Instance* one = shown ? m_instances.find(shown->links[0].target) : nullptr;
    constexpr int kSteps = 8; // Properties of each other would loop for ever.
    for (int step = 0; one && !is(*one, Role::Product); ++step)
        one = step == kSteps       ? nullptr
              : one->links.empty() ? nullptr
                                   : m_instances.find(one->links[0].target);
    const Instance* named = one ? one : m_instances.find(item);
    return named ? firstText(named->text) : std::string();
}

/// Without list members that are gone, and with replacements for what can be replaced.
std::string Mender::printed(const Instance& instance) const
{
    std::string text(instance.text);
    for (size_t i = instance.links.size(); i-- > 0;) {
        const Link& link = instance.links[i];
        if (m_instances.holds(link))
            continue;
        if (Instances::canBeReplaced(instance, link)) {
            const bool isLength = instance.text.find("LENGTH_UNIT") != instance.text.npos;
            const uint32_t other =
                link.role == Role::Exponents ? m_exponents[isLength] : m_substitutes.at(link.role);
            text.replace(link.begin, link.end - link.begin, reference(other));
            continue;
        }
        // Together with one of the adjacent commas.
        size_t begin = link.begin, end = link.end;
        const size_t after = text.find_first_not_of(" \r\n\t", end);
        const size_t before = text.find_last_not_of(" \r\n\t", begin - 1);
        if (after != text.npos && text[after] == ',')
            end = after + 1;
        else if (before != text.npos && text[before] == ',')
            begin = before;
        text.erase(begin, end - begin);
    }
    return text;
}

std::string Mender::data() const
{
    if (!m_hasShapes)
        return {};
    std::string data;
    for (const Instance& instance : m_instances.all()) {
        if (!instance.isSound)
            continue;
        const auto replaced = m_replaced.find(instance.number);
        data += reference(instance.number) + '=' +
                (replaced != m_replaced.end() ? replaced->second : printed(instance)) + ";\n";
    }
    for (const std::string& statement : m_added)
        data += statement;
    return data;
}

} // namespace Vs::Translate::Salvage
