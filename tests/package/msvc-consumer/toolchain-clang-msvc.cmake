# A Microsoft-style toolchain without Microsoft's tools: clang-cl compiles for the MSVC ABI, lld-link links,
# llvm-lib archives. There is no C runtime or Windows SDK here, so the compiler checks stop at a static
# library (they cannot link a program) and the project links with no default library (see CMakeLists.txt).
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR AMD64)
find_program(CMAKE_C_COMPILER NAMES clang-cl clang-cl-14 REQUIRED)
set(CMAKE_C_COMPILER_TARGET x86_64-pc-windows-msvc)
find_program(CMAKE_LINKER NAMES lld-link lld-link-14 REQUIRED)
find_program(CMAKE_AR NAMES llvm-lib llvm-lib-14 REQUIRED)
find_program(CMAKE_RC_COMPILER NAMES llvm-rc llvm-rc-14 REQUIRED)
find_program(CMAKE_MT NAMES llvm-mt llvm-mt-14 REQUIRED)
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
