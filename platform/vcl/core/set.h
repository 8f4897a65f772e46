#pragma once
/// \file
/// Sets of enumeration values.
#include <bitset>
#include <initializer_list>

namespace System {

/// A set of enumeration (or small integer) values between Min and Max, one bit
/// each. Values outside the range are ignored when added and never contained.
template <class T, int Min, int Max>
class Set {
  static_assert(Max >= Min, "empty range");

 public:
  Set() = default;
  Set(std::initializer_list<T> values) {
    for (T v : values) *this << v;
  }

  Set& operator<<(T v) {
    if (InRange(v)) bits_.set(Index(v));
    return *this;
  }
  Set& operator>>(T v) {
    if (InRange(v)) bits_.reset(Index(v));
    return *this;
  }
  bool Contains(T v) const { return InRange(v) && bits_.test(Index(v)); }
  bool Empty() const { return bits_.none(); }
  Set& Clear() {
    bits_.reset();
    return *this;
  }

  Set operator+(const Set& o) const { return Set(bits_ | o.bits_); }
  Set operator*(const Set& o) const { return Set(bits_ & o.bits_); }
  Set operator-(const Set& o) const { return Set(bits_ & ~o.bits_); }
  Set& operator+=(const Set& o) {
    bits_ |= o.bits_;
    return *this;
  }
  Set& operator*=(const Set& o) {
    bits_ &= o.bits_;
    return *this;
  }
  Set& operator-=(const Set& o) {
    bits_ &= ~o.bits_;
    return *this;
  }
  bool operator==(const Set& o) const { return bits_ == o.bits_; }

  /// The set as bits (bit 0 is Min), for sets of at most 64 values.
  unsigned long long ToBits() const { return bits_.to_ullong(); }
  static Set FromBits(unsigned long long bits) { return Set(std::bitset<Max - Min + 1>(bits)); }

 private:
  explicit Set(const std::bitset<Max - Min + 1>& b) : bits_(b) {}
  static bool InRange(T v) { return static_cast<int>(v) >= Min && static_cast<int>(v) <= Max; }
  static std::size_t Index(T v) { return static_cast<std::size_t>(static_cast<int>(v) - Min); }

  std::bitset<Max - Min + 1> bits_;
};

}  // namespace System
