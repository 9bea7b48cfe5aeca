# Shared helpers for the tests: temporary program folders, message-box capture, the loopback
# HTTP server and fake tools. The demo server in tools/ links the same library.
file(GLOB QMK_TEST_SUPPORT CONFIGURE_DEPENDS
    ${CMAKE_SOURCE_DIR}/tests/support/*.cpp ${CMAKE_SOURCE_DIR}/tests/support/*.h)
list(FILTER QMK_TEST_SUPPORT EXCLUDE REGEX ".*/tests/support/(probe_|main_).*")
add_library(quillmark_testsupport STATIC ${QMK_TEST_SUPPORT})
target_include_directories(quillmark_testsupport PUBLIC ${CMAKE_SOURCE_DIR}/tests ${CMAKE_SOURCE_DIR})
target_link_libraries(quillmark_testsupport PUBLIC quillmark_core Qt5::Test Qt5::Network)
# The nginx fixture reads the server block of the README it proves; the signing helper runs tools/publish.sh.
set_source_files_properties(${CMAKE_SOURCE_DIR}/tests/support/NginxServer.cpp
    ${CMAKE_SOURCE_DIR}/tests/support/SigningKey.cpp PROPERTIES
    COMPILE_DEFINITIONS QMK_SOURCE_DIR="${CMAKE_SOURCE_DIR}")

# Small programs that tests start as child processes (tests/support/probe_<name>.cpp).
file(GLOB QMK_TEST_PROBES CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tests/support/probe_*.cpp)
foreach(src ${QMK_TEST_PROBES})
    get_filename_component(probe ${src} NAME_WE)
    add_executable(${probe} ${src})
    target_link_libraries(${probe} PRIVATE quillmark_testsupport)
    set_target_properties(${probe} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
endforeach()

# One line registers a test: quillmark_add_test(TestName [extra sources...]).
function(quillmark_add_test name)
    add_executable(${name} ${CMAKE_SOURCE_DIR}/tests/${name}.cpp ${ARGN})
    target_link_libraries(${name} PRIVATE quillmark_testsupport)
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
    add_test(NAME ${name} COMMAND ${name} WORKING_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
    # Tests keep to portable program folders. One that strays into the user's data folder fails to
    # write there rather than filling the real home: a path below a plain file cannot be made.
    set_tests_properties(${name} PROPERTIES
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;QMK_TEST_SOURCE_DIR=${CMAKE_SOURCE_DIR};XDG_DATA_HOME=/dev/null/xdg-data"
        TIMEOUT 600)
endfunction()

file(GLOB QMK_TESTS CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tests/Test*.cpp)
foreach(src ${QMK_TESTS})
    get_filename_component(test_name ${src} NAME_WE)
    quillmark_add_test(${test_name})
endforeach()

# libFuzzer harnesses, one per seed corpus folder tests/fuzz/corpus/<target> (tools/fuzz.sh).
if(QUILLMARK_FUZZ)
    file(GLOB QMK_FUZZ_CORPORA LIST_DIRECTORIES true ${CMAKE_SOURCE_DIR}/tests/fuzz/corpus/*)
    foreach(corpus ${QMK_FUZZ_CORPORA})
        get_filename_component(target ${corpus} NAME)
        add_executable(fuzz_${target} ${CMAKE_SOURCE_DIR}/tests/fuzz/FuzzHarness.cpp)
        target_compile_definitions(fuzz_${target} PRIVATE QMK_FUZZ_TARGET="${target}")
        target_link_libraries(fuzz_${target} PRIVATE quillmark_testsupport)
        target_link_options(fuzz_${target} PRIVATE -fsanitize=fuzzer)
        set_target_properties(fuzz_${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/fuzz)
    endforeach()
endif()
