// The distributions that tests of an adjustment need.
#include "kv_tr/analysis/distributions.h"

#include <boost/math/distributions/chi_squared.hpp>
#include <boost/math/distributions/fisher_f.hpp>
#include <boost/math/distributions/normal.hpp>
#include <boost/math/distributions/students_t.hpp>
#include <cmath>
#include <limits>

namespace kv_tr {
namespace {

namespace math = boost::math;
namespace policies = boost::math::policies;

/// Doubles throughout, so that every machine gives the same digits; not a number, or infinite,
/// instead of an exception.
using Policy = policies::policy<
    policies::promote_double<false>, policies::domain_error<policies::ignore_error>,
    policies::pole_error<policies::ignore_error>, policies::overflow_error<policies::ignore_error>,
    policies::evaluation_error<policies::ignore_error>>;
using Normal = math::normal_distribution<double, Policy>;
using Student = math::students_t_distribution<double, Policy>;
using ChiSquare = math::chi_squared_distribution<double, Policy>;
using Fisher = math::fisher_f_distribution<double, Policy>;

template <class Distribution>
double Tail(const Distribution& distribution, double value) {
    return math::cdf(math::complement(distribution, value));
}

template <class Distribution>
double Quantile(const Distribution& distribution, double tail) {
    return math::quantile(math::complement(distribution, tail));
}

}  // namespace

double NormalTwoSided(double value) { return std::erfc(std::abs(value) / std::sqrt(2.0)); }

double StudentTwoSided(double value, double freedom) {
    return 2.0 * Tail(Student(freedom), std::abs(value));
}

double ChiSquareTail(double value, double freedom) { return Tail(ChiSquare(freedom), value); }

double FisherTail(double value, double freedom, double secondFreedom) {
    if (value == std::numeric_limits<double>::infinity()) return 0.0;  // the library has none
    return Tail(Fisher(freedom, secondFreedom), value);
}

double NormalQuantile(double tail) { return Quantile(Normal(), tail); }

double StudentQuantile(double tail, double freedom) { return Quantile(Student(freedom), tail); }

double ChiSquareQuantile(double tail, double freedom) { return Quantile(ChiSquare(freedom), tail); }

double FisherQuantile(double tail, double freedom, double secondFreedom) {
    double rest = 0.0;
    const double part = math::ibeta_inv(secondFreedom / 2.0, freedom / 2.0, tail, &rest, Policy());
    return secondFreedom * rest / (freedom * part);
}

}  // namespace kv_tr
