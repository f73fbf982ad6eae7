// The plan of the residuals in a report.
#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "kv_tr/files/report_sections.h"
#include "kv_tr/model/elementary.h"
#include "kv_tr/text/code_page.h"
#include "kv_tr/text/control_characters.h"
#include "kv_tr/text/round_number.h"

namespace kv_tr {
namespace {

using Ink = ReportPicture::Ink;
using Anchor = ReportPicture::Anchor;

// In points of the picture.
constexpr double kWidth = 490;
constexpr double kMostHeight = 560;
constexpr double kLeastHeight = 150;
constexpr double kLeft = 52;    // for coordinates beside the frame
constexpr double kBottom = 44;  // for coordinates and bars below the frame
constexpr double kPadding = 44;
constexpr double kVector = 36;  // the longest residual vector
constexpr double kMark = 3;
constexpr double kLeastShown = 1e-6;                          // metres
constexpr double kLetter = 0.62 * ReportPicture::kLabelSize;  // the width of one, about

std::string LengthText(double metres, const ReportWords& words) {
    const bool small = metres < 1.0;
    return words.Figure(small ? metres * 1000.0 : metres) + (small ? " mm" : " m");
}

struct Box {
    double left, top, right, bottom;
    bool Overlaps(const Box& other) const {
        return left < other.right && other.left < right && top < other.bottom && other.top < bottom;
    }
};

class Plan {
public:
    Plan(const ReportSubject& subject, const ReportWords& words)
        : subject_(subject), words_(words) {
        const auto points = subject.adjustment.Points();
        for (std::size_t i = 0; i < points.size(); ++i) {
            const Point place = points[i].destination;
            if (!std::isfinite(place.first) || !std::isfinite(place.second)) continue;
            if (shown_.empty()) least_ = greatest_ = place;
            least_ = {std::min(least_.first, place.first), std::min(least_.second, place.second)};
            greatest_ = {std::max(greatest_.first, place.first),
                         std::max(greatest_.second, place.second)};
            shown_.push_back(i);
            const double length = LengthOf(i);
            if (points[i].used && std::isfinite(length)) longest_ = std::max(longest_, length);
        }
        SetScale();
    }

    ReportPicture Draw() {
        Rectangle(kLeft, 0, kWidth, picture_.height - kBottom);
        AddTicks();
        AddBars();
        for (const std::size_t index : shown_) AddMark(index);
        AddLabels();
        picture_.caption = words_(
            Text::kReportPlanCaption,
            {enlargement_ >= 1.0 ? words_.Fixed(enlargement_, 0) : words_.Figure(enlargement_)});
        return std::move(picture_);
    }

private:
    /// Residuals that are not numbers count as the greatest.
    double LengthOf(std::size_t index) const {
        const double length = subject_.adjustment.Residuals()[index].Length();
        return std::isnan(length) ? std::numeric_limits<double>::infinity() : length;
    }

    /// Not where the residuals are rounding.
    bool HasVectors() const { return longest_ > kLeastShown; }

    void SetScale() {
        const Point range{greatest_.first - least_.first, greatest_.second - least_.second};
        const double width = kWidth - kLeft - 2.0 * kPadding;
        const double height = kMostHeight - kBottom - 2.0 * kPadding;
        metresPerPoint_ = std::max(range.first / width, range.second / height);
        if (!(metresPerPoint_ > 0.0) || !std::isfinite(metresPerPoint_)) metresPerPoint_ = 1.0;
        const double needed = range.second / metresPerPoint_ + 2.0 * kPadding + kBottom;
        picture_.width = kWidth;
        picture_.height =
            std::clamp(std::isfinite(needed) ? needed : 0.0, kLeastHeight, kMostHeight);
        middle_ = {std::midpoint(least_.first, greatest_.first),
                   std::midpoint(least_.second, greatest_.second)};
        if (HasVectors()) enlargement_ = RoundBelow(kVector * metresPerPoint_ / longest_);
    }

    Point At(Point place) const {
        return {
            (kWidth + kLeft) / 2.0 + (place.first - middle_.first) / metresPerPoint_,
            (picture_.height - kBottom) / 2.0 - (place.second - middle_.second) / metresPerPoint_};
    }

    void Line(Point from, Point to, Ink ink = Ink::kFrame) {
        picture_.lines.push_back({from, to, ink});
    }

    void Rectangle(double left, double top, double right, double bottom) {
        Line({left, top}, {right, top});
        Line({right, top}, {right, bottom});
        Line({right, bottom}, {left, bottom});
        Line({left, bottom}, {left, top});
    }

    /// Coordinates that are multiples of a round number, along both axes.
    void AddTicks() {
        constexpr double kTick = 4;
        const double step = 2.0 * RoundBelow(60.0 * metresPerPoint_);
        const int decimals = DecimalsOfRound(step);
        const double bottom = picture_.height - kBottom;
        const double right = middle_.first + (kWidth - kLeft) / 2.0 * metresPerPoint_;
        const double top = middle_.second + bottom / 2.0 * metresPerPoint_;
        const double left = 2.0 * middle_.first - right;
        const double low = 2.0 * middle_.second - top;
        constexpr int kMostTicks = 20;  // where a step is lost in great coordinates
        double value = std::ceil(left / step) * step;
        for (int i = 0; i < kMostTicks && value <= right; ++i, value += step) {
            const double at = At({value, 0}).first;
            Line({at, bottom}, {at, bottom - kTick});
            picture_.labels.push_back(
                {{at, bottom + 9}, words_.Fixed(value, decimals), Anchor::kMiddle, Ink::kFrame});
        }
        value = std::ceil(low / step) * step;
        for (int i = 0; i < kMostTicks && value <= top; ++i, value += step) {
            const double at = At({0, value}).second;
            Line({kLeft, at}, {kLeft + kTick, at});
            picture_.labels.push_back(
                {{kLeft - 3, at + 2.5}, words_.Fixed(value, decimals), Anchor::kEnd, Ink::kFrame});
        }
    }

    /// Bars that tell the scale of the plan and that of the vectors.
    void AddBars() {
        const double base = picture_.height - 14;
        const auto bar = [&](double left, double points, const std::string& text, Ink ink) {
            Line({left, base}, {left + points, base}, ink);
            for (const double end : {left, left + points}) {
                Line({end, base - 3}, {end, base + 3}, ink);
            }
            picture_.labels.push_back({{left + points + 5, base + 2.5}, text, Anchor::kStart, ink});
        };
        const double plan = RoundBelow(100.0 * metresPerPoint_);
        bar(kLeft, plan / metresPerPoint_, LengthText(plan, words_), Ink::kPoint);
        if (!HasVectors()) return;
        const double vector = RoundBelow(longest_);
        bar(kLeft + 220, vector * enlargement_ / metresPerPoint_,
            "v: " + LengthText(vector, words_), Ink::kResidual);
    }

    Ink InkOf(std::size_t index) const {
        if (!subject_.adjustment.Points()[index].used) return Ink::kExcluded;
        const auto& suspect = subject_.assessment.suspect;
        const bool isSuspect = suspect && subject_.assessment.points[*suspect].index == index;
        return isSuspect ? Ink::kSuspect : Ink::kPoint;
    }

    void AddMark(std::size_t index) {
        const auto [x, y] = At(subject_.adjustment.Points()[index].destination);
        const Ink ink = InkOf(index);
        const bool isInside = x > kLeft && x < kWidth && y > 0.0 && y < picture_.height - kBottom;
        if (!isInside) return;  // the extent of the points is beyond the range of numbers
        taken_.push_back({x - kMark, y - kMark, x + kMark, y + kMark});
        if (ink == Ink::kExcluded) {
            Line({x - kMark, y - kMark}, {x + kMark, y + kMark}, ink);
            Line({x - kMark, y + kMark}, {x + kMark, y - kMark}, ink);
            return;
        }
        const Point corners[] = {{x, y - kMark}, {x + kMark, y + kMark}, {x - kMark, y + kMark}};
        for (int i = 0; i < 3; ++i) Line(corners[i], corners[(i + 1) % 3], ink);
        AddVector(index, {x, y}, ink == Ink::kSuspect ? ink : Ink::kResidual);
    }

    void AddVector(std::size_t index, Point from, Ink ink) {
        const Residual& residual = subject_.adjustment.Residuals()[index];
        const double points = enlargement_ / metresPerPoint_;
        const Point by{residual.first * points, -residual.second * points};
        const double length = Hypotenuse(by.first, by.second);
        if (!(length > 0.5) || !std::isfinite(length)) return;
        const Point to{from.first + by.first, from.second + by.second};
        Line(from, to, ink);
        for (const double part : {0.4, 0.7, 1.0}) {
            const double x = std::lerp(from.first, to.first, part);
            const double y = std::lerp(from.second, to.second, part);
            taken_.push_back({x - 2, y - 2, x + 2, y + 2});
        }
        const double head = std::min(4.0, length / 2.0);
        for (const double side : {0.4, -0.4}) {
            const double angle = std::atan2(by.second, by.first) + side;
            Line(to, {to.first - head * std::cos(angle), to.second - head * std::sin(angle)}, ink);
        }
    }

    /// Identifiers, those of great residuals first, where there is room for them.
    void AddLabels() {
        std::ranges::stable_sort(shown_, [this](std::size_t one, std::size_t other) {
            return LengthOf(one) > LengthOf(other);
        });
        constexpr std::size_t kMostTried = 2000;
        if (shown_.size() > kMostTried) shown_.resize(kMostTried);
        for (const std::size_t index : shown_) {
            const ControlPoint& point = subject_.adjustment.Points()[index];
            const std::string text = WithoutControls(point.id);
            const double width = kLetter * static_cast<double>(DisplayWidth(text));
            const auto [x, y] = At(point.destination);
            if (!AddLabel({x + 5, y - 3}, Anchor::kStart, text, width, InkOf(index))) {
                AddLabel({x - 5, y - 3}, Anchor::kEnd, text, width, InkOf(index));
            }
        }
    }

    bool AddLabel(Point at, Anchor anchor, const std::string& text, double width, Ink ink) {
        const double left = anchor == Anchor::kStart ? at.first : at.first - width;
        const Box box{left, at.second - ReportPicture::kLabelSize, left + width, at.second + 1};
        const bool fits =
            box.left >= kLeft && box.right <= kWidth && box.top >= 0.0 &&
            std::ranges::none_of(taken_, [&box](const Box& other) { return other.Overlaps(box); });
        if (!fits) return false;
        taken_.push_back(box);
        picture_.labels.push_back({at, text, anchor, ink});
        return true;
    }

    const ReportSubject& subject_;
    const ReportWords& words_;
    std::vector<std::size_t> shown_;
    Point least_;
    Point greatest_;
    Point middle_;
    double longest_ = 0;
    double metresPerPoint_ = 1;
    double enlargement_ = kUndefined;
    std::vector<Box> taken_;
    ReportPicture picture_;
};

}  // namespace

ReportPicture ResidualPlanOf(const ReportSubject& subject, const ReportWords& words) {
    return Plan(subject, words).Draw();
}

}  // namespace kv_tr
