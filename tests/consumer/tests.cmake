# The install as others meet it: moved to another place, used through CMake, through pkg-config, and as a program.
set(installed ${CMAKE_CURRENT_BINARY_DIR}/installed)
foreach(step IN ITEMS install package pkgconfig readme program)
  add_test(NAME install.${step} COMMAND ${CMAKE_CURRENT_LIST_DIR}/run.sh
    ${step} ${installed} ${CMAKE_COMMAND} ${PROJECT_BINARY_DIR} ${CMAKE_CXX_COMPILER} ${CMAKE_INSTALL_LIBDIR})
  set_tests_properties(install.${step} PROPERTIES TIMEOUT 300 FIXTURES_REQUIRED installed)
endforeach()
set_tests_properties(install.install PROPERTIES FIXTURES_REQUIRED "" FIXTURES_SETUP installed)
