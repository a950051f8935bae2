#include "ostrelrtcore/engine/SpecialRows.h"

#include <numeric>

namespace ort::core::engine {

SpecialRows::SpecialRows(std::span<Operand const> operands, int count) : count_(count) {
  Operand const& first = operands.front();
  Operand const* second = operands.size() > 1 ? &operands[1] : nullptr;
  if (first.GetUniformKind() != SpecialKind::None) {
    uniformKind_ = first.GetUniformKind();
  } else if (second == nullptr || !second->HasSpecials()) {
    rows_ = first.GetSpecialRows();
    kinds_ = first.GetSpecialKinds();
  } else if (!first.HasSpecials()) {
    uniformKind_ = second->GetUniformKind();
    rows_ = second->GetSpecialRows();
    kinds_ = second->GetSpecialKinds();
  } else {
    Merge(first, *second);
  }
}

void SpecialRows::Merge(Operand const& first, Operand const& second) {
  std::span<int const> secondRows = second.GetSpecialRows();
  std::span<SpecialKind const> secondKinds = second.GetSpecialKinds();
  std::vector<int> allRows;
  std::vector<SpecialKind> allKinds;
  if (second.GetUniformKind() != SpecialKind::None) {
    allRows.resize(static_cast<std::size_t>(count_));
    std::iota(allRows.begin(), allRows.end(), 0);
    allKinds.assign(allRows.size(), second.GetUniformKind());
    secondRows = allRows;
    secondKinds = allKinds;
  }
  auto const firstRows = first.GetSpecialRows();
  std::size_t const most = firstRows.size() + secondRows.size();
  ownRows_.reserve(most);
  ownKinds_.reserve(most);
  for (std::size_t a = 0, b = 0; a < firstRows.size() || b < secondRows.size();) {
    bool const takesFirst = b == secondRows.size() || (a < firstRows.size() && firstRows[a] <= secondRows[b]);
    int const row = takesFirst ? firstRows[a] : secondRows[b];
    ownRows_.push_back(row);
    ownKinds_.push_back(takesFirst ? first.GetSpecialKinds()[a] : secondKinds[b]);
    if (takesFirst) ++a;
    if (b < secondRows.size() && secondRows[b] == row) ++b;
  }
  rows_ = ownRows_;
  kinds_ = ownKinds_;
}

std::vector<int> SpecialRows::ListOrdinary() const {
  std::vector<int> ordinary;
  ordinary.reserve(static_cast<std::size_t>(count_) - rows_.size());
  std::size_t next = 0;
  for (int row = 0; row < count_; ++row) {
    if (next < rows_.size() && rows_[next] == row) {
      ++next;
    } else {
      ordinary.push_back(row);
    }
  }
  return ordinary;
}

}  // namespace ort::core::engine
