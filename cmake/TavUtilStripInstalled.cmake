# Run by `cmake --install` after TavUtil.dll is installed (cmake/TavUtilInstall.cmake sets TAVUTIL_OBJCOPY):
# the debug information is copied into TavUtil.dll.debug, the installed DLL is stripped of it and of its symbol
# table, and it is given a .gnu_debuglink section naming TavUtil.dll.debug (with its checksum).
set(bin "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}/bin")
message(STATUS "Stripping: ${bin}/TavUtil.dll (debug information in TavUtil.dll.debug)")
foreach(step "--only-keep-debug;TavUtil.dll;TavUtil.dll.debug" "--strip-all;TavUtil.dll"
             "--add-gnu-debuglink=TavUtil.dll.debug;TavUtil.dll")
    execute_process(COMMAND "${TAVUTIL_OBJCOPY}" ${step} WORKING_DIRECTORY "${bin}" RESULT_VARIABLE status)
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "objcopy ${step} failed: ${status}")
    endif()
endforeach()
list(APPEND CMAKE_INSTALL_MANIFEST_FILES "${bin}/TavUtil.dll.debug")
