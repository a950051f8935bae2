#pragma once

namespace OMath {

/// The double nearest to the circle constant.
inline constexpr double PI = 3.14159265358979323846;

}  // namespace OMath
