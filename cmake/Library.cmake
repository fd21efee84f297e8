# What a host gets: the shared library under its version, its exported names, the module for Python, and the package
# that find_package(Kartix) finds. Once loaded the library stays: a host's objects in static storage may outlive the plug-in that brought it.
include(CMakePackageConfigHelpers)

# The library's name tells the version of the C interface, which stays. The C++ classes are held to their minor version
# by the names' own versions.
set(KARTIX_SONAME libkartix.so.1)
configure_file(${CMAKE_CURRENT_LIST_DIR}/kartix.map.in ${PROJECT_BINARY_DIR}/kartix.map @ONLY)
set(exports ${PROJECT_BINARY_DIR}/kartix.map)
set_target_properties(kartix PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION 1 LINK_DEPENDS ${exports})
target_link_options(kartix PRIVATE LINKER:--version-script=${exports} LINKER:--no-undefined
                    LINKER:-z,nodelete)
target_compile_features(kartix INTERFACE cxx_std_17)

set(package ${CMAKE_INSTALL_LIBDIR}/cmake/Kartix)
install(
  TARGETS kartix
  EXPORT KartixTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  INCLUDES
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY include/kartix DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN *.h)
install(EXPORT KartixTargets NAMESPACE Kartix:: DESTINATION ${package})
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/KartixConfig.cmake.in KartixConfig.cmake
                              INSTALL_DESTINATION ${package})
write_basic_package_version_file(KartixConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/KartixConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/KartixConfigVersion.cmake
        DESTINATION ${package})

# The system's Python looks for modules of packages in one place and for those of administrators in another.
set(python lib/python3/dist-packages)
if(NOT CMAKE_INSTALL_PREFIX STREQUAL "/usr")
  find_package(Python3 QUIET COMPONENTS Interpreter)
  if(Python3_FOUND)
    set(python lib/python${Python3_VERSION_MAJOR}.${Python3_VERSION_MINOR}/dist-packages)
  endif()
endif()
set(KARTIX_PYTHON_DIR ${python} CACHE STRING "Where the module for Python goes, below the prefix")
configure_file(${PROJECT_SOURCE_DIR}/bindings/python/kartix.py.in ${PROJECT_BINARY_DIR}/python/kartix.py @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/python/kartix.py DESTINATION ${KARTIX_PYTHON_DIR})
