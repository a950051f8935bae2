#include "ostrelrtcore/values/ValueOrder.h"

#include <bit>
#include <cmath>
#include <limits>

#include "ostrelrtcore/values/ScalarValue.h"

namespace ort::core {
namespace {

bool IsIntegerType(StoreType type) { return type == StoreType::Int32 || type == StoreType::Int64; }
bool IsNumericType(StoreType type) { return type >= StoreType::Int32 && type <= StoreType::Real64; }
bool IsTemporalType(StoreType type) { return type == StoreType::Date || type == StoreType::DateTime; }

int64 ToInteger(StoreType type, uint64 bits) {
  return type == StoreType::Int32 ? int64{static_cast<int>(bits)} : static_cast<int64>(bits);
}

double ToReal(StoreType type, uint64 bits) {
  return type == StoreType::Real32 ? double{std::bit_cast<float>(static_cast<uint32>(bits))}
                                   : std::bit_cast<double>(bits);
}

// Exact, although not every 64-bit integer is a double.
bool IsLess(int64 integer, double real) {
  if (std::isnan(real)) return false;
  if (real >= 0x1p63) return true;
  if (real < -0x1p63) return false;
  auto const whole = static_cast<int64>(real);
  return integer < whole || (integer == whole && static_cast<double>(whole) < real);
}

bool IsLess(double real, int64 integer) {
  if (std::isnan(real)) return false;
  if (real >= 0x1p63) return false;
  if (real < -0x1p63) return true;
  auto const whole = static_cast<int64>(real);
  return whole < integer || (integer == whole && real < static_cast<double>(whole));
}

bool IsNumberLess(StoreType aType, uint64 a, StoreType bType, uint64 b) {
  if (IsIntegerType(aType)) {
    return IsIntegerType(bType) ? ToInteger(aType, a) < ToInteger(bType, b)
                                : IsLess(ToInteger(aType, a), ToReal(bType, b));
  }
  return IsIntegerType(bType) ? IsLess(ToReal(aType, a), ToInteger(bType, b))
                              : ToReal(aType, a) < ToReal(bType, b);
}

int Sign(bool less, bool greater) { return less ? -1 : (greater ? 1 : 0); }

int CompareMembers(IStoreTuple const& a, IStoreTuple const& b) {
  for (int i = 0; i < a.GetCount() && i < b.GetCount(); ++i) {
    if (int const order = CompareForListing(*a.GetMember(i), *b.GetMember(i)); order != 0) return order;
  }
  return Sign(a.GetCount() < b.GetCount(), a.GetCount() > b.GetCount());
}

}  // namespace

bool IsScalarLess(StoreType type, uint64 bits, StoreValue const& other) {
  StoreType const otherType = other.GetStoreType();
  bool const comparable = (IsNumericType(type) && IsNumericType(otherType)) ||
                          (IsTemporalType(type) && IsTemporalType(otherType));
  auto const otherBits = GetScalarBits(other);
  if (!comparable || !otherBits) {
    throw OrtRuntimeException(
        OrtError_TypesDiffer,
        StoreTypeToString(type) + OStringCore(L" ordered against ") + StoreTypeToString(otherType));
  }
  return IsTemporalType(type) ? bits < *otherBits : IsNumberLess(type, bits, otherType, *otherBits);
}

int CompareForListing(StoreType type, uint64 a, uint64 b) {
  if (IsIntegerType(type)) {
    return Sign(ToInteger(type, a) < ToInteger(type, b), ToInteger(type, a) > ToInteger(type, b));
  }
  if (IsNumericType(type)) {
    double const x = ToReal(type, a);
    double const y = ToReal(type, b);
    if (std::isnan(x) || std::isnan(y)) {
      if (std::isnan(x) != std::isnan(y)) return Sign(std::isnan(y), std::isnan(x));
    } else if (x != y) {
      return Sign(x<y, x> y);
    }
  }
  return Sign(a<b, a> b);
}

int CompareForListing(StoreValue const& a, StoreValue const& b) {
  if (a.IsSpecial() || b.IsSpecial()) {
    if (a.IsSpecial() != b.IsSpecial()) return Sign(b.IsSpecial(), a.IsSpecial());
    if (a.GetSpecialKind() != b.GetSpecialKind()) return a.GetSpecialKind() < b.GetSpecialKind() ? -1 : 1;
  }
  StoreType const type = a.GetStoreType();
  if (type != b.GetStoreType()) return type < b.GetStoreType() ? -1 : 1;
  if (a.IsSpecial()) return 0;
  if (type == StoreType::String) return a.GetString().Get().compare(b.GetString().Get());
  if (type == StoreType::Tuple) return CompareMembers(a.AsTuple(), b.AsTuple());
  auto const x = GetScalarBits(a);
  auto const y = GetScalarBits(b);
  // Values that are equal must stand side by side, so their bits are made the same first.
  if (x && y) return CompareForListing(type, GetCanonicalBits(type, *x), GetCanonicalBits(type, *y));
  return Sign(a.GetHash() < b.GetHash(), a.GetHash() > b.GetHash());
}

}  // namespace ort::core
