# One place for what every target of ours is compiled with.
#
# -ffp-contract=off: layouts decide by comparisons, so one fused multiply changes a picture.
# -fno-strict-aliasing: a column's storage may be viewed as another type of its width.
# -fno-gnu-unique: the shared libraries must really unload.
# -Wno-restrict: GCC 12 reports overlaps that cannot be wherever two strings are added.
# -z defs: a library that reaches for a symbol of a library it does not link fails here, not at the host's.
#   (Not under sanitizers, whose runtime stands in the program.)
# fuzzer-no-link: the libraries count for the fuzz programs what an input reaches; other programs carry the
#   counters and do not look at them, so that one build serves both.
# Precompiled headers: under sanitizers only, where they take a third of the time away. The plain build goes
#   without, so that a header that is missing in a file is noticed, and so that GCC keeps knowing which headers are
#   the system's. Without time stamps in them the compiler cache takes them.
function(ostrel_configure target)
  target_compile_features(${target} PUBLIC cxx_std_20)
  target_compile_definitions(${target} PRIVATE $<$<CONFIG:Debug>:_GLIBCXX_ASSERTIONS>)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wold-style-cast
    -ffp-contract=off -fno-strict-aliasing
    $<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>
    $<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>>:-Wno-restrict>
    $<$<BOOL:${OSTREL_WARNINGS_AS_ERRORS}>:-Werror>)
  get_target_property(type ${target} TYPE)
  if(OSTREL_BUILD_FUZZ AND type MATCHES "LIBRARY")
    target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
  endif()
  if(OSTREL_SANITIZE)
    target_precompile_headers(${target} PRIVATE
      <algorithm> <array> <bit> <cmath> <cstdint> <cstring> <functional> <limits> <map> <memory> <optional> <span>
      <string> <string_view> <unordered_map> <utility> <vector> <fmt/format.h>)
    target_compile_options(${target} PRIVATE "SHELL:$<$<CXX_COMPILER_ID:Clang>:-Xclang -fno-pch-timestamp>")
    target_compile_options(${target} PRIVATE -fsanitize=${OSTREL_SANITIZE} -fno-omit-frame-pointer
      -fno-sanitize-recover=all)
    target_link_options(${target} PRIVATE -fsanitize=${OSTREL_SANITIZE})
  elseif(type STREQUAL "SHARED_LIBRARY")
    target_link_options(${target} PRIVATE LINKER:-z,defs)
  endif()
endfunction()

# The sources of a folder; a file added to it is built without a word here.
function(ostrel_sources variable)
  file(GLOB_RECURSE found CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  set(${variable} ${found} PARENT_SCOPE)
endfunction()
