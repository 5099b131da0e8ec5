# What a Markdown sheet consists of. A target of its own, since the library needs it and the renderers need the library.
quillory_room(NAME document_model FLOOR 2 FOLDER rendering
  SOURCES ParsedMarkdown.h ParsedMarkdown.cpp ParsedMarkdownBytes.cpp
  LINKS Markdown platform
  LIBRARIES Qt6::Core)
