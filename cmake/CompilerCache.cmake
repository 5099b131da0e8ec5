# ccache makes a second build of the same text free. Precompiled headers need the two allowances named here.
find_program(CCACHE ccache)
if(CCACHE)
  set(launcher "${CMAKE_COMMAND}" -E env
    "CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime"
    "CCACHE_BASEDIR=${CMAKE_SOURCE_DIR}" "${CCACHE}")
  set(CMAKE_C_COMPILER_LAUNCHER ${launcher})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${launcher})
endif()
