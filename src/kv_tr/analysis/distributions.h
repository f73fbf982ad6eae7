// The distributions that tests of an adjustment need.
#pragma once

namespace kv_tr {

// Tails are computed as such, never as 1 - p, so that a probability of 1e-20 does not become 0.
// Degrees of freedom are positive; otherwise, and for figures that are not numbers, the result is
// not a number. Quantiles take the probability of the upper tail.

/// The probability that a normal deviate exceeds a value in size, both signs together.
double NormalTwoSided(double value);
/// The same for Student's distribution.
double StudentTwoSided(double value, double freedom);
/// The probability that a chi-square deviate exceeds a value.
double ChiSquareTail(double value, double freedom);
/// The probability that a deviate of Fisher's F distribution exceeds a value.
double FisherTail(double value, double freedom, double secondFreedom);

double NormalQuantile(double tail);
double StudentQuantile(double tail, double freedom);
double ChiSquareQuantile(double tail, double freedom);
double FisherQuantile(double tail, double freedom, double secondFreedom);

}  // namespace kv_tr
