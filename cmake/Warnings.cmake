# One place for what every target of ours is compiled with. Headers of libraries are system headers and stay out of it.
# Without -Wnull-dereference: at -O3 g++ 12 finds null pointers within the standard library's own containers.
add_library(quillory_warnings INTERFACE)
target_compile_options(quillory_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Werror
  -Wconversion -Wsign-conversion -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
  -Wimplicit-fallthrough -Wextra-semi -Wcast-align -Wformat=2
  # A designated initialiser leaves out, on purpose, what keeps its default.
  -Wno-missing-field-initializers
  # g++ 12 sees overlaps in the standard library's own strings that can't happen.
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
  # The other compiler builds the fuzz targets alone; its opinions fail no build.
  $<$<CXX_COMPILER_ID:Clang>:-Wno-error>
  -fpch-preprocess)
target_compile_definitions(quillory_warnings INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS QT_STRICT_ITERATORS QT_NO_FOREACH QT_NO_NARROWING_CONVERSIONS_IN_CONNECT)
