# Libraries of headers alone are the same for every system, but the folder they stand in holds those of the system at
# hand too: what is needed of it is shown to the compiler in a folder of its own.
string(APPEND CMAKE_CXX_STANDARD_LIBRARIES " -lws2_32 -lcrypt32 -lbcrypt")  # of the transport's libraries
set(headers ${PROJECT_BINARY_DIR}/headers)
file(MAKE_DIRECTORY ${headers})
function(kartix_header_library package target folder)
  find_path(KARTIX_${package}_DIR ${folder} PATHS /usr/include REQUIRED NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
  file(CREATE_LINK ${KARTIX_${package}_DIR}/${folder} ${headers}/${folder} SYMBOLIC)
  add_library(${target} INTERFACE IMPORTED GLOBAL)
  target_include_directories(${target} SYSTEM INTERFACE ${headers})
  # `find_package` takes this as found.
  file(WRITE ${CMAKE_FIND_PACKAGE_REDIRECTS_DIR}/${package}-config.cmake "")
endfunction()
kartix_header_library(nlohmann_json nlohmann_json::nlohmann_json nlohmann)
kartix_header_library(cli11 CLI11::CLI11 CLI)
kartix_header_library(boost Boost::headers boost)
