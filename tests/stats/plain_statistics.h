// A plain definition of the statistics, written from docs/variance-test.md, "The
// arithmetic", for tests that compare bits.
//
// It shares nothing with src/stats. A 32-bit operation is computed in 64 bits and then
// rounded, which gives the same bits for + - * /, because a 64-bit real has more than
// twice as many digits. Constants are bit patterns, and each step is a statement of its
// own. The 32-bit logarithm and exponential are those of the system's library in both.

#ifndef VELDMARK_TESTS_STATS_PLAIN_STATISTICS_H_
#define VELDMARK_TESTS_STATS_PLAIN_STATISTICS_H_

#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace veldmark::plain {

// A 32-bit real, stored in 64 bits.
struct Real32 {
  double value;
  Real32(double exact) : value(static_cast<float>(exact)) {}
  friend Real32 operator+(Real32 l, Real32 r) { return {l.value + r.value}; }
  friend Real32 operator-(Real32 l, Real32 r) { return {l.value - r.value}; }
  friend Real32 operator*(Real32 l, Real32 r) { return {l.value * r.value}; }
  friend Real32 operator/(Real32 l, Real32 r) { return {l.value / r.value}; }
  friend bool operator<(Real32 l, Real32 r) { return l.value < r.value; }
};
inline Real32 real_of_bits(std::uint32_t bits) { return {std::bit_cast<float>(bits)}; }
inline float as_float(Real32 real) { return static_cast<float>(real.value); }

struct MeanAndVariance {
  Real32 ave;
  Real32 var;
};

inline MeanAndVariance avevar(const std::vector<float>& data) {
  const auto count = static_cast<int>(data.size());
  const Real32 n = count;
  Real32 s = 0;
  for (const float value : data) {
    s = s + Real32(value);
  }
  const Real32 ave = s / n;
  Real32 ep = 0;
  Real32 var = 0;
  for (const float value : data) {
    const Real32 dev = Real32(value) - ave;
    ep = ep + dev;
    const Real32 square = dev * dev;
    var = var + square;
  }
  const Real32 square_of_sum = ep * ep;
  const Real32 correction = square_of_sum / n;
  const Real32 corrected = var - correction;
  return {ave, corrected / Real32(count - 1)};
}

inline float gammln(float xx) {
  constexpr std::array<std::uint64_t, 6> kCof = {
      0x40530B869F76170A, 0xC055A0572B143656, 0x4038039BF13B4CC6,
      0xBFF3B5348DCDCC8C, 0x3F53CD7319EC12D8, 0xBED6A1181C0E9888};
  const auto stp = std::bit_cast<double>(std::uint64_t{0x40040D931FF62706});
  const double x = xx;
  double tmp = x + 5.5;
  const double log_of_tmp = std::log(tmp);
  tmp = (x + 0.5) * log_of_tmp - tmp;
  auto ser = std::bit_cast<double>(std::uint64_t{0x3FF00000000D0EC7});
  double y = x;
  for (const std::uint64_t cof : kCof) {
    y = y + 1;
    const double term = std::bit_cast<double>(cof) / y;
    ser = ser + term;
  }
  const double scaled = stp * ser;
  return static_cast<float>(tmp + std::log(scaled / x));
}

// The places where the continued fraction may replace a denominator.
enum Place : std::uint8_t { kStartD, kEvenD, kEvenC, kOddD, kOddC, kPlaces };

struct Fraction {
  Real32 h;
  int steps;                               // 1..100, and 101 if it did not converge
  std::array<int, kPlaces> substitutions;  // how often each place did so
};

inline Fraction betacf(Real32 a, Real32 b, Real32 x) {
  const Real32 fpmin = real_of_bits(0x0DA24260);
  const Real32 eps = real_of_bits(0x34A10FB0);
  const Real32 one = 1;
  Fraction out{one, 1, {}};
  const auto off_zero = [&](Real32 value, Place place) {
    if (!(Real32(std::fabs(value.value)) < fpmin)) {
      return value;
    }
    ++out.substitutions[place];
    return fpmin;
  };
  const Real32 qab = a + b;
  const Real32 qap = a + one;
  const Real32 qam = a - one;
  const Real32 start = (qab * x) / qap;
  Real32 c = one;
  Real32 d = one / off_zero(one - start, kStartD);
  out.h = d;
  for (; out.steps <= 100; ++out.steps) {
    const Real32 m = out.steps;
    const Real32 m2 = 2 * out.steps;
    const Real32 even_top = ((b - m) * m) * x;
    const Real32 even_bottom = (qam + m2) * (a + m2);
    const Real32 even = even_top / even_bottom;
    const Real32 even_d = off_zero((even * d) + one, kEvenD);
    const Real32 even_c = off_zero((even / c) + one, kEvenC);
    out.h = ((one / even_d) * out.h) * even_c;
    const Real32 odd_top = ((qab + m) * (a + m)) * x;
    const Real32 odd_bottom = (m2 + qap) * (m2 + a);
    const Real32 odd = Real32(0) - (odd_top / odd_bottom);
    const Real32 odd_d = off_zero(one + (odd * (one / even_d)), kOddD);
    c = off_zero((odd / even_c) + one, kOddC);
    d = one / odd_d;
    const Real32 del = d * c;
    out.h = del * out.h;
    if (Real32(std::fabs((del - one).value)) < eps) {
      break;
    }
  }
  return out;
}

struct Beta {
  Real32 result;
  int bad_arguments;
};

// The two branches of I_x(a, b), for the tests of the bound between them.
inline Real32 beta_front(Real32 a, Real32 b, Real32 x) {
  if (x.value == 0 || x.value == 1) {
    return 0;
  }
  const Real32 log_of_rest = std::log(as_float(Real32(1) - x));
  const Real32 log_of_x = std::log(as_float(x));
  const Real32 both = gammln(as_float(a + b));
  const Real32 gammas = (both - Real32(gammln(as_float(a)))) - gammln(as_float(b));
  const Real32 inner = gammas + (a * log_of_x);
  return std::exp(as_float((b * log_of_rest) + inner));
}
inline Real32 beta_below(Real32 a, Real32 b, Real32 x) {
  return (beta_front(a, b, x) * betacf(a, b, x).h) / a;
}
inline Real32 beta_above(Real32 a, Real32 b, Real32 x) {
  const Real32 rest = Real32(1) - x;
  return Real32(1) - ((beta_front(a, b, x) * betacf(b, a, rest).h) / b);
}
inline Real32 beta_bound(Real32 a, Real32 b) {
  return (a + Real32(1)) / ((a + b) + Real32(2));
}
inline Beta betai(Real32 a, Real32 b, Real32 x) {
  const int bad = x < Real32(0) || Real32(1) < x ? 1 : 0;
  return {x < beta_bound(a, b) ? beta_below(a, b, x) : beta_above(a, b, x), bad};
}

inline std::int32_t adjusted_count(Real32 n, Real32 kurtosis) {
  const Real32 ratio = (n - Real32(3)) / (n - Real32(1));
  const Real32 quotient = (Real32(2) * n) / (kurtosis - ratio);
  const double whole = std::trunc(quotient.value);
  // NaN fails both comparisons. Any value that does not fit into 32 bits gives 2 as
  // well.
  return 2 <= whole && whole <= 2147483647.0 ? static_cast<std::int32_t>(whole) : 2;
}

struct Test {
  std::int32_t d1;
  std::int32_t d2;
  Real32 f;
  Real32 prob;
  Real32 kurtosis;
  int bad_arguments;
};

inline Test ftest(const std::vector<float>& data1, const std::vector<float>& data2) {
  const MeanAndVariance first = avevar(data1);
  const MeanAndVariance second = avevar(data2);
  Real32 s4 = 0;
  const auto add = [&s4](const std::vector<float>& data, Real32 ave) {
    for (const float value : data) {
      const Real32 dev = Real32(value) - ave;
      const Real32 square = dev * dev;
      const Real32 cube = square * dev;
      s4 = s4 + (cube * dev);
    }
  };
  add(data1, first.ave);
  add(data2, second.ave);
  const Real32 n1 = static_cast<double>(data1.size());
  const Real32 n2 = static_cast<double>(data2.size());
  const Real32 m4 = s4 / (n2 + n1);
  const Real32 weighted2 = (n2 - Real32(1)) * second.var;
  const Real32 weighted1 = (n1 - Real32(1)) * first.var;
  const Real32 pooled = (weighted2 + weighted1) / (n2 + n1);
  const Real32 kurtosis = m4 / (pooled * pooled);

  Test out{
      adjusted_count(n1, kurtosis), adjusted_count(n2, kurtosis), 0, 0, kurtosis, 0};
  Real32 df1 = out.d2 - 1;
  Real32 df2 = out.d1 - 1;
  if (second.var < first.var) {
    out.f = first.var / second.var;
    df1 = out.d1 - 1;
    df2 = out.d2 - 1;
  } else {
    out.f = second.var / first.var;
  }
  const Real32 x = df2 / ((df1 * out.f) + df2);
  const Beta beta = betai(Real32(0.5) * df2, df1 * Real32(0.5), x);
  out.bad_arguments = beta.bad_arguments;
  out.prob = Real32(2) * beta.result;
  if (Real32(1) < out.prob) {
    out.prob = Real32(2) - out.prob;
  }
  return out;
}

}  // namespace veldmark::plain

#endif  // VELDMARK_TESTS_STATS_PLAIN_STATISTICS_H_
