# The texts of the program in other words: resources/wording.json and the translations beside it.
include_guard()

# Where the toolkit keeps its programs, which are not in the search path.
get_target_property(moc Qt6::moc LOCATION)
get_filename_component(programs "${moc}" DIRECTORY)
find_program(LRELEASE lrelease HINTS "${programs}" "${programs}/../bin" REQUIRED)

# Takes them into a program, which `InstalledWords` then speaks in.
function(quillory_words target)
  set(compiled "${CMAKE_CURRENT_BINARY_DIR}/quillory_de.qm")
  set(source "${CMAKE_SOURCE_DIR}/resources/translations/quillory_de.ts")
  add_custom_command(OUTPUT "${compiled}"
    COMMAND "${LRELEASE}" -silent -nounfinished "${source}" -qm "${compiled}"
    DEPENDS "${source}")
  set_source_files_properties("${compiled}" PROPERTIES QT_RESOURCE_ALIAS quillory_de.qm)
  set_source_files_properties("${CMAKE_SOURCE_DIR}/resources/wording.json" PROPERTIES QT_RESOURCE_ALIAS wording.json)
  qt_add_resources(${target} ${target}_words PREFIX /words
    FILES "${compiled}" "${CMAKE_SOURCE_DIR}/resources/wording.json")
  target_link_libraries(${target} PRIVATE quillory_words)
endfunction()
