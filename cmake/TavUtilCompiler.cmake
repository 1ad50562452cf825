# Compiler settings shared by every target of the project.
add_library(tavutil_warnings INTERFACE)
target_compile_options(tavutil_warnings INTERFACE -Wall -Wextra -Werror)
# The library targets Windows 7 and later; older systems are recognised at run time only.
target_compile_definitions(tavutil_warnings INTERFACE
    UNICODE _UNICODE NOMINMAX _WIN32_WINNT=0x0601 WINVER=0x0601)

# The C and C++ runtimes and winpthread are linked statically: the DLL and the programs import
# Windows system DLLs only.
add_link_options(-static -static-libgcc -static-libstdc++)
