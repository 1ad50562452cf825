# The reference documentation of the C interface (docs/reference/Doxyfile.in), built with every build into
# build/docs/html and installed as share/doc/TavUtil/html. Doxygen's warnings go to build/docs/warnings.txt;
# tests/package's package_docs runs Doxygen afresh and fails on any warning.
find_program(TAVUTIL_DOXYGEN doxygen REQUIRED DOC "Doxygen (Debian package doxygen), for the reference documentation")
set(TAVUTIL_DOCS_DIR ${CMAKE_BINARY_DIR}/docs)
configure_file(${CMAKE_SOURCE_DIR}/docs/reference/Doxyfile.in ${TAVUTIL_DOCS_DIR}/Doxyfile @ONLY)
file(GLOB_RECURSE TAVUTIL_DOCS_INPUTS CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/util/capi/*.h)
add_custom_command(OUTPUT ${TAVUTIL_DOCS_DIR}/html/index.html
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${TAVUTIL_DOCS_DIR}/html
    COMMAND ${TAVUTIL_DOXYGEN} ${TAVUTIL_DOCS_DIR}/Doxyfile
    DEPENDS ${TAVUTIL_DOCS_INPUTS} ${TAVUTIL_DOCS_DIR}/Doxyfile ${CMAKE_SOURCE_DIR}/docs/reference/mainpage.md
            ${TAVUTIL_GENERATED_INCLUDE}/TavUtil/TavUtilVersion.h
    WORKING_DIRECTORY ${TAVUTIL_DOCS_DIR}
    COMMENT "Doxygen: the reference documentation of the C interface (warnings in docs/warnings.txt)")
add_custom_target(docs ALL DEPENDS ${TAVUTIL_DOCS_DIR}/html/index.html)
