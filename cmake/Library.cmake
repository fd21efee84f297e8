# What a host gets: the shared library under its version, its exported names, and the package that find_package(Kartix)
# finds. Before version 1.0 each minor version may break the binary interface, so its number is part of the name. Once
# loaded the library stays: a host's objects in static storage may outlive the plug-in that brought it.
include(CMakePackageConfigHelpers)

set(exports ${CMAKE_CURRENT_LIST_DIR}/kartix.map)
set_target_properties(
  kartix PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR} LINK_DEPENDS
                                                                                                          ${exports})
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
