#include "hostcad/ads/entity_filter.h"

#include <algorithm>
#include <cmath>

#include "hostcad/ads/group_lists.h"
#include "hostcad/drawing/host_names.h"
#include "platform/text/text.h"
#include "platform/text/wild_cards.h"

namespace hostcad {

enum class Relation { Any, Equal, Unequal, Less, LessEqual, Greater, GreaterEqual, AnyBit, AllBits };

struct EntityFilter::Node {
    enum Kind { And, Or, Xor, Not, Test, Application } kind = And;
    std::vector<Node> children;

    // Of a test:
    int code = 0;
    std::vector<Relation> relations;  // one, or one for each coordinate
    std::string text;
    double number = 0;
    double point[3] = {0, 0, 0};
    uint64_t handle = 0;

    bool matches(const Drawing& drawing, ObjectId entity) const;
    bool matchesGroup(const Group& group) const;
    bool matchesAbsent(const Drawing& drawing, ObjectId entity) const;
    bool matchesText(std::string_view value) const;
};

namespace {

bool parseRelation(std::string_view text, Relation& relation) {
    constexpr std::pair<std::string_view, Relation> kRelations[] = {
        {"*", Relation::Any},        {"=", Relation::Equal},    {"!=", Relation::Unequal},
        {"/=", Relation::Unequal},   {"<>", Relation::Unequal}, {"<", Relation::Less},
        {"<=", Relation::LessEqual}, {">", Relation::Greater},  {">=", Relation::GreaterEqual},
        {"&", Relation::AnyBit},     {"&=", Relation::AllBits},
    };
    for (const auto& [known, value] : kRelations)
        if (known == text) {
            relation = value;
            return true;
        }
    return false;
}

bool holds(Relation relation, double value, double wanted) {
    // Numbers that were computed differ in their last digits.
    bool equal = std::abs(value - wanted) <= 1e-10 * std::max({1.0, std::abs(value), std::abs(wanted)});
    auto bits = static_cast<int64_t>(std::clamp(value, -9e18, 9e18));
    auto mask = static_cast<int64_t>(std::clamp(wanted, -9e18, 9e18));
    switch (relation) {
        case Relation::Any:
            return true;
        case Relation::Equal:
            return equal;
        case Relation::Unequal:
            return !equal;
        case Relation::Less:
            return value < wanted && !equal;
        case Relation::LessEqual:
            return value < wanted || equal;
        case Relation::Greater:
            return value > wanted && !equal;
        case Relation::GreaterEqual:
            return value > wanted || equal;
        case Relation::AnyBit:
            return (bits & mask) != 0;
        case Relation::AllBits:
            return (bits & mask) == mask;
    }
    return false;
}

// Names compare without case, other texts with it.
bool isNameCode(int code) {
    return (code <= 3 && code != 1) || (code >= 6 && code <= 8) || code == 410;
}

}  // namespace

// --- Reading ------------------------------------------------------------------------------------------

class EntityFilter::Reader {
  public:
    Reader(const Drawing& drawing, const resbuf* list) : drawing_(drawing), next_(list) {}

    // Items up to the closing mark, or to the end of the list where it is empty.
    bool readGroup(Node& node, std::string_view closing) {
        while (next_) {
            const resbuf* item = next_;
            next_ = next_->rbnext;
            if (item->restype == -4) {
                std::string mark = text::lower(item->resval.rstring ? item->resval.rstring : "");
                if (!closing.empty() && mark == closing) return isComplete(node);
                if (!readMark(node, mark)) return false;
            } else if (item->restype == -3) {
                readApplications(node);
            } else if (!readTest(node, *item)) {
                return false;
            }
        }
        return closing.empty() && relations_.empty();
    }

  private:
    static bool isComplete(const Node& node) {
        if (node.kind == Node::Not) return node.children.size() == 1;
        if (node.kind == Node::Xor) return node.children.size() == 2;
        return !node.children.empty();
    }

    bool readMark(Node& node, const std::string& mark) {
        constexpr std::pair<std::string_view, Node::Kind> kGroups[] = {
            {"and", Node::And}, {"or", Node::Or}, {"xor", Node::Xor}, {"not", Node::Not}};
        for (const auto& [name, kind] : kGroups)
            if (mark == "<" + std::string(name)) {
                if (++depth_ > kDeepest) return false;
                node.children.emplace_back();
                node.children.back().kind = kind;
                bool read = readGroup(node.children.back(), std::string(name) + ">");
                --depth_;
                return read;
            }
        relations_.clear();
        for (const std::string& one : text::split(mark, ',')) {
            relations_.emplace_back();
            if (!parseRelation(text::trim(one), relations_.back())) return false;
        }
        return true;
    }

    void readApplications(Node& node) {
        for (; next_ && (next_->restype == 1001 || next_->restype == RTSTR); next_ = next_->rbnext) {
            Node& test = node.children.emplace_back();
            test.kind = Node::Application;
            test.text = next_->resval.rstring ? next_->resval.rstring : "";
        }
    }

    bool readTest(Node& node, const resbuf& item) {
        Node& test = node.children.emplace_back();
        test.kind = Node::Test;
        test.code = item.restype;
        test.relations = relations_.empty() ? std::vector{Relation::Equal} : relations_;
        relations_.clear();
        const ads_u_val& value = item.resval;
        switch (groupKindOf(item.restype)) {
            case GroupKind::None:
                return false;
            case GroupKind::Text:
            case GroupKind::Handle:
                test.text = value.rstring ? value.rstring : "";
                return true;
            case GroupKind::Real:
                test.number = value.rreal;
                return true;
            case GroupKind::Short:
                test.number = value.rint;
                return true;
            case GroupKind::Long:
                test.number = static_cast<double>(value.rlong);
                return true;
            case GroupKind::Point:
                std::copy_n(value.rpoint, 3, test.point);
                return true;
            case GroupKind::Name:
                test.handle = drawing_.object(idOf(value.rlname)).handle;
                return true;
            case GroupKind::Binary:
                return false;
        }
        return false;
    }

    static constexpr int kDeepest = 100;

    const Drawing& drawing_;
    const resbuf* next_;
    std::vector<Relation> relations_;  // of the next test
    int depth_ = 0;
};

EntityFilter::EntityFilter() = default;
EntityFilter::~EntityFilter() = default;

std::unique_ptr<EntityFilter> EntityFilter::read(const Drawing& drawing, const resbuf* list) {
    std::unique_ptr<EntityFilter> filter(new EntityFilter);
    filter->root_ = std::make_unique<Node>();
    return Reader(drawing, list).readGroup(*filter->root_, "") ? std::move(filter) : nullptr;
}

// --- Matching -----------------------------------------------------------------------------------------

bool EntityFilter::matches(const Drawing& drawing, ObjectId entity) const {
    return root_->matches(drawing, entity);
}

bool EntityFilter::Node::matches(const Drawing& drawing, ObjectId entity) const {
    auto matching = [&](const Node& child) { return child.matches(drawing, entity); };
    switch (kind) {
        case And:
            return std::all_of(children.begin(), children.end(), matching);
        case Or:
            return std::any_of(children.begin(), children.end(), matching);
        case Xor:
            return matching(children[0]) != matching(children[1]);
        case Not:
            return !matching(children[0]);
        case Application: {
            Groups xdata = xdataOf(drawing.groups(entity));
            return std::any_of(xdata.begin(), xdata.end(), [&](const Group& group) {
                return group.code == kApplicationCode && text::matchesNoCase(group.text(), text);
            });
        }
        case Test:
            break;
    }
    bool any = false;
    for (const Group& group : drawing.groups(entity)) {
        if (group.code >= kFirstXDataCode) break;
        if (group.code != code) continue;
        any = true;
        if (matchesGroup(group)) return true;
    }
    return !any && matchesAbsent(drawing, entity);
}

bool EntityFilter::Node::matchesText(std::string_view value) const {
    Relation relation = relations[0];
    if (relation == Relation::Any) return true;
    bool equal = isNameCode(code) ? text::matchesNoCase(value, text) : text::matchesWildCards(value, text);
    if (relation == Relation::Equal) return equal;
    if (relation == Relation::Unequal) return !equal;
    int order = value.compare(text);
    return holds(relation, order, 0);
}

bool EntityFilter::Node::matchesGroup(const Group& group) const {
    switch (group.kind) {
        case ValueKind::Text:
            return matchesText(group.text());
        case ValueKind::Real:
        case ValueKind::Integer:
            return holds(relations[0], isAngleCode(code) ? radiansOf(group.asReal()) : group.asReal(),
                         groupKindOf(code) == GroupKind::Point ? point[0] : number);
        case ValueKind::Point: {
            double values[3] = {group.x(), group.y(), group.z()};
            for (size_t i = 0; i < 3; ++i) {
                // A single relation holds for all coordinates; of several, those that are missing are "*".
                if (relations.size() > 1 && i >= relations.size()) break;
                if (!holds(relations.size() > 1 ? relations[i] : relations[0], values[i], point[i]))
                    return false;
            }
            return true;
        }
        case ValueKind::Handle:
            if (groupKindOf(code) == GroupKind::Handle) return matchesText(handleText(group.handle));
            return (group.handle == handle) != (relations[0] == Relation::Unequal);
        case ValueKind::Binary:
            break;
    }
    return false;
}

// What an entity does not say of itself has a standard value.
bool EntityFilter::Node::matchesAbsent(const Drawing& drawing, ObjectId entity) const {
    switch (code) {
        case 6:
            return matchesText("BYLAYER");
        case 62:
            return holds(relations[0], 256, number);
        case 67:
        case 60:
        case 39:
        case 38:
            return holds(relations[0], 0, number);
        case 48:
            return holds(relations[0], 1, number);
        case 410:
            return drawing.object(entity).owner == drawing.modelSpace() && matchesText("Model");
        default:
            return relations[0] == Relation::Unequal && code == 8 && matchesText("0");
    }
}

}  // namespace hostcad
