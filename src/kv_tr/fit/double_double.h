// Numbers of twice the digits of a double.
#pragma once

#include <cmath>

namespace kv_tr {

/// An unevaluated sum of two doubles, about 32 digits. Sums and products are right to a few units
/// of the last place (Dekker 1971; Knuth, Seminumerical Algorithms, section 4.2.2).
struct DoubleDouble {
    double high = 0;
    double low = 0;

    DoubleDouble() = default;
    DoubleDouble(double value) : high(value) {}
    DoubleDouble(double rounded, double rest) : high(rounded), low(rest) {}

    double Rounded() const { return high + low; }

    /// The sum of two doubles without error.
    static DoubleDouble Sum(double a, double b) {
        const double sum = a + b;
        const double part = sum - a;
        return {sum, (a - (sum - part)) + (b - part)};
    }
    static DoubleDouble Product(double a, double b) {
        const double product = a * b;
        return {product, std::fma(a, b, -product)};
    }

    friend DoubleDouble operator+(DoubleDouble a, DoubleDouble b) {
        const DoubleDouble sum = Sum(a.high, b.high);
        return Sum(sum.high, sum.low + (a.low + b.low));
    }
    friend DoubleDouble operator*(DoubleDouble a, DoubleDouble b) {
        const DoubleDouble product = Product(a.high, b.high);
        return Sum(product.high, product.low + (a.high * b.low + a.low * b.high));
    }
    DoubleDouble& operator+=(DoubleDouble other) { return *this = *this + other; }
    friend DoubleDouble operator-(DoubleDouble a) { return {-a.high, -a.low}; }
};

}  // namespace kv_tr
