# Finds the header-only hash map robin_hood and defines the target RobinHood::RobinHood.
# Looks for a CMake package first, then for robin_hood.h under the usual include folders, with or
# without a folder of its own; set RobinHood_INCLUDE_DIR where it lies elsewhere.
find_package(robin_hood CONFIG QUIET)
if(TARGET robin_hood::robin_hood)
    set(RobinHood_FOUND TRUE)
    if(NOT TARGET RobinHood::RobinHood)
        add_library(RobinHood::RobinHood INTERFACE IMPORTED)
        target_link_libraries(RobinHood::RobinHood INTERFACE robin_hood::robin_hood)
    endif()
    return()
endif()

find_path(RobinHood_INCLUDE_DIR robin_hood.h PATH_SUFFIXES mash robin_hood robin-hood-hashing)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(
    RobinHood REQUIRED_VARS RobinHood_INCLUDE_DIR
    REASON_FAILURE_MESSAGE "robin_hood.h is missing (Debian package libmash-dev)")

if(RobinHood_FOUND AND NOT TARGET RobinHood::RobinHood)
    add_library(RobinHood::RobinHood INTERFACE IMPORTED)
    target_include_directories(RobinHood::RobinHood SYSTEM INTERFACE ${RobinHood_INCLUDE_DIR})
endif()
mark_as_advanced(RobinHood_INCLUDE_DIR)
