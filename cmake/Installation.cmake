# What is installed beside library and command: the file for pkg-config, the completion, documents and licence.
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY
           ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig OUTPUT_VARIABLE KARTIX_PC_PREFIX)
configure_file(${CMAKE_CURRENT_LIST_DIR}/kartix.pc.in kartix.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/kartix.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
install(FILES cmake/kartix.bash-completion DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME kartix)
install(FILES README.md CHANGELOG.md LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR} FILES_MATCHING PATTERN *.md PATTERN *.png)
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR})
