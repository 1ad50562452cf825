# Test harness: GoogleTest built from Debian's sources with the project's toolchain, and one Wine session
# (prefix, Xvfb, persistent wineserver) shared by every test executable of a run.

set(TAVUTIL_GTEST_SOURCE /usr/src/googletest CACHE PATH "GoogleTest sources (Debian package googletest)")
if(NOT EXISTS ${TAVUTIL_GTEST_SOURCE}/CMakeLists.txt)
    message(FATAL_ERROR "GoogleTest sources not found in ${TAVUTIL_GTEST_SOURCE} (apt-get install googletest)")
endif()
set(gtest_disable_pthreads ON CACHE BOOL "" FORCE)
set(BUILD_GMOCK OFF CACHE BOOL "" FORCE)
set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
add_subdirectory(${TAVUTIL_GTEST_SOURCE} ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)

# The session is started before the first test and stopped after the last, whatever the selection.
add_test(NAME wine_session_start COMMAND ${TAVUTIL_WINE_SESSION} start ${CMAKE_BINARY_DIR})
set_tests_properties(wine_session_start PROPERTIES FIXTURES_SETUP wine TIMEOUT 300)
add_test(NAME wine_session_stop COMMAND ${TAVUTIL_WINE_SESSION} stop ${CMAKE_BINARY_DIR})
set_tests_properties(wine_session_stop PROPERTIES FIXTURES_CLEANUP wine)

# A second session, a machine of its own (prefix, display, wineserver: its own desktop, foreground, keyboard
# and clipboard), so that two areas that need a desktop run at the same time. An area chooses it with
# SECOND_DESKTOP; a test added by hand runs its program through TAVUTIL_SECOND_DESKTOP_RUN and requires the
# fixture wine2 and the lock desktop2.
set(TAVUTIL_SECOND_DESKTOP ${CMAKE_BINARY_DIR}/second-desktop)
set(TAVUTIL_SECOND_DESKTOP_RUN ${TAVUTIL_WINE_SESSION} run ${TAVUTIL_SECOND_DESKTOP})
# A program of the first session, niced (see LOW_PRIORITY below).
set(TAVUTIL_LOW_PRIORITY_RUN nice -n 10 ${TAVUTIL_WINE_SESSION} run ${CMAKE_BINARY_DIR})
add_test(NAME wine_session2_start COMMAND ${TAVUTIL_WINE_SESSION} start ${TAVUTIL_SECOND_DESKTOP})
set_tests_properties(wine_session2_start PROPERTIES FIXTURES_SETUP wine2 TIMEOUT 300)
add_test(NAME wine_session2_stop COMMAND ${TAVUTIL_WINE_SESSION} stop ${TAVUTIL_SECOND_DESKTOP})
set_tests_properties(wine_session2_stop PROPERTIES FIXTURES_CLEANUP wine2)

# tavutil_test_area(NAME [SOURCES ...] [LIBS ...] [TIMEOUT seconds] [WITHOUT_DESKTOP | SECOND_DESKTOP]
#                   [LOW_PRIORITY] [LOCKS ...] [ARGS ...])
# One GoogleTest executable per area, `NAME_tests.exe`, made of the .cpp and .rc files of the calling
# folder (or the SOURCES given), and one CTest entry that runs it under Wine (with ARGS, if given).
# Test programs run side by side (ctest -j) unless they share something that one of them changes:
#  - desktop: the X display, the foreground window, the keyboard and the clipboard of the session. Every
#    area holds it unless it says WITHOUT_DESKTOP (it makes no window, types no key and takes no foreground).
#    SECOND_DESKTOP runs the area in the second session instead, holding that session's desktop2.
# LOW_PRIORITY runs the program niced: work that only wants the CPU time the desktop areas leave (they
# wait on windows and input most of the time, and slow down when they must queue for a core).
#  - LOCKS names others, e.g. machine_keys: the HKEY_LOCAL_MACHINE keys that tests create at the exact paths
#    the library reads (the suite's setup key, App Paths, Uninstall and class entries).
function(tavutil_test_area name)
    cmake_parse_arguments(ARG "WITHOUT_DESKTOP;SECOND_DESKTOP;LOW_PRIORITY" "TIMEOUT" "SOURCES;LIBS;LOCKS;ARGS" ${ARGN})
    if(NOT ARG_SOURCES)
        file(GLOB ARG_SOURCES CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/*.rc)
    endif()
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 600)
    endif()
    set(locks ${ARG_LOCKS})
    set(target ${name}_tests)
    add_executable(${target} ${ARG_SOURCES})
    target_link_libraries(${target} PRIVATE TavUtil tavutil_test_support GTest::gtest tavutil_warnings ${ARG_LIBS})
    if(ARG_SECOND_DESKTOP)
        list(APPEND locks desktop2)
        add_test(NAME ${target} COMMAND ${TAVUTIL_SECOND_DESKTOP_RUN} $<TARGET_FILE:${target}> --gtest_color=no
                                        ${ARG_ARGS})
        set_tests_properties(${target} PROPERTIES FIXTURES_REQUIRED wine2 TIMEOUT ${ARG_TIMEOUT})
    else()
        if(NOT ARG_WITHOUT_DESKTOP)
            list(APPEND locks desktop)
        endif()
        if(ARG_LOW_PRIORITY)
            add_test(NAME ${target} COMMAND ${TAVUTIL_LOW_PRIORITY_RUN} $<TARGET_FILE:${target}> --gtest_color=no
                                            ${ARG_ARGS})
        else()
            add_test(NAME ${target} COMMAND ${target} --gtest_color=no ${ARG_ARGS})
        endif()
        set_tests_properties(${target} PROPERTIES FIXTURES_REQUIRED wine TIMEOUT ${ARG_TIMEOUT})
    endif()
    if(locks)
        set_tests_properties(${target} PROPERTIES RESOURCE_LOCK "${locks}")
    endif()
endfunction()
