# Builds for 64-bit Windows on Linux, with mingw-w64 and POSIX threads; runs what it builds with Wine.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(triplet x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${triplet}-gcc-posix)
set(CMAKE_CXX_COMPILER ${triplet}-g++-posix)
set(CMAKE_RC_COMPILER ${triplet}-windres)
set(CMAKE_AR ${triplet}-gcc-ar-posix CACHE FILEPATH "")
set(CMAKE_RANLIB ${triplet}-gcc-ranlib-posix CACHE FILEPATH "")

# Libraries and headers of the target only; TESK_WIN64_ROOT holds those built for it.
set(CMAKE_FIND_ROOT_PATH /usr/${triplet})
if(TESK_WIN64_ROOT)
    list(PREPEND CMAKE_FIND_ROOT_PATH ${TESK_WIN64_ROOT})
    list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES TESK_WIN64_ROOT)
endif()
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../../scripts/run_with_wine)

# The default stack of 2 MiB is a quarter of what programs have elsewhere; a thread that leaves it
# under Wine ends without a word.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-Wl,--stack,8388608")
