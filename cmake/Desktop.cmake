# Windows and pictures as a module that is loaded when the first of them is needed. It stands in the folder `kartix` of
# the libraries, and offers one name, which tells its version.
string(MAKE_C_IDENTIFIER kartix_desktop_${PROJECT_VERSION} entry)
cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_LIBDIR BASE_DIRECTORY ${CMAKE_INSTALL_FULL_BINDIR}
           OUTPUT_VARIABLE library_from_command)
target_compile_definitions(
  kartix_adapters_machine PRIVATE KARTIX_DESKTOP_ENTRY=${entry} KARTIX_LIBRARY_FROM_COMMAND="${library_from_command}")

add_library(kartix_desktop MODULE DesktopModule.cpp DesktopParts.h)
set(exports ${CMAKE_CURRENT_BINARY_DIR}/desktop.map)
file(CONFIGURE OUTPUT ${exports} CONTENT "{ global: ${entry}; local: *; };\n")
set_target_properties(kartix_desktop PROPERTIES OUTPUT_NAME kartix-desktop LINK_DEPENDS ${exports}
                                                LIBRARY_OUTPUT_DIRECTORY ${CMAKE_LIBRARY_OUTPUT_DIRECTORY}/kartix)
target_compile_definitions(kartix_desktop PRIVATE KARTIX_DESKTOP_ENTRY=${entry})
target_link_libraries(kartix_desktop PRIVATE kartix_options kartix_adapters_qt)
target_link_options(kartix_desktop PRIVATE LINKER:--version-script=${exports} LINKER:--no-undefined)
install(TARGETS kartix_desktop LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/kartix)

# Whatever works with the machine finds it.
if(NOT KARTIX_FUZZ)  # which shows nothing
  add_dependencies(kartix_adapters_machine kartix_desktop)
endif()
