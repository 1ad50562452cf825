# Compiler settings shared by every target of the project.
add_library(tavutil_warnings INTERFACE)
target_compile_options(tavutil_warnings INTERFACE -Wall -Wextra -Werror)
# The library targets Windows 7 and later; older systems are recognised at run time only.
target_compile_definitions(tavutil_warnings INTERFACE
    UNICODE _UNICODE NOMINMAX _WIN32_WINNT=0x0601 WINVER=0x0601)

# The C and C++ runtimes and winpthread are linked statically: the DLL and the programs import
# Windows system DLLs only.
add_link_options(-static -static-libgcc -static-libstdc++)

# The hardened variant (make test-hardened): undefined behaviour stops the program at once, standard-library
# preconditions are checked, and stack buffers are guarded. It compiles the library and the tests alike;
# the shipped DLL is the optimised build without the first two.
option(TAVUTIL_HARDENED "Build with undefined-behaviour traps, library assertions and stack protection" OFF)
if(TAVUTIL_HARDENED)
    add_compile_options(-fsanitize=undefined -fsanitize-undefined-trap-on-error -D_GLIBCXX_ASSERTIONS
                        -fstack-protector-strong)
    add_link_options(-fstack-protector-strong)
endif()

# The shipped library (TavUtil.dll, linked with tavutil_shipped): stack buffers are guarded in every build, and
# it is compiled with debug information, which the installation moves out of the DLL into TavUtil.dll.debug
# beside it (cmake/TavUtilInstall.cmake); -g does not change the code generated.
add_library(tavutil_shipped INTERFACE)
target_compile_options(tavutil_shipped INTERFACE -fstack-protector-strong -g)
target_link_options(tavutil_shipped INTERFACE -fstack-protector-strong)
