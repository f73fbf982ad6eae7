// An entity, an entry of a table or another record of a drawing: its groups.
#pragma once

#include <optional>
#include <vector>

#include "kv_tr/interchange/dxf_map.h"
#include "kv_tr/interchange/dxf_table.h"
#include "kv_tr/interchange/dxf_tags.h"

namespace kv_tr::dxf {

/// A record from its group 0 to the one before the next group 0.
class Record {
public:
    std::vector<Tag> tags;

    /// Says of every group in which scope it is; to be called when all groups are there.
    void FindScopes();
    /// Forgets what stands in the place of values.
    void Restore();

    std::string_view Type() const { return tags.empty() ? "" : tags.front().Text(); }
    std::string_view Handle() const;
    std::uint64_t Line() const { return tags.front().line; }

    /// The first group with a code, not that of an application; a null pointer without one.
    const Tag* Find(int code) const;
    Tag* Find(int code);
    double Number(int code, double otherwise) const;
    std::int64_t Integer(int code, std::int64_t otherwise) const;
    std::string_view Text(int code) const;
    bool IsInPaper() const { return Integer(67, 0) == 1; }

    /// Whether a code begins the coordinates of a place or vector here, and where its y and z are.
    struct Coordinates {
        Tag* x;
        Tag* y;
        Tag* z;  // a null pointer without one

        Point Place() const { return {x->Number(), y->Number()}; }
        void Put(Point place) const {
            x->Set(place.first);
            y->Set(place.second);
        }
    };
    Coordinates At(std::size_t index);
    std::optional<Coordinates> CoordinatesOf(int code);

    /// Sets a number, which is added after another group where it is missing and not the usual one.
    void Put(int code, double number, double usual, std::initializer_list<int> after);

    /// Whether the plane of the entity is horizontal, seen from above (1) or from below (-1);
    /// 0 for others.
    int Facing() const;

    /// The groups that entities of all types have, without the type: handle, layer, colour.
    std::vector<Tag> CommonTags() const;
    /// Those of the extrusion, and those of extended data.
    std::vector<Tag> ExtrusionTags() const;
    std::vector<Tag> ExtendedTags() const;

private:
    std::vector<Tag> Picked(bool (*wanted)(const Tag& tag)) const;
};

}  // namespace kv_tr::dxf
