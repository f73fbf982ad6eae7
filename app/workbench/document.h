// A project that is open: its points, their fit, and what the fit is worth.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "kv_tr/forms/change_event.h"
#include "kv_tr/forms/findings_tables.h"
#include "kv_tr/forms/pair_table.h"
#include "workbench/content.h"

namespace kv_tr::workbench {

using Places = std::vector<std::size_t>;  // of points, counted from 0, rising

// What can happen to a document. Each change is applied by Document::Apply, which yields the change
// that takes it back.

/// Points in use are excluded, excluded ones are taken back.
struct UseChange {
    Places places;
};
/// A point becomes another one.
struct PairChange {
    std::size_t place = 0;
    Pair pair;
};
/// Points are put in; the places are those that they have afterwards.
struct Insertion {
    Places places;
    std::vector<Pair> pairs;
};
struct Removal {
    Places places;
};
struct SettingsChange {
    Settings settings;
};
/// Source and destination change places.
struct DirectionChange {};

using Change =
    std::variant<UseChange, PairChange, Insertion, Removal, SettingsChange, DirectionChange>;

/// Points, settings, and the fit that belongs to them. The fit is computed when something is asked
/// that needs it, what the fit is worth when that is asked; either once a state. Equal states have
/// equal fits, whatever happened before.
class Document {
public:
    Document() : Document(Content{}) {}
    explicit Document(Content content);
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;

    /// Takes the content of another project.
    void Replace(Content content);
    /// Yields the change that takes this one back. Places must exist, and none be excluded when two
    /// points are in use.
    Change Apply(Change change);
    /// Another number after each change.
    std::uint64_t Version() const { return version_; }

    std::size_t Count() const { return adjustment_.Points().size(); }
    std::size_t UsedCount() const { return adjustment_.UsedCount(); }
    const ControlPoint& PointAt(std::size_t place) const { return adjustment_.Points()[place]; }
    std::span<const ControlPoint> Points() const { return adjustment_.Points(); }
    Pair PairAt(std::size_t place) const;
    Point SigmaAt(std::size_t place) const { return extras_[place].sigma; }
    const std::string& NoteAt(std::size_t place) const { return extras_[place].note; }
    std::uint64_t KeyAt(std::size_t place) const { return extras_[place].key; }
    bool IsSwapped() const { return adjustment_.IsSwapped(); }
    const Settings& Current() const { return settings_; }
    /// For those who keep a reference to the limit.
    const double& Limit() const { return settings_.limit; }

    // The fit.

    /// The adjustment with its fit. Where there is no fit, residuals are zero and figures
    /// undefined.
    const Adjustment& Adjusted();
    /// Whether the last fit computed something, good or bad.
    bool HasFit();
    /// Root of the squares over the redundancy, metres; undefined without redundancy.
    double Sigma0();
    FindingsCache& Findings();
    /// The lines of the strip: the warnings, the gravest first, or that the fit was checked.
    std::vector<StripLine> Strip();
    /// Whether the test or the limit blames a point in use.
    bool IsSuspect(std::size_t place);
    /// The place of the point that the test blames most; Count() where it blames none.
    std::size_t WorstSuspect();
    /// Whether the assessment of the fit is there, or is made in no time.
    bool HasAssessment();
    /// The same as WorstSuspect(), but Count() where an assessment of very many points would have
    /// to be waited for.
    std::size_t KnownSuspect();

    /// Why the standard deviations of the points do not count.
    enum class SigmaUse {
        kNone,     ///< there are none
        kCount,    ///< they do count
        kMissing,  ///< some points have none
        kUnequal,  ///< a type whose coordinates share unknowns needs the same for both of a point
    };
    SigmaUse UseOfSigmas() const;

    /// The table of the points with their fit; row 0 has the headings.
    PairTable& Table();
    /// The heading of a column of the table, and what the column shows, which need no fit.
    std::string HeadingOf(int column) const { return table_.CellText(0, column); }
    std::string HeadingTipOf(int column) const { return table_.HeadingTip(column); }

private:
    struct Extra {
        Point sigma;
        std::string note;
        std::uint64_t key;
    };

    Change Applied(UseChange change);
    Change Applied(PairChange change);
    Change Applied(Insertion change);
    Change Applied(Removal change);
    Change Applied(SettingsChange change);
    Change Applied(DirectionChange change);
    Extra ExtraOf(Pair& pair);
    void Assign(std::vector<ControlPoint> points);
    void Fit();
    void ForgetFit();
    AssessmentOptions Options() const;

    Adjustment adjustment_;
    std::vector<Extra> extras_;  // of the points, in their order
    Settings settings_;
    std::uint64_t lastKey_ = 0;
    std::uint64_t version_ = 0;
    bool isFitted_ = false;
    bool hasFit_ = false;
    bool findingsAreCurrent_ = false;
    FindingsCache findings_{adjustment_};
    ChangeEvent tableChanged_;
    PairTable table_{adjustment_, settings_.limit, tableChanged_, &findings_};
};

/// The type that a fit of new points begins with: the affine one where the points in use determine
/// it, otherwise Helmert.
Type FirstTypeFor(std::span<const ControlPoint> points);

}  // namespace kv_tr::workbench
