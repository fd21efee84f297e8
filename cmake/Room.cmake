# Warnings and sanitizers that every target of the project is built with.
add_library(kartix_options INTERFACE)
target_compile_options(kartix_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Woverloaded-virtual -Wconversion -Wno-sign-conversion)
if(NOT WIN32)  # whose own interfaces have none
  target_compile_options(kartix_options INTERFACE -Wnon-virtual-dtor)
endif()
if(KARTIX_WERROR)
  target_compile_options(kartix_options INTERFACE -Werror)
endif()
if(KARTIX_SANITIZE)
  target_compile_options(kartix_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=undefined
                                                  -fno-omit-frame-pointer)
  target_link_options(kartix_options INTERFACE -fsanitize=address,undefined)
endif()

# kartix_room(NAME [FILES files...] [USES rooms...] [LINKS libraries...])
# One folder of the house as a static library kartix_NAME of all its sources, or of FILES. USES are the rooms it may
# include.
function(kartix_room name)
  cmake_parse_arguments(ROOM "" "" "FILES;USES;LINKS" ${ARGN})
  set(sources ${ROOM_FILES})
  if(NOT sources)
    file(GLOB sources CONFIGURE_DEPENDS *.cpp *.h)
  endif()
  add_library(kartix_${name} STATIC ${sources})
  target_include_directories(kartix_${name} PUBLIC ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/include)
  foreach(room IN LISTS ROOM_USES)
    target_link_libraries(kartix_${name} PUBLIC kartix_${room})
  endforeach()
  target_link_libraries(kartix_${name} PRIVATE kartix_options ${ROOM_LINKS})
endfunction()
