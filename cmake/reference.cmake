# The target `reference`: the API reference of the public headers, in reference/html of the build
# tree. Only where Doxygen is installed; scripts/reference installs it.
find_package(Doxygen QUIET)
if(NOT Doxygen_FOUND)
  return()
endif()

set(DOXYGEN_PROJECT_BRIEF ${PROJECT_DESCRIPTION})
set(DOXYGEN_OUTPUT_DIRECTORY reference)
set(DOXYGEN_STRIP_FROM_PATH ${PROJECT_SOURCE_DIR}/src)
set(DOXYGEN_USE_MDFILE_AS_MAINPAGE docs/writing-a-host.md)
set(DOXYGEN_MARKDOWN_SUPPORT YES)
set(DOXYGEN_JAVADOC_AUTOBRIEF YES) # the first sentence is the brief description
set(DOXYGEN_EXTRACT_ALL YES) # what its declaration says in full has no comment
set(DOXYGEN_GENERATE_TREEVIEW YES)
set(DOXYGEN_WARN_AS_ERROR FAIL_ON_WARNINGS)

get_target_property(headers kv_tr HEADER_SET)
doxygen_add_docs(reference ${headers} ${PROJECT_SOURCE_DIR}/docs/writing-a-host.md)
