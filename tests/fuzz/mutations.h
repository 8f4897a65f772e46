#pragma once
// Inputs for the fuzz target over form streams: a corpus of binary streams and
// form texts, and mutations of them, each family a kind of damage the readers
// meet.
#include <string>
#include <vector>

namespace fuzz {

// One file of the corpus. Valid ones read on every path and are mutated most.
struct Sample {
  std::string name, bytes;
  bool valid = false;
  bool Binary() const { return bytes.compare(0, 4, "TPF0") == 0; }
};

// The families of damage, one after the other by the number of the input.
enum Family {
  kTruncate,
  kBitFlip,
  kEdit,
  kHugeLength,
  kWrongType,
  kUnknownName,
  kNameClash,
  kNul,
  kLongName,
  kUnbalanced,
  kNesting,
  kSplice,
  kFamilies
};

const char* FamilyName(int family);

// Input number index of the run with that seed, made from the corpus (not
// empty); how says which sample and family.
std::string Mutate(const std::vector<Sample>& corpus, unsigned long long seed, int index, std::string& how);

}  // namespace fuzz
