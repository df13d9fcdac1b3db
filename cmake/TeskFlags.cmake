# What every target of this project is compiled with, on one INTERFACE target.
add_library(tesk_flags INTERFACE)
target_compile_features(tesk_flags INTERFACE cxx_std_20)

# Results have the same bits everywhere: no contraction of a*b+c, no reordering of sums.
# libstdc++'s parallel sort runs serially, whether or not TBB is installed.
target_compile_definitions(tesk_flags INTERFACE _GLIBCXX_USE_TBB_PAR_BACKEND=0)
if(MSVC)
    target_compile_options(tesk_flags INTERFACE /fp:precise /W4 $<$<BOOL:${TESK_WARNINGS_AS_ERRORS}>:/WX>)
    target_compile_definitions(tesk_flags INTERFACE NOMINMAX)
else()
    target_compile_options(
        tesk_flags INTERFACE -ffp-contract=off -Wall -Wextra -Wshadow -Wpedantic
                             $<$<BOOL:${TESK_WARNINGS_AS_ERRORS}>:-Werror>)
    # GCC's vectoriser of straight-line code (seen in 12.2) forgets the rounding of a double that is
    # converted to float and back: static_cast<double>(static_cast<float>(x)) stays x.
    target_compile_options(tesk_flags
                           INTERFACE $<$<CXX_COMPILER_ID:GNU>:-fno-tree-slp-vectorize>)
endif()

set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
