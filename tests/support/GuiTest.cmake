include_guard()

# The tests of a room that needs fonts (MAIN GuiMain.cpp) or widgets (MAIN WidgetsMain.cpp), on the offscreen platform.
function(quillory_gui_test NAME)
  cmake_parse_arguments(TEST "" "MAIN" "SOURCES;LINKS;LIBRARIES" ${ARGN})
  quillory_program(${NAME}
    SOURCES ${TEST_SOURCES} "${CMAKE_SOURCE_DIR}/tests/support/${TEST_MAIN}"
    LINKS ${TEST_LINKS}
    LIBRARIES ${TEST_LIBRARIES} GTest::gmock)
  target_include_directories(${NAME} PRIVATE "${CMAKE_SOURCE_DIR}/tests")
  target_compile_definitions(${NAME} PRIVATE QUILLORY_GOLDEN_SHEETS="${CMAKE_SOURCE_DIR}/tests/rendering/golden/sheets")
  gtest_discover_tests(${NAME} DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 120 ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
endfunction()
