include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/ostreltransforms)
set(header_dir ${CMAKE_INSTALL_INCLUDEDIR}/ostrel)
file(RELATIVE_PATH bin_to_lib /${CMAKE_INSTALL_BINDIR} /${CMAKE_INSTALL_LIBDIR})

# The public headers are the two umbrella headers and what they include; all others stay inside the tree.
# Each is listed in <root>_headers for its include root, host or main.
set(waiting ostrelrtcore/RuntimeCore.h ostreltransforms/OstrelTransforms.h)
set(seen)
while(waiting)
  list(POP_FRONT waiting header)
  list(APPEND seen ${header})
  foreach(root IN ITEMS host main)
    set(path ${PROJECT_SOURCE_DIR}/${root}/${header})
    if(EXISTS ${path})
      list(APPEND ${root}_headers ${path})
      set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${path})
      file(STRINGS ${path} lines REGEX "^#include \"")
      list(TRANSFORM lines REPLACE "^#include \"([^\"]+)\".*" "\\1")
      list(REMOVE_ITEM lines ${seen})
      list(APPEND waiting ${lines})
      list(REMOVE_DUPLICATES waiting)
    endif()
  endforeach()
endwhile()

# Headers keep their place below host/ or main/, so an #include reads the same inside and outside the tree.
# Below version 1 every minor version may change the binary interface, hence its place in the SOVERSION.
function(ostrel_install_library target export_name root folders)
  set(headers ${${root}_headers})
  list(FILTER headers INCLUDE REGEX "/${root}/(${folders})/")
  target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR}/${root} FILES ${headers})
  set_target_properties(${target} PROPERTIES
    EXPORT_NAME ${export_name}
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}
    INSTALL_RPATH "$ORIGIN")
  install(TARGETS ${target} EXPORT ostreltransformsTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    FILE_SET HEADERS DESTINATION ${header_dir})
  add_library(ostrel::${export_name} ALIAS ${target})
endfunction()

ostrel_install_library(ostrelsys sys host "ostrelsys")
ostrel_install_library(ostrelrtcore rtcore host "ostrelrtcore")
ostrel_install_library(ostreltransforms transforms main "ostreltransforms|render|string|maps")

set_target_properties(ostrel PROPERTIES INSTALL_RPATH "$ORIGIN/${bin_to_lib}")
install(TARGETS ostrel RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

install(EXPORT ostreltransformsTargets NAMESPACE ostrel:: DESTINATION ${package_dir})
configure_package_config_file(cmake/ostreltransformsConfig.cmake.in ostreltransformsConfig.cmake
  INSTALL_DESTINATION ${package_dir} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(ostreltransformsConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES
  ${CMAKE_CURRENT_BINARY_DIR}/ostreltransformsConfig.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/ostreltransformsConfigVersion.cmake
  DESTINATION ${package_dir})

file(RELATIVE_PATH pc_to_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/ostreltransforms.pc.in ostreltransforms.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/ostreltransforms.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
install(FILES LICENSE CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
