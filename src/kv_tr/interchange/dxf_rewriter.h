// Entities of a drawing as they are after a transformation.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "kv_tr/interchange/dxf_record.h"

namespace kv_tr::dxf {

inline constexpr int kFirstWithEllipses = 1012;  // the number in $ACADVER
inline constexpr int kFirstWithLwPolylines = 1014;

/// What entities have in common while they are transformed.
struct Work {
    PlaneMap map;
    PlaneMap fromBelow;
    double tolerance;
    Form form;
    int version = 1009;
    DrawingReport& report;

    const PlaneMap& Own(int facing) const { return facing < 0 ? fromBelow : map; }
};

/// A place where directions and lengths of an entity are transformed.
class Surroundings {
public:
    Surroundings(const Work& work, int facing, Point ownPlace)
        : map_(work.Own(facing)), place_(ownPlace) {}

    /// The derivative in the own plane, which says what becomes of texts and other fixed shapes.
    const Derivative& Slope();
    /// The same for vectors, which linear transformations turn and stretch exactly.
    const Derivative& SlopeOfVectors();
    /// Whether a shape was transformed, or a vector by a transformation that is not linear.
    bool IsNearly() const { return nearly_; }

private:
    const Derivative& Computed();

    const PlaneMap& map_;
    Point place_;
    std::optional<Derivative> slope_{};
    bool nearly_ = false;
};

/// Transforms an entity that is not part of a polyline, and appends what stands in its place. A
/// Trouble leaves the text and the report as they were.
void RewriteEntity(Record& record, Work& work, std::string& out);
/// Transforms a polyline with its vertices and the end of their sequence.
void RewritePolyline(std::vector<Record>& records, Work& work, std::string& out);
/// Moves the place that a view shows.
void RewriteView(Record& record, const ViewRule& rule, Work& work);

// The parts of RewriteEntity in files of their own.

/// Applies the rules for the groups of a scope.
void ApplyRules(Record& record, std::span<const Rule> rules, Scope scope, const Work& work,
                int facing, Surroundings& around);
/// The same with the rules for extended data.
void ApplyExtended(Record& record, const Work& work, int facing, Surroundings& around);
/// Counts an entity, and whether it could be turned and scaled only nearly.
void Count(const Record& record, Work& work, Surroundings& around);
/// 1 or -1; a Trouble for other planes.
int FacingOf(const Record& record);
void AppendRecord(std::string& out, const Record& record, const Form& form);

void RewriteCircle(Record& record, Work& work, std::string& out);
void RewriteEllipse(Record& record, Work& work, std::string& out);
void RewriteSpline(Record& record, Work& work, std::string& out);
void RewriteLwPolyline(Record& record, Work& work, std::string& out);
void RewriteHatch(Record& record, Work& work, std::string& out);

}  // namespace kv_tr::dxf
