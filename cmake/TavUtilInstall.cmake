# `cmake --install` lays out TavUtil.dll, its import library, the public headers and a CMake package, so
# that a host does find_package(TavUtil) and links TavUtil::TavUtil.
include(CMakePackageConfigHelpers)

install(TARGETS TavUtil EXPORT TavUtilTargets
    RUNTIME DESTINATION bin
    LIBRARY DESTINATION lib
    ARCHIVE DESTINATION lib)
# The installed DLL is stripped (no symbol table, no debug sections); its debug information goes into
# TavUtil.dll.debug beside it, which the DLL names in its .gnu_debuglink section (with a checksum), so that a
# crash address resolves to a function and a source line: x86_64-w64-mingw32-addr2line -f -e TavUtil.dll.debug.
# The DLL in the build folder keeps everything.
install(CODE "set(TAVUTIL_OBJCOPY \"${CMAKE_OBJCOPY}\")")
install(SCRIPT ${CMAKE_CURRENT_LIST_DIR}/TavUtilStripInstalled.cmake)
# Every header goes below include/TavUtil, so that hosts write <TavUtil/TavUtil.h> and <TavUtil/TavUtilC.h> (the
# package's include directory is include): the C++ headers keep their area folders, the C interface's umbrella
# TavUtilC.h sits at the top with its area headers in c/ (a folder that may not exist yet: the glob then finds
# nothing), beside the generated TavUtilVersion.h and the umbrella of everything, TavUtil.h.
foreach(header IN LISTS TAVUTIL_PUBLIC_HEADERS)
    get_filename_component(area ${header} DIRECTORY)
    if(NOT area STREQUAL "capi")
        install(FILES ${CMAKE_SOURCE_DIR}/util/${header} DESTINATION include/TavUtil/${area})
    endif()
endforeach()
file(GLOB TAVUTIL_C_AREA_HEADERS CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/util/capi/c/*.h)
install(FILES ${CMAKE_SOURCE_DIR}/util/capi/TavUtilC.h ${TAVUTIL_GENERATED_INCLUDE}/TavUtil/TavUtilVersion.h
              ${CMAKE_BINARY_DIR}/util/install/TavUtil.h
    DESTINATION include/TavUtil)
if(TAVUTIL_C_AREA_HEADERS)
    install(FILES ${TAVUTIL_C_AREA_HEADERS} DESTINATION include/TavUtil/c)
endif()

install(EXPORT TavUtilTargets NAMESPACE TavUtil:: DESTINATION lib/cmake/TavUtil)
set(TAVUTIL_INSTALL_BINDIR bin)
set(TAVUTIL_INSTALL_LIBDIR lib)
set(TAVUTIL_INSTALL_INCLUDEDIR include)
configure_package_config_file(cmake/TavUtilConfig.cmake.in ${CMAKE_BINARY_DIR}/TavUtilConfig.cmake
    INSTALL_DESTINATION lib/cmake/TavUtil
    PATH_VARS TAVUTIL_INSTALL_BINDIR TAVUTIL_INSTALL_LIBDIR TAVUTIL_INSTALL_INCLUDEDIR)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/TavUtilConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/TavUtilConfig.cmake ${CMAKE_BINARY_DIR}/TavUtilConfigVersion.cmake
    DESTINATION lib/cmake/TavUtil)

# The documents a host developer needs beside the binaries: the README, the guides, the licence, the changelog,
# the compatibility promise and the reference documentation of the C interface (cmake/TavUtilDocs.cmake).
install(FILES README.md LICENSE CHANGELOG.md docs/keystroke-scripts.md docs/security.md docs/compatibility.md
    DESTINATION share/doc/TavUtil)
if(TAVUTIL_BUILD_DOCS)
    install(DIRECTORY ${TAVUTIL_DOCS_DIR}/html DESTINATION share/doc/TavUtil)
endif()

# `make dist`: the release zip dist/TavUtil-<version>-win64.zip and its .sha256 (cmake/make-dist.sh), made from
# what `cmake --install` lays out.
add_custom_target(dist
    COMMAND ${CMAKE_SOURCE_DIR}/cmake/make-dist.sh ${CMAKE_BINARY_DIR} ${CMAKE_SOURCE_DIR}/dist ${PROJECT_VERSION}
    COMMENT "Packing dist/TavUtil-${PROJECT_VERSION}-win64.zip"
    VERBATIM)
add_dependencies(dist TavUtil tavutil)
if(TAVUTIL_BUILD_DOCS)
    add_dependencies(dist docs)
endif()
