# What scripts/check needs to know of the build: headers that must compile alone, and which rooms a test links.
include_guard()

# Each header of a room gets a source that includes nothing else, compiled with what the room itself sees.
function(quillory_check_headers ROOM FOLDER)
  set(sources "")
  foreach(header IN LISTS ARGN)
    string(MAKE_C_IDENTIFIER "${header}" name)
    set(source "${CMAKE_BINARY_DIR}/headers/${ROOM}/${name}.cpp")
    file(CONFIGURE OUTPUT "${source}" CONTENT "#include \"${FOLDER}/${header}\"\n#include \"${FOLDER}/${header}\"\n")
    list(APPEND sources "${source}")
  endforeach()
  if(sources)
    add_library(quillory_${ROOM}_headers OBJECT EXCLUDE_FROM_ALL ${sources})
    target_link_libraries(quillory_${ROOM}_headers PRIVATE quillory_${ROOM} quillory_warnings)
    if(NOT TARGET quillory_headers)
      add_custom_target(quillory_headers)
    endif()
    add_dependencies(quillory_headers quillory_${ROOM}_headers)
  endif()
endfunction()

# One line for each test program: its name and the rooms and adapters that it names.
file(REMOVE "${CMAKE_BINARY_DIR}/test-links.txt")
function(quillory_note_test NAME)
  list(JOIN ARGN " " links)
  file(APPEND "${CMAKE_BINARY_DIR}/test-links.txt" "${NAME} ${links}\n")
endfunction()
