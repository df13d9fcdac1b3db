# tesk_module(FOLDER HEADERS ... [SOURCES ...] [NEEDS FOLDER...] [LIBRARIES ...] [PRIVATE_LIBRARIES ...])
#
# A module is a folder of src, compiled as an object library of its own. Its sources can include its own
# headers, those of the folders that it needs, those of the libraries and of TeskCommon: nothing else
# compiles. To make that so, each module has an include folder of its own in the build tree, which holds one
# forwarding header for each of the module's headers.
# Includes are written from src: "minbox/hull/SearchHull.h".
function(tesk_module folder)
    cmake_parse_arguments(PARSE_ARGV 1 module "" "" "HEADERS;SOURCES;NEEDS;LIBRARIES;PRIVATE_LIBRARIES")
    string(REPLACE "/" "_" name module_${folder})
    set(root ${PROJECT_BINARY_DIR}/modules/${name})
    file(MAKE_DIRECTORY ${root})
    foreach(header IN LISTS module_HEADERS)
        file(CONFIGURE OUTPUT ${root}/${folder}/${header} @ONLY
             CONTENT "#include \"${CMAKE_CURRENT_SOURCE_DIR}/${folder}/${header}\"\n")
    endforeach()
    list(TRANSFORM module_NEEDS REPLACE "/" "_")
    list(TRANSFORM module_NEEDS PREPEND module_)
    if(NOT module_SOURCES)
        add_library(${name} INTERFACE)
        target_include_directories(${name} INTERFACE ${root})
        target_link_libraries(${name} INTERFACE TeskCommon ${module_NEEDS} ${module_LIBRARIES})
        return()
    endif()
    list(TRANSFORM module_SOURCES PREPEND ${folder}/)
    add_library(${name} OBJECT ${module_SOURCES})
    target_include_directories(${name} PUBLIC ${root} ${PROJECT_SOURCE_DIR}/include)
    target_link_libraries(${name} PUBLIC TeskCommon ${module_NEEDS} ${module_LIBRARIES}
                          PRIVATE tesk_flags ${module_PRIVATE_LIBRARIES})
    target_compile_definitions(${name} PRIVATE TESK_ORIENT_BUILDING)
    if(NOT MSVC)
        # A silent step from float to double, or back, would change results.
        target_compile_options(${name} PRIVATE -Wdouble-promotion -Wfloat-conversion)
    endif()
    set_property(GLOBAL APPEND PROPERTY TESK_MODULES ${name})
endfunction()
