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
foreach(header IN LISTS TAVUTIL_PUBLIC_HEADERS)
    get_filename_component(area ${header} DIRECTORY)
    install(FILES ${CMAKE_SOURCE_DIR}/util/${header} DESTINATION include/TavUtil/${area})
endforeach()
install(FILES ${CMAKE_BINARY_DIR}/util/include/TavUtil.h DESTINATION include/TavUtil)

install(EXPORT TavUtilTargets NAMESPACE TavUtil:: DESTINATION lib/cmake/TavUtil)
configure_package_config_file(cmake/TavUtilConfig.cmake.in ${CMAKE_BINARY_DIR}/TavUtilConfig.cmake
    INSTALL_DESTINATION lib/cmake/TavUtil)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/TavUtilConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/TavUtilConfig.cmake ${CMAKE_BINARY_DIR}/TavUtilConfigVersion.cmake
    DESTINATION lib/cmake/TavUtil)
