# Sanitizers and coverage, for every target below this point alike: half-instrumented programs
# report what is not there and miss what is.
set(TESK_SANITIZE "" CACHE STRING "Build with sanitizers: 'address' (and undefined behaviour) or 'thread'")
set_property(CACHE TESK_SANITIZE PROPERTY STRINGS "" address thread)
option(TESK_COVERAGE "Count the executed lines" OFF)

if(TESK_SANITIZE STREQUAL "address")
    set(instrumentation -fsanitize=address,undefined,float-cast-overflow -fno-sanitize-recover=all)
elseif(TESK_SANITIZE STREQUAL "thread")
    # GCC's OpenMP runtime hides its locks and barriers from the sanitizer. LLVM's tells it about
    # them through the tool library Archer, which starts with the program when it is linked in.
    if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
        message(FATAL_ERROR "TESK_SANITIZE=thread needs Clang: with GCC's OpenMP it reports races that are none")
    endif()
    cmake_path(GET OpenMP_omp_LIBRARY PARENT_PATH openmpFolder)
    find_library(TESK_ARCHER_LIBRARY archer HINTS ${openmpFolder} REQUIRED)
    mark_as_advanced(TESK_ARCHER_LIBRARY)
    set(instrumentation -fsanitize=thread)
    cmake_path(GET TESK_ARCHER_LIBRARY PARENT_PATH archerFolder)
    add_link_options(LINKER:--no-as-needed,${TESK_ARCHER_LIBRARY},--as-needed
                     LINKER:-rpath,${archerFolder})
elseif(TESK_SANITIZE)
    message(FATAL_ERROR "TESK_SANITIZE is '${TESK_SANITIZE}'; it can be 'address' or 'thread'")
endif()

if(TESK_SANITIZE)
    # -g1: functions and lines, for the reports.
    add_compile_options(${instrumentation} -O1 -g1 -fno-omit-frame-pointer)
    add_link_options(${instrumentation})
endif()

if(TESK_COVERAGE)
    # Counters of code that runs on several threads must not lose steps.
    add_compile_options(--coverage -fprofile-update=atomic)
    add_link_options(--coverage)
endif()

if(TESK_BUILD_FUZZ)
    if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
        message(FATAL_ERROR "TESK_BUILD_FUZZ needs Clang, whose libFuzzer drives the targets")
    endif()
    # The libraries tell the fuzzer which branches an input took; the targets bring the driver.
    add_compile_options(-fsanitize=fuzzer-no-link)
    add_link_options(-fsanitize=fuzzer-no-link)
endif()
