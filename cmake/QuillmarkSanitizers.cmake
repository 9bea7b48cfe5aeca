# QUILLMARK_SANITIZE=ON builds everything with AddressSanitizer (leaks included) and
# UndefinedBehaviorSanitizer. QUILLMARK_FUZZ=ON (clang only) also instruments the code for
# libFuzzer and builds the harnesses in tests/fuzz.
option(QUILLMARK_SANITIZE "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)
option(QUILLMARK_FUZZ "Build the libFuzzer harnesses (needs clang)" OFF)

if(QUILLMARK_FUZZ AND NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    message(FATAL_ERROR "QUILLMARK_FUZZ needs clang (e.g. CXX=clang++-14)")
endif()

if(QUILLMARK_SANITIZE OR QUILLMARK_FUZZ)
    # Undefined behaviour stops the program, so that a test cannot pass over it.
    set(QMK_SANITIZE_FLAGS -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
    add_compile_options(${QMK_SANITIZE_FLAGS})
    add_link_options(${QMK_SANITIZE_FLAGS})
endif()

if(QUILLMARK_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()
