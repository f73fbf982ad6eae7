// An entity, an entry of a table or another record of a drawing: its groups.
#include "kv_tr/interchange/dxf_record.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "kv_tr/model/elementary.h"

namespace kv_tr::dxf {
namespace {

constexpr double kHorizontal = 1e-9;

/// Groups before the first subclass; files without subclasses have these.
constexpr std::array kCommonCodes{5, 6, 8, 48, 60, 62, 67, 370, 390, 410, 420, 430, 440, 999};

/// Numbers of a shape before the first subclass, where they do not belong: a new entity has its
/// own.
bool IsOfShape(const Tag& tag) {
    return tag.scope == Scope::kPlain &&
           ((tag.code >= 10 && tag.code <= 59 && tag.code != 48) ||
            (tag.code >= 70 && tag.code <= 79) || (tag.code >= 210 && tag.code <= 239));
}

}  // namespace

void Record::FindScopes() {
    bool foreign = false;
    bool embedded = false;
    for (Tag& tag : tags) {
        if (tag.code >= 1000) {
            tag.scope = Scope::kExtended;
            continue;
        }
        if (tag.code == 101) embedded = true;
        const bool brace = tag.code == 102;
        if (brace) foreign = tag.Text().starts_with('{');
        tag.scope =
            foreign || brace ? Scope::kForeign : (embedded ? Scope::kEmbedded : Scope::kPlain);
    }
}

void Record::Restore() {
    std::erase_if(tags, [](const Tag& tag) { return tag.head.empty(); });
    for (Tag& tag : tags) tag.now = std::monostate{};
}

std::string_view Record::Handle() const { return Type() == "DIMSTYLE" ? Text(105) : Text(5); }

const Tag* Record::Find(int code) const {
    const auto found = std::ranges::find_if(tags, [code](const Tag& tag) {
        return tag.code == code && (tag.scope == Scope::kPlain || code >= 1000);
    });
    return found == tags.end() ? nullptr : &*found;
}

Tag* Record::Find(int code) { return const_cast<Tag*>(std::as_const(*this).Find(code)); }

double Record::Number(int code, double otherwise) const {
    const Tag* tag = Find(code);
    return tag == nullptr ? otherwise : tag->Number();
}

std::int64_t Record::Integer(int code, std::int64_t otherwise) const {
    const Tag* tag = Find(code);
    return tag == nullptr ? otherwise : tag->Integer();
}

std::string_view Record::Text(int code) const {
    const Tag* tag = Find(code);
    return tag == nullptr ? std::string_view{} : tag->Text();
}

Record::Coordinates Record::At(std::size_t index) {
    Tag& x = tags[index];
    Coordinates found{&x, nullptr, nullptr};
    for (std::size_t i = index + 1; i < tags.size() && i < index + 6; ++i) {
        Tag& tag = tags[i];
        if (tag.scope != x.scope) continue;
        if (tag.code == x.code) break;
        if (tag.code == x.code + 10 && found.y == nullptr) found.y = &tag;
        if (tag.code == x.code + 20 && found.z == nullptr) found.z = &tag;
        if (found.z != nullptr) break;
    }
    if (found.y == nullptr) {
        throw Trouble{{.kind = DrawingProblem::Kind::kMissingCoordinate,
                       .line = x.line,
                       .text = std::string(x.Text())}};
    }
    return found;
}

std::optional<Record::Coordinates> Record::CoordinatesOf(int code) {
    Tag* x = Find(code);
    if (x == nullptr) return std::nullopt;
    return At(static_cast<std::size_t>(x - tags.data()));
}

void Record::Put(int code, double number, double usual, std::initializer_list<int> after) {
    if (Tag* tag = Find(code); tag != nullptr) {
        tag->Set(number);
        return;
    }
    if (number == usual) return;
    for (const int before : after) {
        if (const Tag* tag = Find(before); tag != nullptr) {
            tags.insert(tags.begin() + (tag - tags.data()) + 1, NewTag(code, number));
            return;
        }
    }
}

int Record::Facing() const {
    const double x = Number(210, 0);
    const double y = Number(220, 0);
    const double z = Number(230, 1);
    if (Hypotenuse(x, y) > kHorizontal * std::abs(z)) return 0;
    return z < 0 ? -1 : 1;
}

std::vector<Tag> Record::Picked(bool (*wanted)(const Tag& tag)) const {
    std::vector<Tag> picked;
    std::ranges::copy_if(tags, std::back_inserter(picked), wanted);
    return picked;
}

std::vector<Tag> Record::CommonTags() const {
    const auto isClass = [](const Tag& tag) {
        return tag.code == 100 && tag.Text() != "AcDbEntity";
    };
    const auto end = std::ranges::find_if(tags, isClass);
    if (end != tags.end()) {
        std::vector<Tag> common(tags.begin() + 1, end);
        std::erase_if(common, IsOfShape);
        return common;
    }
    return Picked([](const Tag& tag) {
        return tag.scope == Scope::kForeign ||
               std::ranges::find(kCommonCodes, tag.code) != kCommonCodes.end();
    });
}

std::vector<Tag> Record::ExtrusionTags() const {
    return Picked([](const Tag& tag) {
        return tag.scope == Scope::kPlain &&
               (tag.code == 210 || tag.code == 220 || tag.code == 230);
    });
}

std::vector<Tag> Record::ExtendedTags() const {
    return Picked([](const Tag& tag) { return tag.scope == Scope::kExtended; });
}

}  // namespace kv_tr::dxf
