# kartix_embed(TARGET FILE NAME)
# Makes FILE part of TARGET, as `extern const std::span<const unsigned char> NAME` in namespace kartix::embedded.
function(kartix_embed target file name)
  set(source ${CMAKE_CURRENT_BINARY_DIR}/embedded_${name}.cpp)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${file})
  file(READ ${file} bytes HEX)
  string(REGEX REPLACE "(..)" "0x\\1," bytes "${bytes}")
  file(CONFIGURE OUTPUT ${source} CONTENT "#include <span>
namespace kartix::embedded {
namespace {
constexpr unsigned char bytes[] = {@bytes@};
}
extern const std::span<const unsigned char> @name@;
constinit const std::span<const unsigned char> @name@{bytes};
}  // namespace kartix::embedded
" @ONLY)
  target_sources(${target} PRIVATE ${source})
endfunction()
