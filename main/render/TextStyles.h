#pragma once

#include <cstdint>
#include <memory>

#include "ostrelrtcore/StoreValue.h"
#include "ostreltransforms/Export.h"

namespace runtime {

// The columns of a text style table that layout needs; a style index is a row. "text_font" is looked up at
// once, another column when it is first read. A missing column throws 219 with its name, one of another
// storage class 55, a row that is not there 55, a font that is no value 55 with the column's name. A special
// row of the other columns reads as 0. One thread's object.
class OSTREL_API TextStyles {
 public:
  using Value = std::shared_ptr<ort::core::StoreValue>;

  explicit TextStyles(Value table);

  Value const& GetTable() const noexcept { return table_; }

  // As the table has it, to be handed to the host.
  Value const& GetFont(std::uint32_t style) const;
  // Pixels.
  double GetAscent(std::uint32_t style) const;
  double GetFontHeight(std::uint32_t style) const;
  double GetLeading(std::uint32_t style) const;
  // A composer's orientation: style value 2 gives 2, 3 gives 1, anything else 0.
  std::uint32_t GetOrientation(std::uint32_t style) const;
  std::uint32_t GetHorizontalAlignment(std::uint32_t style) const;
  std::uint32_t GetVerticalAlignment(std::uint32_t style) const;

 private:
  template <class T>
  using Column = ort::core::ITypedArray<T> const*;

  // The element of a column that is looked up by its name unless it is known.
  template <class T>
  typename ort::core::ITypedArray<T>::Result Read(Column<T>& column, OStringCore const& name,
                                                  std::uint32_t style) const;

  // Keeps the columns alive.
  Value table_;
  Column<Value> fonts_;
  Column<double> mutable ascents_ = nullptr;
  Column<double> mutable fontHeights_ = nullptr;
  Column<double> mutable leadings_ = nullptr;
  Column<int> mutable orientations_ = nullptr;
  Column<int> mutable hAligns_ = nullptr;
  Column<int> mutable vAligns_ = nullptr;
};

}  // namespace runtime
