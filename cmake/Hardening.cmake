# What is shipped reads folders that strangers wrote: a slip of ours, or of a library's inline code, must end the process
# and not run theirs. `scripts/check hardening` reads the result from the binary.
include_guard()
include(CheckPIESupported)
check_pie_supported(OUTPUT_VARIABLE pieOutput LANGUAGES CXX)
if(NOT CMAKE_CXX_LINK_PIE_SUPPORTED)
  message(FATAL_ERROR "The compiler can't link position-independent programs: ${pieOutput}")
endif()
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

add_compile_options($<$<CONFIG:Release>:-fstack-protector-strong>)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64|i.86")
  add_compile_options($<$<CONFIG:Release>:-fcf-protection>)
endif()
add_compile_definitions($<$<CONFIG:Release>:_FORTIFY_SOURCE=2> $<$<CONFIG:Release>:_GLIBCXX_ASSERTIONS>)
add_link_options($<$<CONFIG:Release>:LINKER:-z,relro,-z,now>)
