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
        return {product, ErrorOfProduct(a, b, product)};
    }

    /// What rounding took from a product.
    static double ErrorOfProduct(double a, double b, double product) {
#ifdef __MINGW32__                              // whose std::fma rounds twice
        constexpr double kSmallest = 0x1p-900;  // beyond these the parts would leave the doubles
        constexpr double kGreatest = 0x1p900;
        const double size = std::abs(product);
        if (!(size >= kSmallest && size <= kGreatest && std::abs(a) <= kGreatest &&
              std::abs(b) <= kGreatest))
            return std::fma(a, b, -product);
        // Products of halves of 26 bits are exact (Dekker 1971, Veltkamp's way to halve).
        const auto upperHalf = [](double value) {
            const double part = 0x1p27 * value + value;
            return part - (part - value);
        };
        const double aHigh = upperHalf(a), aLow = a - aHigh;
        const double bHigh = upperHalf(b), bLow = b - bHigh;
        return aLow * bLow - (((product - aHigh * bHigh) - aLow * bHigh) - aHigh * bLow);
#else
        return std::fma(a, b, -product);
#endif
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
