// The control points of a fit as arrays, with what is known of their accuracy.
#include "python/fitted_points.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kv_tr::python {
namespace {

Doubles KeptPoints(const py::object& given, const char* name) {
    const Doubles points = PointsFrom(given, name);
    CheckFinitePoints(ReadOnly(points), name);
    return ReadOnlyArray(Doubles({points.shape(0), py::ssize_t{2}}, points.data()));
}

/// Whether each point is used: all of them where nothing is given.
Flags KeptFlags(const py::object& given, py::ssize_t count) {
    Flags flags(count);
    if (given.is_none()) {
        std::fill_n(flags.mutable_data(), count, true);
        return ReadOnlyArray(flags);
    }
    const py::array array = py::module_::import("numpy").attr("asarray")(given);
    if (array.ndim() != 1 || array.shape(0) != count) {
        throw py::value_error("used must have shape (" + std::to_string(count) + ",), not " +
                              ShapeOf(array));
    }
    if (array.dtype().kind() != 'b' && count > 0) {
        throw py::type_error("used must hold bools, not " +
                             py::str(array.dtype()).cast<std::string>());
    }
    const Flags contiguous = Flags::ensure(array);
    std::copy_n(contiguous.data(), count, flags.mutable_data());
    return ReadOnlyArray(flags);
}

bool CanBeFitted(Type type) { return type >= Type::kAffine5 && type <= Type::kBilinear; }

Type FittedType(const py::object& given) {
    const auto type = Converted<Type>(given, "type", "a word or a Type");
    if (CanBeFitted(type)) return type;
    throw py::value_error("'" + WordOf(type) + "' cannot be fitted");
}

/// Whether a weight can be made of a standard deviation.
bool IsUsable(double sigma) { return sigma > 0.0 && std::isnormal(1.0 / (sigma * sigma)); }

double Usable(double sigma, const std::string& name) {
    if (IsUsable(sigma)) return sigma;
    throw py::value_error(name + " is " + py::repr(py::float_(sigma)).cast<std::string>() +
                          "; standard deviations must be positive numbers whose squares are some");
}

/// Standard deviations of shape (n,) or (n, 2) as pairs.
Doubles KeptSigmas(const Doubles& given, py::ssize_t count) {
    const bool arePairs = given.ndim() == 2 && given.shape(1) == 2;
    if ((given.ndim() != 1 && !arePairs) || given.shape(0) != count) {
        const std::string n = std::to_string(count);
        throw py::value_error("sigma must be a number or have shape (" + n + ",) or (" + n +
                              ", 2), not " + ShapeOf(given));
    }
    const auto values = ReadOnly(given);
    if (const auto bad = std::ranges::find_if_not(values, IsUsable); bad != values.end()) {
        const auto index = bad - values.begin();
        Usable(*bad, arePairs ? "sigma[" + std::to_string(index / 2) + ", " +
                                    std::to_string(index % 2) + "]"
                              : "sigma[" + std::to_string(index) + "]");
    }
    Doubles sigmas({count, py::ssize_t{2}});
    double* sigma = sigmas.mutable_data();
    for (const double value : values) {
        *sigma++ = value;
        if (!arePairs) *sigma++ = value;
    }
    return ReadOnlyArray(sigmas);
}

/// Pairs of the numbers of an array.
std::vector<Point> PairsOf(const Doubles& array) {
    std::vector<Point> pairs(static_cast<std::size_t>(array.shape(0)));
    const double* at = array.data();
    for (Point& pair : pairs) {
        pair = {at[0], at[1]};
        at += 2;
    }
    return pairs;
}

}  // namespace

FittedPoints::FittedPoints(const py::object& source, const py::object& target,
                           const py::object& used, const py::object& type, const py::object& sigma,
                           const py::object& sigma0, const py::object& alpha)
    : type_(FittedType(type)),
      source_(KeptPoints(source, "source")),
      target_(KeptPoints(target, "target")) {
    if (source_.shape(0) != target_.shape(0)) {
        throw py::value_error("source has " + std::to_string(source_.shape(0)) +
                              " points, target has " + std::to_string(target_.shape(0)));
    }
    used_ = KeptFlags(used, source_.shape(0));
    TakeAccuracy(sigma, sigma0, alpha);
    pins_ = Pinned({source_, target_, used_, sigma_});
}

void FittedPoints::TakeAccuracy(const py::object& sigma, const py::object& sigma0,
                                const py::object& alpha) {
    if (!sigma0.is_none()) {
        sigma0_ = Usable(Converted<double>(sigma0, "sigma0", "a number"), "sigma0");
    }
    alpha_ = Converted<double>(alpha, "alpha", "a number");
    if (!(alpha_ > 0.0 && alpha_ < 1.0)) {
        throw py::value_error("alpha must lie between 0 and 1, both excluded");
    }
    if (sigma.is_none()) return;
    const Doubles given = NumbersFrom(sigma, "sigma");
    if (given.ndim() == 0) {
        if (sigma0_) {
            throw py::value_error("a single sigma is the sigma0: give one of them, or an array");
        }
        sigma0_ = Usable(*given.data(), "sigma");
        return;
    }
    const Doubles kept = KeptSigmas(given, source_.shape(0));
    const auto differs = [](const Point& pair) { return pair.first != pair.second; };
    if (SharesUnknowns(ModelOf(type_)) && std::ranges::any_of(PairsOf(kept), differs)) {
        throw py::value_error("sigma must be the same for both coordinates of a point: those of " +
                              WordOf(type_) + " share unknowns");
    }
    sigma_ = kept;
    if (!sigma0_) sigma0_ = 1.0;
}

void FittedPoints::CopyTo(std::vector<ControlPoint>& points) const {
    points.resize(static_cast<std::size_t>(used_.size()));
    const double* from = source_.data();
    const double* to = target_.data();
    const bool* isUsed = used_.data();
    for (ControlPoint& point : points) {
        point.source = {from[0], from[1]};
        point.destination = {to[0], to[1]};
        point.used = *isUsed++;
        from += 2;
        to += 2;
    }
}

std::vector<ControlPoint> FittedPoints::Points() const {
    std::vector<ControlPoint> points;
    CopyTo(points);
    return points;
}

AssessmentOptions FittedPoints::Options() const {
    AssessmentOptions options;
    options.sigma0 = sigma0_;
    options.alpha = alpha_;
    if (!sigma_.is_none()) options.sigmas = PairsOf(py::reinterpret_borrow<Doubles>(sigma_));
    return options;
}

std::shared_ptr<const PointPrecision> FittedPoints::Precision() const {
    if (precision_) return *precision_;
    const std::vector<ControlPoint> points = Points();
    const AssessmentOptions options = Options();
    std::shared_ptr<PointPrecision> computed;
    {
        const py::gil_scoped_release unlocked;
        AdjustedModel model(points, type_, options.sigmas);
        if (model.IsDetermined()) {
            const bool isExact = model.Redundancy() == 0;
            computed = std::make_shared<PointPrecision>(std::move(model));
            if (isExact && options.sigma0) computed->SetSigma0(*options.sigma0);
        }
    }
    precision_ = computed;
    return computed;
}

}  // namespace kv_tr::python
