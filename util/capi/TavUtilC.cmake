# The C interface's part of the TavUtil target: its module-definition file (the C functions are exported
# under their plain names, beside the C++ interface) and TavUtil.lib, the import library of those functions
# for Microsoft's linker, made by LLVM's dlltool from the same file. Included by util/CMakeLists.txt after
# the TavUtil target exists, so every build variant of the target gets both.
set(TAVUTIL_C_DEF ${CMAKE_CURRENT_LIST_DIR}/TavUtil.def)
target_sources(TavUtil PRIVATE ${TAVUTIL_C_DEF})

# Without LLVM's dlltool (the demo's configuration on a fresh machine) the DLL is built without TavUtil.lib;
# the tests and `make dist` configure with it.
if(NOT TAVUTIL_BUILD_MSVC_IMPORT_LIB)
    return()
endif()
find_program(TAVUTIL_LLVM_DLLTOOL NAMES llvm-dlltool llvm-dlltool-14 REQUIRED
    DOC "LLVM's dlltool (Debian package llvm), which makes TavUtil.lib")
set(TAVUTIL_MSVC_IMPORT_LIB ${CMAKE_ARCHIVE_OUTPUT_DIRECTORY}/TavUtil.lib)
add_custom_command(OUTPUT ${TAVUTIL_MSVC_IMPORT_LIB}
    COMMAND ${TAVUTIL_LLVM_DLLTOOL} -m i386:x86-64 -D TavUtil.dll -d ${TAVUTIL_C_DEF} -l ${TAVUTIL_MSVC_IMPORT_LIB}
    DEPENDS ${TAVUTIL_C_DEF}
    COMMENT "Making TavUtil.lib, the import library of the C interface for Microsoft's linker")
add_custom_target(TavUtil_msvc_import_lib ALL DEPENDS ${TAVUTIL_MSVC_IMPORT_LIB})
add_dependencies(TavUtil TavUtil_msvc_import_lib)
set(TAVUTIL_MSVC_IMPORT_LIB ${TAVUTIL_MSVC_IMPORT_LIB} PARENT_SCOPE)
set(TAVUTIL_LLVM_DLLTOOL ${TAVUTIL_LLVM_DLLTOOL} PARENT_SCOPE)
install(FILES ${TAVUTIL_MSVC_IMPORT_LIB} DESTINATION lib)
