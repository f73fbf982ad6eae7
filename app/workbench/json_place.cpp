// Where a member stands in a JSON text.
#include "workbench/json_place.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>
#include <unordered_set>
#include <utility>
#include <vector>

namespace kv_tr::workbench {
namespace {

using Json = nlohmann::json;

/// Follows the parser and stops at a value of the wanted name, or, without one, at a member that
/// its object has already; at the end of what the parser understands in any case.
class Finder : public nlohmann::json_sax<Json> {
public:
    explicit Finder(std::string wanted = {}) : wanted_(std::move(wanted)) {}

    /// Runs over a text and yields where that ended.
    JsonPlace Run(std::string_view text) {
        std::istringstream stream{std::string(text)};
        Json::sax_parse(stream, this);
        stream.clear();
        const auto read = static_cast<std::size_t>(stream.tellg());
        return PlaceOfByte(text, read == 0 ? 0 : read - 1);
    }

    bool null() override { return Value(); }
    bool boolean(bool /*value*/) override { return Value(); }
    bool number_integer(number_integer_t /*value*/) override { return Value(); }
    bool number_unsigned(number_unsigned_t /*value*/) override { return Value(); }
    bool number_float(number_float_t /*value*/, const string_t& /*text*/) override {
        return Value();
    }
    bool string(string_t& /*value*/) override { return Value(); }
    bool binary(binary_t& /*value*/) override { return Value(); }
    bool start_object(std::size_t /*count*/) override { return Open(false); }
    bool start_array(std::size_t /*count*/) override { return Open(true); }
    bool end_object() override { return Close(); }
    bool end_array() override { return Close(); }
    bool key(string_t& value) override {
        Level& level = levels_.back();
        level.key = value;
        found_ = wanted_.empty() && !level.keys.insert(value).second;
        return !found_;
    }
    bool parse_error(std::size_t /*at*/, const std::string& /*token*/,
                     const Json::exception& /*error*/) override {
        return false;
    }

    bool IsFound() const { return found_; }
    /// Of the value, or the member, that the parser is at.
    std::string Name() const {
        std::string name;
        for (const Level& level : levels_) {
            if (level.isArray) {
                name += "[" + std::to_string(level.index) + "]";
            } else {
                name += (name.empty() ? "" : ".") + level.key;
            }
        }
        return name;
    }

private:
    struct Level {
        bool isArray;
        std::size_t index = 0;
        std::string key{};
        std::unordered_set<std::string> keys{};
    };

    bool IsWanted() const { return !wanted_.empty() && Name() == wanted_; }
    bool Value() {
        found_ = IsWanted();
        if (!levels_.empty()) ++levels_.back().index;
        return !found_;
    }
    bool Open(bool isArray) {
        found_ = IsWanted();
        levels_.push_back({isArray});
        return !found_;
    }
    bool Close() {
        levels_.pop_back();
        if (!levels_.empty()) ++levels_.back().index;
        return true;
    }

    std::string wanted_;
    std::vector<Level> levels_;
    bool found_ = false;
};

}  // namespace

JsonPlace PlaceOfByte(std::string_view text, std::size_t byte) {
    const std::string_view before = text.substr(0, byte);
    const auto lineBreak = before.rfind('\n');
    const std::size_t lineBegin = lineBreak == before.npos ? 0 : lineBreak + 1;
    return {static_cast<std::size_t>(std::ranges::count(before, '\n')) + 1,
            before.size() - lineBegin + 1};
}

JsonPlace PlaceOfFault(std::string_view text) {
    Finder finder("?");  // which no member is called
    return finder.Run(text);
}

RepeatedMember FindRepeated(std::string_view text) {
    Finder finder;
    const JsonPlace place = finder.Run(text);
    return finder.IsFound() ? RepeatedMember{finder.Name(), place} : RepeatedMember{};
}

JsonPlace PlaceOfMember(std::string_view text, const std::string& member) {
    if (member.empty()) return {};
    Finder finder(member);
    const JsonPlace place = finder.Run(text);
    return finder.IsFound() ? place : JsonPlace{};
}

}  // namespace kv_tr::workbench
