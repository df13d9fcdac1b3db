# Keeps what a shared library exports to its API. Hidden visibility does that for our own code; what
# the standard library's templates add is dropped by a list for the linker, cmake/exports/<name>.map.
function(tesk_limit_exports name)
    if(CMAKE_EXECUTABLE_FORMAT STREQUAL "ELF")
        set(list ${PROJECT_SOURCE_DIR}/cmake/exports/${name}.map)
        target_link_options(${name} PRIVATE LINKER:--version-script=${list})
        set_property(TARGET ${name} APPEND PROPERTY LINK_DEPENDS ${list})
    endif()
endfunction()
