# A room is a folder of src/ built as one static library. It stands on a floor and links only what stands below it.
#
#   quillory_room(NAME library FLOOR 3 SOURCES Sheet.h Sheet.cpp LINKS text document_model)
#
# A room sees exactly the headers of the rooms that it links: each room publishes its headers in an include folder of
# its own below the build folder, so that an include that runs upward, or past the links, does not compile.
include_guard()
include(Checks)

# What nearly every file includes, and what costs most to read.
set(precompiledEverywhere <QString> <functional> <memory> <optional> <vector>)

function(quillory_room)
  cmake_parse_arguments(ROOM "MOC" "NAME;FLOOR;FOLDER" "SOURCES;LINKS;LIBRARIES;PRECOMPILE" ${ARGN})
  if(NOT ROOM_FOLDER)
    set(ROOM_FOLDER ${ROOM_NAME})
  endif()
  set(target quillory_${ROOM_NAME})
  set(includes "${CMAKE_BINARY_DIR}/include/${ROOM_NAME}")

  add_library(${target} STATIC)
  foreach(source IN LISTS ROOM_SOURCES)
    target_sources(${target} PRIVATE "${CMAKE_SOURCE_DIR}/src/${ROOM_FOLDER}/${source}")
    if(source MATCHES "\\.h$")
      get_filename_component(folder "${includes}/${ROOM_FOLDER}/${source}" DIRECTORY)
      file(MAKE_DIRECTORY "${folder}")
      file(CREATE_LINK "${CMAKE_SOURCE_DIR}/src/${ROOM_FOLDER}/${source}" "${includes}/${ROOM_FOLDER}/${source}" SYMBOLIC)
    endif()
  endforeach()
  target_include_directories(${target} PUBLIC "${includes}")
  set_target_properties(${target} PROPERTIES
    LINKER_LANGUAGE CXX
    QUILLORY_FLOOR ${ROOM_FLOOR}
    AUTOMOC ${ROOM_MOC})

  foreach(link IN LISTS ROOM_LINKS)
    get_target_property(floor quillory_${link} QUILLORY_FLOOR)
    if(NOT floor LESS ROOM_FLOOR)
      message(FATAL_ERROR "${ROOM_NAME} (floor ${ROOM_FLOOR}) must not link ${link} (floor ${floor}): links run downward only")
    endif()
    target_link_libraries(${target} PUBLIC quillory_${link})
  endforeach()
  target_link_libraries(${target} PUBLIC ${ROOM_LIBRARIES} PRIVATE quillory_warnings)
  target_precompile_headers(${target} PRIVATE ${precompiledEverywhere} ${ROOM_PRECOMPILE})

  set(headers ${ROOM_SOURCES})
  list(FILTER headers INCLUDE REGEX "\\.h$")
  quillory_check_headers(${ROOM_NAME} ${ROOM_FOLDER} ${headers})
endfunction()

# A program over rooms and, where it needs them, adapters.
function(quillory_program NAME)
  cmake_parse_arguments(PROGRAM "" "" "SOURCES;LINKS;LIBRARIES" ${ARGN})
  add_executable(${NAME} ${PROGRAM_SOURCES})
  list(TRANSFORM PROGRAM_LINKS PREPEND quillory_)
  target_link_libraries(${NAME} PRIVATE ${PROGRAM_LINKS} ${PROGRAM_LIBRARIES} quillory_warnings)
endfunction()

# The tests of one room: one program, so that what it links proves what the room needs.
function(quillory_test NAME)
  cmake_parse_arguments(TEST "" "" "SOURCES;LINKS;LIBRARIES" ${ARGN})
  quillory_note_test(${NAME} ${TEST_LINKS})
  quillory_program(${NAME} SOURCES ${TEST_SOURCES} LINKS ${TEST_LINKS} LIBRARIES ${TEST_LIBRARIES} GTest::gmock_main)
  target_precompile_headers(${NAME} PRIVATE ${precompiledEverywhere} <gmock/gmock.h>)
  # g++ 12 sees overflows inside std::string that can't happen, and a precompiled header hides that it is the system's.
  target_compile_options(${NAME} PRIVATE -Wno-array-bounds -Wno-stringop-overflow)
  target_include_directories(${NAME} PRIVATE "${CMAKE_SOURCE_DIR}" "${CMAKE_SOURCE_DIR}/tests")
  gtest_discover_tests(${NAME} DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 120 ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
endfunction()
