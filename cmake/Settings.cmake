# Language, warnings, sanitizers, linker and compiler cache: the same for all targets.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_PCH_INSTANTIATE_TEMPLATES ON)

option(QM_SANITIZE "Build with address and undefined behaviour sanitizers" OFF)
option(QM_FUZZ "Build the fuzz targets (clang only)" OFF)
option(QM_TESTS "Build the tests" OFF)
option(QM_BENCHMARKS "Build the benchmarks" OFF)
option(QM_CONTENT "Lay out the game folder with the starter content" OFF)
set(QM_GAME_DIR ${CMAKE_SOURCE_DIR}/build/game CACHE PATH "The game folder: Data, Survival, ChallengeData")

find_program(QM_CCACHE ccache)
if(QM_CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER
        ${CMAKE_COMMAND} -E env
        CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1 CCACHE_PCH_EXTSUM=1
        CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
        ${QM_CCACHE})
endif()

find_program(QM_MOLD mold)
if(QM_MOLD)
    add_link_options(-fuse-ld=mold)
endif()

add_compile_options(-Wall -Wextra -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Werror
    -ffile-prefix-map=${CMAKE_SOURCE_DIR}/=)
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    add_compile_options("SHELL:-Xclang -fno-pch-timestamp")
else()
    # Not of use in g++ 12: it also counts members with a default that designated initializers leave
    # out, sees out-of-bounds copies in joined strings, and an "if" before a GoogleTest macro as unclear.
    add_compile_options(-fpch-preprocess -Wno-missing-field-initializers -Wno-array-bounds -Wno-restrict
        -Wno-stringop-overflow -Wno-dangling-else)
endif()

if(QM_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
    if(QM_FUZZ)
        add_compile_options(-fsanitize=fuzzer-no-link)
    endif()
endif()
